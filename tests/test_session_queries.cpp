#include <gtest/gtest.h>

#include "QELLinkType.h"
#include "QELStatus.h"

#include <memory>

#include "JNLManager.h"
#include "QELItem.h"
#include "QELModelHeap.h"
#include "SampleModel.h"

namespace {

class SessionQueries : public ::testing::Test {
protected:
    void SetUp() override { m = SampleModel::build(); }
    void TearDown() override { QELSession::freeModel(); }
    SampleModel m;
};

std::vector<std::string> names(const TYPVectorPQELComponent& v) {
    std::vector<std::string> out;
    for (QELComponent* c : v) out.push_back(c ? c->get_Name().ConvertToChar() : "(null)");
    return out;
}

} // namespace

TEST_F(SessionQueries, ActiveAndPassiveWorkSpacesInIndexOrder) {
    EXPECT_EQ(m.session->getActiveWorkSpace(), m.active);
    std::unique_ptr<TYPVectorPQELWorkSpace> passive(m.session->getPassiveWorkSpaces());
    ASSERT_EQ(passive->size(), 2);
    EXPECT_EQ((*passive)[0], m.drawingWorkSpace); // registration order

    JNLManager::clear();
    TYPVectorPQELWorkSpace* ordered = nullptr;
    EXPECT_EQ(m.session->getOrderedPassiveWorkSpaces(ordered), 0);
    std::unique_ptr<TYPVectorPQELWorkSpace> owned(ordered);
    ASSERT_EQ(ordered->size(), 2);
    EXPECT_EQ((*ordered)[0], m.fixtureWorkSpace); // WorkspaceIndex 1
    EXPECT_EQ((*ordered)[1], m.drawingWorkSpace); // WorkspaceIndex 2
    EXPECT_TRUE(JNLManager::contains("BEGIN QELSession::getOrderedPassiveWorkSpaces"));
    EXPECT_TRUE(JNLManager::contains("END QELSession::getOrderedPassiveWorkSpaces (-1)"));
    JNLManager::clear();
}

TEST_F(SessionQueries, CreateWorkSpaceFindsByJoinedKeyOrMakesAnUnnamedOne) {
    auto* named = QELModelHeap::adopt(new QELWorkSpace());
    named->set_Name("A+++B+++C");
    m.session->addWorkSpace(named);
    int before = m.session->getWorkSpaceCount();
    EXPECT_EQ(m.session->createWorkSpace(EnumDocumentType_Part, "A", "B", "C"), named);
    EXPECT_EQ(m.session->getWorkSpaceCount(), before);

    QELWorkSpace* fresh = m.session->createWorkSpace(EnumDocumentType_Part, "X", "Y", "Z");
    ASSERT_NE(fresh, nullptr);
    EXPECT_EQ(fresh->get_Name(), CATUnicodeString(""));
    EXPECT_EQ(m.session->getWorkSpace(""), fresh);
    EXPECT_EQ(m.session->getWorkSpace("X+++Y+++Z"), nullptr);
}

TEST_F(SessionQueries, DocumentsByPropertyAndItemsToUpdate) {
    std::unique_ptr<TYPVectorPQELDocument> all(m.session->getAllQELDocuments());
    EXPECT_EQ(all->size(), m.session->getDocumentCount());
    EXPECT_EQ((*all)[0], m.gearbox);

    m.bolt->addStringProperty("Doc_Old_File_Name", "OldBolt.CATPart");
    EXPECT_EQ(m.session->getDocumentByOldName("OldBolt.CATPart"), m.bolt);
    EXPECT_EQ(m.session->getDocumentByOldName("Nothing"), nullptr);
    EXPECT_EQ(m.session->getDocumentByStringProperty("Part_Number", "CVR-\xC9-01"), m.cover);

    std::unique_ptr<TYPVectorPQELItem> none(m.session->getItemsWithMajExisting());
    ASSERT_NE(none, nullptr);
    EXPECT_EQ(none->size(), 0);
    m.shaftItem->addIntegerProperty("MAJ", 2);
    m.boltItem->addIntegerProperty("MAJ", 1);
    std::unique_ptr<TYPVectorPQELItem> toUpdate(m.session->getItemsWithMajExisting());
    ASSERT_EQ(toUpdate->size(), 1);
    EXPECT_EQ((*toUpdate)[0], m.shaftItem);
}

TEST(SessionQueriesEmpty, NoItemsGiveNoVectorAndNullComponentsFail) {
    QELSession* s = QELSession::getInstance();
    EXPECT_EQ(s->getItemsWithMajExisting(), nullptr);
    EXPECT_EQ(s->getDocumentByStringProperty("x", "y"), nullptr);
    EXPECT_EQ(s->getActiveWorkSpace(), nullptr);
    TYPVectorPQELComponent c;
    TYPVectorPQELDocument d;
    EXPECT_EQ(s->getOrderedLinkedComponents(nullptr, nullptr, c, d), QEL_E_FAIL);
    EXPECT_EQ(s->getLinkedComponents(nullptr, "VT_CATIAV5_DWGLINK"), nullptr);
    QELSession::freeModel();
}

