// describe, answer, apply on models made from the input (see
// QELFuzzSessionComposer.h), with a command, processes and phase the input
// picks. The property: the reading gives an item an identifier of the
// simulated PDM side only through an entry that designates a component of
// that item (its occurrence or workspace, or a document, whose items the
// reader reaches in several ways), never through another entry's token.
// Limits: kMaxInput bytes (the composer's own bounds keep the model small).
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <set>
#include <string>

#include "QELAbsoluteOccurrence.h"
#include "QELAnswerSimulator.h"
#include "QELDescriptionScanner.h"
#include "QELElementNames.h"
#include "QELFuzzSession.h"
#include "QELFuzzSessionComposer.h"
#include "QELFuzzSupport.h"
#include "QELHandleTable.h"
#include "QELItem.h"
#include "QELSession.h"
#include "QELWorkSpace.h"
#include "QELXMLToDM.h"

namespace {

constexpr size_t kMaxInput = 4096;

using ItemIds = std::map<const QELComponent*, std::string>;

ItemIds itemIds() {
    ItemIds ids;
    for (QELComponent* component : QELHandleTable::liveComponents())
        if (component->isAKindOf("QELITEM_CLASSNAME"))
            ids[component] = component->getStringProperty("Item_ID").ConvertToChar();
    return ids;
}

// The item identifiers each item may receive, by the answer's entries; those
// of entries designating a document may go to any item.
struct Carried {
    std::map<const QELComponent*, std::set<std::string>> byItem;
    std::set<std::string> anywhere;
};

void fail(const std::string& message) {
    std::fprintf(stderr, "qel fuzz: %s\n", message.c_str());
    std::abort();
}

Carried carriedIds(const std::string& answer) {
    Carried carried;
    QELDescriptionScanner scanner;
    QELDescriptionEntry entry;
    std::string error;
    if (!scanner.open(answer, error) || !scanner.readHeader(error))
        fail("the simulator's answer: " + error);
    while (scanner.nextEntry(entry, error)) {
        const std::string id(entry.value(QELElement::Item_ID));
        QELComponent* component = QELHandleTable::resolve(std::string(entry.value(QELElement::POINTER_ADDRESS)));
        if (id.empty() || !component)
            continue;
        if (component->isAbsolute()) {
            if (const QELComponent* item =
                    static_cast<QELAbsoluteOccurrence*>(component)->getLinkedItem())
                carried.byItem[item].insert(id);
        } else if (component->isWorkSpace()) {
            if (const QELComponent* item = static_cast<QELWorkSpace*>(component)->getItem())
                carried.byItem[item].insert(id);
        } else {
            carried.anywhere.insert(id);
        }
    }
    if (!error.empty())
        fail("the simulator's answer: " + error);
    return carried;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size > kMaxInput)
        return 0;
    qelfuzz::ByteSource bytes(data, size);
    const uint8_t choice = bytes.byte();
    bool raw = false;
    if (!qelfuzz::loadComposedSession(bytes, false, raw))
        return 0;
    qelfuzz::applyProcessChoice(choice);

    const std::string& description = qelfuzz::scratchFile("description");
    const std::string& answer = qelfuzz::scratchFile("answer");
    const bool written = qelfuzz::describeSession(description);
    QELAnswerSimulator simulator;
    std::string error;
    if (written && !simulator.run(description, answer, error))
        fail("the simulator refused the writer's description: " + error);
    if (written) {
        const ItemIds before = itemIds();
        const Carried carried = carriedIds(answer);
        {
            QELXMLToDM reader(answer.c_str());
            reader.execute(QELSession::getInstance());
        }
        for (const auto& [item, id] : itemIds()) {
            const auto old = before.find(item);
            if (old != before.end() && old->second == id)
                continue;
            const auto allowed = carried.byItem.find(item);
            if ((allowed != carried.byItem.end() && allowed->second.count(id)) ||
                carried.anywhere.count(id))
                continue;
            fail("the reading gave " + std::string(item->get_Name().ConvertToChar()) +
                 " the identifier " + id + " that no entry of its components carried");
        }
    }
    qelfuzz::resetSession();
    return 0;
}
