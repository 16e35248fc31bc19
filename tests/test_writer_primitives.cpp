#include <gtest/gtest.h>

#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <clocale>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "CATDocument.h"
#include "QELDMToXMLPrimitivesAccess.h"
#include "QELElementNames.h"
#include "SampleModel.h"
#include "WriterDriverSupport.h"

using writertest::describe;
using writertest::lines;
using writertest::linesOf;
using writertest::readBytes;
using writertest::tempPath;
using Access = QELDMToXMLPrimitivesAccess;

namespace {

class WriterPrimitivesTest : public writertest::WriterTest {};

// ---- the frame of an element ---------------------------------------------------

TEST_F(WriterPrimitivesTest, TagsAndValuesStandAloneOnCrLfLines) {
    auto out = describe([](QELDMToXML& w) {
        Access::writeOpenBalise(w, QELElement::Item_ID);
        Access::writeValue(w, CATUnicodeString("0001234"));
        Access::writeValue(w, -7);
        Access::writeCloseBalise(w, QELElement::Item_ID);
    });
    EXPECT_EQ(out, lines({"<Item_ID>", "0001234", "-7", "</Item_ID>"}));
}

TEST_F(WriterPrimitivesTest, OnlyTheExactNameItemInfoIsCounted) {
    struct Case {
        const char* name;
        int counted;
    } cases[] = {{QELElement::Item_Info, 1}, {"item_info", 0}, {"Item_Info ", 0}, {"Item_Infos", 0}, {"", 0}};
    for (const auto& c : cases) {
        int counted = -1;
        describe([&](QELDMToXML& w) {
            Access::writeOpenBalise(w, c.name);
            Access::writeCloseBalise(w, c.name);
            counted = Access::writtenItems(w);
        });
        EXPECT_EQ(counted, c.counted) << "'" << c.name << "'";
    }
    // writeBalise opens through writeOpenBalise, so it counts as well.
    int counted = 0;
    describe([&](QELDMToXML& w) {
        Access::writeBalise(w, QELElement::Item_Info, "x", "", 0);
        Access::writeBalise(w, QELElement::Item_Info, 3);
        counted = Access::writtenItems(w);
    });
    EXPECT_EQ(counted, 2);
}

TEST_F(WriterPrimitivesTest, BaliseWithValueAndFallback) {
    const std::string longValue(100000, 'v');
    struct Case {
        std::string value;
        const char* fallback;
        unsigned char writeIfEmpty;
        std::vector<std::string> expected;
    } cases[] = {
        {"", "", 0, {}},
        {"", "", 1, {"<Item_ID>", "", "</Item_ID>"}},
        {"", "X", 0, {"<Item_ID>", "X", "</Item_ID>"}},
        {"V", "X", 0, {"<Item_ID>", "V", "</Item_ID>"}},
        {"V", "", 1, {"<Item_ID>", "V", "</Item_ID>"}},
        // Nothing is escaped, and a line break in a value spreads it.
        {"a<b&c>", "", 0, {"<Item_ID>", "a<b&c>", "</Item_ID>"}},
        {"one\ntwo", "", 0, {"<Item_ID>", "one", "two", "</Item_ID>"}},
        {"\xE9l\xE9ment", "", 0, {"<Item_ID>", "\xE9l\xE9ment", "</Item_ID>"}},
        // Values of any length are written whole.
        {longValue, "", 0, {"<Item_ID>", longValue, "</Item_ID>"}},
    };
    for (const auto& c : cases) {
        auto out = describe([&](QELDMToXML& w) {
            Access::writeBalise(w, QELElement::Item_ID, c.value.c_str(), c.fallback, c.writeIfEmpty);
        });
        EXPECT_EQ(out, c.expected) << "value '" << c.value.substr(0, 20) << "' fallback '" << c.fallback << "'";
    }
}

// writeBalise writes a null component as zero; writePointerAddress writes
// nothing for it and journals why.
TEST_F(WriterPrimitivesTest, PointerAddressIsTheHandleInSixteenUpperCaseHexDigits) {
    QELComponent component;
    auto out = describe([&](QELDMToXML& w) {
        Access::writeBalise(w, QELElement::POINTER_ADDRESS, &component);
        Access::writeBalise(w, QELElement::POINTER_ADDRESS, static_cast<const QELComponent*>(nullptr));
        Access::writePointerAddress(w, &component);
        Access::writePointerAddress(w, nullptr);
    });
    const std::string handle = writertest::handleOf(&component);
    EXPECT_EQ(handle.size(), 16u);
    EXPECT_EQ(handle.find_first_not_of("0123456789ABCDEF"), std::string::npos);
    EXPECT_EQ(out, lines({"<POINTER_ADDRESS>", handle.c_str(), "</POINTER_ADDRESS>", "<POINTER_ADDRESS>",
                          "0000000000000000", "</POINTER_ADDRESS>", "<POINTER_ADDRESS>", handle.c_str(),
                          "</POINTER_ADDRESS>"}));
    EXPECT_TRUE(JNLManager::contains("QELDMToXML::writePointerAddress: ip_component is NULL"));
}

// ---- the one-line writers ------------------------------------------------------

TEST_F(WriterPrimitivesTest, OneLineWritersWriteTheComponentsIntegerProperty) {
    using Writer = void (*)(QELDMToXML&, QELComponent*);
    struct Case {
        Writer write;
        const char* element;
        const char* nullJournal;
    } cases[] = {
        {&Access::writeMAJ, QELElement::MAJ, "QELDMToXML::writeMAJ: ip_component is NULL"},
        {&Access::writeModifiedFlag, QELElement::Modified_Flag, "QELDMToXML::writeModifiedFlag: ip_component is NULL"},
        {&Access::writeCheckAction, QELElement::Check_Action, "QELDMToXML::writeCheckAction: ip_component is NULL"},
        {[](QELDMToXML& w, QELComponent* c) { Access::writeMatrixAction(w, c, 1); }, QELElement::Matrix_Action,
         "QELDMToXML::writeMatrixAction: ip_component is NULL"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.element);
        QELComponent with, without;
        with.addIntegerProperty(c.element, 2);
        auto out = describe([&](QELDMToXML& w) {
            c.write(w, &with);
            c.write(w, &without); // a missing property answers -1, still written
        });
        EXPECT_EQ(out, std::vector<std::string>({std::string("<") + c.element + ">", "2",
                                                 std::string("</") + c.element + ">",
                                                 std::string("<") + c.element + ">", "-1",
                                                 std::string("</") + c.element + ">"}));

        JNLManager::clear();
        auto none = describe([&](QELDMToXML& w) { c.write(w, nullptr); });
        EXPECT_TRUE(none.empty());
        EXPECT_TRUE(JNLManager::contains(c.nullJournal));
    }
    // Matrix_Action only when asked for.
    QELComponent component;
    component.addIntegerProperty("Matrix_Action", 1);
    EXPECT_TRUE(describe([&](QELDMToXML& w) { Access::writeMatrixAction(w, &component, 0); }).empty());
}

// ---- matrices --------------------------------------------------------------------

TEST_F(WriterPrimitivesTest, MatrixStringIsTwelveNumbersWithSixteenSignificantDigits) {
    const double identity[16] = {1, 0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 7, 7, 7, 7};
    const double example[12] = {1, 0, 0, 0, 1, 0, 0, 0, 1, 120.5, 0, -3.000000000000001E-05};
    const double special[12] = {0.1, 1e20, -0.0, 1.0 / 3.0, 123456789012345678.0, 1e-300, 2.5, -1, 0, 0, 0, 0};
    EXPECT_EQ(Access::matrixString(nullptr), "");
    // Only the first twelve values of the property's sixteen are written.
    EXPECT_EQ(Access::matrixString(identity), "1 0 0 0 1 0 0 0 1 0 0 0");
    EXPECT_EQ(Access::matrixString(example), "1 0 0 0 1 0 0 0 1 120.5 0 -3.000000000000001E-05");
    EXPECT_EQ(Access::matrixString(special),
              "0.1 1E+20 -0 0.3333333333333333 1.234567890123457E+17 1E-300 2.5 -1 0 0 0 0");
}

// The numbers are written without printf; they must read as "%.16G" does,
// for every kind of double: random bit patterns cover subnormals, huge and
// tiny exponents, infinities and NaNs.
TEST_F(WriterPrimitivesTest, MatrixNumbersAreThoseOfPrintf) {
    uint64_t state = 12345;
    for (int round = 0; round < 2000; ++round) {
        double matrix[12];
        std::string expected;
        for (int i = 0; i < 12; ++i) {
            state = state * 6364136223846793005ULL + 1442695040888963407ULL;
            const uint64_t bits = round % 2 ? state : (state >> 12) | 0x3FF0000000000000ULL; // every pattern, or [1, 2)
            std::memcpy(&matrix[i], &bits, sizeof bits);
            if (round == 0) matrix[i] = i % 3 == 0 ? -HUGE_VAL : i % 3 == 1 ? HUGE_VAL : -std::nan("");
            char text[64];
            std::snprintf(text, sizeof text, "%.16G", matrix[i]);
            expected += (i ? " " : "") + std::string(text);
        }
        ASSERT_EQ(Access::matrixString(matrix), expected) << "round " << round;
    }
}

TEST_F(WriterPrimitivesTest, DecimalCommaLocaleDoesNotReachMatrices) {
    const std::string previous = std::setlocale(LC_NUMERIC, nullptr);
    const char* found = nullptr;
    for (const char* name : {"de_DE.UTF-8", "de_DE.utf8", "fr_FR.UTF-8", "fr_FR.utf8", "de_DE", "fr_FR"}) {
        if (std::setlocale(LC_NUMERIC, name) && std::strcmp(std::localeconv()->decimal_point, ",") == 0) {
            found = name;
            break;
        }
    }
    if (!found) {
        std::setlocale(LC_NUMERIC, previous.c_str());
        GTEST_SKIP() << "no decimal-comma locale installed";
    }
    const double matrix[12] = {0.5, -1.25, 1e-5, 0, 0, 0, 0, 0, 0, 120.5, 0, 3.5};
    const std::string text = Access::matrixString(matrix);
    std::setlocale(LC_NUMERIC, previous.c_str());
    EXPECT_EQ(text, "0.5 -1.25 1E-05 0 0 0 0 0 0 120.5 0 3.5") << "under " << found;
}

// ---- the header -------------------------------------------------------------------

TEST_F(WriterPrimitivesTest, SaveDesignTablesFollowsTheSessionsAnswer) {
    struct Case {
        int asked; // -1: the property is absent
        bool managed;
        const char* value;
        bool reported;
    } cases[] = {{1, true, "1", false}, {1, false, "0", false}, {0, false, "1", true}, {-1, false, "1", true}};
    for (const auto& c : cases) {
        SCOPED_TRACE(::testing::Message() << "asked " << c.asked << " managed " << c.managed);
        EMHManager::clear();
        QELSession* session = QELSession::getInstance();
        if (c.asked >= 0) session->addBooleanProperty("IsDesignTableManagedAsked", c.asked == 1);
        session->addBooleanProperty("IsDesignTableManaged", c.managed);
        auto out = describe([&](QELDMToXML& w) { Access::writeHeader(w, 0, session); });
        EXPECT_EQ(writertest::valuesOf(out, QELElement::SaveDesignTables), std::vector<std::string>{c.value});
        ASSERT_EQ(EMHManager::entries().size(), c.reported ? 1u : 0u);
        if (c.reported) {
            EXPECT_EQ(EMHManager::entries()[0].function, "QELDMToXML::writeHeader");
            EXPECT_EQ(EMHManager::entries()[0].code, 2103);
            EXPECT_EQ(EMHManager::entries()[0].detail, "CteQELSES_PROPERTY_IS_DESIGNTABLES_MANAGED_ASKED");
        }
        QELSession::freeModel();
    }
    // Without a session the question was never asked either.
    EMHManager::clear();
    auto out = describe([](QELDMToXML& w) { Access::writeHeader(w, 0, nullptr); });
    EXPECT_EQ(writertest::valuesOf(out, QELElement::SaveDesignTables), std::vector<std::string>{"1"});
    EXPECT_EQ(writertest::codesReported(), std::vector<long>{2103});
}

TEST_F(WriterPrimitivesTest, SingleFilesNeedsAllThreeConditions) {
    ENVManager::setCatiaVectorialExtensions("pdf;svg;cgm");
    for (int mask = 0; mask < 8; ++mask) {
        const bool allSheets = mask & 1, phase1 = mask & 2, drawing = mask & 4;
        CV5CAAQELSession::getCATIASessionInstance()->setSaveAllSheetsInOneFileValue(allSheets);
        CV5CAAQELSession::getCATIASessionInstance()->set_is_there_drawing(drawing);
        PROCManager::setIsPhasePhase1(phase1);
        auto out = describe([](QELDMToXML& w) { Access::writeHeader(w, 0, nullptr); });
        const std::vector<std::string> expected =
            mask == 7 ? std::vector<std::string>{"pdf;svg;cgm"} : std::vector<std::string>{};
        EXPECT_EQ(writertest::valuesOf(out, QELElement::Single_Files), expected) << "mask " << mask;
    }
}

TEST_F(WriterPrimitivesTest, ContextNamesTheActiveDocumentInStateDetails) {
    CATDocument active("C:\\work\\models/Gearbox.CATProduct");
    CATDocument bare("Loose.CATPart");
    CATDocument unnamed("");
    struct Case {
        bool stateDetails;
        CATDocument* document;
        std::vector<std::string> expected;
    } cases[] = {
        {true, &active, {"Gearbox.CATProduct"}},
        {true, &bare, {"Loose.CATPart"}},
        {true, &unnamed, {""}},
        {true, nullptr, {""}},
        {false, &active, {}},
    };
    for (const auto& c : cases) {
        PROCManager::setIsProcessStateDetails(c.stateDetails);
        CV5CAAToolsCommon::setActiveCATDocument(c.document);
        auto out = describe([](QELDMToXML& w) { Access::writeHeader(w, 0, nullptr); });
        EXPECT_EQ(writertest::valuesOf(out, QELElement::Context), c.expected)
            << (c.document ? c.document->StorageName().ToLatin1() : std::string("no document"));
        // Context stands inside Options, before NBElements.
        if (!c.expected.empty()) {
            auto at = std::find(out.begin(), out.end(), "<Context>");
            EXPECT_LT(at, std::find(out.begin(), out.end(), "</Options>"));
        }
    }
}

// ---- flushing and system calls ----------------------------------------------------

TEST_F(WriterPrimitivesTest, UnflushedLinesLeaveWithTheNextFlushedWrite) {
    const std::string path = tempPath("pending.xml");
    {
        QELDMToXML w(path.c_str());
        Access::write(w, false, "first\n");
        Access::write(w, false, "second\n");
        EXPECT_EQ(readBytes(path), "");
        Access::write(w, true, "third\n");
        EXPECT_EQ(readBytes(path), "first\r\nsecond\r\nthird\r\n");
        // Closing writes out what is still pending.
        Access::write(w, false, "last\n");
    }
    EXPECT_EQ(readBytes(path), "first\r\nsecond\r\nthird\r\nlast\r\n");
    std::remove(path.c_str());
}

// The write system calls this process made so far, from the kernel's own
// accounting; -1 when it does not tell.
long long writeSystemCalls() {
    FILE* io = std::fopen("/proc/self/io", "r");
    if (!io) return -1;
    long long calls = -1;
    char line[128];
    while (std::fgets(line, sizeof line, io)) {
        if (std::sscanf(line, "syscw: %lld", &calls) == 1) break;
    }
    std::fclose(io);
    return calls;
}

// Counted by the kernel, in a forked child: a child has a single thread, so
// nothing else writes between the two readings of the counter. Lines longer
// than any stdio buffer are included, where a plain buffered stream would
// cut one write into several.
TEST_F(WriterPrimitivesTest, EachFlushedWriteIsOneWriteSystemCall) {
    if (writeSystemCalls() < 0) GTEST_SKIP() << "the kernel does not account system calls here";

    struct Write {
        bool flush;
        std::string text;
    };
    std::vector<Write> plan;
    for (int i = 0; i < 40; ++i) plan.push_back({true, "<Line_" + std::to_string(i) + ">\n"});
    plan.push_back({false, "pending one\n"});
    plan.push_back({false, "pending two\n"});
    plan.push_back({true, "with the pending lines\n"});
    for (size_t size : {4095u, 4096u, 8191u, 65535u, 65536u, 65537u, 70000u, 300000u})
        plan.push_back({true, std::string(size, 'x') + "\n"});
    std::string expectedBytes;
    long long expectedCalls = 0;
    for (const auto& write : plan) {
        for (char c : write.text) expectedBytes += c == '\n' ? std::string("\r\n") : std::string(1, c);
        if (write.flush) ++expectedCalls;
    }

    const std::string path = tempPath("syscalls.xml");
    int channel[2];
    ASSERT_EQ(pipe(channel), 0);
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        close(channel[0]);
        long long calls = -1;
        {
            QELDMToXML w(path.c_str());
            const long long before = writeSystemCalls();
            for (const auto& write : plan) Access::write(w, write.flush, write.text.c_str());
            const long long after = writeSystemCalls();
            calls = after - before;
        }
        const ssize_t sent = ::write(channel[1], &calls, sizeof calls);
        _exit(sent == static_cast<ssize_t>(sizeof calls) ? 0 : 1);
    }
    close(channel[1]);
    long long calls = -1;
    const ssize_t got = read(channel[0], &calls, sizeof calls);
    close(channel[0]);
    int status = 0;
    waitpid(child, &status, 0);
    ASSERT_EQ(got, static_cast<ssize_t>(sizeof calls));
    ASSERT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
    EXPECT_EQ(calls, expectedCalls);
    EXPECT_EQ(readBytes(path), expectedBytes);
    std::remove(path.c_str());
}

