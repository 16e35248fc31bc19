#include "QELUnwritableText.h"

#include <set>
#include <utility>

#include "QELCommandSupport.h"
#include "QELComponent.h"
#include "QELEntryFields.h"
#include "QELFrameLine.h"
#include "QELHandleTable.h"
#include "UTILLineFile.h"
#include "QELEscape.h"

namespace {

constexpr int kStringType = 1;

// Follows a description entry by entry: the element a value line belongs to
// and the component of the entry it is in.
class EntryWalk {
public:
    // The element whose value `text` is, or empty for a tag line.
    std::string_view line(std::string_view text) {
        const QELFrameLine frame = qelClassifyLine(text);
        if (frame.kind == QELLineKind::Open) {
            if (_depth == 1) _token.clear();
            _element = frame.name;
            ++_depth;
            return {};
        }
        if (frame.kind == QELLineKind::Close) {
            if (_depth > 0) --_depth;
            _element = {};
            return {};
        }
        if (_element == qelEntryFieldName(QELEntryField::Token) && _token.empty()) _token.assign(text);
        return _element;
    }
    const std::string& token() const { return _token; }

private:
    int _depth = 0;
    std::string _element;
    std::string _token;
};

} // namespace

void QELUnwritableText::collect() {
    _values.clear();
    for (QELComponent* component : QELHandleTable::liveComponents()) {
        const int count = component->getPropertiesCount();
        for (int i = 0; i < count; ++i) {
            if (component->getPropertyTypeByIndex(i) != kStringType) continue;
            const CATUnicodeString value = component->getStringPropertyByIndex(i);
            const std::string& latin1 = value.ToLatin1();
            const bool markup = latin1.find_first_of("&<") != std::string::npos;
            if (!value.IsWide() && !markup) continue;
            _values.emplace(latin1, Value{value.ConvertToUTF8(), value.IsWide(), markup});
        }
    }
}

void QELUnwritableText::report(const std::string& descriptionPath, const std::string& name) const {
    if (_values.empty()) return;
    UTILLineFile reader;
    std::string error;
    if (!reader.open(descriptionPath, error)) return;
    EntryWalk walk;
    std::set<std::pair<std::string, std::string>> said; // (token, element)
    std::string_view text;
    while (reader.readLine(text)) {
        const std::string_view element = walk.line(text);
        if (element.empty()) continue;
        const auto found = _values.find(std::string(text));
        if (found == _values.end()) continue;
        if (!said.emplace(walk.token(), std::string(element)).second) continue;
        const QELComponent* component = QELHandleTable::resolve(walk.token());
        const std::string owner = component ? " of " + qelShown(component->get_Name().ConvertToUTF8()) : std::string();
        const Value& value = found->second;
        qelSay("warning: %s:%ld: <%s>%s holds %s: %s%s%s", name.c_str(), reader.lineNumber(),
               std::string(element).c_str(), owner.c_str(), qelShown(value.utf8).c_str(),
               value.wide ? "characters above U+00FF are written as '?' in an ISO-8859-1 description" : "",
               value.wide && value.markup ? ", and " : "",
               value.markup ? "'&' and '<' are written as they are: the description escapes nothing" : "");
    }
}
