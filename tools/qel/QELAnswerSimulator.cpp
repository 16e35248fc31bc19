#include "QELAnswerSimulator.h"

#include <cstdio>
#include <filesystem>

#include "QELAnswerNames.h"
#include "QELElementNames.h"
#include "QELFrameLine.h"

namespace {

constexpr std::string_view kRevision = "A";

// A value the PDM side can keep: the writer puts "ERROR" where a broken icon
// has no value.
bool isKnown(std::string_view value) { return !value.empty() && value != "ERROR"; }

bool isBroken(const QELDescriptionEntry& entry) {
    if (entry.type == QELElement::Unknown) return true;
    for (const char* name :
         {QELElement::Part_Number, QELElement::DST_UID, QELElement::ItemRev_UID, QELElement::File_Name})
        if (entry.value(name) == "ERROR") return true;
    return false;
}

// Workspace blocks name no parent and carry no instance name; occurrence
// blocks do, whichever process wrote them.
bool isOccurrence(const QELDescriptionEntry& entry) {
    if (entry.has(QELElement::InstanceName)) return true;
    for (const char* name : {QELElement::Parent_Part_Number, QELElement::Parent_Instance_Name,
                             QELElement::Parent_Doc_Name, QELElement::Parent_DST_UID, QELElement::Parent_ItemRev_UID})
        if (isKnown(entry.value(name))) return true;
    return false;
}

// The line closing the element opened on line `open`, or `end`; nested
// elements of the same name are skipped whole.
size_t closingLine(const QELDescriptionEntry& entry, size_t open, size_t end) {
    const std::string_view name = qelClassifyLine(entry.line(open)).name;
    long depth = 0;
    for (size_t i = open; i < end; ++i) {
        const QELFrameLine frame = qelClassifyLine(entry.line(i));
        if (frame.name != name) continue;
        if (frame.kind == QELLineKind::Open) ++depth;
        else if (--depth == 0) return i;
    }
    return end;
}

// The value lines of every `element` child of a block, one group per child.
std::vector<std::vector<std::string_view>> childGroups(const QELDescriptionEntry& entry,
                                                       const QELDescriptionElement& block, std::string_view element) {
    const std::string open = "<" + std::string(element) + ">";
    std::vector<std::vector<std::string_view>> groups;
    for (size_t i = block.begin; i < block.end; ++i) {
        if (entry.line(i) != open) continue;
        std::vector<std::string_view>& group = groups.emplace_back();
        const size_t close = closingLine(entry, i, block.end);
        for (++i; i < close; ++i) group.push_back(qelValueLine(entry.line(i)));
    }
    return groups;
}

} // namespace

bool QELAnswerSimulator::run(const std::string& descriptionPath, const std::string& answerPath, std::string& error,
                             const Progress& progress) {
    error.clear();
    // The count goes ahead of the entries, so a first pass counts them: the
    // description's own NBElements may not match what it holds.
    long count = 0;
    {
        QELDescriptionScanner counter;
        const bool counted =
            counter.open(descriptionPath, error) && counter.readHeader(error) && counter.countEntries(count, error);
        if (!counted) {
            _errorLine = counter.errorLine();
            return false;
        }
    }
    QELDescriptionScanner scanner;
    if (!scanner.open(descriptionPath, error) || !scanner.readHeader(error)) {
        _errorLine = scanner.errorLine();
        return false;
    }
    if (!_out.open(answerPath, error)) {
        _writeFailed = true;
        return false;
    }

    writeHeader(scanner, count);
    QELDescriptionEntry entry;
    while (scanner.nextEntry(entry, error)) {
        answerEntry(entry);
        if (!_out.unfitValue().empty()) {
            error = "the entry's value \"" + _out.unfitValue() +
                    "\" cannot be answered in <" + _out.unfitElement() +
                    ">: it ends with that element's closing tag";
            _errorLine = entry.openedOn;
            _unanswerable = true;
            break;
        }
        if ((++_entries & 0x3FF) == 0 && progress) progress(scanner.consumed(), scanner.size());
    }
    if (!error.empty()) {
        if (_errorLine == 0) _errorLine = scanner.errorLine();
        // No half answer is left behind for a reader to take.
        std::string ignored;
        _out.close(ignored);
        // Only a file of its own: the answer may go to a device.
        std::error_code ignoredError;
        if (std::filesystem::is_regular_file(answerPath, ignoredError)) std::remove(answerPath.c_str());
        return false;
    }
    _out.closeTag(QELElement::DESCFILE);
    if (!_out.close(error)) {
        error = answerPath + ": " + error;
        _writeFailed = true;
        return false;
    }
    return true;
}

