// The answer reader's driver: the frame, the entry map, the dispatch of each
// entry, and what bad answers do to it.

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include "QELElementNames.h"
#include "ScratchDir.h"
#include "CATDocument.h"
#include "QELAnswerEntry.h"
#include "QELXMLToDMScannerAccess.h"
#include "QELHandleTable.h"
#include "ReaderAnswerSupport.h"

using namespace reader_test;
using Access = QELXMLToDMScannerAccess;

namespace {

// The element names, unqualified: the answers below read as their lines do.
using namespace QELElement;

std::string linkedDocs(int announced) {
    return element(LinkedDocs, count(announced) + leaf(Attribut, "Drawing.CATDrawing") + leaf(Attribut, "u1"));
}

std::string occurrenceEntry(const std::string& pointer, const std::string& occUid = "OCC-NEW", int linked = 2) {
    return entry(CATPart, leaf(POINTER_ADDRESS, pointer) + leaf(Occ_UID, occUid) +
                              leaf(Parent_ItemRev_UID, "UID-Root") + leaf(Matrix, "1 0 0 0 1 0 0 0 1 10 20 30") +
                              linkedDocs(linked) +
                              element(Sheets, leaf(Active_Sheet, "S.1") + count(1) + leaf(Attribut, "S.1")));
}

// True when the journal says that the answer was not read to its end.
bool reportedBadAnswer() {
    for (const std::string_view line : JNLManager::entries())
        for (const char* sign : {"Error while", "is missing", "designates no component", "holds fewer"})
            if (line.find(sign) != std::string::npos) return true;
    return false;
}

class ReaderDriver : public ReaderTest {
protected:
    void SetUp() override { model = SmallModel::build(); }

    std::string workspaceEntry() const {
        return entry(CATProduct, leaf(POINTER_ADDRESS, pointerOf(model.workspace)) + leaf(Item_ID, "ROOT-ID"));
    }
    std::string validAnswer() const {
        return answer(2, workspaceEntry() + occurrenceEntry(pointerOf(model.occurrence)),
                      element(Options, leaf(SaveDesignTables, "1")));
    }
    // Reads `text` through execute; the reader is closed again.
    std::unique_ptr<QELXMLToDM> run(const std::string& text, bool crlf = false) {
        std::unique_ptr<QELXMLToDM> reader(new QELXMLToDM(writeAnswer("driver.xml", text, crlf).c_str()));
        reader->execute(model.session);
        EXPECT_FALSE(Access::isOpen(*reader));
        return reader;
    }

    SmallModel model;
};

// A short list fills what it has and leaves the rest 0; past 16 numbers
// nothing is read; a word reads as 0.
TEST_F(ReaderDriver, RelativeMatrixTakesAtMostSixteenNumbers) {
    struct Case {
        const char* text;
        std::vector<double> expected; // empty: no matrix at all
    } cases[] = {
        {"", {}},
        {"  1\t2   -3.5E+02 ", {1, 2, -350, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}},
        {"1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18", {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16}},
        {"x 2", {0, 2, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}},
    };
    QELXMLToDM reader(writeAnswer("matrix.xml", "").c_str());
    for (const Case& c : cases) {
        SCOPED_TRACE(c.text);
        QELAnswerEntry map;
        map.add(Matrix, c.text);
        long long pos = 0;
        Access::createAbsoluteOccurrence(reader, model.occurrence, model.session, pos, &map);
        const double* matrix = model.relative->getMatrixProperty("RelativeMatrix");
        ASSERT_EQ(c.expected.empty(), matrix == nullptr);
        for (size_t i = 0; i < c.expected.size(); ++i) EXPECT_EQ(c.expected[i], matrix[i]) << i;
    }
}

TEST_F(ReaderDriver, EmptySessionReadsWorkspacesAndDrawingsOnly) {
    PROCManager::setManageDescForEmptyQEL(true);
    const std::string drawing = entry(CATDrawing, leaf(Parent_ItemRev_UID, "") + leaf(File_Name, "D.CATDrawing"));
    struct Case {
        std::string first;
        const char* journal; // null: read
    } cases[] = {
        {occurrenceEntry(pointerOf(model.occurrence)), "Element in assembly ignored"},
        {entry(DesignTable, leaf(File_Name, "T.xls")), "Design Table ignored"},
        {entry(CATProduct, leaf(Parent_ItemRev_UID, "ERROR")), "Document of type catproduct ignored"},
        {drawing, nullptr},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.journal ? c.journal : "drawing");
        JNLManager::clear();
        model.session->release();
        run(answer(2, c.first + drawing));
        QELWorkSpace* made = model.session->getWorkSpace("D.CATDrawing+++D.CATDrawing+++D.CATDrawing");
        // The first entry of another kind ends the reading.
        EXPECT_EQ(c.journal == nullptr, made != nullptr);
        if (c.journal) {
            EXPECT_TRUE(JNLManager::contains(c.journal));
        } else {
            EXPECT_TRUE(made->instanceOf("CV5CAAQELWORKSPACE_CLASSNAME"));
        }
    }
}

