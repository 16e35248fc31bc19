#include <gtest/gtest.h>

#include "QELElementNames.h"
#include "QELStatus.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "QELDMToXMLPrimitivesAccess.h"
#include "QELLink.h"
#include "WriterDriverSupport.h"

using writertest::codesReported;
using writertest::describe;
using writertest::lines;
using writertest::valuesOf;
using Access = QELDMToXMLPrimitivesAccess;

namespace {

class WriterDriverTest : public writertest::WriterTest {
public:
    void SetUp() override {
        writertest::WriterTest::SetUp();
        // Save phase 1: every node handed to writeDesc gets a block that
        // starts with its POINTER_ADDRESS.
        PROCManager::setIsCommandSave(true);
        PROCManager::setIsPhasePhase1(true);
    }

    // Gives `component` a readable name in the block lists below.
    template <typename T> T* label(T* component, const std::string& name) {
        _labels[writertest::handleOf(component)] = name;
        return component;
    }
    QELAbsoluteOccurrence* occurrence(QELWorkSpace* ws, QELComponent* parent, const std::string& name, int index) {
        return label(m.occurrence(ws, parent, name, index), name);
    }
    CV5CAAQELWorkSpace* workspace(const std::string& name, bool active, int index = 0) {
        return label(m.workspace(name, active, index), name);
    }

    // The components described, in file order, by the POINTER_ADDRESS that
    // opens each block.
    std::vector<std::string> blocks(const std::vector<std::string>& out) const {
        std::vector<std::string> names;
        for (size_t i = 0; i + 2 < out.size(); ++i) {
            if (out[i] != "<Item_Info>" || out[i + 1] != "<POINTER_ADDRESS>") continue;
            auto found = _labels.find(out[i + 2]);
            names.push_back(found == _labels.end() ? "?" + out[i + 2] : found->second);
        }
        return names;
    }

    static std::vector<std::string> run(QELSession* session) {
        return describe([session](QELDMToXML& w) { w.execute(session); });
    }
    static int announced(const std::vector<std::string>& out) {
        auto values = valuesOf(out, QELElement::NBElements);
        return values.empty() ? -1 : std::stoi(values[0]);
    }
    static bool countMismatchReported(const char* function) {
        for (const auto& e : EMHManager::entries())
            if (e.code == 2104) return e.function == function && e.detail.empty();
        return false;
    }

