#ifndef QELLineReader_H
#define QELLineReader_H

#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

// Reads a line-framed file forward, one line at a time, counting lines.
//
// Descriptions of large sessions run to gigabytes, so the file is read in
// large blocks and a line is handed out as a view into the block whenever it
// lies inside one; only a line that straddles two blocks is copied. "\r\n"
// and "\n" both end a line; a last line without a line end is a line.
class QELLineReader {
public:
    QELLineReader() = default;
    QELLineReader(const QELLineReader&) = delete;
    QELLineReader& operator=(const QELLineReader&) = delete;
    ~QELLineReader();

    // False when the file cannot be read; `error` says why.
    bool open(const std::string& path, std::string& error);
    // The next line without its line end, valid until the next call. False at
    // the end of the file or on a read error (see failed()).
    bool next(std::string_view& line);
    // The number of the line last handed out, from 1.
    long lineNumber() const { return _lineNumber; }
    // Bytes consumed so far and the file's size, for progress reports.
    long long consumed() const { return _consumed; }
    long long size() const { return _size; }
    bool failed() const { return _failed; }
    // After a failure: the system's reason (errno).
    int error() const { return _error; }

private:
    bool fill();

    FILE* _file = nullptr;
    std::vector<char> _block;
    size_t _length = 0;
    size_t _cursor = 0;
    std::string _straddling;
    long _lineNumber = 0;
    long long _consumed = 0;
    long long _size = 0;
    bool _failed = false;
    int _error = 0;
};

#endif