void QELAnswerSimulator::writeHeader(const QELDescriptionScanner& scanner, long count) {
    std::string saveDesignTables = "1";
    for (const auto& [name, value] : scanner.options())
        if (name == QELElement::SaveDesignTables && value == "0") saveDesignTables = "0";

    _out.line("<?xml version=\"1.0\" encoding=\"ISO-8859-1\" ?>");
    _out.openTag(QELElement::DESCFILE);
    _out.openTag(QELElement::Options);
    _out.leaf(QELElement::SaveDesignTables, saveDesignTables);
    _out.leaf("UpdateStatusIcons", "1");
    _out.leaf("ReloadModifiedDocuments", "0");
    _out.closeTag(QELElement::Options);
    _out.leaf(QELElement::NBElements, count);
}

const QELAnswerSimulator::ItemAnswer& QELAnswerSimulator::itemFor(const QELDescriptionEntry& entry) {
    // One document is one item revision, however many entries show it.
    std::string key(entry.value(QELElement::File_Name));
    if (key.empty()) key = entry.value(QELElement::Part_Number);
    if (key.empty()) key = entry.value(QELElement::POINTER_ADDRESS);
    if (key.empty()) key = "#" + std::to_string(entry.openedOn);

    auto [found, inserted] = _items.try_emplace(key);
    ItemAnswer& item = found->second;
    if (!inserted) return item;

    item.ordinal = static_cast<long>(_items.size());
    item.itemId = qelAnswerItemId(item.ordinal);
    const std::string_view partNumber = entry.value(QELElement::Part_Number);
    item.partNumber = partNumber.empty() ? item.itemId : std::string(partNumber);
    const std::string_view revisionUid = entry.value(QELElement::ItemRev_UID);
    item.itemRevUid = isKnown(revisionUid) ? std::string(revisionUid) : qelAnswerUid("IR", item.ordinal, key);
    const std::string_view datasetUid = entry.value(QELElement::DST_UID);
    item.datasetUid = isKnown(datasetUid) ? std::string(datasetUid) : qelAnswerUid("DS", item.ordinal, key);
    const std::string_view namedRefUid = entry.value(QELElement::NamedRef_UID);
    const bool unmodified = entry.value(QELElement::Modified_Flag) == "0";
    item.namedRefUid =
        isKnown(namedRefUid) && unmodified ? std::string(namedRefUid) : qelAnswerUid("NR", item.ordinal, key);
    if (const std::string_view fileName = entry.value(QELElement::File_Name); !fileName.empty())
        item.fileName = derivedName(item, "", fileName);
    return item;
}

std::string QELAnswerSimulator::derivedName(const ItemAnswer& item, const std::string& suffix,
                                            std::string_view original) {
    return item.itemId + "_" + std::string(kRevision) + suffix + qelFileExtension(original);
}

void QELAnswerSimulator::answerEntry(const QELDescriptionEntry& entry) {
    _out.openTag(entry.type);
    _out.openTag(QELElement::Item_Info);
    // Without a POINTER_ADDRESS the reader places an entry by its parent.
    if (entry.has(QELElement::POINTER_ADDRESS))
        _out.leaf(QELElement::POINTER_ADDRESS, entry.value(QELElement::POINTER_ADDRESS));
    else if (entry.has(QELElement::Parent_ItemRev_UID))
        _out.leaf(QELElement::Parent_ItemRev_UID, entry.value(QELElement::Parent_ItemRev_UID));

    if (!isBroken(entry)) {
        const ItemAnswer& item = itemFor(entry);
        _secondaryIndex = 0;
        _shapeIndex = 0;
        _fileIndex = 0;
        writeOccurrence(entry, item);
        _out.leaf(QELElement::Part_Number, item.partNumber);
        _out.leaf(QELElement::Item_ID, item.itemId);
        _out.leaf(QELElement::ItemRev_ID, kRevision);
        _out.leaf(QELElement::ItemRev_UID, item.itemRevUid);
        writeDataset(entry, item);
        if (entry.has(QELElement::Type)) _out.leaf(QELElement::Type, entry.value(QELElement::Type));
        writeMapping(entry, item);
        writeSecondaries(entry, item);
        if (const QELDescriptionElement* shapes = entry.find(QELElement::Shapes)) writeShapes(entry, *shapes, item);
        if (const QELDescriptionElement* components = entry.find(QELElement::Components))
            writeShapes(entry, *components, item);
        writeExternals(entry, item);
        writeComposites(entry, item);
        _out.leaf(QELElement::Mask, 0L);
        const bool renamed = !item.fileName.empty() && item.fileName != entry.value(QELElement::File_Name);
        _out.leaf(QELElement::Update_Flag, renamed ? 1L : 0L);
        // A negative Check_Action is the writer's "unset".
        const std::string_view checkAction = entry.value(QELElement::Check_Action);
        const bool set = !checkAction.empty() && checkAction.front() != '-';
        _out.leaf(QELElement::Check_Action, set ? checkAction : std::string_view("0"));
    }
    _out.closeTag(QELElement::Item_Info);
    _out.closeTag(entry.type);
}