TEST_F(ReaderDriver, ActiveDocumentRules) {
    PROCManager::setManageSavableStatusForNonSave(true);
    PROCManager::setIsProcessStateDetails(true);
    CATDocument active("C:\\work\\Part.CATPart");
    const char* const catalog = " document is comp_catalog in state details no mask to update";
    struct Case {
        const char* name;
        bool activeWorkspace, defaultDocument, factory;
        const char* fileName;
        const char* error;   // detail of the 2103 error that ends the run
        const char* journal; // expected journal line
        int occurrences;
    } cases[] = {
        {"no active workspace", false, true, false, "Root.CATProduct", "p_active_wsp", nullptr, 0},
        {"no default document", true, false, false, "Root.CATProduct", "p_active_document", nullptr, 0},
        {"catalog in state details", true, true, false, "Cat.catalog", nullptr, catalog, 0},
        {"factory on a catalog component", true, true, true, "Root.CATProduct", nullptr, catalog, 0},
        {"ordinary part", true, true, false, "Root.CATPart", nullptr, nullptr, 1},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        JNLManager::clear();
        EMHManager::clear();
        model.workspace->setActiveWorkspace(c.activeWorkspace);
        model.workspace->setWorkSpaceDefaultDocument(c.defaultDocument ? model.rootDocument : nullptr);
        model.rootDocument->setFileName(c.fileName);
        PROCManager::setIsProcessStateDetailsFactory(c.factory);
        CV5CAAToolsCommon::setActiveCATDocument(c.factory ? &active : nullptr);
        model.partDocument->setIsCatalogComp(c.factory);
        auto reader = run(validAnswer());
        ASSERT_EQ(c.error ? 1u : 0u, EMHManager::entries().size());
        if (c.error) {
            EXPECT_EQ("QELXMLToDM::execute", EMHManager::entries()[0].function);
            EXPECT_EQ(2103, EMHManager::entries()[0].code);
            EXPECT_EQ(c.error, EMHManager::entries()[0].detail);
        }
        if (c.journal) {
            EXPECT_TRUE(JNLManager::contains(c.journal));
        }
        EXPECT_EQ(c.occurrences, reader->getOccurrences().size());
    }
}

TEST_F(ReaderDriver, LoadFlagGoesToTheDefaultDocumentOfAProductInCheckout) {
    PROCManager::setManageSavableStatusForNonSave(true);
    PROCManager::setIsProcessCheckout(true);
    const std::string ws = leaf(POINTER_ADDRESS, pointerOf(model.workspace));
    run(answer(3, entry(CATPart, ws + leaf(Load_Flag, "4")) + entry(CATProduct, ws + leaf(Load_Flag, "7")) +
                      entry(CATPart, leaf(Load_Flag, "9"))));
    EXPECT_EQ(4, model.rootDocument->getIntegerProperty("Load_Flag")) << "only part and unknown entries carry it";
    EXPECT_TRUE(JNLManager::contains("Cannot find balise POINTER_ADDRESS"));
}

