#include "QELAnswerCrossCheck.h"

#include <algorithm>

#include "CV5CAAToolsDesc.h"
#include "PROCManager.h"
#include "QELDescribedObjects.h"
#include "QELDocument.h"
#include "QELElementNames.h"
#include "QELFile.h"
#include "QELHandleTable.h"
#include "QELItem.h"
#include "QELSessionFile.h"
#include "QELEscape.h"

namespace {

using Field = QELEntryField;

std::string latin1(const CATUnicodeString& text) { return text.ConvertToChar(); }

bool savePhaseTwo() {
    return (PROCManager::isCommandSave() || PROCManager::isCommandSaveAs() || PROCManager::isCommandSaveSelected()) &&
           PROCManager::isPhasePhase2();
}

void describe(QELEntryFields& fields, Field field, const CATUnicodeString& value) {
    if (value.GetLengthInChar() > 0) fields.set(field, latin1(value));
}

bool differs(const QELEntryFields& answer, Field answered, const QELEntryFields& described, Field field) {
    if (!answer.has(answered) || !described.has(field)) return false;
    const std::string& was = described.value(field);
    return !was.empty() && was != "ERROR" && answer.value(answered) != was;
}

} // namespace

std::string QELExpectedEntry::who(const std::string& token) const {
    if (component)
        return std::string(kind) + " " + qelShown(latin1(component->get_Name())) + " of the session (" + token + ")";
    return "the description's entry of " + token + " (" + (source ? *source : std::string()) + ":" +
           std::to_string(sourceLine) + ")";
}

std::string QELExpectedEntry::typeShown() const {
    if (!element.empty()) return "<" + element + ">";
    return broken ? "a broken icon" : std::string("of type ") + qelDocumentTypeName(documentType);
}

void QELCrossCheckReport::add(long line, std::string message) {
    ++count;
    if (mismatches.size() < kMaxKept) mismatches.push_back({line, std::move(message)});
}

bool QELDescribedEntries::read(const std::string& path, const std::string& name, std::string& error) {
    _path = name;
    _entries.clear();
    return qelCollectEntryFields(
        path,
        [this](const QELEntryFields& entry) {
            uint64_t handle = 0;
            if (entry.has(Field::Token) && QELHandleTable::parse(entry.value(Field::Token), handle))
                _entries.emplace(handle, entry); // a repeated token keeps its first entry, as the reader would
        },
        error);
}

bool QELDescribedEntries::expected(const std::string& token, QELExpectedEntry& out, std::string& why) const {
    uint64_t handle = 0;
    auto found = QELHandleTable::parse(token, handle) ? _entries.find(handle) : _entries.end();
    if (found == _entries.end()) {
        why = "is in no entry of " + _path;
        return false;
    }
    const QELEntryFields& entry = found->second;
    out.source = &_path;
    out.sourceLine = entry.line;
    out.element = entry.type;
    out.broken = entry.type == QELElement::Unknown;
    out.described = entry;
    return true;
}

bool qelExpectedFromModel(const std::string& token, QELExpectedEntry& out, std::string& why) {
    QELComponent* component = QELHandleTable::resolve(token);
    QELDescribedObjects d;
    if (!component) {
        why = "designates no component of the session";
        return false;
    }
    if (!qelDescribedObjects(component, d)) {
        why = "designates " + qelShown(latin1(component->get_ClassName())) + " " +
              qelShown(latin1(component->get_Name())) + ", which no entry describes";
        return false;
    }
    out.component = component;
    out.kind = d.kind;
    out.broken = component->getBooleanProperty("IsBrokenIcon");
    out.documentType = out.broken || !d.document ? EnumDocumentType_Unset : d.document->getType();
    QELEntryFields& was = out.described;
    was.present.fill(false);
    // The second save phase only completes the first phase's blocks: its
    // entries name no item, file or occurrence, so the PDM side had nothing
    // of them to echo.
    if (savePhaseTwo()) return true;
    describe(was, Field::InstanceName, component->getStringProperty("InstanceName"));
    if (component->isAbsolute()) describe(was, Field::OccUid, component->getStringProperty("Occ_UID"));
    if (d.file)
        describe(was, Field::FileName,
                 d.file->getStringProperty(PROCManager::isProcessStateDetailsFactory() ? "fullPathName" : "File_Name"));
    if (d.document) describe(was, Field::DatasetUid, d.document->getStringProperty("DST_UID"));
    if (d.item) describe(was, Field::ItemRevUid, d.item->getStringProperty("ItemRev_UID"));
    return true;
}

