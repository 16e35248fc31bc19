#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>
#include <cstdlib>
#include <unistd.h>

#include "ScratchDir.h"
#include "EMHManager.h"
#include "JNLManager.h"
#include "QELStatus.h"

namespace {

std::string readWholeFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

std::string tempPath(const char* stem) {
    return qeltest::scratchDir() + stem + std::to_string(::getpid());
}

// Sets an environment variable for one test and puts back what was there.
class ScopedEnvironment {
public:
    ScopedEnvironment(const char* name, const std::string& value) : name_(name) {
        const char* old = std::getenv(name);
        hadValue_ = old != nullptr;
        if (old)
            old_ = old;
        ::setenv(name, value.c_str(), 1);
    }
    ~ScopedEnvironment() {
        if (hadValue_) {
            ::setenv(name_, old_.c_str(), 1);
        } else {
            ::unsetenv(name_);
        }
    }

private:
    const char* name_;
    bool hadValue_;
    std::string old_;
};

class JournalTest : public ::testing::Test {
protected:
    void SetUp() override { JNLManager::clear(); }
    void TearDown() override {
        JNLManager::resetOutput();
        JNLManager::setMaxEntries(0);
        JNLManager::clear();
    }
};

class ErrorHandlerTest : public ::testing::Test {
protected:
    void SetUp() override { EMHManager::clear(); }
    void TearDown() override {
        EMHManager::resetOutput();
        EMHManager::setMaxEntries(0);
        EMHManager::clear();
    }
};

} // namespace

TEST_F(JournalTest, RecordsEntriesInOrderWithBeginAndEndTexts) {
    JNLManager::beginFunction("QELDMToXML::execute");
    JNLManager::beginFunction("QELDMToXML::writeScenes", "doc 1");
    JNLManager::writeMsg("QELDMToXML::writeMAJ: ip_component is NULL");
    JNLManager::endFunction("QELDMToXML::execute", 0x80004005L);
    JNLManager::endFunction("QELDMToXML::writeScenes", -1);

    const std::vector<std::string> expected = {
        "BEGIN QELDMToXML::execute",
        "BEGIN QELDMToXML::writeScenes : doc 1",
        "QELDMToXML::writeMAJ: ip_component is NULL",
        "END QELDMToXML::execute (2147500037)",
        "END QELDMToXML::writeScenes (-1)",
    };
    EXPECT_EQ(JNLManager::entries(), expected);
    EXPECT_TRUE(JNLManager::contains("ip_component is NULL"));
    EXPECT_FALSE(JNLManager::contains("ip_document"));

    JNLManager::clear();
    EXPECT_TRUE(JNLManager::entries().empty());
    EXPECT_FALSE(JNLManager::contains("BEGIN"));
}

TEST_F(JournalTest, KeepsLatin1TextAsGiven) {
    CATUnicodeString text;
    text.BuildFromUTF8("caf\xC3\xA9 \xE2\x82\xAC"); // e acute (Latin-1), euro sign (not)
    JNLManager::writeMsg(text);
    ASSERT_EQ(JNLManager::entries().size(), 1u);
    EXPECT_EQ(JNLManager::entries()[0], "caf\xE9 ?");
}

TEST_F(JournalTest, FormatsMessagesOfAnyLength) {
    JNLManager::writeMsgFormatted("-->resolved context [%s] %d", "ctx", 42);
    std::string longValue(10000, 'x');
    JNLManager::writeMsgFormatted("Error while opening desc.xml file %s.", longValue.c_str());
    JNLManager::writeMsgFormatted("%s", "");
    // Around the size that one formatting pass holds.
    for (size_t n : {510u, 511u, 512u, 513u}) JNLManager::writeMsgFormatted("%s", std::string(n, 'y').c_str());

    ASSERT_EQ(JNLManager::entries().size(), 7u);
    EXPECT_EQ(JNLManager::entries()[0], "-->resolved context [ctx] 42");
    EXPECT_EQ(JNLManager::entries()[1], "Error while opening desc.xml file " + longValue + ".");
    EXPECT_EQ(JNLManager::entries()[2], "");
    for (size_t i = 0; i < 4; ++i) EXPECT_EQ(JNLManager::entries()[3 + i], std::string(510 + i, 'y'));
}

TEST_F(JournalTest, CopiesEachEntryAsALineToTheChosenFile) {
    const std::string path = tempPath("qel_journal_");
    std::remove(path.c_str());
    {
        std::ofstream existing(path);
        existing << "earlier run\n";
    }
    ASSERT_TRUE(JNLManager::setOutputPath(path));
    JNLManager::beginFunction("F", "d");
    JNLManager::writeMsgFormatted("n=%d", 3);
    JNLManager::endFunction("F", 0);
    JNLManager::setOutputPath("");
    JNLManager::writeMsg("not on file");

    EXPECT_EQ(readWholeFile(path), "earlier run\nBEGIN F : d\nn=3\nEND F (0)\n");
    EXPECT_EQ(JNLManager::entries().size(), 4u);
    std::remove(path.c_str());
}