// ---- failures of the output ---------------------------------------------------------

// The writer's failure reports with code 2102, as "function: detail".
std::vector<std::string> writeFailures() {
    std::vector<std::string> failures;
    for (const auto& e : EMHManager::entries())
        if (e.code == 2102) failures.push_back(e.function + ": " + e.detail);
    return failures;
}

TEST_F(WriterPrimitivesTest, AnOutputThatCannotBeOpenedIsReportedOnce) {
    const std::string directory = tempPath("a_directory");
    mkdir(directory.c_str(), 0700);
    struct Case {
        std::string path;
        const char* reason;
    } cases[] = {{tempPath("missing") + "/sub/out.xml", "No such file or directory"},
                 {directory, "Is a directory"}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.path);
        EMHManager::clear();
        JNLManager::clear();
        bool failed = false;
        {
            QELDMToXML w(c.path.c_str());
            Access::writeHeader(w, 1, nullptr);
            Access::writeBalise(w, QELElement::Item_Info, 1);
            Access::closeFile(w);
            failed = w.hasFailed();
        }
        EXPECT_TRUE(failed);
        const std::string detail = "fopen: " + c.path + ": " + c.reason;
        EXPECT_EQ(writeFailures(), std::vector<std::string>{"QELDMToXML::openFile: " + detail});
        EXPECT_TRUE(JNLManager::contains(detail));
    }
    rmdir(directory.c_str());
}

