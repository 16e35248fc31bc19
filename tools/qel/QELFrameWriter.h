#ifndef QELFrameWriter_H
#define QELFrameWriter_H

#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

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
    // The first value line that ends with the closing tag of the element it
    // is in (empty when none), and that element: a frame check reads such a
    // line as a value followed by a tag.
    const std::string& unfitValue() const { return _unfitValue; }
    const std::string& unfitElement() const { return _unfitElement; }

private:
    void append(std::string_view text);
    void push(std::string_view name);
    void pop(std::string_view name);
    void checkValue(std::string_view text);
    void flushBuffer();
    void fail();

    FILE* _file = nullptr;
    bool _ownsFile = false;
    bool _failed = false;
    int _failureReason = 0;
    std::string _buffer;
    std::vector<std::string> _open; // the open elements' names, _depth of them in use
    size_t _depth = 0;
    std::string _unfitValue;
    std::string _unfitElement;
};

#endif