TEST_F(ReaderDriver, EntryMapKeepsLeafTextAndBlockPositions) {
    const std::string shapes = element(Shapes, count(1) + element(SR, "s1\ns2\n"));
    const std::string text = leaf(Item_ID, "A") + leaf(Nomenclature, "one\ntwo\nthree") + leaf(Item_ID, "B") +
                             "stray line\n" + shapes + "</Item_Info>\n";
    QELXMLToDM reader(writeAnswer("entry_map.xml", text).c_str());
    ASSERT_EQ(0, Access::openFile(reader));
    QELAnswerEntry values;
    const QELAnswerEntry* map = &values;
    long long pos = 0;
    EXPECT_TRUE(Access::getValuesAndStore(reader, 0, pos, values, "</Item_Info>"));
    const auto value = [map](const char* key) {
        const CATUnicodeString* found = map->find(key);
        return found ? found->ToLatin1() : std::string("<absent>");
    };
    EXPECT_EQ("A", value(Item_ID)) << "the first of two wins";
    EXPECT_EQ("one\ntwo\nthree", value(Nomenclature)) << "line feeds, no trailing blank";
    EXPECT_EQ("<absent>", value("stray line"));
    EXPECT_EQ(static_cast<long long>(text.size()), pos);
    EXPECT_EQ(std::to_string(text.find(shapes) + 9), value(Shapes));
    for (int read = 0; read < 2; ++read) {
        long long at = 0;
        EXPECT_EQ(1, Access::readBlockCount(reader, map, Shapes, at));
        auto list = Access::getBaliseValueListByName(reader, at, SR, at);
        ASSERT_EQ(2, list->size());
        EXPECT_EQ("s2", (*list)[1].ToLatin1());
    }
    values.clear();
    EXPECT_EQ(0, map->size());
    EXPECT_EQ("<absent>", value("Item_ID"));
}

// The entry's storage is reused from entry to entry: what one entry held must
// never be found in the next, whatever their sizes, and the first value of a
// key wins even after the index has grown.
TEST(ReaderEntry, EntriesOfAnySizeFollowOneAnother) {
    QELAnswerEntry values;
    const auto value = [&values](const std::string& key) {
        const CATUnicodeString* found = values.find(key);
        return found ? found->ToLatin1() : std::string("<absent>");
    };
    struct Case {
        const char* name;
        int keys; // "k0" .. "k<keys-1>", each valued "v<i>", then each again valued "again"
    } cases[] = {{"first, empty", 0}, {"large", 5000}, {"small after large", 3}, {"large again", 700}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        values.clear();
        for (int i = 0; i < c.keys; ++i) EXPECT_TRUE(values.add("k" + std::to_string(i), "v" + std::to_string(i)));
        for (int i = 0; i < c.keys; ++i) EXPECT_FALSE(values.add("k" + std::to_string(i), "again"));
        ASSERT_EQ(c.keys, values.size());
        for (int i = 0; i < c.keys; ++i) ASSERT_EQ("v" + std::to_string(i), value("k" + std::to_string(i))) << i;
        // Keys of the earlier, larger entries.
        for (int i = c.keys; i < 5000; i += 97) EXPECT_EQ("<absent>", value("k" + std::to_string(i))) << i;
        int order = 0;
        for (const QELAnswerEntry::Value& v : values) EXPECT_EQ("k" + std::to_string(order++), v.key.ToLatin1());
        EXPECT_EQ(c.keys, order) << "answer order, each key once";
    }
}

// ---- bad answers ---------------------------------------------------------------