TEST_F(WriterPrimitivesTest, AFullDeviceIsReportedOnceAndStopsTheWriting) {
    if (access("/dev/full", W_OK) != 0) GTEST_SKIP() << "no /dev/full";
    bool failed = false;
    {
        QELDMToXML w("/dev/full");
        EXPECT_FALSE(w.hasFailed());
        Access::writeHeader(w, 3, nullptr);
        for (int i = 0; i < 100; ++i) Access::writeBalise(w, QELElement::Item_Info, i);
        failed = w.hasFailed();
    }
    EXPECT_TRUE(failed);
    EXPECT_EQ(writeFailures(),
              std::vector<std::string>{"QELDMToXML::writeFormatted: write: /dev/full: No space left on device"});
    EXPECT_TRUE(JNLManager::contains("write: /dev/full: No space left on device"));
}

TEST_F(WriterPrimitivesTest, ADescriptorLostMidwayOrAFailingCloseIsReportedOnce) {
    const std::string path = tempPath("lost.xml");
    struct Case {
        const char* name;
        int linesBefore; // written and flushed before the descriptor goes
        int linesAfter;
        const char* report;
    } cases[] = {
        {"descriptor closed midway", 3, 50, "QELDMToXML::writeFormatted: write: "},
        {"close fails", 3, 0, "QELDMToXML::test: fclose: "},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        EMHManager::clear();
        JNLManager::clear();
        QELDMToXML w(path.c_str());
        for (int i = 0; i < c.linesBefore; ++i) Access::writeBalise(w, QELElement::Item_Info, i);
        ASSERT_EQ(close(fileno(Access::stream(w))), 0);
        for (int i = 0; i < c.linesAfter; ++i) Access::writeBalise(w, QELElement::Item_Info, i);
        Access::closeFile(w);
        EXPECT_TRUE(w.hasFailed());
        const std::string detail = c.report + path + ": Bad file descriptor";
        EXPECT_EQ(writeFailures(), std::vector<std::string>{detail});
        EXPECT_TRUE(JNLManager::contains(detail.substr(detail.find(": ") + 2) + "; the rest of the description is not written"));
        EXPECT_EQ(linesOf(readBytes(path)).size(), 3u * c.linesBefore);
    }
    std::remove(path.c_str());
}

