#ifndef QELFrameWriter_H
#define QELFrameWriter_H

#include <cstdio>
#include <string>
#include <string_view>

// Writes a file in the description's line frame: one tag or one value per
// line, CR LF line ends, nothing escaped. Lines are gathered in a large
// buffer and written in blocks: an answer to a large session runs to
// hundreds of megabytes.
class QELFrameWriter {
public:
    QELFrameWriter() = default;
    QELFrameWriter(const QELFrameWriter&) = delete;
    QELFrameWriter& operator=(const QELFrameWriter&) = delete;
    ~QELFrameWriter();

    // "-" writes to standard output.
    bool open(const std::string& path, std::string& error);
    void line(std::string_view text);
    void openTag(std::string_view name);
    void closeTag(std::string_view name);
    // The three-line element: tag, value, closing tag.
    void leaf(std::string_view name, std::string_view value);
    void leaf(std::string_view name, long value) { leaf(name, std::to_string(value)); }
    // Writes out what is pending and closes; false on any write error.
    bool close(std::string& error);
    // After a failure: the system's reason (errno) of the first call that failed.
    int failureReason() const { return _failureReason; }

private:
    void flushBuffer();
    void fail();

    FILE* _file = nullptr;
    bool _ownsFile = false;
    bool _failed = false;
    int _failureReason = 0;
    std::string _buffer;
};

#endif
