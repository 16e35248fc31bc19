// Answer blocks that rename files: external documents, composite plies and
// analysis files.

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "CV5CAAQELStacking.h"
#include "QELXMLToDMUpdateAccess.h"
#include "QELElementNames.h"

using Access = QELXMLToDMUpdateAccess;
using namespace reader_test;

namespace {

std::string attribut(const std::string& a, const std::string& b) {
    return "<Attribut>\n" + a + "\n" + b + "\n</Attribut>\n";
}

class ReaderFiles : public ReaderTest {
protected:
    QELDocument* external(const char* name, const char* oldName, bool primary = false) {
        auto* doc = QELModelHeap::adopt(new CV5CAAQELDocument(name, EnumDocumentType_Unset));
        doc->setIsPrimaryDocument(primary);
        doc->addStringProperty("Doc_Old_File_Name", oldName);
        QELSession::getInstance()->addDocument(doc);
        return doc;
    }
    void readExternals(const std::string& block) {
        LoadedEntry entry("externals.xml", element(QELElement::Externals, block));
        EXPECT_EQ(0, Access::readAndUpdateExternalFiles(entry.reader(), QELSession::getInstance(), entry.map()));
    }
};

TEST_F(ReaderFiles, ExternalBlockDefectsEndWithAJournalLine) {
    QELDocument* a = external("a", "a.txt");
    {
        LoadedEntry entry("no_externals.xml", leaf(QELElement::File_Name, "x"));
        EXPECT_EQ(0, Access::readAndUpdateExternalFiles(entry.reader(), QELSession::getInstance(), entry.map()));
        EXPECT_TRUE(JNLManager::contains("There is no Externals balise."));
    }
    readExternals(count(1000000) + "<Attribut>\nlonely.txt\n</Attribut>\n" + attribut("a.txt", "A.txt"));
    EXPECT_EQ("A.txt", text(a->getStringProperty("New_File_name")));
    EXPECT_TRUE(JNLManager::contains("an Externals entry holds 1 lines instead of two"));
    EXPECT_TRUE(JNLManager::contains("Externals announces 1000000 elements but holds 2"));
}

// ---- PartComposites -------------------------------------------------------------

class ReaderComposites : public ReaderFiles {
protected:
    void SetUp() override {
        part = QELModelHeap::adopt(new CV5CAAQELDocument("Wing.CATPart", EnumDocumentType_Part));
        part->setIsPrimaryDocument(1);
        QELSession::getInstance()->addDocument(part);
        auto* stacking = QELModelHeap::adopt(new CV5CAAQELStacking("Stacking.1"));
        auto* group = QELModelHeap::adopt(new CV5CAAQELPliesGroup("Group.1"));
        auto* sequence = QELModelHeap::adopt(new CV5CAAQELSequence("Sequence.1"));
        ply1 = QELModelHeap::adopt(new CV5CAAQELPly("Ply.1"));
        ply2 = QELModelHeap::adopt(new CV5CAAQELPly("Ply.2"));
        part->addStacking(QELModelHeap::adopt(new CV5CAAQELStacking("Other")));
        part->addStacking(stacking);
        stacking->addPliesGroup(group);
        group->addSequence(sequence);
        sequence->addPly(ply1);
        sequence->addPly(ply2);
    }

    // An unclosed block swallows the end of the entry: the entry then does
    // not load completely, yet the block's position is stored.
    long readComposites(const std::string& block, bool crlf = false) {
        ply1->set3DRepresentationNewFileName("");
        ply1->set2DRepresentationNewFileName("");
        ply2->set3DRepresentationNewFileName("");
        ply2->set2DRepresentationNewFileName("");
        LoadedEntry entry("composites.xml", "<PartComposites>\n" + block, crlf);
        return Access::readAndUpdateCompositeFiles(entry.reader(), QELSession::getInstance(), entry.map());
    }
    static std::string ply(const std::string& name, const std::string& file3D, const std::string& file2D) {
        return "<Ply>\n" + name + "\n" + file3D + "\n" + file2D + "\n</Ply>\n";
    }
    static std::string open(const std::string& stacking) {
        return "<Stacking>\n" + stacking + "\n<PliesGroup>\nGroup.1\n<Sequence>\nSequence.1\n";
    }
    static const char* close() { return "</Sequence>\n</PliesGroup>\n</Stacking>\n"; }

