// The harnesses' own machinery: an input must give the same model whenever
// it runs (a saved failure replays alone), the composer must mostly make
// sessions the loader takes (or the writer harnesses fuzz nothing), and the
// limits must measure what they claim.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <regex>
#include <set>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "CATDocument.h"
#include "CV5CAAQELSession.h"
#include "CV5CAAToolsCommon.h"
#include "EMHManager.h"
#include "ENVManager.h"
#include "JNLManager.h"
#include "PROCManager.h"
#include "QELComponent.h"
#include "QELFuzzKeptSession.h"
#include "QELFuzzSession.h"
#include "QELFuzzSessionComposer.h"
#include "QELFuzzSupport.h"
#include "QELHandleTable.h"
#include "QELSession.h"

namespace {

std::vector<uint8_t> bytesOf(const std::string& text) {
    return std::vector<uint8_t>(text.begin(), text.end());
}

// Deterministic pseudo-random inputs.
std::vector<uint8_t> noise(unsigned seed, size_t size) {
    std::vector<uint8_t> bytes(size);
    for (uint8_t& byte : bytes) {
        seed = seed * 1103515245u + 12345u;
        byte = static_cast<uint8_t>(seed >> 16);
    }
    return bytes;
}

std::string modelSignature() {
    std::string signature;
    for (QELComponent* component : QELHandleTable::liveComponents())
        signature += QELHandleTable::format(component->get_Handle()) +
                     component->get_Name().ConvertToChar() + "\n";
    return signature;
}

// The command, processes and phase in force, one flag each.
std::string processState() {
    std::string state;
    for (bool flag :
         {PROCManager::isCommandSave(), PROCManager::isCommandSaveAs(),
          PROCManager::isCommandSaveSelected(), PROCManager::isCommandImport(),
          PROCManager::isCommandCreateSpreadsheet(),
          PROCManager::isCommandSynchronizeActiveShapes(), PROCManager::isCommandUpdateStatus(),
          PROCManager::isCommandStateDetailsUpdate(),
          PROCManager::isProcessStateDetails(), PROCManager::isProcessStateDetailsFactory(),
          PROCManager::isProcessStateDetailsUpdate(), PROCManager::isProcessLifeCycleFactory(),
          PROCManager::isProcessBRRSave(), PROCManager::isProcessCheckout(),
          PROCManager::isPhasePhase1(), PROCManager::isPhasePhase2()})
        state += flag ? '1' : '0';
    return state;
}

// The six host switches the reader header flips, in its bit order.
std::vector<bool> hostSwitches() {
    return {PROCManager::manageDescForEmptyQEL(), PROCManager::manageSavableStatusForNonSave(),
            ENVManager::manageForeignFilesOnSave(), PROCManager::isCatalogStagingManaged(),
            PROCManager::manageExternalFiles(), ENVManager::isCompositeManaged()};
}

std::string activeDocument() {
    const CATDocument* document = CV5CAAToolsCommon::getActiveCATDocument();
    return document ? document->StorageName().ToLatin1() : "(none)";
}

std::string fileText(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

class FuzzSupportTest : public ::testing::Test {
protected:
    void TearDown() override { qelfuzz::dropReaderSession(); }
};

std::vector<std::vector<uint8_t>> readerSeeds() {
    std::vector<std::vector<uint8_t>> seeds;
    std::vector<std::string> paths;
    for (const auto& entry : std::filesystem::directory_iterator(QEL_FUZZ_CORPUS "/execute"))
        paths.push_back(entry.path().string());
    std::sort(paths.begin(), paths.end());
    for (const std::string& path : paths) {
        const std::string text = fileText(path);
        if (text.size() >= qelfuzz::kHeaderSize)
            seeds.push_back(bytesOf(text));
    }
    return seeds;
}

// The model's observable state with the names of forms, which are new
// identifiers in every build, left out.
std::string modelState() {
    static const std::regex kUuid("[0-9a-f]{8}-[0-9a-f]{4}-[0-9a-f]{4}-[0-9a-f]{4}-[0-9a-f]{12}");
    return std::regex_replace(qelfuzz::observableState(), kUuid, "(uuid)");
}

// What a reading left: the model and host as the restore sees them, and the
// journal and error handler.
std::string readingOutcome() {
    std::string outcome = modelState();
    for (const std::string_view entry : JNLManager::entries())
        outcome.append(entry).append("\n");
    for (const EMHManager::Entry& entry : EMHManager::entries())
        outcome += std::to_string(entry.code) + "\n";
    return outcome;
}

TEST_F(FuzzSupportTest, ComposedSessionsMostlyLoad) {
    int loaded = 0;
    constexpr int kInputs = 200;
    for (unsigned seed = 0; seed < kInputs; ++seed) {
        const std::vector<uint8_t> input = noise(seed, 300);
        qelfuzz::ByteSource bytes(input.data(), input.size());
        bool raw = false;
        if (qelfuzz::loadComposedSession(bytes, true, raw)) {
            ++loaded;
            EXPECT_GT(QELHandleTable::liveCount(), 0u);
        }
        qelfuzz::resetSession();
    }
    EXPECT_GT(loaded, kInputs * 9 / 10);
}

TEST_F(FuzzSupportTest, TheSameBytesComposeTheSameSession) {
    const std::vector<uint8_t> input = noise(7, 300);
    qelfuzz::ByteSource first(input.data(), input.size()), second(input.data(), input.size());
    EXPECT_EQ(qelfuzz::composeSession(first, true).text,
              qelfuzz::composeSession(second, true).text);
}

TEST_F(FuzzSupportTest, RawTextKeepsEveryByte) {
    for (unsigned value = 0; value < 256; value += 15) {
        // Raw mode; the settings' four bytes of choices; then the first
        // text, the OEM prefix: a high byte asks for raw bytes, 3 of them.
        std::vector<uint8_t> input = {1};
        input.insert(input.end(), 4, 0);
        const std::string expected = {static_cast<char>(value), '\n', '\xe9'};
        input.insert(input.end(), {0x80, 3});
        input.insert(input.end(), expected.begin(), expected.end());
        qelfuzz::ByteSource bytes(input.data(), input.size());
        bool raw = false;
        ASSERT_TRUE(qelfuzz::loadComposedSession(bytes, true, raw));
        EXPECT_TRUE(raw);
        EXPECT_EQ(ENVManager::getOemPrefix().ToLatin1(), expected) << value;
        qelfuzz::resetSession();
    }
}

TEST_F(FuzzSupportTest, AReaderSessionIsTheSameWhetherItsRecipeWasCachedOrNot) {
    std::vector<uint8_t> header = noise(11, qelfuzz::kHeaderSize);
    qelfuzz::buildReaderSession(header.data());
    const std::string fresh = modelSignature();
    qelfuzz::resetSession();
    // Another recipe in between, then the first again from the cache.
    std::vector<uint8_t> other = noise(12, qelfuzz::kHeaderSize);
    qelfuzz::buildReaderSession(other.data());
    qelfuzz::resetSession();
    qelfuzz::buildReaderSession(header.data());
    EXPECT_EQ(modelSignature(), fresh);
    EXPECT_FALSE(fresh.empty());
}

TEST_F(FuzzSupportTest, ProcessChoicesCoverEveryCommandProcessAndPhase) {
    std::set<std::string> seen;
    for (int choice = 0; choice < qelfuzz::kProcessChoices; ++choice) {
        qelfuzz::applyProcessChoice(choice);
        seen.insert(processState());
    }
    EXPECT_EQ(seen.size(), static_cast<size_t>(qelfuzz::kProcessChoices));
}

// The header's first byte decides the command, processes and phase, whatever
// the composed session's own settings say: otherwise a seed made for one
// process would read its answer under another.
TEST_F(FuzzSupportTest, TheReaderHeaderSetsTheProcessItNames) {
    std::vector<uint8_t> header = noise(21, qelfuzz::kHeaderSize);
    header[1] = header[2] = 0;
    for (int choice = 0; choice < qelfuzz::kProcessChoices; choice += 7) {
        qelfuzz::applyProcessChoice(choice);
        const std::string expected = processState();
        qelfuzz::resetSession();
        header[0] = static_cast<uint8_t>(choice);
        qelfuzz::buildReaderSession(header.data());
        EXPECT_EQ(processState(), expected) << choice;
        qelfuzz::resetSession();
    }
}

// Each of the six low bits of the second byte flips its own switch and no
// other; the top two bits pick none, the first, the second or the last
// document as the host's active one.
TEST_F(FuzzSupportTest, TheReaderHeaderFlipsEachSwitchAndPicksTheActiveDocument) {
    // A recipe whose session holds three documents or more, so that the
    // first, the second and the last differ.
    std::vector<uint8_t> header;
    for (unsigned seed = 0; seed < 100 && header.empty(); ++seed) {
        std::vector<uint8_t> candidate = noise(500 + seed, qelfuzz::kHeaderSize);
        candidate[1] = candidate[2] = 0;
        qelfuzz::buildReaderSession(candidate.data());
        size_t documents = 0;
        for (QELComponent* component : QELHandleTable::liveComponents())
            documents += component->isAKindOf("CV5CAAQELDOCUMENT_CLASSNAME");
        if (documents >= 3)
            header = candidate;
        qelfuzz::resetSession();
    }
    ASSERT_FALSE(header.empty());
    qelfuzz::buildReaderSession(header.data());
    const std::vector<bool> plain = hostSwitches();
    qelfuzz::resetSession();
    for (int bit = 0; bit < 6; ++bit) {
        header[1] = static_cast<uint8_t>(1 << bit);
        qelfuzz::buildReaderSession(header.data());
        std::vector<bool> expected = plain;
        expected[bit] = !expected[bit];
        EXPECT_EQ(hostSwitches(), expected) << "bit " << bit;
        qelfuzz::resetSession();
    }
    std::vector<std::string> active;
    for (int pick = 0; pick < 4; ++pick) {
        header[1] = static_cast<uint8_t>(pick << 6);
        qelfuzz::buildReaderSession(header.data());
        EXPECT_EQ(hostSwitches(), plain) << "pick " << pick;
        active.push_back(activeDocument());
        qelfuzz::resetSession();
    }
    EXPECT_EQ(active[0], "(none)");
    EXPECT_EQ(std::set<std::string>(active.begin(), active.end()).size(), 4u)
        << active[1] << " " << active[2] << " " << active[3];
}

// After an input, nothing of it is left for the next: the journal is empty,
// and once the kept session is dropped the model is freed and every setting
// the header or the reading changed is back.
TEST_F(FuzzSupportTest, AReaderInputLeavesNothingBehind) {
    qelfuzz::resetSession();
    const std::string state = processState();
    const std::vector<bool> switches = hostSwitches();
    const std::string oemPrefix = ENVManager::getOemPrefix().ToLatin1();
    for (qelfuzz::Reading reading : {qelfuzz::Reading::Full, qelfuzz::Reading::OptionsOnly}) {
        for (unsigned seed = 0; seed < 20; ++seed) {
            std::vector<uint8_t> input = noise(100 + seed, qelfuzz::kHeaderSize);
            input[1] |= 0xC0; // the last document active
            const std::string answer = "<?xml version=\"1.0\" ?>\n<DESCFILE>\n<NBElements>\n1\n"
                                       "</NBElements>\n<CATPart>\n<Item_Info>\n<POINTER_ADDRESS>\n"
                                       "0000000000000001\n</POINTER_ADDRESS>\n</Item_Info>\n"
                                       "</CATPart>\n</DESCFILE>\n";
            input.insert(input.end(), answer.begin(), answer.end());
            qelfuzz::readAnswerInput(input.data(), input.size(), reading);
            EXPECT_TRUE(JNLManager::entries().empty()) << seed;
            qelfuzz::dropReaderSession();
            EXPECT_EQ(QELHandleTable::liveCount(), 0u) << seed;
            EXPECT_EQ(processState(), state) << seed;
            EXPECT_EQ(hostSwitches(), switches) << seed;
            EXPECT_EQ(activeDocument(), "(none)") << seed;
            EXPECT_EQ(ENVManager::getOemPrefix().ToLatin1(), oemPrefix) << seed;
            EXPECT_TRUE(JNLManager::entries().empty()) << seed;
            EXPECT_TRUE(EMHManager::entries().empty()) << seed;
        }
    }
}

// The reader harnesses refuse, before writing or reading anything, an input
// shorter than the header, an answer beyond kMaxAnswer bytes and tags nested
// beyond kMaxAnswerDepth; they take both limits themselves.
TEST_F(FuzzSupportTest, TheReaderLimitsAreEnforcedAtTheirBoundaries) {
    const std::string& written = qelfuzz::scratchFile("input");
    const auto nested = [](size_t depth) {
        std::string text;
        for (size_t i = 0; i < depth; ++i)
            text += "<A>\n";
        return text;
    };
    struct Case {
        const char* what;
        std::string answer;
        bool read;
    };
    const Case cases[] = {
        {"the largest answer", std::string(qelfuzz::kMaxAnswer, 'x'), true},
        {"one byte more", std::string(qelfuzz::kMaxAnswer + 1, 'y'), false},
        {"the deepest tags", nested(qelfuzz::kMaxAnswerDepth), true},
        {"one level deeper", nested(qelfuzz::kMaxAnswerDepth + 1) + "z", false},
        {"an empty answer", "", true},
    };
    const std::vector<uint8_t> header = noise(31, qelfuzz::kHeaderSize);
    for (const Case& c : cases) {
        qelfuzz::writeInput(reinterpret_cast<const uint8_t*>("before"), 6);
        std::vector<uint8_t> input = header;
        input.insert(input.end(), c.answer.begin(), c.answer.end());
        qelfuzz::readAnswerInput(input.data(), input.size(), qelfuzz::Reading::Full);
        EXPECT_EQ(fileText(written) == c.answer, c.read) << c.what;
        EXPECT_EQ(fileText(written) == "before", !c.read) << c.what;
    }
    qelfuzz::writeInput(reinterpret_cast<const uint8_t*>("before"), 6);
    qelfuzz::readAnswerInput(header.data(), header.size() - 1, qelfuzz::Reading::Full);
    EXPECT_EQ(fileText(written), "before") << "a header cut short";
}

// Kept recipes are looked up by all their bytes, and one dropped from the
// full cache is parsed anew: either way the same recipe builds the same model.
TEST_F(FuzzSupportTest, ARecipeBuildsTheSameModelAfterTheCacheDroppedIt) {
    std::vector<uint8_t> header = noise(41, qelfuzz::kHeaderSize);
    qelfuzz::buildReaderSession(header.data());
    const std::string fresh = modelSignature();
    qelfuzz::resetSession();
    for (size_t other = 0; other <= qelfuzz::kRecipeCacheSize; ++other) {
        std::vector<uint8_t> next = header;
        // Another last byte and second last byte: never the first recipe.
        next.back() = static_cast<uint8_t>(other);
        next[next.size() - 2] ^= static_cast<uint8_t>(1 + other / 256);
        qelfuzz::buildReaderSession(next.data());
        qelfuzz::resetSession();
    }
    qelfuzz::buildReaderSession(header.data());
    EXPECT_EQ(modelSignature(), fresh);
}

// Four 0xFF bytes, and only those, ask for the bundled example session.
TEST_F(FuzzSupportTest, OnlyTheBundledRecipeBuildsTheExampleSession) {
    struct Case {
        std::vector<uint8_t> start;
        bool bundled;
    };
    const Case cases[] = {{{0xFF, 0xFF, 0xFF, 0xFF}, true},
                          {{0xFF, 0xFF, 0xFF, 0xFE}, false},
                          {{0x7F, 0xFF, 0xFF, 0xFF}, false}};
    for (const Case& c : cases) {
        std::vector<uint8_t> header(qelfuzz::kHeaderSize, 0);
        std::copy(c.start.begin(), c.start.end(), header.begin() + 3);
        qelfuzz::buildReaderSession(header.data());
        // The example holds 87 components; a composed reader session a few.
        EXPECT_EQ(QELHandleTable::liveCount() > 40, c.bundled) << QELHandleTable::liveCount();
        qelfuzz::resetSession();
    }
}

// Counts of the composed sessions keep within their limits, and the
// settings' byte reaches every command, process and phase of the tables.
TEST(ComposedSession, KeepsWithinItsLimitsAndReachesEveryProcess) {
    using Json = nlohmann::json;
    std::function<size_t(const Json&, size_t, size_t&)> occurrences =
        [&](const Json& list, size_t depth, size_t& deepest) -> size_t {
        size_t count = 0;
        deepest = std::max(deepest, depth);
        for (const Json& occurrence : list)
            count += 1 + occurrences(occurrence.value("children", Json::array()), depth + 1,
                                     deepest);
        return count;
    };
    for (const qelfuzz::ComposeLimits& limits : {qelfuzz::kModelLimits, qelfuzz::kReaderLimits}) {
        std::set<size_t> documentCounts;
        for (unsigned seed = 0; seed < 150; ++seed) {
            const std::vector<uint8_t> input = noise(300 + seed, 200);
            qelfuzz::ByteSource bytes(input.data(), input.size());
            const Json session = Json::parse(qelfuzz::composeSession(bytes, false, limits).text);
            EXPECT_GE(session["items"].size(), 1u);
            EXPECT_LE(session["items"].size(), limits.items);
            EXPECT_GE(session["documents"].size(), 1u);
            EXPECT_LE(session["documents"].size(), limits.documents);
            EXPECT_LE(session["workspaces"].size(), limits.workspaces);
            documentCounts.insert(session["documents"].size());
            for (const Json& workspace : session["workspaces"]) {
                size_t deepest = 0;
                EXPECT_LE(occurrences(workspace["occurrences"], 0, deepest), limits.occurrences);
                EXPECT_LE(deepest, 3u);
            }
        }
        EXPECT_EQ(documentCounts.size(), limits.documents) << "every count up to the limit";
    }
    std::set<std::string> settings;
    for (int choice = 0; choice < 256; ++choice) {
        const uint8_t input[] = {static_cast<uint8_t>(choice)};
        qelfuzz::ByteSource bytes(input, 1);
        const Json session = Json::parse(qelfuzz::composeSession(bytes, false).text);
        const Json& s = session["settings"];
        settings.insert(s["command"].get<std::string>() + "/" + s["process"].get<std::string>() +
                        "/" + s["phase"].get<std::string>());
    }
    EXPECT_EQ(settings.size(), 9u * 8u * 3u);
}

TEST(JsonNesting, CountsBracketsOutsideStrings) {
    struct Case {
        const char* text;
        size_t depth;
    };
    const Case cases[] = {
        {"", 0},
        {"{\"a\": [1, {\"b\": []}]}", 4},
        {"\"[[[[\"", 0},     // brackets inside a string nest nothing
        {"\"\\\"[[\" [", 1}, // an escaped quote does not end the string
        {"]]]{", 1},         // closing more than is open never goes below zero
        {"[[[[[[[[", 8},     // unclosed brackets count: the parser nests them before it fails
    };
    for (const Case& c : cases) {
        const std::vector<uint8_t> bytes = bytesOf(c.text);
        EXPECT_EQ(qelfuzz::jsonNesting(bytes.data(), bytes.size()), c.depth) << c.text;
    }
}

TEST_F(FuzzSupportTest, TheWriterIsAllowedOnlyItsOwnFrameFaults) {
    struct Case {
        const char* message;
        bool phase2;
        bool reported2104;
        bool allowed;
    };
    const Case cases[] = {
        {"NBElements announces 7 entries, the file holds 0", false, true, true},
        {"NBElements announces 7 entries, the file holds 0", false, false, false},
        {"<Item_Info> has no value line: the reader would take </Item_Info> as its value", true,
         false, true},
        {"<Item_Info> has no value line: the reader would take </Item_Info> as its value", false,
         false, false},
        {"<File_Name> has no value line: the reader would take </File_Name> as its value", true,
         true, false},
        {"unbalanced tags: </CATPart> closes <Item_Info>", true, true, false},
    };
    for (const Case& c : cases) {
        qelfuzz::applyProcessChoice(1 + (c.phase2 ? 72 : 0)); // save, no process, the phase
        EMHManager::clear();
        if (c.reported2104)
            EMHManager::writeMsg("QELDMToXML::finishDescription", 2104, "");
        QELFrameProblem problem;
        problem.line = 13;
        problem.message = c.message;
        EXPECT_EQ(qelfuzz::writerAllows(problem), c.allowed)
            << c.message << " phase 2: " << c.phase2;
    }
    EMHManager::clear();
}

TEST(FrameDepth, CountsTagsAtTheStartOfLines) {
    struct Case {
        const char* text;
        size_t depth;
    };
    const Case cases[] = {
        {"", 0},
        {"<?xml version=\"1.0\" ?>\n<DESCFILE>\n</DESCFILE>\n", 1},
        {"<A>\n<B>\nvalue\n</B>\n<C>\n</C>\n</A>\n", 2},
        {"<A>\r\n<B>\r\n<C>\r\n", 3},
        {"text <A>\n <B>\n", 0},  // a tag inside a line opens nothing
        {"</A>\n</A>\n<A>\n", 1}, // closing more than is open never goes below zero
        {"<", 0},
    };
    for (const Case& c : cases) {
        const std::vector<uint8_t> bytes = bytesOf(c.text);
        EXPECT_EQ(qelfuzz::frameDepth(bytes.data(), bytes.size()), c.depth) << c.text;
    }
}

} // namespace

// The reader harnesses keep the session of a header and put it back after
// each reading. Over every seed, for both readings: an answer read after
// another answer of the same header leaves exactly what it leaves read alone
// into a new session, the session put back is the session as built, and most
// readings are put back rather than built again (or nothing is gained).
TEST_F(FuzzSupportTest, EverySeedReadsTheSameIntoAKeptSessionAsIntoANewOne) {
    const std::vector<std::vector<uint8_t>> seeds = readerSeeds();
    ASSERT_GT(seeds.size(), 20u);
    for (qelfuzz::Reading reading : {qelfuzz::Reading::Full, qelfuzz::Reading::OptionsOnly}) {
        size_t kept = 0;
        for (size_t i = 0; i < seeds.size(); ++i) {
            const std::vector<uint8_t>& seed = seeds[i];
            qelfuzz::dropReaderSession();
            qelfuzz::buildReaderSession(seed.data());
            const std::string built = modelState();
            qelfuzz::dropReaderSession();

            std::string alone;
            qelfuzz::readAnswerInput(seed.data(), seed.size(), reading, [&] { alone = readingOutcome(); });
            if (qelfuzz::readerSessionKept()) {
                ++kept;
                EXPECT_EQ(modelState(), built) << "seed " << i;
            }
            // The previous seed's answer first, under this header.
            std::vector<uint8_t> before(seed.begin(), seed.begin() + qelfuzz::kHeaderSize);
            const std::vector<uint8_t>& other = seeds[(i + seeds.size() - 1) % seeds.size()];
            before.insert(before.end(), other.begin() + qelfuzz::kHeaderSize, other.end());
            qelfuzz::readAnswerInput(before.data(), before.size(), reading);
            std::string afterAnother;
            qelfuzz::readAnswerInput(seed.data(), seed.size(), reading, [&] { afterAnother = readingOutcome(); });
            EXPECT_EQ(afterAnother, alone) << "seed " << i;
        }
        EXPECT_GT(kept * 2, seeds.size()) << "readings put back: " << kept << " of " << seeds.size();
    }
}

// What the restore cannot put back in place (a component made by the
// reading, a first property on a component that had none, a changed staging
// path) drops the session; a property changed, added or grown is put back in
// place, in its order.
TEST_F(FuzzSupportTest, TheKeptSessionPutsPropertiesBackAndRefusesTheRest) {
    const std::vector<uint8_t> header = noise(51, qelfuzz::kHeaderSize);
    struct Case {
        const char* what;
        std::function<void(QELComponent&)> change;
        bool putBack;
    };
    const double identity[16] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
    const Case cases[] = {
        {"nothing", [](QELComponent&) {}, true},
        {"a string changed", [](QELComponent& c) { c.addStringProperty("Name_Tst", "x"); }, true},
        {"an integer added", [](QELComponent& c) { c.addIntegerProperty("Fuzz_New", 7); }, true},
        {"a matrix added", [&](QELComponent& c) { c.addMatrixProperty("Fuzz_Matrix", identity); }, true},
        {"pairs added", [](QELComponent& c) { c.addDynamicProperty("Fuzz_Pairs", "k", "v", false); }, true},
        {"an array grown", [](QELComponent& c) { c.addStringArrayProperty("Fuzz_Array", "a"); }, true},
        {"a session property", [](QELComponent&) { QELSession::getInstance()->addBooleanProperty("Calcul_Flag", true); }, true},
        {"the staging path", [](QELComponent&) { CV5CAAQELSession::getCATIASessionInstance()->setStagingPath("/elsewhere"); }, false},
        {"a component made", [](QELComponent&) { QELSession::getInstance()->createWorkSpace(EnumDocumentType_Product, "a", "b", "c"); }, false},
        {"a first property", [](QELComponent&) {}, false},
    };
    for (const Case& c : cases) {
        qelfuzz::dropReaderSession();
        qelfuzz::buildReaderSession(header.data());
        const std::string built = qelfuzz::observableState();
        qelfuzz::KeptSession kept;
        kept.record();
        std::vector<QELComponent*> components = QELHandleTable::liveComponents();
        ASSERT_FALSE(components.empty());
        // Each change on every component that has properties; the first
        // property of one that has none for the case of that name.
        bool madeFirst = false;
        for (QELComponent* component : components) {
            if (component->getPropertySet()) {
                c.change(*component);
            } else if (!madeFirst && std::string(c.what) == "a first property") {
                component->addIntegerProperty("Fuzz_First", 1);
                madeFirst = true;
            }
        }
        EXPECT_EQ(kept.restore(), c.putBack) << c.what;
        if (c.putBack) {
            EXPECT_EQ(qelfuzz::observableState(), built) << c.what;
        }
    }
}
