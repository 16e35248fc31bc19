#ifndef QELDescriptionScanner_H
#define QELDescriptionScanner_H

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "UTILLineFile.h"

// One child element of an entry's Item_Info, as lines of the entry.
struct QELDescriptionElement {
    size_t tag = 0;   // the index of its "<Name>" line
    size_t begin = 0; // its content lines, [begin, end)
    size_t end = 0;
};

// One entry of a description: the element named after the document type and
// the children of its Item_Info. The line storage is kept from one entry to
// the next, so walking a large description allocates almost nothing.
struct QELDescriptionEntry {
    std::string type;
    long openedOn = 0; // the line where the entry opens
    std::vector<std::string> lines;
    size_t lineCount = 0;
    std::vector<QELDescriptionElement> elements;

    std::string_view name(const QELDescriptionElement& element) const;
    const QELDescriptionElement* find(std::string_view name) const;
    bool has(std::string_view name) const { return find(name) != nullptr; }
    // The first value line of a leaf; empty when the leaf is absent.
    std::string_view value(std::string_view name) const;
    std::string_view line(size_t index) const { return lines[index]; }
};

// Walks a description in its line frame: the header (declaration,
// <DESCFILE>, Options, NBElements), then one entry at a time. Every fault
// gives its line (errorLine) and what was expected.
class QELDescriptionScanner {
public:
    bool open(const std::string& path, std::string& error);
    // Reads up to the first entry.
    bool readHeader(std::string& error);
    // The Options children in file order, (name, first value line).
    const std::vector<std::pair<std::string, std::string>>& options() const { return _options; }
    // False at </DESCFILE>; false with `error` set for a fault.
    bool nextEntry(QELDescriptionEntry& entry, std::string& error);
    // Counts the entries that follow the header without keeping them.
    bool countEntries(long& count, std::string& error);

    // The line of the last fault; 0 when the file could not be read at all.
    long errorLine() const { return _errorLine; }
    long long consumed() const { return _reader.tell(); }
    long long size() const { return _reader.size(); }

private:
    bool nextLine(std::string_view& line);
    void pushBack(std::string_view line);
    bool fail(long line, std::string message, std::string& error);
    bool endOfFile(const std::string& inside, long openedOn, std::string& error);
    bool readOptions(std::string& error);
    bool readElement(QELDescriptionEntry& entry, std::string_view tag, std::string& error);
    bool skipTo(std::string_view name, long openedOn, std::string& error);

    UTILLineFile _reader;
    std::string _pending;
    bool _hasPending = false;
    long _line = 0;
    long _errorLine = 0;
    std::vector<std::pair<std::string, std::string>> _options;
};

#endif
