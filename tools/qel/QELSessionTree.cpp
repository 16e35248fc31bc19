// The assembly tree of the session, for people (indented text) and for
// Graphviz (a digraph). Siblings come in "IndiceOfAbsolute" order, as the
// description lists them.

#include <algorithm>
#include <string>
#include <vector>

#include "CV5CAAQELWorkSpace.h"
#include "QELAbsoluteOccurrence.h"
#include "QELItem.h"
#include "QELSession.h"
#include "QELSessionFile.h"
#include "QELSessionFileBuilder.h"
#include "QELWorkSpace.h"

namespace {

using Occurrences = std::vector<QELAbsoluteOccurrence*>;

// Stable, so that siblings of one index keep the order they were filed in.
void sortByIndex(Occurrences& occurrences) {
    std::stable_sort(occurrences.begin(), occurrences.end(), [](QELAbsoluteOccurrence* a, QELAbsoluteOccurrence* b) {
        return a->getIntegerProperty("IndiceOfAbsolute") < b->getIntegerProperty("IndiceOfAbsolute");
    });
}

Occurrences occurrencesOf(const TYPMapCATUnicodeStringPVoid* map, bool topLevelOnly) {
    Occurrences out;
    if (!map) return out;
    out.reserve(static_cast<size_t>(map->size()));
    for (const auto& entry : *map) {
        auto* occurrence = static_cast<QELAbsoluteOccurrence*>(entry.object);
        if (!occurrence) continue;
        // The workspace files its occurrences of every level.
        if (topLevelOnly && occurrence->getLinkedParentAbsoluteOccurrence()) continue;
        out.push_back(occurrence);
    }
    sortByIndex(out);
    return out;
}

Occurrences topLevel(const QELWorkSpace* workspace) {
    return occurrencesOf(workspace->getLinkedAbsoluteOccurrences(), true);
}

Occurrences children(const QELAbsoluteOccurrence* occurrence) {
    return occurrencesOf(occurrence->getLinkedChildAbsoluteOccurrences(), false);
}

// The current workspace first, then the passive ones by "WorkspaceIndex".
std::vector<QELWorkSpace*> orderedWorkspaces() {
    std::vector<QELWorkSpace*> out;
    TYPMapCATUnicodeStringPVoid* all = QELSession::getInstance()->getWorkSpaces();
    if (!all) return out;
    for (const auto& entry : *all) {
        if (entry.object) out.push_back(static_cast<QELWorkSpace*>(entry.object));
    }
    std::stable_sort(out.begin(), out.end(), [](QELWorkSpace* a, QELWorkSpace* b) {
        if (a->isActiveWorkspace() != b->isActiveWorkspace()) return a->isActiveWorkspace() > b->isActiveWorkspace();
        return a->getIntegerProperty("WorkspaceIndex") < b->getIntegerProperty("WorkspaceIndex");
    });
    return out;
}

int workspaceType(const QELWorkSpace* workspace) {
    if (workspace->instanceOf("CV5CAAQELWORKSPACE_CLASSNAME"))
        return static_cast<const CV5CAAQELWorkSpace*>(workspace)->getWorkSpaceType();
    return workspace->getIntegerProperty("FileType");
}

// An occurrence shows its own instance name (its name is the whole path),
// or its UID when it has none.
std::string label(const QELAbsoluteOccurrence* occurrence) {
    CATUnicodeString own = occurrence->getInstanceName();
    if (own.IsNull()) own = occurrence->getOccUID();
    return own.ConvertToUTF8();
}

std::string itemName(const QELItem* item) { return item ? item->get_Name().ConvertToUTF8() : std::string(); }

std::string workspaceSummary(const QELWorkSpace* workspace) {
    std::string out = qelDocumentTypeName(workspaceType(workspace));
    out += workspace->isActiveWorkspace() ? " workspace, active" : " workspace";
    if (!workspace->getBooleanProperty("IsVisible")) out += ", hidden";
    return out;
}

// ---- indented text ------------------------------------------------------------

void printText(std::ostream& out, const QELAbsoluteOccurrence* occurrence, int depth) {
    std::string line(static_cast<size_t>(depth) * 2, ' ');
    line += label(occurrence);
    const std::string item = itemName(occurrence->getLinkedItem());
    if (!item.empty()) line += "  (" + item + ")";
    line += '\n';
    out << line;
    for (const QELAbsoluteOccurrence* child : children(occurrence)) printText(out, child, depth + 1);
}

void printText(std::ostream& out) {
    for (const QELWorkSpace* workspace : orderedWorkspaces()) {
        out << workspace->get_Name().ConvertToUTF8() << "  [" << workspaceSummary(workspace) << "]";
        const std::string item = itemName(workspace->getItem());
        if (!item.empty()) out << "  (" << item << ")";
        out << '\n';
        for (const QELAbsoluteOccurrence* occurrence : topLevel(workspace)) printText(out, occurrence, 1);
    }
}

// ---- Graphviz ----------------------------------------------------------------------

// A label of one or two lines: each is escaped, the break between them is
// Graphviz's own "\n".
std::string dotLabel(const std::string& first, const std::string& second) {
    std::string out = "\"";
    auto escaped = [&out](const std::string& text) {
        for (char c : text) {
            if (c == '"' || c == '\\') out += '\\';
            out += c;
        }
    };
    escaped(first);
    if (!second.empty()) {
        out += "\\n";
        escaped(second);
    }
    return out + '"';
}

class DotWriter {
public:
    explicit DotWriter(std::ostream& out) : _out(out) {}

    void run() {
        _out << "digraph session {\n  rankdir=LR;\n  node [shape=box, fontname=\"Helvetica\"];\n";
        for (const QELWorkSpace* workspace : orderedWorkspaces()) {
            const std::string id = "w" + std::to_string(++_workspaces);
            _out << "  " << id << " [label="
                 << dotLabel(workspace->get_Name().ConvertToUTF8(), workspaceSummary(workspace)) << ", style=bold];\n";
            for (const QELAbsoluteOccurrence* occurrence : topLevel(workspace)) node(occurrence, id);
        }
        _out << "}\n";
    }

private:
    void node(const QELAbsoluteOccurrence* occurrence, const std::string& parent) {
        const std::string id = "o" + std::to_string(++_occurrences);
        _out << "  " << id << " [label=" << dotLabel(label(occurrence), itemName(occurrence->getLinkedItem()))
             << "];\n  " << parent << " -> " << id << ";\n";
        for (const QELAbsoluteOccurrence* child : children(occurrence)) node(child, id);
    }

    std::ostream& _out;
    long _workspaces = 0;
    long _occurrences = 0;
};

} // namespace

void qelPrintTree(std::ostream& out, bool dot) {
    if (dot)
        DotWriter(out).run();
    else
        printText(out);
}
