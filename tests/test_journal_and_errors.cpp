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

// The journal and the error handler keep their lines the same way; each row
// writes one line to one of them and says how that line reads in its file.
struct Sink {
    const char* name;
    const char* variable;
    bool (*setOutputPath)(const CATUnicodeString&);
    void (*resetOutput)();
    void (*setMaxEntries)(std::size_t);
    void (*clear)();
    void (*write)(const std::string& text);
    std::vector<std::string> (*texts)();
    std::string (*fileLine)(const std::string& text);
};

const Sink kSinks[] = {
    {"journal", "QEL_JOURNAL", &JNLManager::setOutputPath, &JNLManager::resetOutput, &JNLManager::setMaxEntries,
     &JNLManager::clear, [](const std::string& text) { JNLManager::writeMsg(text.c_str()); },
     [] {
         std::vector<std::string> texts;
         for (const std::string_view line : JNLManager::entries()) texts.emplace_back(line);
         return texts;
     },
     [](const std::string& text) { return text + "\n"; }},
    {"error handler", "QEL_ERRORS", &EMHManager::setOutputPath, &EMHManager::resetOutput,
     &EMHManager::setMaxEntries, &EMHManager::clear,
     [](const std::string& text) { EMHManager::writeMsg("F", 2102, text.c_str()); },
     [] {
         std::vector<std::string> texts;
         for (const EMHManager::Entry& e : EMHManager::entries()) texts.push_back(e.detail);
         return texts;
     },
     [](const std::string& text) { return "F: 2102: " + text + "\n"; }},
};

class SinkTest : public ::testing::TestWithParam<Sink> {
protected:
    void SetUp() override { GetParam().clear(); }
    void TearDown() override {
        GetParam().resetOutput();
        GetParam().setMaxEntries(0);
        GetParam().clear();
    }
};

void PrintTo(const Sink& sink, std::ostream* out) { *out << sink.name; }

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

TEST(ErrorHandler, RecordsFunctionCodeAndDetail) {
    EMHManager::clear();
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

TEST_P(SinkTest, CopiesEachLineToTheChosenFileOrToTheEnvironmentsAppended) {
    const Sink& sink = GetParam();
    const std::string path = tempPath("qel_sink_");
    std::remove(path.c_str());
    std::ofstream(path) << "earlier run\n";
    ASSERT_TRUE(sink.setOutputPath(path.c_str()));
    sink.write("one");
    EXPECT_TRUE(sink.setOutputPath("")) << "no file is a choice too";
    sink.write("not on file");
    {
        // Read once: unsetting the variable later does not stop the copy.
        ScopedEnvironment variable(sink.variable, path);
        sink.resetOutput();
        sink.write("two");
    }
    sink.write("three");
    sink.resetOutput();
    EXPECT_EQ(readWholeFile(path), "earlier run\n" + sink.fileLine("one") + sink.fileLine("two") +
                                       sink.fileLine("three"));
    EXPECT_EQ(sink.texts().size(), 4u);
    std::remove(path.c_str());

    // "-" is standard error.
    ::testing::internal::CaptureStderr();
    EXPECT_TRUE(sink.setOutputPath("-"));
    sink.write("to the terminal");
    sink.resetOutput();
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), sink.fileLine("to the terminal"));

    EXPECT_FALSE(sink.setOutputPath("/nonexistent-dir/sink.txt"));
    sink.write("still kept in memory");
    EXPECT_EQ(sink.texts().back(), "still kept in memory");
}

TEST_P(SinkTest, DropsTheOldestHalfPastTheBound) {
    const Sink& sink = GetParam();
    sink.setMaxEntries(10);
    for (int i = 0; i < 10; ++i) sink.write(std::to_string(i));
    EXPECT_EQ(sink.texts().size(), 10u);
    sink.write("10");
    EXPECT_EQ(sink.texts(), (std::vector<std::string>{"6", "7", "8", "9", "10"}));
    // Lines written after a drop sit where the kept ones end, whatever their length.
    sink.write(std::string(600, 'z'));
    sink.write("12");
    EXPECT_EQ(sink.texts(), (std::vector<std::string>{"6", "7", "8", "9", "10", std::string(600, 'z'), "12"}));
}

INSTANTIATE_TEST_SUITE_P(BothSinks, SinkTest, ::testing::ValuesIn(kSinks),
                         [](const ::testing::TestParamInfo<Sink>& info) {
                             return std::string(info.index == 0 ? "Journal" : "ErrorHandler");
                         });

TEST(JournalLimits, TheBoundFallsBackToTheDefault) {
    EXPECT_EQ(JNLManager::maxEntries(), JNLManager::kDefaultMaxEntries);
    JNLManager::setMaxEntries(4);
    EXPECT_EQ(JNLManager::maxEntries(), 4u);
    JNLManager::setMaxEntries(0);
    EXPECT_EQ(JNLManager::maxEntries(), JNLManager::kDefaultMaxEntries);
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