void QELAnswerSimulator::writeOccurrence(const QELDescriptionEntry& entry, const ItemAnswer& item) {
    if (!isOccurrence(entry)) return;
    const std::string_view described = entry.value(QELElement::Occ_UID);
    if (isKnown(described)) {
        _out.leaf(QELElement::Occ_UID, described);
        return;
    }
    const std::string key = item.itemId + "/" + std::string(entry.value(QELElement::Parent_Instance_Name)) + "/" +
                            std::string(entry.value(QELElement::InstanceName));
    _out.leaf(QELElement::Occ_UID, qelAnswerUid("OC", ++_occurrences, key));
    _out.leaf(QELElement::Occ_CreatedFlag, 1L);
}

void QELAnswerSimulator::writeDataset(const QELDescriptionEntry& entry, const ItemAnswer& item) {
    _out.leaf(QELElement::DST_UID, item.datasetUid);
    if (entry.has(QELElement::DST_Version)) {
        _out.leaf(QELElement::DST_Version, qelNextVersion(entry.value(QELElement::DST_Version)));
        if (entry.has(QELElement::Date_Last_Modification))
            _out.leaf(QELElement::Date_Last_Modification, entry.value(QELElement::Date_Last_Modification));
    } else {
        _out.leaf(QELElement::NamedRef_UID, item.namedRefUid);
    }
    if (item.fileName.empty()) return;
    _out.leaf(QELElement::File_Name, item.fileName);
    _out.leaf(QELElement::Old_File_Name, entry.value(QELElement::File_Name));
}

void QELAnswerSimulator::writeMapping(const QELDescriptionEntry& entry, const ItemAnswer& item) {
    std::vector<std::string_view> strings; // name, value, name, value, ...
    if (const QELDescriptionElement* block = entry.find(QELElement::Mapping_Attribut)) {
        for (const std::vector<std::string_view>& attribute : childGroups(entry, *block, QELElement::Attribut))
            strings.push_back(attribute.empty() ? std::string_view() : attribute.front());
        if (strings.size() % 2 != 0) strings.pop_back();
    }
    auto add = [&strings](std::string_view name, std::string_view value) {
        for (size_t i = 0; i < strings.size(); i += 2)
            if (strings[i] == name) return;
        strings.push_back(name);
        strings.push_back(value);
    };
    add("pdm_item_id", item.itemId);
    add("pdm_revision", kRevision);
    add("pdm_status", "Working");

    _out.openTag(QELElement::Mapping_Attribut);
    _out.leaf(QELElement::NBElements, static_cast<long>(strings.size()));
    for (std::string_view text : strings) _out.leaf(QELElement::Attribut, text);
    _out.closeTag(QELElement::Mapping_Attribut);
}

void QELAnswerSimulator::writeSecondaries(const QELDescriptionEntry& entry, const ItemAnswer& item) {
    const QELDescriptionElement* block = entry.find(QELElement::secondaries);
    if (!block) return;
    const auto groups = childGroups(entry, *block, QELElement::secondary);
    _out.openTag(QELElement::secondaries);
    _out.leaf(QELElement::NBElements, static_cast<long>(groups.size()));
    // Described: path, "", part number, dataset UID, named reference UID,
    // true/false, mask. Answered: path, new file name, dataset UID, part
    // number, new named reference UID, 1/0, mask.
    for (std::vector<std::string_view> lines : groups) {
        lines.resize(7);
        const std::string index = std::to_string(++_secondaryIndex);
        const std::string key = item.itemId + "/S" + index + "/" + std::string(lines[0]);
        _out.openTag(QELElement::secondary);
        _out.line(lines[0]);
        _out.line(derivedName(item, "_S" + index, lines[0]));
        _out.line(isKnown(lines[3]) ? std::string(lines[3]) : qelAnswerUid("DS", item.ordinal, key));
        _out.line(lines[2].empty() ? item.partNumber + "-S" + index : std::string(lines[2]));
        _out.line(qelAnswerUid("NR", item.ordinal, key));
        _out.line(lines[5] == "true" || lines[5] == "1" ? "1" : "0");
        // A negative mask is the writer's "unset": the PDM side gives a status.
        _out.line(lines[6].empty() || lines[6].front() == '-' ? std::string_view("0") : lines[6]);
        _out.closeTag(QELElement::secondary);
    }
    _out.closeTag(QELElement::secondaries);
}

