#ifndef QELStandardOutput_H
#define QELStandardOutput_H

#include <cstddef>
#include <iosfwd>
#include <memory>

// Standard output, for the data qel prints. A stream only says that it
// failed, and by the time the program looks, errno no longer says why: this
// keeps the reason of the first failed write, so that the failure is
// reported with it ("qel: standard output: cannot be written: No space left
// on device") and the exit status is 1.
class QELStandardOutput {
public:
    // Stands behind std::cout for its life; main() holds the one instance.
    QELStandardOutput();
    ~QELStandardOutput();
    QELStandardOutput(const QELStandardOutput&) = delete;
    QELStandardOutput& operator=(const QELStandardOutput&) = delete;

    class Buffer;

private:
    std::unique_ptr<Buffer> _buffer;
    std::streambuf* _previous;
};

// Flushes std::cout and stdio's stdout; false, reported once, when any write
// to standard output failed.
bool qelStandardOutputWritten();
// Writes bytes straight to standard output, after what std::cout holds;
// false (reported) on failure.
bool qelWriteStandardOutput(const char* data, size_t size);
// Reports a failure of standard output found elsewhere, once.
void qelStandardOutputFailed(int reason);

// Writes all `size` bytes to a descriptor, through short writes and
// interruptions; false with errno set on failure.
bool qelWriteAll(int fd, const char* data, size_t size);

#endif
