#include "QELFrameWriter.h"

#include <cerrno>
#include <cstring>

#include "QELFrameLine.h"

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

void QELFrameWriter::append(std::string_view text) {
    _buffer.append(text);
    _buffer.append("\r\n");
    if (_buffer.size() >= kBufferSize) flushBuffer();
}

void QELFrameWriter::push(std::string_view name) {
    if (_depth == _open.size()) _open.emplace_back();
    _open[_depth++].assign(name);
}

void QELFrameWriter::pop(std::string_view name) {
    if (_depth > 0 && _open[_depth - 1] == name) --_depth;
}

void QELFrameWriter::line(std::string_view text) {
    const QELFrameLine frame = qelClassifyLine(text);
    if (frame.kind == QELLineKind::Open) push(frame.name);
    else if (frame.kind == QELLineKind::Close) pop(frame.name);
    else checkValue(text);
    append(text);
}

// A value copied from elsewhere may end with the closing tag of the element
// it now stands in, which a reader of the frame takes for a value and a tag.
void QELFrameWriter::checkValue(std::string_view text) {
    if (_depth == 0 || !_unfitValue.empty()) return;
    const std::string& element = _open[_depth - 1];
    const size_t tag = element.size() + 3;
    if (text.size() <= tag || text.compare(text.size() - tag, 2, "</") != 0 || text.back() != '>' ||
        text.compare(text.size() - tag + 2, element.size(), element) != 0)
        return;
    _unfitValue.assign(text);
    _unfitElement = element;
}

void QELFrameWriter::openTag(std::string_view name) {
    push(name);
    _buffer += '<';
    _buffer.append(name);
    append(">");
}

void QELFrameWriter::closeTag(std::string_view name) {
    pop(name);
    _buffer.append("</");
    _buffer.append(name);
    append(">");
}

void QELFrameWriter::leaf(std::string_view name, std::string_view value) {
    openTag(name);
    checkValue(value);
    append(value);
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
