#include <gtest/gtest.h>

#include "CleanSessionTest.h"

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

using ItemTest = qeltest::CleanSessionTest;

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

// ---- assembly objects ----------------------------------------------------------------------