TEST_F(JournalTest, FollowsTheEnvironmentVariableWhenReadAgain) {
    const std::string path = tempPath("qel_journal_env_");
    std::remove(path.c_str());
    {
        ScopedEnvironment journal("QEL_JOURNAL", path);
        JNLManager::resetOutput();
        JNLManager::writeMsg("first");
        JNLManager::writeMsg("second");
    }
    // Read once: unsetting the variable later does not stop the copy.
    JNLManager::writeMsg("third");
    JNLManager::resetOutput();
    EXPECT_EQ(readWholeFile(path), "first\nsecond\nthird\n");
    std::remove(path.c_str());
}

TEST_F(JournalTest, RefusesAnOutputThatCannotBeOpened) {
    EXPECT_FALSE(JNLManager::setOutputPath("/nonexistent-dir/journal.txt"));
    JNLManager::writeMsg("still kept in memory");
    EXPECT_TRUE(JNLManager::contains("still kept"));
}

TEST_F(JournalTest, DropsTheOldestHalfPastTheBound) {
    EXPECT_EQ(JNLManager::maxEntries(), JNLManager::kDefaultMaxEntries);
    JNLManager::setMaxEntries(10);
    for (int i = 0; i < 10; ++i)
        JNLManager::writeMsgFormatted("%d", i);
    EXPECT_EQ(JNLManager::entries().size(), 10u);

    JNLManager::writeMsg("10");
    const std::vector<std::string> kept = {"6", "7", "8", "9", "10"};
    EXPECT_EQ(JNLManager::entries(), kept);
    // Entries written after a drop sit where the kept ones end, whatever
    // their kind and length.
    JNLManager::beginFunction("F", "d");
    JNLManager::writeMsgFormatted("%s", std::string(600, 'z').c_str());
    JNLManager::endFunction("F", -1);
    const std::vector<std::string> after = {"6",         "7", "8", "9", "10", "BEGIN F : d", std::string(600, 'z'),
                                            "END F (-1)"};
    EXPECT_EQ(JNLManager::entries(), after);

    JNLManager::setMaxEntries(0);
    EXPECT_EQ(JNLManager::maxEntries(), JNLManager::kDefaultMaxEntries);
}

TEST_F(ErrorHandlerTest, RecordsFunctionCodeAndDetail) {
    EMHManager::writeMsg("QELDMToXML::writeHeader", 2103,
                         "CteQELSES_PROPERTY_IS_DESIGNTABLES_MANAGED_ASKED");
    EMHManager::writeMsg("QELDMToXML::executeForNonCatalogWorkSpace", 2104, "");

    const std::vector<EMHManager::Entry>& errors = EMHManager::entries();
    ASSERT_EQ(errors.size(), 2u);
    EXPECT_EQ(errors[0].function, "QELDMToXML::writeHeader");
    EXPECT_EQ(errors[0].code, 2103);
    EXPECT_EQ(errors[0].detail, "CteQELSES_PROPERTY_IS_DESIGNTABLES_MANAGED_ASKED");
    EXPECT_EQ(errors[1].code, 2104);
    EXPECT_EQ(errors[1].detail, "");

    EMHManager::clear();
    EXPECT_TRUE(EMHManager::entries().empty());
}

TEST_F(ErrorHandlerTest, CopiesEachErrorAsALineToTheChosenFile) {
    const std::string path = tempPath("qel_errors_");
    std::remove(path.c_str());
    ASSERT_TRUE(EMHManager::setOutputPath(path));
    EMHManager::writeMsg("QELXMLToDM::readOptions", 2103, "p_item");
    EMHManager::writeMsg("QELDMToXML::execute", 2104, "");
    EMHManager::setOutputPath("");

    EXPECT_EQ(readWholeFile(path),
              "QELXMLToDM::readOptions: 2103: p_item\nQELDMToXML::execute: 2104: \n");
    std::remove(path.c_str());
}

TEST_F(ErrorHandlerTest, FollowsTheEnvironmentVariableWhenReadAgain) {
    const std::string path = tempPath("qel_errors_env_");
    std::remove(path.c_str());
    {
        ScopedEnvironment errors("QEL_ERRORS", path);
        EMHManager::resetOutput();
        EMHManager::writeMsg("F", 2102, "getDefaultItem");
    }
    EMHManager::resetOutput();
    EXPECT_EQ(readWholeFile(path), "F: 2102: getDefaultItem\n");
    std::remove(path.c_str());
}

TEST_F(ErrorHandlerTest, DropsTheOldestHalfPastTheBound) {
    EMHManager::setMaxEntries(4);
    for (long code = 1; code <= 5; ++code)
        EMHManager::writeMsg("F", code, "");
    ASSERT_EQ(EMHManager::entries().size(), 2u);
    EXPECT_EQ(EMHManager::entries()[0].code, 4);
    EXPECT_EQ(EMHManager::entries()[1].code, 5);
}

// A status is read as the host's 32-bit result: E_FAIL fails whether it is
// held sign-extended (QEL_E_FAIL) or as the plain 64-bit value of its bits.
TEST(QELStatus, FailureIsTheSignOfThe32BitStatus) {
    const struct {
        long status;
        bool failed;
    } kCases[] = {{QEL_S_OK, false}, {1, false}, {QEL_E_FAIL, true}, {0x80004005L, true}, {-1, true}};
    for (const auto& c : kCases) EXPECT_EQ(QELFailed(c.status), c.failed) << c.status;
}