    CV5CAAQELDocument* part = nullptr;
    CV5CAAQELPly* ply1 = nullptr;
    CV5CAAQELPly* ply2 = nullptr;
};

TEST_F(ReaderComposites, MissingClosingLinesAreReportedAndTheRestStillRead) {
    const std::string plies = ply("Ply.1", "P1.igs", "P1.dxf") + ply("Ply.2", "P2.igs", "P2.dxf");
    const struct {
        std::string block;
        const char* journal;
    } cases[] = {
        {open("Stacking.1") + "<Ply>\nPly.1\nP1.igs\nP1.dxf\n" + ply("Ply.2", "P2.igs", "") + close() +
             "</PartComposites>\n",
         "ERROR: </Ply> is missing in Desc"},
        // The description's own ply values after the two file lines.
        {open("Stacking.1") + "<Ply>\nPly.1\nP1.igs\nP1.dxf\n<Material>\nCarbon\n</Material>\n</Ply>\n" +
             ply("Ply.2", "P2.igs", "") + close() + "</PartComposites>\n",
         "ERROR: </Ply> is missing in Desc"},
        {open("Stacking.1") + plies + "</PliesGroup>\n</Stacking>\n</PartComposites>\n",
         "ERROR: </Sequence> is missing in Desc"},
        {open("Stacking.1") + plies + "</Sequence>\n</PliesGroup>\n</PartComposites>\n",
         "ERROR: </Stacking> is missing in Desc"},
        {open("Stacking.1") + plies, "ERROR: </PartComposites> is missing in Desc"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.block);
        JNLManager::clear();
        readComposites(c.block);
        const auto& journal = JNLManager::entries();
        EXPECT_EQ(1, std::count(journal.begin(), journal.end(), c.journal));
        EXPECT_EQ("P1.igs", text(ply1->get3DRepresentationNewFileName()));
        EXPECT_EQ("P2.igs", text(ply2->get3DRepresentationNewFileName()));
    }
}

TEST_F(ReaderComposites, HostFailureIsPassedBackAndOnlyAPrimaryDocumentIsRead) {
    const std::string block = open("Stacking.1") + ply("Ply.1", "P1.igs", "") + close() + "</PartComposites>\n";
    part->setStackingsStatus(-3);
    EXPECT_EQ(-3, readComposites(block));
    EXPECT_EQ("", text(ply1->get3DRepresentationNewFileName()));
    part->setStackingsStatus(0);
    part->setIsPrimaryDocument(0);
    EXPECT_EQ(0, readComposites(block));
    EXPECT_EQ("", text(ply1->get3DRepresentationNewFileName()));
}

// ---- AnalysisFiles ---------------------------------------------------------------

TEST_F(ReaderFiles, AnalysisListsAreReadUpToTheirCount) {
    const struct {
        std::string block;
        bool closed;
        std::vector<std::string> results, computations;
        const char* journal;
    } cases[] = {
        // Old lists are passed over; a count bounds its list.
        {count(2) +
             element(QELElement::AnalysisResultsFiles,
                     count(2) + leaf(QELElement::Attribut, "r1") + leaf(QELElement::Attribut, "r2")) +
             element("OldAnalysisResultsFiles", leaf(QELElement::Attribut, "r1.old")) +
             element(QELElement::AnalysisComputeFiles,
                     count(1) + leaf(QELElement::Attribut, "c1") + leaf(QELElement::Attribut, "extra")) +
             "</AnalysisFiles>\n",
         true,
         {"r1", "r2"},
         {"c1"},
         nullptr},
        {count(1) + element(QELElement::AnalysisResultsFiles, count(5) + leaf(QELElement::Attribut, "r1")) +
             "</AnalysisFiles>\n",
         true,
         {"r1"},
         {},
         "AnalysisResultsFiles announces 5 elements but holds 1"},
        // Neither the list nor the block is closed.
        {count(1) + "<AnalysisComputeFiles>\n" + count(3) + leaf(QELElement::Attribut, "c1"),
         false,
         {},
         {"c1"},
         "ERROR: </AnalysisFiles> is missing in Desc"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.block);
        LoadedEntry entry("analysis.xml", "<AnalysisFiles>\n" + c.block);
        TYPVectorCATUnicodeString* results = nullptr;
        TYPVectorCATUnicodeString* computations = nullptr;
        EXPECT_EQ(c.closed, Access::getValuesAndStoreAnalysisFiles(
                                entry.reader(), entry.block(QELElement::AnalysisFiles), results, computations));
        std::vector<std::string> r, k;
        for (const auto& s : *results) r.push_back(text(s));
        for (const auto& s : *computations) k.push_back(text(s));
        delete results;
        delete computations;
        EXPECT_EQ(c.results, r);
        EXPECT_EQ(c.computations, k);
        if (c.journal) {
            EXPECT_TRUE(JNLManager::contains(c.journal));
        }
    }
}

} // namespace