void QELAnswerSimulator::writeShapes(const QELDescriptionEntry& entry, const QELDescriptionElement& block,
                                     const ItemAnswer& item) {
    const std::string_view name = entry.name(block);
    _out.openTag(name);
    std::vector<std::string_view> group;
    for (size_t i = block.begin; i < block.end; ++i) {
        if (entry.line(i) != "<SR>") {
            _out.line(entry.line(i));
            continue;
        }
        group.clear();
        const size_t close = closingLine(entry, i, block.end);
        for (++i; i < close; ++i) group.push_back(qelValueLine(entry.line(i)));
        writeShapeRepresentation(group, item);
    }
    _out.closeTag(name);
}

void QELAnswerSimulator::writeShapeRepresentation(const std::vector<std::string_view>& described,
                                                  const ItemAnswer& item) {
    // Both sides: a blank line, the file name, the shape's name, its dataset
    // UID, its named reference UID, true/false.
    std::vector<std::string_view> lines(described);
    lines.resize(6);
    const std::string index = std::to_string(++_shapeIndex);
    const std::string key = item.itemId + "/SR" + index + "/" + std::string(lines[2]);
    _out.openTag(QELElement::SR);
    _out.line("");
    _out.line(derivedName(item, "_SR" + index, lines[1]));
    _out.line(lines[2]);
    _out.line(isKnown(lines[3]) ? std::string(lines[3]) : qelAnswerUid("DS", item.ordinal, key));
    _out.line(qelAnswerUid("NR", item.ordinal, key));
    _out.line(lines[5]);
    _out.closeTag(QELElement::SR);
}

void QELAnswerSimulator::writeExternals(const QELDescriptionEntry& entry, const ItemAnswer& item) {
    const QELDescriptionElement* block = entry.find(QELElement::Externals);
    if (!block) return;
    // Described: the old name and an empty line. Answered: old and new name.
    const auto groups = childGroups(entry, *block, QELElement::Attribut);
    _out.openTag(QELElement::Externals);
    _out.leaf(QELElement::NBElements, static_cast<long>(groups.size()));
    for (const std::vector<std::string_view>& lines : groups) {
        const std::string_view old = lines.empty() ? std::string_view() : lines.front();
        _out.openTag(QELElement::Attribut);
        _out.line(old);
        _out.line(old.empty() ? std::string() : derivedName(item, "_X" + std::to_string(++_fileIndex), old));
        _out.closeTag(QELElement::Attribut);
    }
    _out.closeTag(QELElement::Externals);
}

void QELAnswerSimulator::writeComposites(const QELDescriptionEntry& entry, const ItemAnswer& item) {
    const QELDescriptionElement* block = entry.find(QELElement::PartComposites);
    if (!block) return;
    // The stacking, plies group and sequence levels are copied; a ply keeps
    // its name and gets new 3D and 2D representation file names in place of
    // the described paths and values.
    _out.openTag(QELElement::PartComposites);
    for (size_t i = block->begin; i < block->end; ++i) {
        if (entry.line(i) != "<Ply>") {
            _out.line(entry.line(i));
            continue;
        }
        const size_t end = closingLine(entry, i, block->end);
        auto described = [&](size_t offset) {
            return i + offset < end ? qelValueLine(entry.line(i + offset)) : std::string_view();
        };
        const std::string index = std::to_string(++_fileIndex);
        _out.openTag(QELElement::Ply);
        _out.line(described(1));
        for (size_t offset : {2u, 3u}) {
            const std::string_view path = described(offset);
            _out.line(path.empty() ? std::string()
                                   : derivedName(item, "_P" + index + (offset == 2 ? "_3D" : "_2D"), path));
        }
        _out.closeTag(QELElement::Ply);
        i = end;
    }
    _out.closeTag(QELElement::PartComposites);
}
