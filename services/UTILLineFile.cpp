#include "UTILLineFile.h"

#include <cerrno>
#include <cstring>
#include <sys/stat.h>

namespace {

const size_t kBlock = 1 << 16;
const size_t kSmallestBlock = 64;

// A file smaller than a block is read into a block of its own size: the
// fuzz harnesses and the tests read thousands of small files, and zeroing a
// whole block for each would cost more than reading them.
size_t blockFor(long long size) {
    if (size < 0 || size >= static_cast<long long>(kBlock)) return kBlock;
    return size < static_cast<long long>(kSmallestBlock) ? kSmallestBlock : static_cast<size_t>(size);
}

} // namespace

int UTILLineFile::open(const char* path) {
    if (_file) return 0;
    if (!path) return -1;
    _file = std::fopen(path, "rb");
    if (!_file) return -1;
    struct stat st;
    _size = (fstat(fileno(_file), &st) == 0 && S_ISREG(st.st_mode)) ? static_cast<long long>(st.st_size) : -1;
    _buffer.clear();
    _buffer.resize(blockFor(_size));
    _length = _cursor = 0;
    _bufferStart = 0;
    _lineNumber = 0;
    _failed = false;
    _error = 0;
    return 0;
}

bool UTILLineFile::open(const std::string& path, std::string& error) {
    if (open(path.c_str()) == 0) return true;
    error = std::strerror(errno);
    return false;
}

void UTILLineFile::close() {
    if (_file) std::fclose(_file);
    _file = nullptr;
    _length = _cursor = 0;
    _bufferStart = 0;
}

bool UTILLineFile::fill() {
    if (!_file) return false;
    // Nothing left to read: keep the last block, so that going back to a
    // position in it after the end was met still costs no system call.
    if (_size >= 0 && _bufferStart + static_cast<long long>(_length) >= _size) return false;
    // Keep nothing already consumed: the next block starts at the cursor.
    _bufferStart += static_cast<long long>(_cursor);
    if (_cursor < _length) std::memmove(_buffer.data(), _buffer.data() + _cursor, _length - _cursor);
    _length -= _cursor;
    _cursor = 0;
    // A line longer than the room left doubles the block, so that a line of
    // any length is read in a number of passes that grows with its logarithm.
    if (_buffer.size() - _length < _buffer.size() / 2) _buffer.resize(2 * _buffer.size());
    size_t got = std::fread(_buffer.data() + _length, 1, _buffer.size() - _length, _file);
    _length += got;
    if (got == 0 && std::ferror(_file)) {
        _failed = true;
        _error = errno != 0 ? errno : EIO;
    }
    return got > 0;
}

bool UTILLineFile::readLine(std::string_view& line) {
    line = std::string_view();
    if (!_file) return false;
    // Bytes after the cursor already searched for a line end: a block read
    // for a long line is not searched again from its start.
    size_t searched = 0;
    for (;;) {
        const char* start = _buffer.data() + _cursor;
        const size_t available = _length - _cursor;
        const void* nl = std::memchr(start + searched, '\n', available - searched);
        size_t length = 0;
        if (nl) {
            length = static_cast<size_t>(static_cast<const char*>(nl) - start);
            _cursor += length + 1;
        } else {
            searched = available;
            // fill() keeps the unread bytes, moved to the front of the block:
            // `start` is found again either way.
            if (fill()) continue;
            start = _buffer.data() + _cursor;
            length = _length - _cursor;
            if (length == 0) return false;
            _cursor = _length;
        }
        if (length > 0 && start[length - 1] == '\r') --length;
        line = std::string_view(start, length);
        if (_lineNumber >= 0) ++_lineNumber;
        return true;
    }
}

bool UTILLineFile::readLine(std::string& line) {
    std::string_view view;
    const bool read = readLine(view);
    line.assign(view.data(), view.size());
    return read;
}

bool UTILLineFile::seek(long long offset) {
    if (!_file || offset < 0 || (_size >= 0 && offset > _size)) return false;
    if (offset == 0)
        _lineNumber = 0;
    else if (offset != tell())
        _lineNumber = -1;
    if (offset >= _bufferStart && offset <= _bufferStart + static_cast<long long>(_length)) {
        _cursor = static_cast<size_t>(offset - _bufferStart);
        return true;
    }
    ++_systemSeeks;
    if (fseeko(_file, static_cast<off_t>(offset), SEEK_SET) != 0) return false;
    _bufferStart = offset;
    _length = _cursor = 0;
    return true;
}

bool UTILLineFile::atEnd() {
    if (_cursor < _length) return false;
    return !fill();
}