TEST_F(ReaderDriver, BadAnswersEndWithAJournalLineOrDoNothing) {
    const std::string stale = [] {
        QELWorkSpace gone;
        return pointerOf(&gone);
    }();
    const std::string occ = pointerOf(model.occurrence);
    const std::string valid = validAnswer();
    std::string unclosedRoot = answer(3, occurrenceEntry(occ));
    unclosedRoot.resize(unclosedRoot.size() - std::string("</DESCFILE>\n").size());
    const std::string high = "Pi\xE8" "ce\xFF";
    struct Case {
        const char* name;
        std::string text; // "-": no file at all
        const char* journal; // null: read cleanly, or a clean no-op
        int occurrences;
        bool crlf;
    } cases[] = {
        {"missing file", "-", "Error while opening desc.xml file", 0, false},
        {"empty file", "", "Balise DESC_FILE not found", 0, false},
        {"second line", std::string(kDeclaration) + "<DESC>\n" + count(1), "Balise DESC_FILE not found", 0, false},
        {"count missing", std::string(kDeclaration) + "<DESCFILE>\n" + occurrenceEntry(occ) + "</DESCFILE>\n",
         "NBElements not found", 0, false},
        {"count negative", answer(-3, occurrenceEntry(occ)), "0 entries announced, more found", 0, false},
        {"count zero", answer(0, occurrenceEntry(occ)), "0 entries announced, more found", 0, false},
        {"count far larger", answer(1000000, occurrenceEntry(occ)), "1000000 entries announced, 1 found", 1, false},
        {"count larger, root not closed", unclosedRoot, "3 entries announced, 1 found", 1, false},
        {"block count far larger", answer(1, occurrenceEntry(occ, "U", 1000000)), "LinkedDocs holds fewer", 1, false},
        {"block without closing line", answer(1, entry(CATPart, leaf(POINTER_ADDRESS, occ) + "<LinkedDocs>\n")),
         "Unexpected end of file", 0, false},
        {"Item_Info without closing line",
         answer(2, element(CATPart, "<Item_Info>\n" + leaf(POINTER_ADDRESS, occ)) + occurrenceEntry(occ)),
         "</Item_Info> is missing", 1, false},
        {"entry without Item_Info", answer(2, element(CATPart, leaf("Other", "x")) + occurrenceEntry(occ)),
         "Entry 1 <CATPart> holds no Item_Info", 1, false},
        {"element without value line",
         answer(1, entry(CATPart, leaf(POINTER_ADDRESS, occ) + "<Occ_UID>\n</Occ_UID>\n")), "Unexpected end of file", 0,
         false},
        {"forged pointer", answer(1, occurrenceEntry("NOT-A-HANDLE")), "POINTER_ADDRESS [NOT-A-HANDLE] designates no",
         0, false},
        {"stale pointer", answer(1, occurrenceEntry(stale)), "designates no component", 0, false},
        {"line of 100000 characters", answer(1, occurrenceEntry(occ, std::string(100000, 'v'))), nullptr, 1, false},
        {"CR LF", valid, nullptr, 1, true},
        {"no final line end", valid.substr(0, valid.size() - 1), nullptr, 1, false},
        {"bytes above 0x7F", answer(1, occurrenceEntry(occ, high)), nullptr, 1, false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        JNLManager::clear();
        const std::string path = c.text == "-" ? qeltest::scratchDir() + "no_such_answer.xml"
                                               : writeAnswer("bad_answer.xml", c.text, c.crlf);
        const auto begin = std::chrono::steady_clock::now();
        QELXMLToDM reader(path.c_str());
        reader.execute(model.session);
        EXPECT_LT(std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count(), 5.0);
        EXPECT_FALSE(Access::isOpen(reader));
        EXPECT_EQ(c.occurrences, reader.getOccurrences().size());
        EXPECT_EQ(c.journal != nullptr, reportedBadAnswer());
        if (c.journal) {
            EXPECT_TRUE(JNLManager::contains(c.journal));
        }
    }
    EXPECT_EQ(high, model.occurrence->getStringProperty("Occ_UID").ToLatin1());
}

// Every answer one line short or one line long: deleting or repeating any
// single line of a valid answer, closing tags that close something else, a
// thousand levels of nesting and a million announced entries in ten lines.
// Each reading ends promptly and leaves the model whole (the occurrences it
// answers are live, the host's links stay); when it applies less than the
// valid answer would, the journal says so. A repeated value line is a value
// over two lines, and the options are optional: those stay silent.
TEST_F(ReaderDriver, AnswersOneLineOffOrMalformedAreReadSafely) {
    const std::string valid = validAnswer();
    std::vector<std::string> lines;
    for (size_t at = 0; at < valid.size();) {
        const size_t end = valid.find('\n', at) + 1;
        lines.push_back(valid.substr(at, end - at));
        at = end;
    }
    const std::string occ = pointerOf(model.occurrence);
    std::string nested;
    for (int i = 0; i < 1000; ++i) nested = element("Deep", nested.empty() ? leaf("Leaf", "v") : nested);
    std::string nestedEntries = occurrenceEntry(occ);
    for (int i = 0; i < 1000; ++i) nestedEntries = element(CATPart, nestedEntries);
    std::string nestedBlocks = count(1) + leaf(Attribut, "Drawing.CATDrawing");
    for (int i = 0; i < 1000; ++i) nestedBlocks = element(LinkedDocs, nestedBlocks);

    struct Case {
        std::string name;
        std::string text;
    };
    std::vector<Case> cases;
    for (size_t i = 0; i < lines.size(); ++i) {
        std::string deleted, repeated;
        for (size_t j = 0; j < lines.size(); ++j) {
            if (j != i) deleted += lines[j];
            repeated += lines[j];
            if (j == i) repeated += lines[j];
        }
        cases.push_back({"line " + std::to_string(i + 1) + " deleted: " + lines[i], deleted});
        cases.push_back({"line " + std::to_string(i + 1) + " repeated: " + lines[i], repeated});
    }
    const auto replaced = [&valid](const std::string& what, const std::string& by) {
        std::string text = valid;
        return text.replace(text.rfind(what), what.size(), by);
    };
    cases.push_back({"value closed by another tag", replaced("</Occ_UID>", "</Item_ID>")});
    cases.push_back({"entry closed by another type", replaced("</CATPart>", "</CATProduct>")});
    cases.push_back({"Item_Info closed by the entry's tag", replaced("</Item_Info>", "</CATPart>")});
    cases.push_back({"block closed by another block", replaced("</LinkedDocs>", "</Sheets>")});
    cases.push_back({"root closed by another tag", replaced("</DESCFILE>", "</Options>")});
    cases.push_back(
        {"a thousand nested unknown elements", answer(1, entry(CATPart, leaf(POINTER_ADDRESS, occ) + nested))});
    cases.push_back({"a thousand nested entries", answer(1, nestedEntries)});
    cases.push_back({"a thousand nested Item_Info", answer(1, element(CATPart, element(Item_Info, nested)))});
    cases.push_back({"a thousand nested blocks",
                     answer(1, entry(CATPart, leaf(POINTER_ADDRESS, occ) + leaf(Occ_UID, "OCC-NEW") + nestedBlocks))});
    cases.push_back({"a million entries in ten lines", answer(1000000, entry(CATPart, leaf(POINTER_ADDRESS, occ)))});

    const auto begin = std::chrono::steady_clock::now();
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        JNLManager::clear();
        model.occurrence->addStringProperty("Occ_UID", "OCC-1");
        model.rootItem->addStringProperty("Item_ID", "");
        auto reader = run(c.text);
        const bool applied = reader->getOccurrences().size() == 1 &&
                             model.occurrence->getStringProperty("Occ_UID").ToLatin1().find("OCC-NEW") != std::string::npos &&
                             model.rootItem->getStringProperty("Item_ID").ToLatin1().find("ROOT-ID") != std::string::npos;
        if (!applied) {
            EXPECT_TRUE(reportedBadAnswer());
        }
        ASSERT_LE(reader->getOccurrences().size(), 1);
        if (reader->getOccurrences().size() == 1) {
            EXPECT_EQ(model.occurrence, reader->getOccurrences()[0]);
        }
        ASSERT_EQ(model.occurrence, QELHandleTable::resolve(model.occurrence->get_Handle()));
        ASSERT_EQ(model.workspace, QELHandleTable::resolve(model.workspace->get_Handle()));
        EXPECT_EQ(model.workspace, model.occurrence->getLinkedWorkSpace());
        EXPECT_EQ(model.relative, model.occurrence->getLinkedRelativeOccurrence());
    }
    EXPECT_LT(std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count(), 20.0);
}

} // namespace
