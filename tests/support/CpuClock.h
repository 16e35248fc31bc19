#ifndef CpuClock_H
#define CpuClock_H

#include <ctime>

// The processor time of this process, in seconds. Scaling tests compare it
// rather than the wall clock, which also counts the time the process waits
// while other work runs on a shared machine.
inline double cpuSeconds() {
    timespec t{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &t);
    return static_cast<double>(t.tv_sec) + static_cast<double>(t.tv_nsec) * 1e-9;
}

#endif
