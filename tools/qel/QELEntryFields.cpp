#include "QELEntryFields.h"

#include "QELElementNames.h"
#include "QELFrameLine.h"
#include "UTILLineFile.h"

namespace {

constexpr const char* kFieldNames[kQELEntryFieldCount] = {
    QELElement::POINTER_ADDRESS, QELElement::InstanceName,  QELElement::Occ_UID, QELElement::Occ_CreatedFlag,
    QELElement::File_Name,       QELElement::Old_File_Name, QELElement::DST_UID, QELElement::ItemRev_UID};

int fieldOf(std::string_view name) {
    for (size_t i = 0; i < kQELEntryFieldCount; ++i)
        if (name == kFieldNames[i]) return static_cast<int>(i);
    return -1;
}

bool isEntryElement(std::string_view name) { return name != QELElement::NBElements && name != QELElement::Options; }

} // namespace

const char* qelEntryFieldName(QELEntryField field) { return kFieldNames[static_cast<size_t>(field)]; }

void QELEntryFieldCollector::line(long number, std::string_view text) {
    const QELFrameLine frame = qelClassifyLine(text);
    switch (frame.kind) {
    case QELLineKind::Open:
        if (_depth == 1 && isEntryElement(frame.name)) {
            _inEntry = true;
            _fields.line = number;
            _fields.type.assign(frame.name);
            _fields.present.fill(false);
        } else if (_inEntry && _depth == 2) {
            _inItemInfo = frame.name == QELElement::Item_Info;
        } else if (_inItemInfo && _depth == 3) {
            _awaiting = fieldOf(frame.name);
        }
        ++_depth;
        break;
    case QELLineKind::Close:
        _awaiting = -1;
        if (_depth > 0) --_depth;
        if (_depth == 2) _inItemInfo = false;
        if (_depth == 1 && _inEntry) {
            _inEntry = false;
            _entry(_fields);
        }
        break;
    case QELLineKind::Value:
        if (_awaiting >= 0) {
            const auto field = static_cast<size_t>(_awaiting);
            // A repeated leaf keeps its first value, as the reader's entry map does.
            if (!_fields.present[field]) {
                _fields.values[field].assign(text);
                _fields.present[field] = true;
                _fields.lines[field] = number;
            }
            _awaiting = -1;
        }
        break;
    }
}

bool qelCollectEntryFields(const std::string& path, const QELEntryFieldCollector::Entry& entry, std::string& error,
                           const std::function<void(long long, long long)>& progress) {
    UTILLineFile reader;
    if (!reader.open(path, error)) return false;
    QELEntryFieldCollector collector(entry);
    std::string_view line;
    while (reader.readLine(line)) {
        collector.line(reader.lineNumber(), line);
        if (progress && (reader.lineNumber() & 0xFFFF) == 0) progress(reader.tell(), reader.size());
    }
    if (reader.failed()) {
        error = "read error";
        return false;
    }
    return true;
}
