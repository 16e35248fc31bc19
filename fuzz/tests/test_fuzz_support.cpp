// The harnesses' own machinery: an input must give the same model whenever
// it runs (a saved failure replays alone), the composer must mostly make
// sessions the loader takes (or the writer harnesses fuzz nothing), and the
// limits must measure what they claim.
#include <gtest/gtest.h>

#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include "EMHManager.h"
#include "ENVManager.h"
#include "PROCManager.h"
#include "QELComponent.h"
#include "QELFuzzSession.h"
#include "QELFuzzSessionComposer.h"
#include "QELFuzzSupport.h"
#include "QELHandleTable.h"

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

class FuzzSupportTest : public ::testing::Test {
protected:
    void TearDown() override { qelfuzz::resetSession(); }
};

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
        std::string state;
        for (bool flag :
             {PROCManager::isCommandSave(), PROCManager::isCommandSaveAs(),
              PROCManager::isCommandSaveSelected(), PROCManager::isCommandImport(),
              PROCManager::isCommandCreateSpreadsheet(),
              PROCManager::isCommandSynchronizeActiveShapes(), PROCManager::isCommandUpdateStatus(),
              PROCManager::isCommandStateDetailsUpdate(), PROCManager::isProcessStateDetails(),
              PROCManager::isProcessStateDetailsFactory(),
              PROCManager::isProcessStateDetailsUpdate(), PROCManager::isProcessLifeCycleFactory(),
              PROCManager::isProcessBRRSave(), PROCManager::isProcessCheckout(),
              PROCManager::isPhasePhase1(), PROCManager::isPhasePhase2()})
            state += flag ? '1' : '0';
        seen.insert(state);
    }
    EXPECT_EQ(seen.size(), static_cast<size_t>(qelfuzz::kProcessChoices));
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
