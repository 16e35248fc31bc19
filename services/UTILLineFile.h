#ifndef UTILLineFile_H
#define UTILLineFile_H

#include <cstdio>
#include <string>
#include <vector>

// A text file read line by line that knows its own position.
//
// Positions are byte offsets of line starts, tracked while reading, so asking
// for the position costs nothing, and moving to a position still inside the
// block in memory costs no system call either: the answer reader goes back to
// stored block positions all the time. Lines of any length are read whole;
// "\n" and "\r\n" both end a line; a last line without a line end is a line.
class UTILLineFile {
public:
    UTILLineFile() = default;
    UTILLineFile(const UTILLineFile&) = delete;
    UTILLineFile& operator=(const UTILLineFile&) = delete;
    ~UTILLineFile() { close(); }

    // 0 when opened (or already open), -1 when the file cannot be read.
    int open(const char* path);
    void close();
    bool isOpen() const { return _file != nullptr; }

    // Reads the next line without its line end. False at end of file (the
    // line is then empty) or on a read error.
    bool readLine(std::string& line);
    // The offset of the next line to be read.
    long long tell() const { return _bufferStart + static_cast<long long>(_cursor); }
    // Moves to an offset; false when it lies outside the file.
    bool seek(long long offset);
    bool atEnd();
    long long size() const { return _size; }
    // Number of seeks that reached the operating system (for tests and benchmarks).
    long long systemSeeks() const { return _systemSeeks; }

private:
    bool fill();

    FILE* _file = nullptr;
    std::vector<char> _buffer;
    size_t _length = 0;          // bytes valid in _buffer
    size_t _cursor = 0;          // next byte to read in _buffer
    long long _bufferStart = 0;  // file offset of _buffer[0]
    long long _size = 0;
    long long _systemSeeks = 0;
};

#endif
