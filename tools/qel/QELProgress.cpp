#include "QELProgress.h"

#include <cstdio>
#include <unistd.h>

#include "QELCleanup.h"
#include "QELEscape.h"

namespace {
bool gEnabled = false;
constexpr auto kRedrawEvery = std::chrono::milliseconds(100);
} // namespace

void QELProgress::enable(bool quiet) { gEnabled = !quiet && isatty(STDERR_FILENO); }

QELProgress::QELProgress(std::string stage) : _stage(qelEscape(stage)), _start(std::chrono::steady_clock::now()) {
    if (!gEnabled) return;
    draw();
    // The thread starts with the cleanup's signals blocked: they are handled
    // by the thread doing the work, which then makes no file behind the
    // handler's back.
    QELSignalsBlocked blocked;
    _redrawer = std::thread([this] { redraw(); });
}

QELProgress::~QELProgress() {
    if (!_redrawer.joinable()) return;
    {
        std::lock_guard<std::mutex> lock(_mutex);
        _stopping = true;
    }
    _stopRequested.notify_one();
    _redrawer.join();
    std::fputs("\r\033[K", stderr);
    std::fflush(stderr);
}

void QELProgress::redraw() {
    std::unique_lock<std::mutex> lock(_mutex);
    while (!_stopRequested.wait_for(lock, kRedrawEvery, [this] { return _stopping; })) draw();
}

void QELProgress::draw() {
    const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - _start).count();
    const long long done = _done.load(std::memory_order_relaxed);
    const long long total = _total.load(std::memory_order_relaxed);
    char line[512];
    if (total > 0)
        std::snprintf(line, sizeof line, "qel: %s %3lld%% (%.0f s)", _stage.c_str(), done * 100 / total, seconds);
    else
        std::snprintf(line, sizeof line, "qel: %s... (%.0f s)", _stage.c_str(), seconds);
    // A slow terminal is not sent the same line again and again.
    if (_shown == line) return;
    _shown = line;
    std::fprintf(stderr, "\r\033[K%s", line);
    std::fflush(stderr);
}
