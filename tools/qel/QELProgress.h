#ifndef QELProgress_H
#define QELProgress_H

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>

// A progress line on standard error while long work runs: the stage, how far
// it is and how long it has taken, redrawn in place and erased when the
// stage ends. Only when standard error is a terminal and --quiet was not
// given; otherwise a stage costs nothing but a test per update.
//
// Much of the work happens inside one library call (building, writing,
// reading) that reports nothing, so a small thread of the program's own
// redraws the line ten times a second, from the last count it was given.
// It touches nothing but standard error and the counts.
class QELProgress {
public:
    // Decided once, by the program, before any stage starts.
    static void enable(bool quiet);

    explicit QELProgress(std::string stage);
    QELProgress(const QELProgress&) = delete;
    QELProgress& operator=(const QELProgress&) = delete;
    ~QELProgress();

    // `done` out of `total` (bytes, entries, components); a total of 0 shows
    // the stage and the time only.
    void update(long long done, long long total) {
        _done.store(done, std::memory_order_relaxed);
        _total.store(total, std::memory_order_relaxed);
    }

private:
    void redraw();
    void draw();

    std::string _stage;
    std::string _shown; // the line on the terminal, drawn by one thread at a time
    std::chrono::steady_clock::time_point _start;
    std::atomic<long long> _done{0};
    std::atomic<long long> _total{0};
    std::mutex _mutex;
    std::condition_variable _stopRequested;
    bool _stopping = false;
    std::thread _redrawer;
};

#endif
