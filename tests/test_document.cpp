#include <gtest/gtest.h>

#include "CleanSessionTest.h"

#include <memory>
#include <string>
#include <vector>

#include "QELDocument.h"
#include "QELFile.h"
#include "QELForm.h"
#include "QELItem.h"
#include "QELLink.h"
#include "QELSession.h"
#include "QELUtilities.h"
#include "QELWorkSpace.h"

namespace {

using DocumentTest = qeltest::CleanSessionTest;

template <typename T> std::unique_ptr<T> owned(T* p) { return std::unique_ptr<T>(p); }

template <typename T> std::vector<CATUnicodeString> namesOf(const TYPVector<T*>& v) {
    std::vector<CATUnicodeString> out;
    for (T* c : v) out.push_back(c->get_Name());
    return out;
}

std::vector<CATUnicodeString> texts(std::initializer_list<const char*> list) {
    return std::vector<CATUnicodeString>(list.begin(), list.end());
}

} // namespace

// ---- type, flags and helpers ---------------------------------------------------------

TEST_F(DocumentTest, ForeignFileNeedsExactlyUpperCaseFF) {
    QELDocument d("D", EnumDocumentType_Part);
    EXPECT_FALSE(d.isAForeignFile());
    for (const char* value : {"ff", "FF ", "FF"}) {
        d.addStringProperty("IsAForeignFile", value);
        EXPECT_EQ(d.isAForeignFile(), std::string(value) == "FF") << value;
    }
}

TEST(QELUtilitiesDocument, FileExtensionIsTextAfterLastDot) {
    EXPECT_EQ(QELUtilities::getFileExtension("a.b.c"), CATUnicodeString("c"));
    EXPECT_EQ(QELUtilities::getFileExtension("noext"), CATUnicodeString(""));
    EXPECT_EQ(QELUtilities::getFileExtension("trailing."), CATUnicodeString(""));
    EXPECT_EQ(QELUtilities::getFileExtension("dir.v2/file"), CATUnicodeString("v2/file"));
    // Positions count characters: a name with code points above 0xFF.
    CATUnicodeString wide;
    wide.BuildFromUTF8("\xE9\x83\xA8\xE5\x93\x81.\xCE\xA9x");
    CATUnicodeString expected;
    expected.BuildFromUTF8("\xCE\xA9x");
    EXPECT_EQ(QELUtilities::getFileExtension(wide), expected);
}

TEST_F(DocumentTest, MappingAttributeIsLookedUpInTheStringList) {
    QELDocument d("D", EnumDocumentType_Part);
    EXPECT_EQ(QELUtilities::getPropertyValueMappingAttributes(nullptr, "Mass"), CATUnicodeString(""));
    EXPECT_EQ(QELUtilities::getPropertyValueMappingAttributes(&d, "Mass"), CATUnicodeString(""));

    d.addDynamicProperty(QELDocument::kCATIAMappingAttributes, "Material", "Steel", false);
    d.addDynamicProperty(QELDocument::kCATIAMappingAttributes, "Mass", "12", false);
    EXPECT_EQ(QELUtilities::getPropertyValueMappingAttributes(&d, "Mass"), CATUnicodeString("12"));
    EXPECT_EQ(QELUtilities::getPropertyValueMappingAttributes(&d, "Material"), CATUnicodeString("Steel"));
    EXPECT_EQ(QELUtilities::getPropertyValueMappingAttributes(&d, "mass"), CATUnicodeString(""));
    EXPECT_EQ(QELUtilities::getPropertyValueMappingAttributes(&d, ""), CATUnicodeString(""));

    // A list of names only, without values, answers nothing.
    QELDocument names("N", EnumDocumentType_Part);
    CATListValCATUnicodeString list;
    list.Append("Mass");
    names.addStringListProperty(QELDocument::kCATIAMappingAttributes, list);
    EXPECT_EQ(QELUtilities::getPropertyValueMappingAttributes(&names, "Mass"), CATUnicodeString(""));
}

// ---- files, forms and linked documents -----------------------------------------------------

TEST_F(DocumentTest, CreateFileRegistersOnceAndSharesTheFileBetweenDocuments) {
    QELDocument first("First", EnumDocumentType_Part);
    QELDocument second("Second", EnumDocumentType_Part);
    QELSession* session = QELSession::getInstance();

    QELFile* file = first.createFile("catpart", "Plate.CATPart");
    EXPECT_EQ(session->getFile("Plate.CATPart"), file);
    EXPECT_EQ(file->getStringProperty("File_Version"), CATUnicodeString("CATPart"));
    EXPECT_EQ(file->getLinkedDocument(), &first);

    EXPECT_EQ(second.createFile("catpart", "Plate.CATPart"), file);
    EXPECT_EQ(session->getFileCount(), 1);
    EXPECT_EQ(file->getLinkedDocument(), &first);
    EXPECT_EQ(second.getLinkedFiles("catpart")->find("Plate.CATPart"), file);

    // The type's reference name finds a document's own files, except for a
    // model document, whose type has none.
    EXPECT_EQ(first.getLinkedFiles(QELUtilities::getDocFilRefNameFromDocumentType(first.getType())),
              first.getLinkedFiles("catpart"));
    QELDocument model("Model", EnumDocumentType_Model);
    model.createFile("catmodel", "M.model");
    EXPECT_EQ(model.getLinkedFiles(QELUtilities::getDocFilRefNameFromDocumentType(model.getType())), nullptr);
}

// ---- design tables -------------------------------------------------------------------------

