#include "QELStandardOutput.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <iostream>
#include <streambuf>
#include <unistd.h>

#include "QELCommandSupport.h"

namespace {

QELStandardOutput::Buffer* gBuffer = nullptr;
bool gReported = false;

} // namespace

// Buffered writes to descriptor 1; after the first failure everything is
// dropped and the stream goes bad.
class QELStandardOutput::Buffer : public std::streambuf {
public:
    Buffer() { setp(_space, _space + sizeof _space); }
    int error() const { return _error; }

    // What is pending, then `size` bytes.
    bool write(const char* data, size_t size) {
        if (!drain()) return false;
        if (size > 0 && !qelWriteAll(STDOUT_FILENO, data, size)) _error = errno;
        return _error == 0;
    }

protected:
    int_type overflow(int_type c) override {
        if (!drain()) return traits_type::eof();
        if (traits_type::eq_int_type(c, traits_type::eof())) return traits_type::not_eof(c);
        *pptr() = traits_type::to_char_type(c);
        pbump(1);
        return c;
    }
    std::streamsize xsputn(const char* data, std::streamsize size) override {
        if (size < static_cast<std::streamsize>(epptr() - pptr())) return std::streambuf::xsputn(data, size);
        return write(data, static_cast<size_t>(size)) ? size : 0;
    }
    int sync() override { return drain() ? 0 : -1; }

private:
    bool drain() {
        const size_t pending = static_cast<size_t>(pptr() - pbase());
        setp(_space, _space + sizeof _space);
        if (pending == 0) return _error == 0;
        return write(_space, pending);
    }

    char _space[1 << 16];
    int _error = 0;
};

bool qelWriteAll(int fd, const char* data, size_t size) {
    while (size > 0) {
        const ssize_t written = ::write(fd, data, size);
        if (written < 0 && errno == EINTR) continue;
        if (written < 0) return false;
        if (written == 0) {
            errno = EIO;
            return false;
        }
        data += written;
        size -= static_cast<size_t>(written);
    }
    return true;
}

QELStandardOutput::QELStandardOutput() : _buffer(std::make_unique<Buffer>()) {
    _previous = std::cout.rdbuf(_buffer.get());
    gBuffer = _buffer.get();
}

QELStandardOutput::~QELStandardOutput() {
    std::cout.flush();
    std::cout.rdbuf(_previous);
    gBuffer = nullptr;
}

void qelStandardOutputFailed(int reason) {
    if (gReported) return;
    gReported = true;
    qelSay("standard output: cannot be written: %s", std::strerror(reason));
}

bool qelStandardOutputWritten() {
    std::cout.flush();
    if (gBuffer && gBuffer->error() != 0) {
        qelStandardOutputFailed(gBuffer->error());
        return false;
    }
    errno = 0;
    if (std::fflush(stdout) != 0 || std::ferror(stdout)) {
        qelStandardOutputFailed(errno != 0 ? errno : EIO);
        return false;
    }
    return !gReported;
}

bool qelWriteStandardOutput(const char* data, size_t size) {
    std::cout.flush();
    if (gBuffer ? gBuffer->write(data, size) : std::fwrite(data, 1, size, stdout) == size)
        return qelStandardOutputWritten();
    qelStandardOutputFailed(gBuffer ? gBuffer->error() : errno);
    return false;
}