TEST_F(SessionQueries, LinkedComponentsResolvePointedDocumentsToTheirWorkSpaces) {
    // The drawing points at the gearbox item, whose product is opened as the active workspace.
    std::unique_ptr<TYPVectorPQELComponent> fromDrawing(
        m.session->getLinkedComponents(m.drawingWorkSpace, "VT_CATIAV5_DWGLINK"));
    ASSERT_NE(fromDrawing, nullptr);
    EXPECT_EQ(names(*fromDrawing), (std::vector<std::string>{"Gearbox.CATProduct"}));
    EXPECT_EQ((*fromDrawing)[0], m.active);
    // The analysis points at the shaft part, which is not open as a workspace:
    // the link is passed over.
    auto* analysisWs = QELModelHeap::adopt(new QELWorkSpace());
    analysisWs->linkDocument(m.analysis);
    std::unique_ptr<TYPVectorPQELComponent> fromAnalysis(
        m.session->getLinkedComponents(analysisWs, "CATIA_analysis_Link_type"));
    ASSERT_NE(fromAnalysis, nullptr);
    EXPECT_EQ(fromAnalysis->size(), 0);
    // From an occurrence, the item's document is the source.
    EXPECT_EQ(m.session->getLinkedComponents(m.bolt1, "VT_CATIAV5_DWGLINK"), nullptr);
}

TEST_F(SessionQueries, OrderedLinkedComponentsWalkDepthFirstAndStayParallel) {
    TYPVectorPQELComponent components;
    TYPVectorPQELDocument documents;
    EXPECT_EQ(m.session->getOrderedLinkedComponents(m.drawingWorkSpace, m.drawing, components, documents), 0);
    // The drawing, then the product it shows (a product workspace drags nothing more).
    EXPECT_EQ(names(components), (std::vector<std::string>{"Gearbox.CATDrawing", "Gearbox.CATProduct"}));
    ASSERT_EQ(documents.size(), components.size());
    EXPECT_EQ(documents[0], m.drawing);
    EXPECT_EQ(documents[1], nullptr); // drawing links give no current document

    // An invisible or ignored workspace adds nothing.
    m.drawingWorkSpace->addBooleanProperty("IsVisible", false);
    TYPVectorPQELComponent none;
    TYPVectorPQELDocument noDocs;
    EXPECT_EQ(m.session->getOrderedLinkedComponents(m.drawingWorkSpace, m.drawing, none, noDocs), 0);
    EXPECT_EQ(none.size(), 0);
    EXPECT_EQ(noDocs.size(), 0);
}

TEST_F(SessionQueries, CatalogLinksCarryTheWorkSpaceDocumentAndHideInvisibleDesignTables) {
    // A catalog workspace pointing at two items: one holds a visible design
    // table, the other a hidden one.
    auto* catalogItem = QELModelHeap::adopt(new QELItem("Catalog"));
    QELDocument* catalog =
        catalogItem->createDocument(QELLinkType::LINKNAME_CHILD, EnumDocumentType_Catalog, "Std.catalog");
    auto* ws = QELModelHeap::adopt(new QELWorkSpace());
    ws->set_Name("Std.catalog");
    ws->linkDocument(catalog);
    ws->addBooleanProperty("IsVisible", true);
    ws->addIntegerProperty("FileType", 8);
    auto* shownItem = QELModelHeap::adopt(new QELItem("Shown table"));
    auto* hiddenItem = QELModelHeap::adopt(new QELItem("Hidden table"));
    QELDocument* shown =
        shownItem->createDocument(QELLinkType::LINKNAME_CHILD, EnumDocumentType_DesignTable, "Shown.xls");
    QELDocument* hidden =
        hiddenItem->createDocument(QELLinkType::LINKNAME_CHILD, EnumDocumentType_DesignTable, "Hidden.xls");
    shown->addBooleanProperty("IsDesignTableVisible", true);
    hidden->addBooleanProperty("IsDesignTableVisible", false);
    catalog->addGRMItemLink("CATIA_comp_catalog_link_type", shownItem);
    catalog->addGRMItemLink("CATIA_comp_catalog_link_type", hiddenItem);
    // ... and the drawing workspace, which in turn drags the product.
    catalog->addGRMItemLink("CATIA_comp_catalog_link_type", m.drawingItem);

    TYPVectorPQELComponent components;
    TYPVectorPQELDocument documents;
    EXPECT_EQ(m.session->getOrderedLinkedComponents(ws, nullptr, components, documents), 0);
    EXPECT_EQ(names(components), (std::vector<std::string>{"Std.catalog", "Shown.xls", "Gearbox.CATDrawing",
                                                           "Gearbox.CATProduct"}));
    ASSERT_EQ(documents.size(), 4);
    EXPECT_EQ(documents[1], catalog);
    EXPECT_EQ(documents[2], catalog); // the recursion gets the catalog document
    EXPECT_EQ(documents[3], nullptr);
}
