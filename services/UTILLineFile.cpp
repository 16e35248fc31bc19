#include "UTILLineFile.h"

#include <cstring>
#include <sys/stat.h>

namespace {
const size_t kBlock = 1 << 16;
}

int UTILLineFile::open(const char* path) {
    if (_file) return 0;
    if (!path) return -1;
    _file = std::fopen(path, "rb");
    if (!_file) return -1;
    struct stat st;
    _size = (fstat(fileno(_file), &st) == 0 && S_ISREG(st.st_mode)) ? static_cast<long long>(st.st_size) : -1;
    _buffer.resize(kBlock);
    _length = _cursor = 0;
    _bufferStart = 0;
    return 0;
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
    if (_buffer.size() - _length < kBlock / 2) _buffer.resize(_buffer.size() + kBlock);
    size_t got = std::fread(_buffer.data() + _length, 1, _buffer.size() - _length, _file);
    _length += got;
    return got > 0;
}

bool UTILLineFile::readLine(std::string& line) {
    line.clear();
    if (!_file) return false;
    bool readSomething = false;
    for (;;) {
        if (_cursor >= _length && !fill()) return readSomething;
        const char* start = _buffer.data() + _cursor;
        const void* nl = std::memchr(start, '\n', _length - _cursor);
        if (nl) {
            size_t n = static_cast<size_t>(static_cast<const char*>(nl) - start);
            line.append(start, n);
            _cursor += n + 1;
            if (!line.empty() && line.back() == '\r') line.pop_back();
            return true;
        }
        line.append(start, _length - _cursor);
        _cursor = _length;
        readSomething = true;
        if (!fill()) {
            if (!line.empty() && line.back() == '\r') line.pop_back();
            return true;
        }
    }
}

bool UTILLineFile::seek(long long offset) {
    if (!_file || offset < 0 || (_size >= 0 && offset > _size)) return false;
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