TEST_F(DocumentTest, DesignTablesAreNumberedAndCarryTheirOwnFile) {
    QELDocument owner("Owner", EnumDocumentType_Part);
    auto empty = owned(owner.getLinkedDesignTables());
    ASSERT_NE(empty, nullptr);
    EXPECT_EQ(empty->size(), 0);

    QELDocument* first = owner.addDesignTable("Sizes", "Sizes_old.xls");
    QELDocument* second = owner.addDesignTable("Colours", "Colours.txt");
    EXPECT_EQ(first->get_Name(), CATUnicodeString("Sizes_old.xls"));
    EXPECT_EQ(first->getType(), EnumDocumentType_Unset);
    EXPECT_EQ(first->getIntegerProperty("indiceDesignTable"), 0);
    EXPECT_EQ(second->getIntegerProperty("indiceDesignTable"), 1);
    EXPECT_EQ(first->getStringProperty("DesignTableName"), CATUnicodeString("Sizes"));
    EXPECT_EQ(first->getStringProperty("OldDesignTableName"), CATUnicodeString("Sizes_old.xls"));

    QELSession* session = QELSession::getInstance();
    EXPECT_EQ(session->getDocument("Sizes_old.xls"), nullptr);
    QELFile* file = session->getFile("Sizes_old.xls");
    ASSERT_NE(file, nullptr);
    EXPECT_EQ(file->getLinkedDocument(), first);
    EXPECT_EQ(file->getStringProperty("File_Version"), CATUnicodeString("xls"));
    ASSERT_NE(first->getLinkedFiles("catdesigntable"), nullptr);
    EXPECT_EQ(first->getLinkedFiles("catdesigntable")->find("Sizes_old.xls"), file);

    auto tables = owned(owner.getLinkedDesignTables());
    ASSERT_EQ(tables->size(), 2);
    EXPECT_EQ((*tables)[0], first);
    EXPECT_EQ((*tables)[1], second);
}

// ---- GRM links ---------------------------------------------------------------------------

TEST_F(DocumentTest, ClassFiltersAcceptEitherEndWhereUsedOnlyTheFarEnd) {
    QELDocument d("D", EnumDocumentType_Part);
    QELDocument target("T", EnumDocumentType_Part);
    QELItem item("I");
    QELForm form("checklist");
    QELLink* toDoc = d.addGRMDocumentLink("L", &target);
    QELLink* toItem = d.addGRMItemLink("L", &item);
    d.addGRMFormLink("L", &form);

    // The primary is a document for all three, so each filter keeps all.
    EXPECT_EQ(owned(d.getGRMDocumentLinks("L"))->size(), 3);
    EXPECT_EQ(owned(d.getGRMFormLinks("L"))->size(), 3);
    EXPECT_EQ(owned(d.getGRMItemLinks("L"))->size(), 3);
    auto all = owned(d.getAllGRMItemLinks());
    ASSERT_EQ(all->size(), 1);
    ASSERT_NE(all->find("L"), nullptr);
    EXPECT_EQ(static_cast<TYPVectorPQELLink*>(all->find("L"))->size(), 3);
    for (const auto& e : *all) delete static_cast<TYPVectorPQELLink*>(e.object);
    // Seen from the item, the link's primary is no item and its secondary no
    // document: the item's document filter drops it.
    EXPECT_EQ(owned(item.getGRMDocumentLinks("L"))->size(), 0);

    EXPECT_EQ(owned(d.getGRMDocumentLinksWhereUsedAsPrimary(CATUnicodeString("Unknown"))), nullptr);
    auto docs = owned(d.getGRMDocumentLinksWhereUsedAsPrimary(CATUnicodeString("L")));
    auto items = owned(d.getGRMItemLinksWhereUsedAsPrimary(CATUnicodeString("L")));
    ASSERT_EQ(docs->size(), 1);
    ASSERT_EQ(items->size(), 1);
    EXPECT_EQ((*docs)[0], toDoc);
    EXPECT_EQ((*items)[0], toItem);
    EXPECT_EQ(owned(d.getGRMDocumentLinksWhereUsedAsSecondary(CATUnicodeString("L")))->size(), 0);
    EXPECT_EQ(target.getGRMDocumentLinksWhereUsedAsSecondary("L", &d), toDoc);
    EXPECT_EQ(target.getGRMDocumentLinksWhereUsedAsPrimary("L", &d), nullptr);
}

TEST_F(DocumentTest, PointedItemsFollowLinkOrderAndFailWithoutTheLink) {
    QELDocument d("D", EnumDocumentType_Part);
    TYPVectorPQELItem* items = nullptr;
    EXPECT_EQ(d.getPointedItemsByLink("VT_LINK", items), -1);
    ASSERT_NE(items, nullptr);
    EXPECT_EQ(items->size(), 0);
    delete items;

    QELItem second("Second"), first("First");
    QELDocument notAnItem("N", EnumDocumentType_Part);
    d.addGRMItemLink("VT_LINK", &second);
    d.addGRMDocumentLink("VT_LINK", &notAnItem);
    d.addGRMItemLink("VT_LINK", &first);
    d.addGRMItemLink("VT_LINK", &second);
    items = nullptr;
    EXPECT_EQ(d.getPointedItemsByLink("VT_LINK", items), 0);
    ASSERT_NE(items, nullptr);
    EXPECT_EQ(namesOf(*items), texts({"Second", "First"}));
    delete items;

    // A name the document has no link of fails even when it has others.
    items = nullptr;
    EXPECT_EQ(d.getPointedItemsByLink("OTHER", items), -1);
    delete items;
}

// ---- session registry --------------------------------------------------------------------

