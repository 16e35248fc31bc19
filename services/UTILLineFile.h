#ifndef UTILLineFile_H
#define UTILLineFile_H

#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

// A text file read line by line that knows its own position: the one line
// reader of the library and of the programs around it.
//
// The file is read forward in blocks (a file smaller than a block in one
// block of its own size), and a line is handed out as a view into the block,
// which always holds the whole line: a line that
// straddles two blocks is moved to the front before the next block is read,
// so no line is ever copied. Positions are byte offsets of line starts,
// tracked while reading, so asking for the position costs nothing, and moving
// to a position still inside the block in memory costs no system call either:
// the answer reader goes back to stored block positions all the time. Lines
// of any length are read whole; "\n" and "\r\n" both end a line; a last line
// without a line end is a line.
class UTILLineFile {
public:
    UTILLineFile() = default;
    UTILLineFile(const UTILLineFile&) = delete;
    UTILLineFile& operator=(const UTILLineFile&) = delete;
    ~UTILLineFile() { close(); }

    // 0 when opened (or already open), -1 when the file cannot be read (errno
    // then says why).
    int open(const char* path);
    // The same, with the system's reason in `error` when it cannot be read.
    bool open(const std::string& path, std::string& error);
    void close();
    bool isOpen() const { return _file != nullptr; }

    // Reads the next line without its line end. False at end of file (the
    // line is then empty) or on a read error (see failed()).
    bool readLine(std::string& line);
    // The same as a view into the block in memory, valid until the next read
    // or seek: no copy at all.
    bool readLine(std::string_view& line);
    // The number of the line last read, from 1, while the file is read
    // forward from its start; after a seek anywhere but to 0 the numbers are
    // no longer known and this answers -1.
    long lineNumber() const { return _lineNumber; }
    // Whether a read failed (as opposed to the file ending), and why (errno).
    bool failed() const { return _failed; }
    int error() const { return _error; }
    // The offset of the next line to be read: while the file is read forward,
    // the bytes consumed so far.
    long long tell() const { return _bufferStart + static_cast<long long>(_cursor); }
    // Moves to an offset; false when it lies outside the file.
    bool seek(long long offset);
    bool atEnd();
    // -1 when the file is no regular file (a pipe, a terminal).
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
    long _lineNumber = 0;
    bool _failed = false;
    int _error = 0;
};

#endif
