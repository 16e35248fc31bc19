#include <gtest/gtest.h>

#include <memory>

#include "QELAbsoluteOccurrence.h"
#include "QELAbsoluteView.h"
#include "QELDocument.h"
#include "QELFile.h"
#include "QELForm.h"
#include "QELItem.h"
#include "QELLink.h"
#include "QELLinkType.h"
#include "QELRelativeOccurrence.h"
#include "QELSession.h"

namespace {

class ItemTest : public ::testing::Test {
protected:
    void TearDown() override { QELSession::freeModel(); }
};

template <typename T> std::unique_ptr<T> owned(T* p) { return std::unique_ptr<T>(p); }

} // namespace

// ---- files and forms ----------------------------------------------------------------------

TEST_F(ItemTest, FileVersionHoldsTheExtensionAndTheFirstDocumentAnswers) {
    QELFile noDot("README");
    EXPECT_TRUE(noDot.isPropertyExist("File_Version"));
    EXPECT_EQ(noDot.getStringProperty("File_Version"), CATUnicodeString(""));

    QELFile file("Shaft.v3.CATPart");
    EXPECT_EQ(file.getStringProperty("File_Version"), CATUnicodeString("CATPart"));
    EXPECT_EQ(file.getLinkedDocument(), nullptr);

    QELDocument first("First"), second("Second");
    file.linkDocument(&first);
    file.linkDocument(&second);
    EXPECT_EQ(file.getLinkedDocument(), &first);
}

TEST_F(ItemTest, FormsOfOneTypeAndNameStayDistinct) {
    QELForm a("catpublication", "Face"), b("catpublication", "Face");
    EXPECT_NE(a.get_Name(), b.get_Name());
    EXPECT_EQ(a.get_Name().GetLengthInChar(), 36);
    EXPECT_EQ(a.getStringProperty("QELFRM_PROPERTY_NAME"), CATUnicodeString("Face"));
    EXPECT_EQ(a.getFormType(), CATUnicodeString("catpublication"));

    QELForm typed("checklist");
    EXPECT_FALSE(typed.isPropertyExist("QELFRM_PROPERTY_NAME"));

    QELItem item("I");
    item.linkForm(&a);
    item.linkForm(&b);
    ASSERT_NE(item.getLinkedForms("catpublication"), nullptr);
    EXPECT_EQ(item.getLinkedForms("catpublication")->size(), 2);
    EXPECT_EQ(item.getLinkedForms("review"), nullptr);
}

// ---- items and their documents -------------------------------------------------------------

TEST_F(ItemTest, CreateDocumentRegistersAndLinksBothWays) {
    QELItem item("I");
    QELSession* session = QELSession::getInstance();
    QELDocument* doc = item.createDocument("catpart", EnumDocumentType_Part, "Plate");
    ASSERT_NE(doc, nullptr);
    EXPECT_EQ(doc->get_Name(), CATUnicodeString("Plate"));
    EXPECT_EQ(doc->getType(), EnumDocumentType_Part);
    EXPECT_EQ(session->getDocument("Plate"), doc);
    EXPECT_EQ(item.getLinkedDocuments("catpart")->find("Plate"), doc);
    EXPECT_EQ(doc->getLinkedItems("catpart")->find("I"), &item);

    // Same document name, another reference name and another type.
    EXPECT_EQ(item.createDocument("master", EnumDocumentType_Drawing, "Plate"), doc);
    EXPECT_EQ(doc->getType(), EnumDocumentType_Part);
    EXPECT_EQ(session->getDocumentCount(), 1);
    EXPECT_EQ(item.getAllLinkedDocuments()->size(), 2);
    EXPECT_EQ(item.getLinkedDocuments("master")->find("Plate"), doc);
    EXPECT_EQ(doc->getAllLinkedItems()->size(), 2);
    EXPECT_EQ(doc->getLinkedItems("master")->find("I"), &item);

    // A document the caller registered is reused as it stands.
    QELDocument own("Own", EnumDocumentType_Product);
    session->addDocument(&own);
    QELItem other("Other");
    EXPECT_EQ(other.createDocument("catpart", EnumDocumentType_Part, "Own"), &own);
    EXPECT_EQ(own.getType(), EnumDocumentType_Product);
    EXPECT_EQ(own.getLinkedItems("catpart")->find("Other"), &other);

    // linkDocument files one direction only.
    QELDocument loose("Loose");
    other.linkDocument("extra", &loose);
    EXPECT_EQ(other.getLinkedDocuments("extra")->find("Loose"), &loose);
    EXPECT_EQ(loose.getAllLinkedItems(), nullptr);
}

