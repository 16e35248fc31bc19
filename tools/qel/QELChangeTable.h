#ifndef QELChangeTable_H
#define QELChangeTable_H

#include <cstdint>
#include <functional>
#include <ostream>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

class QELPropertyHolder;

// One property whose value differs between the snapshot and now.
struct QELChange {
    uint64_t handle = 0;         // the component's handle; 0 for the session
    std::string_view className;  // without "_CLASSNAME"
    std::string_view component;  // its name, UTF-8
    std::string_view property;
    std::string_view type;       // "string", "integer", ...
    bool hadValue = false;       // false: the property is new
    std::string_view oldValue;
    bool hasValue = false;       // false: the property is gone
    std::string_view newValue;
};

// What reading an answer changed: every property of the session and of
// every live component is recorded before, and compared after.
//
// The record keeps the values as text in one block of memory (a few bytes
// per property besides the text), so that a session of millions of
// components can be compared; the comparison walks the components in handle
// order against the record in the same order, in one linear pass.
class QELChangeTable {
public:
    using Progress = std::function<void(long long done, long long total)>;
    using Row = std::function<void(const QELChange&)>;

    void snapshot(const Progress& progress = {});
    // One call per changed property: components in construction order (the
    // session first), properties in the component's order, then those gone.
    void diff(const Row& row, const Progress& progress = {}) const;

private:
    // A component's recorded properties: the count, then per property its
    // name's number, its type and its text, lengths as variable-size integers.
    struct Record {
        uint64_t handle;
        uint32_t block;
        uint32_t offset;
    };
    struct OldProperty {
        uint32_t name;
        uint32_t type;
        std::string_view value;
        bool matched;
    };

    void record(uint64_t handle, const QELPropertyHolder& holder);
    void store(uint64_t handle, const std::string& bytes);
    void decode(const Record& record, std::vector<OldProperty>& out) const;
    // `describe` names the component (class name, name) when it has changes.
    void compare(uint64_t handle, const std::function<void(std::string&, std::string&)>& describe,
                 const QELPropertyHolder& holder, const Record* before, std::vector<OldProperty>& old,
                 const Row& row) const;

    std::vector<Record> _records;
    // Blocks of a fixed size: a record never spans two, and growing never
    // copies what is recorded already.
    std::vector<std::string> _blocks;
    std::vector<std::string> _names;                    // UTF-8, by number
    std::unordered_map<std::string, uint32_t> _nameIds; // ISO-8859-1 name -> number
    std::string _scratch;                               // one record while it is built
};

// Prints the rows as an aligned text table (class, component, property, old,
// new), or as a JSON document for tools. Answers the number of rows.
long qelPrintChangeTable(const QELChangeTable& table, std::ostream& out, bool json,
                         const QELChangeTable::Progress& progress = {});

#endif
