#include "QELFuzzSupport.h"

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>

#include "CATDocument.h"
#include "CV5CAAQELDocument.h"
#include "CV5CAAToolsCommon.h"
#include "EMHManager.h"
#include "ENVManager.h"
#include "JNLManager.h"
#include "PROCManager.h"
#include "QELAbsoluteOccurrence.h"
#include "QELDocument.h"
#include "QELHandleTable.h"
#include "QELSessionFile.h"
#include "SessionReset.h"

namespace qelfuzz {
namespace {

// Removes the input file when the process ends normally.
struct InputFile {
    std::string path;
    InputFile() {
        const char* dir = std::getenv("TMPDIR");
        path = std::string(dir && *dir ? dir : "/tmp") + "/qel_fuzz_input_" + std::to_string(getpid()) + ".xml";
    }
    ~InputFile() { std::remove(path.c_str()); }
};

// Parsed once: every input builds the same session again, and parsing its
// text each time cost as much as building it.
const QELParsedSession& parsedSession() {
    static const QELParsedSession* parsed = [] {
        std::ifstream in(QEL_FUZZ_SESSION, std::ios::binary);
        std::ostringstream out;
        out << in.rdbuf();
        if (!in || out.str().empty()) {
            std::fprintf(stderr, "qel fuzz: cannot read %s\n", QEL_FUZZ_SESSION);
            std::abort();
        }
        auto* session = new QELParsedSession();
        QELSessionFileError error;
        if (!session->parse(out.str(), error)) {
            std::fprintf(stderr, "qel fuzz: session: %s\n", error.message.c_str());
            std::abort();
        }
        return session;
    }();
    return *parsed;
}

const char* const kCommands[] = {"save",   "save-as",           "save-selected",
                                 "import", "create-spreadsheet", "synchronize-active-shapes",
                                 "update-status", "state-details-update"};
const char* const kProcesses[] = {"none", "state-details", "state-details-factory", "state-details-update",
                                  "life-cycle-factory", "brr-save", "checkout"};

// The host switches the reader asks, each flipped from the bundled session's
// value by one bit of the switches byte.
struct Switch {
    bool (*get)();
    void (*set)(bool);
};
const Switch kSwitches[] = {
    {&PROCManager::manageDescForEmptyQEL, &PROCManager::setManageDescForEmptyQEL},
    {&PROCManager::manageSavableStatusForNonSave, &PROCManager::setManageSavableStatusForNonSave},
    {&ENVManager::manageForeignFilesOnSave, &ENVManager::setManageForeignFilesOnSave},
    {&PROCManager::isCatalogStagingManaged, &PROCManager::setIsCatalogStagingManaged},
    {&PROCManager::manageExternalFiles, &PROCManager::setManageExternalFiles},
    {&ENVManager::isCompositeManaged, &ENVManager::setIsCompositeManaged},
};
constexpr int kSwitchCount = sizeof kSwitches / sizeof *kSwitches;

// The document active in the host, picked by the two bits above the
// switches: none, an assembly and a part of the session, or a catalog.
CATDocument* activeDocument(int pick) {
    static CATDocument documents[] = {CATDocument("/tmp/qel/Gearbox.CATProduct"), CATDocument("/tmp/qel/Bolt.CATPart"),
                                      CATDocument("/tmp/qel/catalogs/Standard.catalog")};
    return pick == 0 ? nullptr : &documents[pick - 1];
}

// Host states the bundled session does not hold, given to some of its
// components so that the reader's paths for them are fuzzed too: shapes to
// activate ("MAJ" 2) on two occurrences and a workspace, component shape
// representations (a plain one and a foreign file) and the foreign document
// behind the latter, the shaft document's component occurrence, and the
// composite part as the primary document, the one composites answers go to.
bool addOccurrenceState(QELAbsoluteOccurrence* occurrence, QELAbsoluteOccurrence*& shaft) {
    const CATUnicodeString uid = occurrence->getOccUID();
    if (uid == "u-shf1" || uid == "u-pnl1") {
        occurrence->addIntegerProperty("MAJ", 2);
        if (uid == "u-shf1") shaft = occurrence;
    } else if (uid == "u-blt2") {
        occurrence->addStringProperty("Type", "COMP");
    } else if (uid == "u-spr1") {
        occurrence->addStringProperty("Type", "COMP");
        occurrence->addBooleanProperty("IsForeignFile", true);
    } else {
        return false;
    }
    return true;
}

bool addDocumentState(QELComponent* component, QELDocument*& shaft) {
    const CATUnicodeString& name = component->get_Name();
    auto* host = component->isAKindOf("CV5CAAQELDOCUMENT_CLASSNAME") ? static_cast<CV5CAAQELDocument*>(component)
                                                                     : nullptr;
    if (!host) return false;
    if (name == "Spacer_ring.CATPart") {
        host->addStringProperty("IsAForeignFile", "FF");
    } else if (name == "Shaft.CATPart") {
        shaft = host;
    } else if (name == "Gearbox.CATProduct" || name == "Panel.CATPart") {
        host->setIsPrimaryDocument(name == "Panel.CATPart");
    } else {
        return false;
    }
    return true;
}

void addHostStates() {
    QELDocument* shaft = nullptr;
    QELAbsoluteOccurrence* shaftOccurrence = nullptr;
    int found = 0;
    for (QELComponent* component : QELHandleTable::liveComponents()) {
        if (component->isAbsolute()) {
            found += addOccurrenceState(static_cast<QELAbsoluteOccurrence*>(component), shaftOccurrence);
        } else if (component->isWorkSpace() && component->get_Name() == "Fixture.CATProduct") {
            component->addIntegerProperty("MAJ", 2);
            ++found;
        } else {
            found += addDocumentState(component, shaft);
        }
    }
    // Five occurrences (u-spr1 is one in each workspace), a workspace and four
    // documents.
    if (found != 10 || !shaft || !shaftOccurrence) {
        std::fprintf(stderr, "qel fuzz: the bundled session lacks components the harness marks (%d found)\n", found);
        std::abort();
    }
    shaft->linkComponentAbsoluteOccurrence(shaftOccurrence);
}

} // namespace

const std::string& writeInput(const uint8_t* data, size_t size) {
    static InputFile file;
    FILE* out = std::fopen(file.path.c_str(), "wb");
    if (!out || (size && std::fwrite(data, 1, size, out) != size) || std::fclose(out) != 0) {
        std::fprintf(stderr, "qel fuzz: cannot write %s\n", file.path.c_str());
        std::abort();
    }
    return file.path;
}

void buildSession(uint8_t selector, uint8_t switches) {
    // The journal and the error handler only grow in memory: keep them small.
    JNLManager::setMaxEntries(256);
    EMHManager::setMaxEntries(256);
    QELSessionFileError error;
    if (!parsedSession().build(error)) {
        std::fprintf(stderr, "qel fuzz: session: %s\n", error.message.c_str());
        std::abort();
    }
    addHostStates();
    constexpr size_t commands = sizeof kCommands / sizeof *kCommands;
    constexpr size_t processes = sizeof kProcesses / sizeof *kProcesses;
    std::string message;
    qelApplyCommand(kCommands[selector % commands], kProcesses[(selector / commands) % processes],
                    selector / (commands * processes) % 2 ? "2" : "1", message);
    for (int bit = 0; bit < kSwitchCount; ++bit)
        if (switches >> bit & 1) kSwitches[bit].set(!kSwitches[bit].get());
    CV5CAAToolsCommon::setActiveCATDocument(activeDocument(switches >> kSwitchCount & 3));
}

void resetSession() {
    qeltest::resetSession();
    if (!QELHandleTable::restartNumbering()) {
        std::fprintf(stderr, "qel fuzz: %zu components outlive the model\n", QELHandleTable::liveCount());
        std::abort();
    }
}

} // namespace qelfuzz
