#ifndef QELFuzzBytes_H
#define QELFuzzBytes_H

#include <cstddef>
#include <cstdint>
#include <string>

namespace qelfuzz {

// The choices a harness makes from its input, one byte at a time. Past the
// end every byte reads 0, so that a short input still makes a whole (small)
// choice and the fuzzer can grow it byte by byte.
class ByteSource {
public:
    ByteSource(const uint8_t* data, size_t size) : _data(data), _size(size) {}

    uint8_t byte() { return _at < _size ? _data[_at++] : 0; }
    bool bit() { return byte() & 1; }
    // 0 to count - 1; 0 for a count of 0.
    size_t pick(size_t count) { return count ? byte() % count : 0; }
    // Up to `maxLength` bytes, any value: the length first, then the bytes.
    std::string bytes(size_t maxLength) {
        std::string text;
        for (size_t length = pick(maxLength + 1); length > 0; --length)
            text += static_cast<char>(byte());
        return text;
    }
    size_t consumed() const { return _at < _size ? _at : _size; }

private:
    const uint8_t* _data;
    size_t _size;
    size_t _at = 0;
};

} // namespace qelfuzz

#endif
