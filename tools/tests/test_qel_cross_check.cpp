// The answer cross-check and the explanation of a description's count, on
// the bundled example: an answer made from the session's own description
// matches it in every process, and each way of tampering with an answer is
// caught, against the model and against the description alike.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <sstream>
#include <string>
#include <unordered_map>

#include "EMHManager.h"
#include "ENVManager.h"
#include "PROCManager.h"
#include "QELAnswerCrossCheck.h"
#include "QELAnswerSimulator.h"
#include "QELDMToXML.h"
#include "QELElementNames.h"
#include "QELEntryCount.h"
#include "QELFrameCheck.h"
#include "QELHandleTable.h"
#include "QELSession.h"
#include "QELSessionFile.h"

namespace {

std::string readText(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

void writeText(const std::string& path, const std::string& text) { std::ofstream(path, std::ios::binary) << text; }

// Replaces the value line of the n-th (from 0) element `name` of a file.
std::string replaceValue(std::string text, const std::string& name, int n, const std::string& value) {
    const std::string tag = "<" + name + ">\r\n";
    size_t at = 0;
    for (int i = 0; i <= n; ++i) {
        at = text.find(tag, at);
        if (at == std::string::npos) return text;
        at += tag.size();
    }
    const size_t end = text.find("\r\n", at);
    return text.replace(at, end - at, value);
}

std::string valueOf(const std::string& text, const std::string& name, int n) {
    const std::string tag = "<" + name + ">\r\n";
    size_t at = 0;
    for (int i = 0; i <= n; ++i) {
        at = text.find(tag, at);
        if (at == std::string::npos) return {};
        at += tag.size();
    }
    return text.substr(at, text.find("\r\n", at) - at);
}

std::string swapped(std::string text, const std::string& a, const std::string& b) {
    const std::string hold = "\x01swap\x01";
    for (auto [from, to] : {std::pair{a, hold}, std::pair{b, a}, std::pair{hold, b}})
        for (size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size()))
            text.replace(at, from.size(), to);
    return text;
}

class CrossCheckTest : public ::testing::Test {
protected:
    void SetUp() override {
        directory =
            std::filesystem::temp_directory_path() / ("qel-cross-" + std::to_string(::getpid()) + "-" +
                                                      ::testing::UnitTest::GetInstance()->current_test_info()->name());
        std::filesystem::create_directories(directory);
        description = (directory / "description.xml").string();
        answer = (directory / "answer.xml").string();
        example = readText(QEL_SOURCE_DIR "/examples/session.json");
    }
    void TearDown() override {
        freeModel();
        std::filesystem::remove_all(directory);
    }

    static void freeModel() {
        QELSession::freeModel();
        PROCManager::reset();
        ENVManager::reset();
        EMHManager::clear();
        QELHandleTable::restartNumbering();
    }

    void build(const std::string& sessionText) {
        freeModel();
        QELSessionFileError error;
        ASSERT_TRUE(qelLoadSessionText(sessionText, error)) << error.message;
    }

    // Builds the session, writes its description and the simulated answer.
    void describeAndAnswer(const std::string& sessionText) {
        build(sessionText);
        QELDMToXML(description.c_str()).execute(QELSession::getInstance());
        QELAnswerSimulator simulator;
        std::string error;
        ASSERT_TRUE(simulator.run(description, answer, error)) << error;
    }

    // The mismatches of `answerText` against the model and the description,
    // one message per line; the two sides must find the same lines.
    std::string mismatches(const std::string& answerText) {
        writeText(answer, answerText);
        QELCrossCheckReport model;
        QELCrossCheckReport described;
        QELDescribedEntries entries;
        std::string error;
        EXPECT_TRUE(qelCrossCheckAnswer(answer, qelExpectedFromModel, model, error)) << error;
        EXPECT_TRUE(entries.read(description, description, error)) << error;
        EXPECT_TRUE(qelCrossCheckAnswer(
            answer,
            [&](const std::string& t, QELExpectedEntry& o, std::string& w) { return entries.expected(t, o, w); },
            described, error));
        EXPECT_EQ(model.count, described.count);
        std::string lines;
        for (size_t i = 0; i < model.mismatches.size(); ++i) {
            lines += std::to_string(model.mismatches[i].line) + ": " + model.mismatches[i].message + "\n";
            if (i < described.mismatches.size()) {
                EXPECT_EQ(model.mismatches[i].line, described.mismatches[i].line);
            }
        }
        return lines;
    }