// A whole export whose file may not grow past a limit, in a forked child (the
// limit is the process's): the first refused write is reported once, nothing
// is written after it, and the export still runs to its end.
TEST_F(WriterPrimitivesTest, AnExportWhoseWritesFailMidwayStopsWritingAndReportsOnce) {
    const std::string path = tempPath("limited.xml");
    constexpr rlim_t kLimit = 3000;
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        QELSession::freeModel();
        SampleModel model = SampleModel::build();
        PROCManager::setIsCommandSave(true);
        PROCManager::setIsPhasePhase1(true);
        std::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{kLimit, kLimit};
        if (setrlimit(RLIMIT_FSIZE, &limit) != 0) _exit(10);
        bool failed = false;
        {
            QELDMToXML writer(path.c_str());
            writer.execute(model.session);
            failed = writer.hasFailed();
        }
        const std::vector<std::string> failures = writeFailures();
        int problems = 0;
        if (!failed) problems |= 1;
        if (failures.size() != 1 || failures[0].find(": File too large") == std::string::npos) problems |= 2;
        if (!JNLManager::contains("File too large; the rest of the description is not written")) problems |= 4;
        for (const auto& e : EMHManager::entries())
            if (e.code != 2102) problems |= 8;
        QELSession::freeModel();
        _exit(problems);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 0) << "1: not failed, 2: not one report, 4: no journal line, 8: another error";
    EXPECT_LE(readBytes(path).size(), kLimit);
    std::remove(path.c_str());
}

TEST_F(WriterPrimitivesTest, OpenFileClosesThePreviousOutputAndKeepsTheCounts) {
    const std::string first = tempPath("first.xml"), second = tempPath("second.xml");
    int counted = 0;
    {
        QELDMToXML w(first.c_str());
        Access::writeBalise(w, QELElement::Item_Info, 1);
        Access::openFile(w, second.c_str());
        Access::writeBalise(w, QELElement::Item_Info, 2);
        counted = Access::writtenItems(w);
    }
    EXPECT_EQ(linesOf(readBytes(first)), lines({"<Item_Info>", "1", "</Item_Info>"}));
    EXPECT_EQ(linesOf(readBytes(second)), lines({"<Item_Info>", "2", "</Item_Info>"}));
    EXPECT_EQ(counted, 2);
    std::remove(first.c_str());
    std::remove(second.c_str());
}

} // namespace