TEST_F(ItemTest, AllLinkedFormsTakesEveryKeyWithoutAClassTest) {
    QELItem item("I");
    auto none = owned(item.getAllLinkedForms());
    ASSERT_NE(none, nullptr);
    EXPECT_EQ(none->size(), 0);

    QELForm p1("catpublication", "A"), c1("checklist"), p2("catpublication", "B");
    item.linkForm(&p1);
    item.linkForm(&c1);
    item.linkForm(&p2);
    // Something else filed under link 12 is taken too.
    QELDocument stray("Stray");
    item.addComponent(&stray, QELLinkType::ITM_FRM, "odd");

    auto forms = owned(item.getAllLinkedForms());
    ASSERT_EQ(forms->size(), 4);
    EXPECT_EQ((*forms)[0], &p1);
    EXPECT_EQ((*forms)[1], &p2);
    EXPECT_EQ((*forms)[2], &c1);
    EXPECT_EQ(static_cast<QELComponent*>((*forms)[3]), &stray);
}

// ---- assembly objects ----------------------------------------------------------------------

TEST_F(ItemTest, AssemblyObjectsAreFoundByKeyOrFirstEntry) {
    QELItem item("I");
    EXPECT_EQ(item.getLinkedAbsOcc(), nullptr);
    EXPECT_EQ(item.getLinkedAbsoluteViews("sig"), nullptr);

    QELAbsoluteOccurrence occ1, occ2;
    occ1.set_Name("A+++B");
    occ2.set_Name("A+++C");
    item.linkAbsOcc(&occ1);
    item.linkAbsOcc(&occ2);
    EXPECT_EQ(item.getLinkedAbsOcc(), &occ1);

    QELRelativeOccurrence r1("r1", ""), r2("r2", "");
    item.linkRelativeOccurrence(&r1);
    item.linkRelativeOccurrence(&r2);
    EXPECT_EQ(item.getLinkedRelativeOccurrence("r2"), &r2);
    EXPECT_EQ(item.getLinkedRelativeOccurrence("r1", "r2"), &r2);
    EXPECT_EQ(item.getLinkedRelativeOccurrence("missing", "r2"), nullptr);

    QELAbsoluteView v1("Bolt+++I"), v2("Nut+++I");
    item.linkAbsoluteView(&v1);
    item.linkAbsoluteView(&v2);
    EXPECT_EQ(item.getLinkedAbsoluteViews("Nut+++I"), &v2);
    EXPECT_EQ(item.getLinkedAbsoluteViews("Washer+++I"), nullptr);
}

TEST_F(ItemTest, ItemDocumentLinksSeenFromBothDirections) {
    QELItem item("I");
    QELDocument doc("D");
    EXPECT_FALSE(item.hasGRMDocumentLinkWhereUsedAsSecondary("L"));
    QELLink* out = item.addGRMDocumentLink("L", &doc);
    EXPECT_FALSE(item.hasGRMDocumentLinkWhereUsedAsSecondary("L"));
    QELLink* in = doc.addGRMItemLink("L", &item);
    EXPECT_TRUE(item.hasGRMDocumentLinkWhereUsedAsSecondary("L"));
    EXPECT_EQ(item.getGRMDocumentLinksWhereUsedAsPrimary("L", &doc), out);
    EXPECT_EQ(item.getGRMDocumentLinksWhereUsedAsSecondary("L", &doc), in);

    // The incoming link has a document primary and an item secondary: it
    // passes neither side of the item-to-document filter.
    auto all = owned(item.getAllGRMDocumentLinks());
    ASSERT_EQ(all->size(), 1);
    auto* named = static_cast<TYPVectorPQELLink*>(all->find("L"));
    ASSERT_NE(named, nullptr);
    ASSERT_EQ(named->size(), 1);
    EXPECT_EQ((*named)[0], out);
    for (const auto& e : *all) delete static_cast<TYPVectorPQELLink*>(e.object);
}
