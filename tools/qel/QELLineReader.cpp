#include "QELLineReader.h"

#include <cerrno>
#include <cstring>

namespace {

constexpr size_t kBlockSize = 1 << 20;

std::string_view withoutCarriageReturn(std::string_view line) {
    if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
    return line;
}

} // namespace

QELLineReader::~QELLineReader() {
    if (_file) std::fclose(_file);
}

bool QELLineReader::open(const std::string& path, std::string& error) {
    _file = std::fopen(path.c_str(), "rb");
    if (!_file) {
        error = std::strerror(errno);
        return false;
    }
    if (std::fseek(_file, 0, SEEK_END) == 0) {
        _size = std::ftell(_file);
        std::rewind(_file);
    }
    _block.resize(kBlockSize);
    return true;
}

bool QELLineReader::fill() {
    _cursor = 0;
    _length = _file ? std::fread(_block.data(), 1, _block.size(), _file) : 0;
    if (_length == 0 && _file && std::ferror(_file)) {
        _failed = true;
        _error = errno != 0 ? errno : EIO;
    }
    return _length > 0;
}

bool QELLineReader::next(std::string_view& line) {
    if (_cursor >= _length && !fill()) return false;

    const char* start = _block.data() + _cursor;
    if (const auto* end = static_cast<const char*>(std::memchr(start, '\n', _length - _cursor))) {
        const size_t length = static_cast<size_t>(end - start);
        _cursor += length + 1;
        _consumed += static_cast<long long>(length + 1);
        ++_lineNumber;
        line = withoutCarriageReturn(std::string_view(start, length));
        return true;
    }

    // The line goes on in the next block (or is the last, without a line end).
    _straddling.assign(start, _length - _cursor);
    _consumed += static_cast<long long>(_length - _cursor);
    bool ended = false;
    while (!ended && fill()) {
        const char* from = _block.data();
        const auto* end = static_cast<const char*>(std::memchr(from, '\n', _length));
        const size_t length = end ? static_cast<size_t>(end - from) : _length;
        _straddling.append(from, length);
        _cursor = end ? length + 1 : _length;
        _consumed += static_cast<long long>(_cursor);
        ended = end != nullptr;
    }
    ++_lineNumber;
    line = withoutCarriageReturn(_straddling);
    return true;
}
