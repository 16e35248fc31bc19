#ifndef QELEntryFields_H
#define QELEntryFields_H

#include <array>
#include <functional>
#include <string>
#include <string_view>

// The fields of an entry that tie it to a component of the session: what a
// description says of the component and what an answer must echo back
// unchanged. Descriptions and answers share the frame, so one collector
// serves both.
enum class QELEntryField {
    Token,          // POINTER_ADDRESS
    InstanceName,   // InstanceName
    OccUid,         // Occ_UID
    OccCreatedFlag, // Occ_CreatedFlag
    FileName,       // File_Name
    OldFileName,    // Old_File_Name
    DatasetUid,     // DST_UID
    ItemRevUid,     // ItemRev_UID
};
constexpr size_t kQELEntryFieldCount = 8;

// The element name of a field, as the files spell it.
const char* qelEntryFieldName(QELEntryField field);

struct QELEntryFields {
    long line = 0;    // the line of the entry's opening tag
    std::string type; // the element named after the document type
    std::array<std::string, kQELEntryFieldCount> values;
    std::array<bool, kQELEntryFieldCount> present{};
    std::array<long, kQELEntryFieldCount> lines{}; // of each value

    bool has(QELEntryField field) const { return present[static_cast<size_t>(field)]; }
    const std::string& value(QELEntryField field) const { return values[static_cast<size_t>(field)]; }
    long lineOf(QELEntryField field) const { return has(field) ? lines[static_cast<size_t>(field)] : line; }
    void set(QELEntryField field, std::string value, long at = 0) {
        const auto i = static_cast<size_t>(field);
        values[i] = std::move(value);
        present[i] = true;
        lines[i] = at;
    }
};

// Fed the lines of a file in the line frame one at a time; hands out each
// entry's fields when the entry closes. Only the first value line of a
// leaf directly under Item_Info counts. It follows the nesting by counting
// tags and checks nothing: the frame check does that before.
class QELEntryFieldCollector {
public:
    using Entry = std::function<void(const QELEntryFields&)>;
    explicit QELEntryFieldCollector(Entry entry) : _entry(std::move(entry)) {}

    void line(long number, std::string_view text);

private:
    Entry _entry;
    QELEntryFields _fields;
    int _depth = 0;
    bool _inEntry = false;
    bool _inItemInfo = false;
    int _awaiting = -1; // the field whose value line comes next
};

// Reads a file in the line frame and hands out each entry's fields; false
// when it cannot be read (`error` says why). `progress` is told the bytes
// read so far.
bool qelCollectEntryFields(const std::string& path, const QELEntryFieldCollector::Entry& entry, std::string& error,
                           const std::function<void(long long done, long long total)>& progress = {});

#endif