    std::filesystem::path directory;
    std::string description;
    std::string answer;
    std::string example;
};

TEST_F(CrossCheckTest, TheSessionsOwnAnswerMatchesInEveryProcess) {
    const char* commands[] = {"save",
                              "save-as",
                              "import",
                              "create-spreadsheet",
                              "synchronize-active-shapes",
                              "update-status",
                              "state-details-update",
                              "none"};
    const char* processes[] = {"none",     "state-details", "state-details-factory", "life-cycle-factory",
                               "brr-save", "checkout"};
    for (const char* command : commands)
        for (const char* process : processes)
            for (const char* phase : {"1", "2"}) {
                describeAndAnswer(example);
                std::string error;
                ASSERT_TRUE(qelApplyCommand(command, process, phase, error)) << error;
                // The description is written under the process being tried.
                QELDMToXML(description.c_str()).execute(QELSession::getInstance());
                QELAnswerSimulator simulator;
                ASSERT_TRUE(simulator.run(description, answer, error)) << error;
                EXPECT_EQ(mismatches(readText(answer)), "") << command << " " << process << " " << phase;
            }
}

TEST_F(CrossCheckTest, EachTamperingIsCaughtAtItsLine) {
    describeAndAnswer(example);
    const std::string good = readText(answer);
    // Entries 4 and 5 of the example: Bolt.2 and Bolt.1, occurrences of the
    // same part told apart only by their occurrence UIDs.
    const std::string first = valueOf(good, QELElement::POINTER_ADDRESS, 4);
    const std::string second = valueOf(good, QELElement::POINTER_ADDRESS, 5);
    ASSERT_FALSE(first.empty());

    struct Case {
        const char* name;
        std::function<std::string(const std::string&)> tamper;
        const char* expected;
    };
    const Case cases[] = {
        {"two tokens swapped", [&](const std::string& t) { return swapped(t, first, second); },
         "Occ_UID \"u-blt2\", but occurrence \"Housing.1+++Bolt.1\""},
        {"a part's token on a product",
         [&](const std::string& t) { return swapped(t, valueOf(t, QELElement::POINTER_ADDRESS, 0), first); },
         "entry <CATProduct>, but"},
        {"a token of nothing",
         [](const std::string& t) { return replaceValue(t, QELElement::POINTER_ADDRESS, 1, "FFFFFFFFFFFFFFFF"); },
         "POINTER_ADDRESS FFFFFFFFFFFFFFFF "},
        {"a token that is no handle",
         [](const std::string& t) { return replaceValue(t, QELElement::POINTER_ADDRESS, 1, "not-hex"); },
         "POINTER_ADDRESS \"not-hex\" is not a handle"},
        {"an empty token", [](const std::string& t) { return replaceValue(t, QELElement::POINTER_ADDRESS, 1, ""); },
         "POINTER_ADDRESS \"\" is not a handle"},
        {"a token answered twice",
         [&](const std::string& t) { return replaceValue(t, QELElement::POINTER_ADDRESS, 5, first); },
         "is answered a second time"},
        {"a file name changed",
         [](const std::string& t) { return replaceValue(t, QELElement::Old_File_Name, 2, "Other.CATPart"); },
         "Old_File_Name \"Other.CATPart\", but"},
        {"a dataset's identity changed",
         [](const std::string& t) { return replaceValue(t, QELElement::DST_UID, 0, "DST-X"); },
         "DST_UID \"DST-X\", but"},
        {"an item revision's identity changed",
         [](const std::string& t) { return replaceValue(t, QELElement::ItemRev_UID, 0, "UID-X"); },
         "ItemRev_UID \"UID-X\", but"},
        {"a control byte is shown escaped",
         [](const std::string& t) { return replaceValue(t, QELElement::Old_File_Name, 0, "\x1b[31mred"); },
         "Old_File_Name \"\\x1b[31mred\""},
    };
    for (const Case& c : cases) {
        const std::string tampered = c.tamper(good);
        ASSERT_TRUE(tampered != good) << c.name;
        EXPECT_NE(mismatches(tampered).find(c.expected), std::string::npos) << c.name << "\n" << mismatches(tampered);
    }
    // What the PDM side may change passes: new identifiers where none was
    // described, a created occurrence UID, its own mapping attributes.
    EXPECT_EQ(mismatches(replaceValue(good, QELElement::NamedRef_UID, 0, "NR-NEW")), "");
    EXPECT_EQ(mismatches(replaceValue(good, QELElement::Item_ID, 0, "ITM-999999")), "");
}

TEST_F(CrossCheckTest, ASessionReorderedAfterTheDescriptionIsRefused) {
    describeAndAnswer(example);
    const std::string good = readText(answer);
    // Bolt.1 and Bolt.2 trade places in the file: each is built where the
    // other was, and takes the other's token.
    std::string reordered = swapped(example, "\"instance\": \"Bolt.1\", \"uid\": \"u-blt1\"",
                                    "\"instance\": \"Bolt.2\", \"uid\": \"u-blt2\"");
    ASSERT_TRUE(reordered != example);
    build(reordered);
    QELCrossCheckReport report;
    std::string error;
    writeText(answer, good);
    ASSERT_TRUE(qelCrossCheckAnswer(answer, qelExpectedFromModel, report, error)) << error;
    EXPECT_EQ(report.count, 2u);
    ASSERT_FALSE(report.mismatches.empty());
    EXPECT_NE(report.mismatches[0].message.find("has Occ_UID \"u-blt"), std::string::npos);
}

// The example with one change, described: the count the writer announced,
// how it explains the difference, and the rule's text.
struct CountCase {
    const char* name;
    std::string from;
    std::string to;
    const char* rule;
};

} // namespace
