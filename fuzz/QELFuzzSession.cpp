#include "QELFuzzSession.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <deque>
#include <fstream>
#include <memory>
#include <sstream>
#include <string>
#include <unordered_map>
#include <vector>

#include "CATDocument.h"
#include "CV5CAAQELDocument.h"
#include "CV5CAAToolsCommon.h"
#include "EMHManager.h"
#include "ENVManager.h"
#include "JNLManager.h"
#include "PROCManager.h"
#include "QELAbsoluteOccurrence.h"
#include "QELDMToXML.h"
#include "QELDocument.h"
#include "QELFuzzKeptSession.h"
#include "QELFuzzSessionComposer.h"
#include "QELFuzzSupport.h"
#include "QELHandleTable.h"
#include "QELSession.h"
#include "QELSessionFile.h"
#include "QELXMLToDM.h"

namespace qelfuzz {
namespace {

// The host switches the reader asks, each flipped from the session's value by
// one bit of the switches byte.
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

// The parsed sessions of the recipes met lately. Parsing is pure, so a recipe
// met again builds the same model whether it was kept or parsed anew; the
// fuzzer mutates one corpus input a few times, then moves to another, so a
// single kept recipe would be composed and parsed again at almost every move.
// The oldest is dropped when kRecipeCacheSize are kept. When an input adds a
// recipe, libFuzzer sees more allocations than frees and runs the input again
// before it scans the heap for leaks; the second run finds the recipe kept,
// frees what it allocates, and the scan is skipped.
const QELParsedSession& parsedRecipe(const uint8_t* recipe) {
    struct Kept {
        std::string recipe;
        std::unique_ptr<QELParsedSession> parsed;
    };
    static std::unordered_map<std::string, QELParsedSession*> byRecipe;
    static std::deque<Kept> kept;
    std::string key(reinterpret_cast<const char*>(recipe), kRecipeSize);
    const auto found = byRecipe.find(key);
    if (found != byRecipe.end())
        return *found->second;
    ByteSource bytes(recipe, kRecipeSize);
    QELSessionFileError error;
    auto parsed = std::make_unique<QELParsedSession>();
    if (!parsed->parse(composeSession(bytes, true, kReaderLimits).text, error)) {
        std::fprintf(stderr, "qel fuzz: a composed session is not JSON: %s\n",
                     error.message.c_str());
        std::abort();
    }
    if (kept.size() == kRecipeCacheSize) {
        byRecipe.erase(kept.front().recipe);
        kept.pop_front();
    }
    byRecipe.emplace(key, parsed.get());
    kept.push_back({std::move(key), std::move(parsed)});
    return *kept.back().parsed;
}

// The bundled example session, parsed once: the recipe that asks for it
// (kBundledRecipe) gives the reader the realistic session of seventeen
// documents that the seeds' hand-extended blocks were written for.
const QELParsedSession& bundledSession() {
    static const QELParsedSession* parsed = [] {
        std::ifstream in(QEL_FUZZ_BUNDLED_SESSION, std::ios::binary);
        std::ostringstream text;
        text << in.rdbuf();
        auto* session = new QELParsedSession();
        QELSessionFileError error;
        if (!in || !session->parse(text.str(), error)) {
            std::fprintf(stderr, "qel fuzz: cannot parse %s: %s\n", QEL_FUZZ_BUNDLED_SESSION,
                         error.message.c_str());
            std::abort();
        }
        return session;
    }();
    return *parsed;
}

// Host states the bundled session does not hold, given to some of its
// components so that the reader's paths for them are fuzzed too: shapes to
// activate ("MAJ" 2) on two occurrences and a workspace, component shape
// representations (a plain one and a foreign file) and the foreign document
// behind the latter, the shaft document's component occurrence, and the
// composite part as the primary document, the one composites answers go to.
void addBundledHostStates() {
    QELDocument* shaft = nullptr;
    QELAbsoluteOccurrence* shaftOccurrence = nullptr;
    for (QELComponent* component : QELHandleTable::liveComponents()) {
        const std::string name = component->get_Name().ToLatin1();
        if (component->isAbsolute()) {
            auto* occurrence = static_cast<QELAbsoluteOccurrence*>(component);
            const std::string uid = occurrence->getOccUID().ToLatin1();
            if (uid == "u-shf1" || uid == "u-pnl1")
                occurrence->addIntegerProperty("MAJ", 2);
            if (uid == "u-shf1")
                shaftOccurrence = occurrence;
            if (uid == "u-blt2" || uid == "u-spr1")
                occurrence->addStringProperty("Type", "COMP");
            if (uid == "u-spr1")
                occurrence->addBooleanProperty("IsForeignFile", true);
        } else if (component->isWorkSpace()) {
            if (name == "Fixture.CATProduct")
                component->addIntegerProperty("MAJ", 2);
        } else if (component->isAKindOf("CV5CAAQELDOCUMENT_CLASSNAME")) {
            auto* host = static_cast<CV5CAAQELDocument*>(component);
            if (name == "Spacer_ring.CATPart")
                host->addStringProperty("IsAForeignFile", "FF");
            if (name == "Shaft.CATPart")
                shaft = host;
            if (name == "Gearbox.CATProduct" || name == "Panel.CATPart")
                host->setIsPrimaryDocument(name == "Panel.CATPart");
        }
    }
    if (!shaft || !shaftOccurrence) {
        std::fprintf(stderr, "qel fuzz: the bundled session lacks the shaft the harness marks\n");
        std::abort();
    }
    shaft->linkComponentAbsoluteOccurrence(shaftOccurrence);
}

// The document active in the host: none, the first, the second or the last
// document of the session, by its file name as the host names it.
void activateDocument(int pick, const std::vector<QELDocument*>& documents) {
    static CATDocument active;
    if (pick == 0 || documents.empty()) {
        CV5CAAToolsCommon::setActiveCATDocument(nullptr);
        return;
    }
    const size_t index =
        pick == 3 ? documents.size() - 1 : std::min<size_t>(pick - 1, documents.size() - 1);
    active.SetStorageName(CATUnicodeString("/tmp/qel/") + documents[index]->get_Name());
    CV5CAAToolsCommon::setActiveCATDocument(&active);
}

void keepJournalsSmall() {
    // The journal and the error handler only grow in memory.
    JNLManager::setMaxEntries(256);
    EMHManager::setMaxEntries(256);
}

} // namespace

void buildReaderSession(const uint8_t* header) {
    keepJournalsSmall();
    QELSessionFileError error;
    const uint8_t* recipe = header + 3;
    const bool bundled = std::equal(recipe, recipe + sizeof kBundledRecipe, kBundledRecipe);
    // A composed session the loader refuses leaves an empty model: the
    // reader is fuzzed on that too.
    (bundled ? bundledSession() : parsedRecipe(recipe)).build(error);
    if (bundled)
        addBundledHostStates();
    applyProcessChoice(header[0]);
    for (int bit = 0; bit < kSwitchCount; ++bit)
        if (header[1] >> bit & 1)
            kSwitches[bit].set(!kSwitches[bit].get());

    std::vector<QELDocument*> documents;
    QELAbsoluteOccurrence* firstOccurrence = nullptr;
    for (QELComponent* component : QELHandleTable::liveComponents()) {
        if (component->isAbsolute() && !firstOccurrence)
            firstOccurrence = static_cast<QELAbsoluteOccurrence*>(component);
        else if (component->isAKindOf("CV5CAAQELDOCUMENT_CLASSNAME"))
            documents.push_back(static_cast<QELDocument*>(component));
    }
    activateDocument(header[1] >> kSwitchCount & 3, documents);
    if (!bundled && (header[2] & 1) && firstOccurrence && !documents.empty())
        documents.front()->linkComponentAbsoluteOccurrence(firstOccurrence);
}

namespace {

// The session of the last header read into, put back after every reading
// (see QELFuzzKeptSession.h), and as built: what the restore is checked
// against when restores are checked.
struct KeptReaderSession {
    bool live = false;
    std::string header;
    KeptSession model;
    std::string builtState;
};

KeptReaderSession& keptReaderSession() {
    static KeptReaderSession kept;
    return kept;
}

// The replay programs ask for the check through the environment.
bool& restoresChecked() {
    static bool checked = std::getenv("QEL_FUZZ_CHECK_RESTORES") != nullptr;
    return checked;
}

} // namespace

void checkRestores(bool check) { restoresChecked() = check; }

bool readerSessionKept() { return keptReaderSession().live; }

void dropReaderSession() {
    keptReaderSession().live = false;
    resetSession();
}

void readAnswerInput(const uint8_t* data, size_t size, Reading reading, const std::function<void()>& afterReading) {
    if (size < kHeaderSize || size - kHeaderSize > kMaxAnswer)
        return;
    const uint8_t* answer = data + kHeaderSize;
    const size_t answerSize = size - kHeaderSize;
    if (frameDepth(answer, answerSize) > kMaxAnswerDepth)
        return;
    const std::string& path = writeInput(answer, answerSize);
    KeptReaderSession& kept = keptReaderSession();
    if (!kept.live || kept.header.compare(0, kHeaderSize, reinterpret_cast<const char*>(data), kHeaderSize) != 0) {
        HiddenCoverage hidden;
        dropReaderSession();
        buildReaderSession(data);
        kept.model.record();
        if (restoresChecked())
            kept.builtState = observableState();
        kept.header.assign(reinterpret_cast<const char*>(data), kHeaderSize);
        kept.live = true;
    }
    // Every reading starts from an empty journal, whether the session is
    // new or put back.
    JNLManager::clear();
    EMHManager::clear();
    {
        QELXMLToDM reader(path.c_str());
        if (reading == Reading::Full)
            reader.execute(QELSession::getInstance());
        else
            reader.readOptions(QELSession::getInstance());
    }
    if (afterReading)
        afterReading();
    JNLManager::clear();
    EMHManager::clear();
    // A session that cannot be put back is freed at once: the input then
    // frees about what it allocated, and libFuzzer has no cause to run it
    // again and scan the heap for leaks.
    HiddenCoverage hidden;
    if (!kept.model.restore()) {
        dropReaderSession();
    } else if (restoresChecked() && observableState() != kept.builtState) {
        std::fprintf(stderr, "qel fuzz: the session put back after a reading differs from the session built:\n"
                             "--- built\n%s--- put back\n%s",
                     kept.builtState.c_str(), observableState().c_str());
        std::abort();
    }
}

bool writerAllows(const QELFrameProblem& problem) {
    const auto startsWith = [&problem](const char* prefix) {
        return problem.message.rfind(prefix, 0) == 0;
    };
    if (startsWith("NBElements announces ")) {
        const std::vector<EMHManager::Entry>& reported = EMHManager::entries();
        return std::any_of(reported.begin(), reported.end(),
                           [](const EMHManager::Entry& entry) { return entry.code == 2104; });
    }
    return startsWith("<Item_Info> has no value line") && PROCManager::isPhasePhase2();
}

bool describeSession(const std::string& path) {
    QELDMToXML writer(path.c_str());
    writer.execute(QELSession::getInstance());
    return !writer.hasFailed();
}

bool loadComposedSession(ByteSource& bytes, bool allowRaw, bool& raw) {
    // What the model's making covers follows from the bytes alone (see
    // HiddenCoverage); the writer's own coverage tells its shapes apart.
    HiddenCoverage hidden;
    keepJournalsSmall();
    const ComposedSession composed = composeSession(bytes, allowRaw);
    raw = composed.raw;
    QELSessionFileError error;
    if (qelLoadSessionText(composed.text, error))
        return true;
    resetSession();
    return false;
}

} // namespace qelfuzz