    writertest::ModelBuilder m;

private:
    std::map<std::string, std::string> _labels;
};

using Names = std::vector<std::string>;

// ---- the ordinary traversal ---------------------------------------------------

TEST_F(WriterDriverTest, DeliberateCountMismatchesAreReported) {
    struct Case {
        const char* what;
        void (*build)(writertest::ModelBuilder&, WriterDriverTest&);
        int announced;
        Names written;
    };
    // Each model is built in a fresh session.
    const Case cases[] = {
        {"the only workspace is invisible",
         [](writertest::ModelBuilder&, WriterDriverTest& t) {
             t.workspace("Root", true)->addBooleanProperty("IsVisible", false);
         },
         0, {"Root"}},
        {"an ignored occurrence with two children",
         [](writertest::ModelBuilder&, WriterDriverTest& t) {
             QELWorkSpace* ws = t.workspace("Root", true);
             QELAbsoluteOccurrence* ignored = t.occurrence(ws, ws, "Ignored", 0);
             ignored->addBooleanProperty("IsAnIgnoreNode", true);
             t.occurrence(ws, ignored, "Child1", 0);
             t.occurrence(ws, ignored, "Child2", 1);
         },
         3, {"Root"}},
        {"a managed broken icon with a child",
         [](writertest::ModelBuilder&, WriterDriverTest& t) {
             PROCManager::setManageInvisibleBrokenIcon(true);
             QELWorkSpace* ws = t.workspace("Root", true);
             QELAbsoluteOccurrence* broken = t.occurrence(ws, ws, "Broken", 0);
             broken->addBooleanProperty("IsBrokenIcon", true);
             t.occurrence(ws, broken, "Child", 0);
             t.occurrence(ws, ws, "Sound", 1);
         },
         3, {"Root", "Sound"}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        EMHManager::clear();
        c.build(m, *this);
        auto out = run(m.session());
        EXPECT_EQ(announced(out), c.announced);
        EXPECT_EQ(blocks(out), c.written);
        EXPECT_TRUE(countMismatchReported("QELDMToXML::executeForNonCatalogWorkSpace"));
        QELSession::freeModel();
        PROCManager::setManageInvisibleBrokenIcon(false);
    }
}

TEST_F(WriterDriverTest, StateDetailsFactoryCountsEachSecondaryDocument) {
    PROCManager::reset();
    PROCManager::setIsProcessStateDetailsFactory(true);
    QELWorkSpace* ws = workspace("Root", true);
    auto* primary = m.documentOf(ws->getItem());
    for (const char* name : {"Mesh.model", "Loads.model"}) {
        auto* secondary = QELModelHeap::adopt(new CV5CAAQELDocument(name, EnumDocumentType_Model));
        secondary->addBooleanProperty("IsSecondary", true);
        m.session()->addDocument(secondary);
        primary->addGRMDocumentLink("CATIA_secondary_Link_type", secondary);
        label(secondary, name);
    }
    auto out = run(m.session());
    EXPECT_EQ(announced(out), 3);
    EXPECT_EQ(blocks(out), Names({"Root", "Mesh.model", "Loads.model"}));
    EXPECT_FALSE(countMismatchReported("QELDMToXML::executeForNonCatalogWorkSpace"));
}

// ---- walks that must not fail on odd models --------------------------------------

// A chain much deeper than any call stack would take recursively.
TEST_F(WriterDriverTest, DeepAssembliesAndLoopingLinksEndCleanly) {
    PROCManager::reset();
    CV5CAAQELWorkSpace* ws = m.workspace("Deep", true);
    ws->setWorkSpaceType(EnumDocumentType_Catalog);
    const int depth = 100000;
    std::vector<QELAbsoluteOccurrence*> chain;
    chain.reserve(depth);
    for (int i = 0; i < depth; ++i) {
        auto* occ = QELModelHeap::adopt(new QELAbsoluteOccurrence());
        occ->set_Name(("n" + std::to_string(i)).c_str());
        if (chain.empty()) {
            ws->linkAbsoluteOccurrence(occ);
        } else {
            chain.back()->linkChildAbsoluteOccurrence(occ);
            occ->linkParentAbsoluteOccurrence(chain.back());
        }
        chain.push_back(occ);
    }
    {
        QELDMToXML w(writertest::tempPath("deep.xml").c_str());
        EXPECT_EQ(Access::numberOfObjectsInWspForCatalog(w, ws), depth + 1);
        Access::recurseOnAbsoluteOccurrence(w, chain.front(), m.session());
    }

    // A child link back to an ancestor, ordered after the real child: the
    // walk does not go round.
    chain[1]->addIntegerProperty("IndiceOfAbsolute", 5);
    chain[2]->linkChildAbsoluteOccurrence(chain[1]);
    QELDMToXML w(writertest::tempPath("loop.xml").c_str());
    EXPECT_EQ(Access::numberOfObjectsInWspForCatalog(w, ws), depth + 1);
    EXPECT_TRUE(JNLManager::contains("occurrence n1 is its own ancestor"));
}

// ---- the update-status description ----------------------------------------------

TEST_F(WriterDriverTest, UpdateStatusBrokenIconLowersTheCountButIsDescribed) {
    PROCManager::reset();
    PROCManager::setIsCommandUpdateStatus(true);
    auto* part = label(m.documentOf(m.item("Part")), "Part");
    auto* broken = label(m.documentOf(m.item("Broken")), "Broken");
    broken->setIsABrokenIcon(1);
    auto* product = label(m.documentOf(m.item("Product", EnumDocumentType_Product)), "Product");
    product->addGRMDocumentLink("CATIA_secondary_Link_type", m.documentOf(m.item("S1", EnumDocumentType_Model)));
    product->addGRMDocumentLink("CATIA_secondary_Link_type", m.documentOf(m.item("S2", EnumDocumentType_Model)));
    TYPVectorPCV5CAAQELDocument documents;
    for (auto* d : {part, broken, product}) documents.push_back(d);

    struct Case {
        bool factory;
        int announced;
        bool mismatch;
    } cases[] = {{false, 3, false}, {true, 4, true}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.factory ? "state-details factory" : "plain");
        PROCManager::setIsProcessStateDetailsFactory(c.factory);
        EMHManager::clear();
        JNLManager::clear();
        long result = -1;
        auto out = describe([&](QELDMToXML& w) { result = w.execute(m.session(), &documents); });
        EXPECT_EQ(result, 0);
        EXPECT_EQ(announced(out), c.announced);
        EXPECT_EQ(blocks(out), Names({"Part", "Broken", "Product"}));
        EXPECT_EQ(countMismatchReported("QELDMToXML::execute"), c.mismatch);
        EXPECT_EQ(JNLManager::contains("It is a broken icon, we skip it"), c.factory);
    }

    // No list at all: nothing announced, and the block writer's status is
    // the result.
    long result = 0;
    auto none = describe([&](QELDMToXML& w) { result = w.execute(m.session(), nullptr); });
    EXPECT_EQ(announced(none), 0);
    EXPECT_EQ(result, QEL_E_FAIL);
    EXPECT_EQ(none.back(), "</DESCFILE>");

    // Another command announces the documents and writes no block.
    PROCManager::setIsCommandUpdateStatus(false);
    auto out = describe([&](QELDMToXML& w) { w.execute(m.session(), &documents); });
    EXPECT_TRUE(blocks(out).empty());
    EXPECT_EQ(out.back(), "</DESCFILE>");
}

// ---- the document lists ------------------------------------------------------------

TEST_F(WriterDriverTest, EmptyItemListGivesAnEmptyFile) {
    const std::string path = writertest::tempPath("items.xml");
    TYPVectorPQELItem items;
    long result = -1;
    {
        QELDMToXML w(path.c_str());
        result = w.execute(&items);
    }
    struct stat info {};
    ASSERT_EQ(stat(path.c_str(), &info), 0);
    EXPECT_EQ(info.st_size, 0);
    EXPECT_EQ(result, 0);
    std::remove(path.c_str());
}

// ---- around the export ----------------------------------------------------------------

TEST_F(WriterDriverTest, StateDetailsUpdateConsumesTheStatusWindowSelection) {
    const std::string directory = writertest::tempPath("tmpdir");
    mkdir(directory.c_str(), 0700);
    ENVManager::setTempDirectory((directory + "/").c_str());
    const std::string selection = directory + "/documentsOfStatusWindow.xml";
    std::ofstream(selection) << "Root.CATProduct\n";
    workspace("Root", true);

    PROCManager::setIsCommandStateDetailsUpdate(false);
    run(m.session());
    EXPECT_EQ(access(selection.c_str(), F_OK), 0);
    PROCManager::setIsCommandStateDetailsUpdate(true);
    run(m.session());
    EXPECT_NE(access(selection.c_str(), F_OK), 0);
    rmdir(directory.c_str());
}

TEST_F(WriterDriverTest, UnwritableOutputStopsCleanly) {
    QELWorkSpace* ws = workspace("Root", true);
    occurrence(ws, ws, "A", 0);
    const std::string path = writertest::tempPath("missing") + "/out.xml";
    bool failed = false;
    {
        QELDMToXML w(path.c_str());
        w.execute(m.session());
        failed = w.hasFailed();
    }
    EXPECT_TRUE(failed);
    int reported = 0;
    for (const auto& e : EMHManager::entries()) reported += e.code == 2102;
    EXPECT_EQ(reported, 1);
    // The blocks were still counted as they were opened, so no false mismatch.
    EXPECT_FALSE(countMismatchReported("QELDMToXML::executeForNonCatalogWorkSpace"));
}

// ---- catalog workspaces ------------------------------------------------------------------

class WriterCatalogTest : public WriterDriverTest {
protected:
    // A catalog workspace: Root / Family (Screw, Nut / NutInsert), Ignored / Hidden.
    void buildCatalog() {
        ws = workspace("Root", true);
        ws->setWorkSpaceType(EnumDocumentType_Catalog);
        QELAbsoluteOccurrence* family = occurrence(ws, ws, "Family", 0);
        occurrence(ws, family, "Screw", 1);
        QELAbsoluteOccurrence* nut = occurrence(ws, family, "Nut", 0);
        occurrence(ws, nut, "NutInsert", 0);
        QELAbsoluteOccurrence* ignored = occurrence(ws, ws, "Ignored", 1);
        ignored->addBooleanProperty("IsAnIgnoreNode", true);
        occurrence(ws, ignored, "Hidden", 0);
        QELWorkSpace* passive = workspace("Passive", false, 1);
        occurrence(passive, passive, "PassiveOcc", 0);
    }

