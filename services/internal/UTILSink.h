#ifndef UTILSink_H
#define UTILSink_H

#include <cstddef>
#include <cstdio>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

// Where the records of a process-wide sink also go, besides memory: the file
// or standard error that an environment variable names, chosen at the first
// record; a record is written as one line and flushed at once, so that the
// copy of a run that crashes is whole.
class UTILSinkOutput {
public:
    explicit UTILSinkOutput(const char* variable) : _variable(variable) {}
    UTILSinkOutput(const UTILSinkOutput&) = delete;
    UTILSinkOutput& operator=(const UTILSinkOutput&) = delete;

    // True when records are copied out; the first call reads the variable.
    bool active();
    // `line` and a line end.
    void writeLine(std::string_view line);
    // `path` (appended), standard error ("-"), or nowhere (empty) from now on.
    // False when the file cannot be opened; nothing is copied out then.
    bool open(const std::string& path);
    // Closes what was chosen; the next record reads the variable again.
    void reset();

private:
    void close();

    const char* _variable;
    FILE* _output = nullptr; // stderr, a file opened here, or null
    bool _chosen = false;
};

// The records of a sink kept in memory, in order, each also copied out as
// one line. Memory stays bounded on very long runs: past maxEntries()
// records, the oldest half is dropped (the copy outside memory is complete).
template <typename Entry> class UTILSink {
public:
    // `variable` names the output (read at the first record); `defaultMaxEntries`
    // is the bound that setMaxEntries(0) restores.
    UTILSink(const char* variable, std::size_t defaultMaxEntries)
        : _output(variable), _defaultMaxEntries(defaultMaxEntries), _maxEntries(defaultMaxEntries) {}

    // Keeps `entry`; `line(entry)` gives its text, asked only when it is
    // copied out.
    template <typename Line> void record(Entry entry, Line line) {
        if (_output.active()) _output.writeLine(line(entry));
        _entries.push_back(std::move(entry));
        if (_entries.size() > _maxEntries) {
            // Dropping half at once keeps the cost of the front erase
            // amortised constant per record.
            const std::size_t drop = _entries.size() - _maxEntries / 2;
            _entries.erase(_entries.begin(), _entries.begin() + static_cast<std::ptrdiff_t>(drop));
        }
    }

    const std::vector<Entry>& entries() const { return _entries; }
    void clear() { _entries.clear(); }
    bool setOutputPath(const std::string& path) { return _output.open(path); }
    void resetOutput() { _output.reset(); }
    // 0 restores the default; below 2 the drop-half rule would keep nothing.
    void setMaxEntries(std::size_t maxEntries) {
        _maxEntries = maxEntries == 0 ? _defaultMaxEntries : (maxEntries < 2 ? 2 : maxEntries);
    }
    std::size_t maxEntries() const { return _maxEntries; }

private:
    UTILSinkOutput _output;
    std::vector<Entry> _entries;
    std::size_t _defaultMaxEntries;
    std::size_t _maxEntries;
};

#endif