namespace {

bool elementMatches(const std::string& element, const QELExpectedEntry& expected) {
    if (!expected.element.empty()) return element == expected.element;
    if (expected.documentType == EnumDocumentType_Unset) return element == QELElement::Unknown;
    return CV5CAAToolsDesc::getDocumentTypeFromBalise(element) == expected.documentType;
}

class CrossChecker {
public:
    CrossChecker(const QELExpectation& expectation, QELCrossCheckReport& report)
        : _expectation(expectation), _report(report) {}

    void entry(const QELEntryFields& answer) {
        ++_report.entries;
        // An entry without a token is tied to no component: the reader finds
        // its parent by Parent_ItemRev_UID instead.
        if (!answer.has(Field::Token)) return;
        const std::string& token = answer.value(Field::Token);
        const long line = answer.lineOf(Field::Token);
        uint64_t handle = 0;
        if (!QELHandleTable::parse(token, handle)) {
            _report.add(line, "POINTER_ADDRESS " + qelShown(token) + " is not a handle (16 hexadecimal digits)");
            return;
        }
        const auto first = _seen.emplace(handle, line);
        if (!first.second) {
            _report.add(line, "POINTER_ADDRESS " + token + " is answered a second time (first on line " +
                                  std::to_string(first.first->second) + ")");
            return;
        }
        QELExpectedEntry expected;
        std::string why;
        if (!_expectation(token, expected, why)) {
            _report.add(line, "POINTER_ADDRESS " + token + " " + why);
            return;
        }
        if (!elementMatches(answer.type, expected))
            _report.add(answer.line,
                        "entry <" + answer.type + ">, but " + expected.who(token) + " is " + expected.typeShown());
        if (expected.broken) return;
        compare(answer, Field::InstanceName, expected, Field::InstanceName);
        if (answer.value(Field::OccCreatedFlag) != "1") compare(answer, Field::OccUid, expected, Field::OccUid);
        compare(answer, Field::OldFileName, expected, Field::FileName);
        compare(answer, Field::DatasetUid, expected, Field::DatasetUid);
        compare(answer, Field::ItemRevUid, expected, Field::ItemRevUid);
    }

private:
    void compare(const QELEntryFields& answer, Field answered, const QELExpectedEntry& expected, Field field) {
        if (!differs(answer, answered, expected.described, field)) return;
        _report.add(answer.lineOf(answered),
                    std::string(qelEntryFieldName(answered)) + " " + qelShown(answer.value(answered)) + ", but " +
                        expected.who(answer.value(Field::Token)) + " has " + qelEntryFieldName(field) + " " +
                        qelShown(expected.described.value(field)));
    }

    const QELExpectation& _expectation;
    QELCrossCheckReport& _report;
    std::unordered_map<uint64_t, long> _seen; // token -> the line that answered it first
};

} // namespace

bool qelCrossCheckAnswer(const std::string& answerPath, const QELExpectation& expectation, QELCrossCheckReport& report,
                         std::string& error, const std::function<void(long long, long long)>& progress) {
    CrossChecker checker(expectation, report);
    if (!qelCollectEntryFields(
            answerPath, [&checker](const QELEntryFields& entry) { checker.entry(entry); }, error, progress))
        return false;
    std::stable_sort(report.mismatches.begin(), report.mismatches.end(),
                     [](const QELMismatch& a, const QELMismatch& b) { return a.line < b.line; });
    return true;
}
