#include "QELFrameWriter.h"

#include <cerrno>
#include <cstring>

namespace {
constexpr size_t kBufferSize = 1 << 20;
}

QELFrameWriter::~QELFrameWriter() {
    std::string ignored;
    close(ignored);
}

bool QELFrameWriter::open(const std::string& path, std::string& error) {
    if (path == "-") {
        _file = stdout;
        _ownsFile = false;
    } else {
        _file = std::fopen(path.c_str(), "wb");
        _ownsFile = true;
        if (!_file) {
            fail();
            error = path + ": " + std::strerror(_failureReason);
            return false;
        }
    }
    _buffer.reserve(kBufferSize + 4096);
    return true;
}

// Reads errno first: it must still hold the failing call's reason.
void QELFrameWriter::fail() {
    const int reason = errno != 0 ? errno : EIO;
    if (!_failed) _failureReason = reason;
    _failed = true;
}

void QELFrameWriter::flushBuffer() {
    if (_file && !_buffer.empty() && std::fwrite(_buffer.data(), 1, _buffer.size(), _file) != _buffer.size())
        fail();
    _buffer.clear();
}

void QELFrameWriter::line(std::string_view text) {
    _buffer.append(text);
    _buffer.append("\r\n");
    if (_buffer.size() >= kBufferSize) flushBuffer();
}

void QELFrameWriter::openTag(std::string_view name) {
    _buffer += '<';
    _buffer.append(name);
    line(">");
}

void QELFrameWriter::closeTag(std::string_view name) {
    _buffer.append("</");
    _buffer.append(name);
    line(">");
}

void QELFrameWriter::leaf(std::string_view name, std::string_view value) {
    openTag(name);
    line(value);
    closeTag(name);
}

bool QELFrameWriter::close(std::string& error) {
    if (!_file) return !_failed;
    flushBuffer();
    if (std::fflush(_file) != 0) fail();
    if (_ownsFile && std::fclose(_file) != 0) fail();
    _file = nullptr;
    if (_failed) error = std::strerror(_failureReason);
    return !_failed;
}
