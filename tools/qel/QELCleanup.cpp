#include "QELCleanup.h"

#include <atomic>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fcntl.h>
#include <pthread.h>
#include <signal.h>
#include <unistd.h>

namespace {

constexpr int kHandled[] = {SIGINT, SIGTERM, SIGHUP, SIGPIPE, SIGXFSZ};

// The registry the handler walks. Paths are copied into fixed storage when
// registered, so the handler never follows a pointer the program may be
// freeing; a slot's state is published last and cleared first.
enum SlotState { Free = 0, File = 1, Directory = 2 };
struct Slot {
    std::atomic<int> state{Free};
    char path[PATH_MAX];
};
constexpr int kSlots = 32;
Slot gSlots[kSlots];

static_assert(std::atomic<int>::is_always_lock_free, "the signal handler reads the slots' states");

void removeRegistered() {
    // Files first: a directory can only be removed once it is empty.
    for (const int wanted : {File, Directory}) {
        for (Slot& slot : gSlots) {
            if (slot.state.load(std::memory_order_acquire) != wanted) continue;
            if (wanted == File) ::unlink(slot.path);
            else ::rmdir(slot.path);
        }
    }
}

extern "C" void onSignal(int signal) {
    removeRegistered();
    struct sigaction action {};
    action.sa_handler = SIG_DFL;
    sigemptyset(&action.sa_mask);
    ::sigaction(signal, &action, nullptr);
    // Blocked while the handler runs: delivered, with the default action, as
    // soon as it returns.
    ::raise(signal);
}

extern "C" void onExit() { removeRegistered(); }

sigset_t handledSignals() {
    sigset_t set;
    sigemptyset(&set);
    for (const int signal : kHandled) sigaddset(&set, signal);
    return set;
}

} // namespace

void qelInstallCleanup() {
    std::atexit(onExit);
    struct sigaction action {};
    action.sa_handler = onSignal;
    // One cleanup at a time: a second signal waits for the first to kill.
    action.sa_mask = handledSignals();
    for (const int signal : kHandled) {
        struct sigaction current {};
        if (::sigaction(signal, nullptr, &current) == 0 && current.sa_handler == SIG_IGN) continue;
        ::sigaction(signal, &action, nullptr);
    }
}

QELSignalsBlocked::QELSignalsBlocked() {
    const sigset_t handled = handledSignals();
    pthread_sigmask(SIG_BLOCK, &handled, &_previous);
}

QELSignalsBlocked::~QELSignalsBlocked() { pthread_sigmask(SIG_SETMASK, &_previous, nullptr); }

bool QELCleanupPath::add(const std::string& path, bool directory) {
    remove();
    if (path.size() >= PATH_MAX) {
        errno = ENAMETOOLONG;
        return false;
    }
    for (int i = 0; i < kSlots; ++i) {
        Slot& slot = gSlots[i];
        if (slot.state.load(std::memory_order_relaxed) != Free) continue;
        std::memcpy(slot.path, path.c_str(), path.size() + 1);
        slot.state.store(directory ? Directory : File, std::memory_order_release);
        _slot = i;
        return true;
    }
    errno = EMFILE;
    return false;
}

void QELCleanupPath::remove() {
    if (_slot < 0) return;
    Slot& slot = gSlots[_slot];
    if (slot.state.load(std::memory_order_relaxed) == Directory) ::rmdir(slot.path);
    else ::unlink(slot.path);
    release();
}

void QELCleanupPath::release() {
    if (_slot < 0) return;
    gSlots[_slot].state.store(Free, std::memory_order_release);
    _slot = -1;
}

int qelMakeTemporaryFile(std::string& pattern, QELCleanupPath& registration) {
    QELSignalsBlocked blocked;
    std::vector<char> name(pattern.begin(), pattern.end());
    name.push_back('\0');
    const int fd = ::mkostemp(name.data(), O_CLOEXEC);
    if (fd < 0) return -1;
    pattern = name.data();
    if (!registration.addFile(pattern)) {
        const int reason = errno;
        ::close(fd);
        ::unlink(pattern.c_str());
        errno = reason;
        return -1;
    }
    return fd;
}

bool qelMakeTemporaryDirectory(std::string& pattern, QELCleanupPath& registration) {
    QELSignalsBlocked blocked;
    std::vector<char> name(pattern.begin(), pattern.end());
    name.push_back('\0');
    if (!::mkdtemp(name.data())) return false;
    pattern = name.data();
    if (registration.addDirectory(pattern)) return true;
    const int reason = errno;
    ::rmdir(pattern.c_str());
    errno = reason;
    return false;
}

std::string qelTemporaryFolder() {
    std::error_code error;
    const std::filesystem::path folder = std::filesystem::temp_directory_path(error);
    return error ? std::string("/tmp") : folder.string();
}

QELScratchDirectory::QELScratchDirectory() {
    std::string pattern = (std::filesystem::path(qelTemporaryFolder()) / "qel-XXXXXX").string();
    if (qelMakeTemporaryDirectory(pattern, _directory)) _path = pattern;
}

QELScratchDirectory::~QELScratchDirectory() {
    if (_path.empty()) return;
    std::error_code error;
    std::filesystem::remove_all(_path, error);
}

std::string QELScratchDirectory::file(const std::string& name) {
    const std::string path = (std::filesystem::path(_path) / name).string();
    if (!_files.emplace_back().addFile(path)) return {};
    return path;
}