    CV5CAAQELWorkSpace* ws = nullptr;
};

TEST_F(WriterCatalogTest, CatalogIsItsWorkspaceThenItsOccurrencesAndTheCountMatches) {
    buildCatalog();
    auto out = run(m.session());
    EXPECT_EQ(blocks(out), Names({"Root", "Family", "Nut", "NutInsert", "Screw"}));
    EXPECT_EQ(announced(out), 5);
    EXPECT_EQ(codesReported(), std::vector<long>{2103});
    EXPECT_TRUE(JNLManager::contains("BEGIN QELDMToXML::executeForCatalogWorkSpace"));
}

// Each secondary flagged "IsSecondary" gets one block of its own, however
// many described documents point to it; the count says so in advance.
TEST_F(WriterCatalogTest, StateDetailsFactoryCountsTheSecondaryBlocks) {
    PROCManager::reset();
    PROCManager::setIsProcessStateDetailsFactory(true);
    buildCatalog();
    auto secondary = [&](const char* name, bool flagged) {
        auto* document = QELModelHeap::adopt(new CV5CAAQELDocument(name, EnumDocumentType_Model));
        document->addBooleanProperty("IsSecondary", flagged);
        return label(document, name);
    };
    auto* mesh = secondary("Mesh.model", true);
    auto* loads = secondary("Loads.model", true);
    auto* notes = secondary("Notes.model", false);
    auto* root = m.documentOf(ws->getItem());
    auto* screw = static_cast<QELDocument*>(m.session()->getDocument("Screw.CATPart"));
    ASSERT_TRUE(screw);
    root->addGRMDocumentLink("CATIA_secondary_Link_type", mesh);
    screw->addGRMDocumentLink("CATIA_secondary_Link_type", mesh);
    screw->addGRMDocumentLink("CATIA_secondary_Link_type", loads);
    screw->addGRMDocumentLink("CATIA_secondary_Link_type", notes);

    auto out = run(m.session());
    EXPECT_EQ(blocks(out), Names({"Root", "Mesh.model", "Family", "Nut", "NutInsert", "Screw", "Loads.model"}));
    EXPECT_EQ(announced(out), 7);
    EXPECT_FALSE(countMismatchReported("QELDMToXML::executeForCatalogWorkSpace"));
}

TEST_F(WriterCatalogTest, StateDetailsUpdateDescribesTheSelectedDocuments) {
    buildCatalog();
    const std::string directory = writertest::tempPath("tmpdir");
    mkdir(directory.c_str(), 0700);
    ENVManager::setTempDirectory((directory + "/").c_str());
    const std::string selection = directory + "/documentsOfStatusWindow.xml";
    PROCManager::setIsCommandStateDetailsUpdate(true);

    struct Case {
        const char* selected; // null: no selection file at all
        Names written;
        bool unreadable;
    } cases[] = {
        // A selected document below an unselected one is still reached.
        {"NutInsert.CATPart\nScrew.CATPart\n\nnutinsert.catpart\n", {"Root", "NutInsert", "Screw"}, false},
        // Hidden sits below an ignored node: selecting it changes nothing.
        {"Hidden.CATPart\n", {"Root"}, false},
        {nullptr, {"Root"}, true},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.selected ? c.selected : "no selection file");
        EMHManager::clear();
        if (c.selected) std::ofstream(selection) << c.selected;
        auto out = run(m.session());
        EXPECT_EQ(blocks(out), c.written);
        EXPECT_EQ(announced(out), static_cast<int>(c.written.size()));
        EXPECT_FALSE(countMismatchReported("QELDMToXML::executeForCatalogWorkSpaceForUpdateStateDetails"));
        bool unreadable = false;
        for (const auto& e : EMHManager::entries())
            unreadable |= e.code == 2102 && e.function == "QELDMToXML::execute" && e.detail == "readListOfElements";
        EXPECT_EQ(unreadable, c.unreadable);
        EXPECT_NE(access(selection.c_str(), F_OK), 0);
    }
    rmdir(directory.c_str());
}

} // namespace
