#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "CATListValCATUnicodeString.h"
#include "JNLManager.h"
#include "QELAbsoluteOccurrence.h"
#include "QELAbsoluteView.h"
#include "QELDocument.h"
#include "QELFile.h"
#include "QELItem.h"
#include "QELLinkType.h"
#include "QELSession.h"
#include "QELWorkSpace.h"

namespace {

std::string text(const CATUnicodeString& s) { return s.ToLatin1(); }

template <typename Vector> std::vector<std::string> namesOf(const Vector& components) {
    std::vector<std::string> names;
    for (const auto* c : components)
        names.push_back(text(c->get_Name()));
    return names;
}

std::vector<std::string> keysOf(const TYPMapCATUnicodeStringPVoid& map) {
    std::vector<std::string> keys;
    for (const auto& e : map)
        keys.push_back(text(e.key));
    return keys;
}

// Components a test makes on the heap, freed with the test.
class Owned {
public:
    template <typename T, typename... Args> T* make(Args&&... args) {
        auto* object = new T(std::forward<Args>(args)...);
        _objects.emplace_back(object);
        return object;
    }

private:
    std::vector<std::unique_ptr<QELComponent>> _objects;
};

class WorkSpaceTest : public ::testing::Test {
protected:
    void SetUp() override { ws.set_Name("WS"); }
    void TearDown() override { QELSession::freeModel(); }

    // A top-level occurrence of `ws` at sibling position `index`, showing
    // `item`.
    QELAbsoluteOccurrence* addTop(const char* name, int index, QELItem* item = nullptr) {
        auto* occ =
            owned.make<QELAbsoluteOccurrence>(CATUnicodeString(name), CATUnicodeString(name), &ws);
        occ->addIntegerProperty("IndiceOfAbsolute", index);
        occ->linkWorkSpace(&ws);
        if (item)
            occ->linkItem(item);
        ws.linkAbsoluteOccurrence(occ);
        return occ;
    }

    QELAbsoluteOccurrence* addChild(QELAbsoluteOccurrence* parent, const char* name,
                                    QELItem* item = nullptr) {
        auto* occ = owned.make<QELAbsoluteOccurrence>(CATUnicodeString(name),
                                                      CATUnicodeString(name), parent);
        if (item)
            occ->linkItem(item);
        ws.linkAbsoluteOccurrence(occ);
        return occ;
    }

    // An item holding a new document of that name, as the reader files it.
    QELItem* itemWithDocument(const char* itemName, const char* docName) {
        auto* item = owned.make<QELItem>(CATUnicodeString(itemName));
        item->createDocument(QELLinkType::LINKNAME_CHILD, EnumDocumentType_Part, docName);
        return item;
    }

    // An item holding `document` itself (documents of one name that differ).
    QELItem* itemWith(QELDocument* document, const char* itemName) {
        auto* item = owned.make<QELItem>(CATUnicodeString(itemName));
        item->linkDocument(QELLinkType::LINKNAME_CHILD, document);
        return item;
    }

    Owned owned;
    QELWorkSpace ws;
};

} // namespace

// ---- state -------------------------------------------------------------------

TEST_F(WorkSpaceTest, ConfigurationAccumulatesOverCalls) {
    TYPVectorCATUnicodeString* config = nullptr;
    EXPECT_EQ(0, ws.getConfiguration(config));
    EXPECT_EQ(nullptr, config);

    CATListValCATUnicodeString empty;
    EXPECT_EQ(0, ws.setConfiguration(empty));
    ws.getConfiguration(config);
    EXPECT_EQ(nullptr, config);

    CATListValCATUnicodeString first;
    first.Append("Rule=Latest");
    first.Append("Effectivity=2024");
    CATListValCATUnicodeString second;
    second.Append("Variant=A");
    second.Append("Unit=mm");
    ws.setConfiguration(first);
    ws.setConfiguration(second);
    ws.getConfiguration(config);
    ASSERT_NE(nullptr, config);
    std::vector<std::string> got;
    for (const CATUnicodeString& s : *config)
        got.push_back(text(s));
    EXPECT_EQ((std::vector<std::string>{"Rule=Latest", "Effectivity=2024", "Variant=A", "Unit=mm"}),
              got);
}

// ---- occurrences ---------------------------------------------------------------

TEST_F(WorkSpaceTest, AbsoluteOccurrenceIsFoundByExactName) {
    EXPECT_EQ(nullptr, ws.getAbsoluteOccurrence("A"));
    QELAbsoluteOccurrence* a = addTop("A", 0);
    QELAbsoluteOccurrence* ab = addChild(a, "B");
    EXPECT_EQ(a, ws.getAbsoluteOccurrence("A"));
    EXPECT_EQ(ab, ws.getAbsoluteOccurrence("A+++B"));
    EXPECT_EQ(nullptr, ws.getAbsoluteOccurrence("a"));
    EXPECT_EQ(nullptr, ws.getAbsoluteOccurrence("B"));

    // Filed under a key with its "Parent_Comp", still found by its name.
    auto* flexible =
        owned.make<QELAbsoluteOccurrence>(CATUnicodeString("F"), CATUnicodeString("F"), &ws);
    flexible->addStringProperty("Parent_Comp", "X/Y");
    ws.linkAbsoluteOccurrence(flexible);
    EXPECT_EQ(flexible, ws.getAbsoluteOccurrence("F"));
}

TEST_F(WorkSpaceTest, FirstLevelIsTopLevelOccurrencesByIndex) {
    EXPECT_EQ(nullptr, ws.getFirstLevelAbsoluteOccurrences());

    QELAbsoluteOccurrence* c = addTop("C", 7);
    QELAbsoluteOccurrence* a = addTop("A", 2);
    addChild(a, "Deep");
    addTop("B", 5);
    addChild(c, "Deeper");

    std::unique_ptr<TYPVectorPQELAbsoluteOccurrence> first(ws.getFirstLevelAbsoluteOccurrences());
    ASSERT_NE(nullptr, first);
    EXPECT_EQ((std::vector<std::string>{"A", "B", "C"}), namesOf(*first));

    // Two under one index: the first filed comes twice, the other not at all.
    addTop("Y", 2);
    first.reset(ws.getFirstLevelAbsoluteOccurrences());
    EXPECT_EQ((std::vector<std::string>{"A", "A", "B", "C"}), namesOf(*first));
    EXPECT_EQ(a, (*first)[1]);
}

// ---- documents -----------------------------------------------------------------

TEST_F(WorkSpaceTest, DocumentsWithoutOccurrencesAreRootAndItsDesignTables) {
    TYPMapCATUnicodeStringPVoid* docs = ws.getWorkspaceDocuments();
    ASSERT_NE(nullptr, docs);
    EXPECT_EQ("p_result", docs->name());
    EXPECT_TRUE(docs->empty());
    delete docs;

    QELDocument root("Root.CATProduct", EnumDocumentType_Product);
    QELDocument table("Table.xls", EnumDocumentType_DesignTable);
    root.addGRMDocumentLink("catdesigntable", &table);
    ws.linkDocument(&root);

    docs = ws.getWorkspaceDocuments();
    EXPECT_EQ((std::vector<std::string>{"Root.CATProduct", "Table.xls"}), keysOf(*docs));
    EXPECT_EQ(&table, docs->find("Table.xls"));
    delete docs;
}

TEST_F(WorkSpaceTest, DocumentsCollectEachItemsFirstDocumentOnce) {
    QELDocument root("Root.CATProduct", EnumDocumentType_Product);
    ws.linkDocument(&root);
    QELItem* boltItem = itemWithDocument("BoltItem", "Bolt.CATPart");
    QELItem* plateItem = itemWithDocument("PlateItem", "Plate.CATPart");
    QELItem bare("Bare");
    QELAbsoluteOccurrence* top = addTop("Plate.1", 0, plateItem);
    addChild(top, "Bolt.1", boltItem);
    addChild(top, "Bolt.2", boltItem);
    addTop("Bare.1", 1, &bare);
    addTop("NoItem.1", 2);
    // A design table of an occurrence's document travels with it.
    QELDocument table("Bolts.xls", EnumDocumentType_DesignTable);
    QELSession::getInstance()
        ->getDocument("Bolt.CATPart")
        ->addGRMDocumentLink("catdesigntable", &table);

    TYPMapCATUnicodeStringPVoid* docs = ws.getWorkspaceDocuments();
    EXPECT_EQ(
        (std::vector<std::string>{"Root.CATProduct", "Plate.CATPart", "Bolt.CATPart", "Bolts.xls"}),
        keysOf(*docs));
    delete docs;
}

TEST_F(WorkSpaceTest, LoadedDocumentReplacesBrokenIconOfTheSameName) {
    QELDocument broken("Part.CATPart");
    broken.addBooleanProperty("IsBrokenIcon", true);
    QELDocument loaded("Part.CATPart");
    QELDocument other("Other.CATPart");
    addTop("First", 0, itemWith(&broken, "I1"));
    addTop("Middle", 1, itemWith(&other, "I2"));
    addTop("Second", 2, itemWith(&loaded, "I3"));

    TYPMapCATUnicodeStringPVoid* docs = ws.getWorkspaceDocuments();
    EXPECT_EQ(&loaded, docs->find("Part.CATPart"));
    // The replacement is inserted anew, after the others.
    EXPECT_EQ((std::vector<std::string>{"Other.CATPart", "Part.CATPart"}), keysOf(*docs));
    delete docs;
}

TEST_F(WorkSpaceTest, BrokenIconNeverReplacesALoadedDocument) {
    QELDocument loaded("Part.CATPart");
    QELDocument broken("Part.CATPart");
    broken.addBooleanProperty("IsBrokenIcon", true);
    QELDocument brokenToo("Part.CATPart");
    brokenToo.addBooleanProperty("IsBrokenIcon", true);
    addTop("First", 0, itemWith(&loaded, "I1"));
    addTop("Second", 1, itemWith(&broken, "I2"));
    TYPMapCATUnicodeStringPVoid* docs = ws.getWorkspaceDocuments();
    EXPECT_EQ(&loaded, docs->find("Part.CATPart"));
    delete docs;

    // Of two broken icons, the first stays.
    QELWorkSpace other;
    QELAbsoluteOccurrence a("a", "A", &other);
    QELAbsoluteOccurrence b("b", "B", &other);
    a.linkItem(itemWith(&broken, "I3"));
    b.linkItem(itemWith(&brokenToo, "I4"));
    other.linkAbsoluteOccurrence(&a);
    other.linkAbsoluteOccurrence(&b);
    docs = other.getWorkspaceDocuments();
    EXPECT_EQ(&broken, docs->find("Part.CATPart"));
    delete docs;
}

TEST_F(WorkSpaceTest, DocumentsPointingFormsAreThoseWithSomethingUnderTheKey) {
    QELDocument root("Root.CATProduct", EnumDocumentType_Product);
    ws.linkDocument(&root);
    addTop("A", 0, itemWithDocument("IA", "A.CATPart"));
    addTop("B", 1, itemWithDocument("IB", "B.CATPart"));
    QELSession::getInstance()->getDocument("B.CATPart")->addPublication("Face.1");
    root.addPublication("Axis");

    TYPVectorPQELDocument* docs = nullptr;
    EXPECT_EQ(0, ws.getWorkSpaceDocumentsPointingFormsByLink("catpublication", docs));
    ASSERT_NE(nullptr, docs);
    EXPECT_EQ((std::vector<std::string>{"Root.CATProduct", "B.CATPart"}), namesOf(*docs));
    delete docs;

    EXPECT_EQ(0, ws.getWorkSpaceDocumentsPointingFormsByLink("catdrawing", docs));
    ASSERT_NE(nullptr, docs);
    EXPECT_TRUE(docs->empty());
    delete docs;
}

// The documents primary of an item link of the name, one per name; a
// document with no GRM link of the name at all used to hold the walk on
// itself for ever: now the walk stops there, says so once, and answers what
// it found before that document.
TEST_F(WorkSpaceTest, PointedItemsListPrimariesOfAnItemLinkAndStopAtADocumentWithoutAny) {
    QELDocument root("Root.CATProduct", EnumDocumentType_Product);
    ws.linkDocument(&root);
    QELDocument drawing("Sheet.CATDrawing", EnumDocumentType_Drawing);
    QELDocument onlySecondary("Notes.CATPart", EnumDocumentType_Part);
    addTop("S", 0, itemWith(&drawing, "IS"));
    addTop("P", 1, itemWith(&onlySecondary, "IP"));

    QELItem target("Target");
    root.addGRMItemLink("DRAWING_OF_LINK", &target);
    drawing.addGRMItemLink("DRAWING_OF_LINK", &target);
    // Holds a link of the name, but not as primary of an item link.
    root.addGRMDocumentLink("DRAWING_OF_LINK", &onlySecondary);

    auto pointed = [this](int expectedStatus) {
        TYPVectorPQELDocument* docs = nullptr;
        EXPECT_EQ(expectedStatus, ws.getWorkSpacePointedItemsByLink("DRAWING_OF_LINK", docs));
        std::unique_ptr<TYPVectorPQELDocument> owned(docs);
        return docs ? namesOf(*docs) : std::vector<std::string>{"(no vector)"};
    };
    EXPECT_EQ((std::vector<std::string>{"Root.CATProduct", "Sheet.CATDrawing"}), pointed(0));

    QELDocument loose("Loose.CATPart", EnumDocumentType_Part);
    addTop("L", 2, itemWith(&loose, "IL"));
    TYPMapCATUnicodeStringPVoid* all = ws.getWorkspaceDocuments();
    std::vector<std::string> before = keysOf(*all);
    delete all;
    const auto stop = std::find(before.begin(), before.end(), "Loose.CATPart");
    ASSERT_NE(before.end(), stop);
    before.erase(stop, before.end());
    before.erase(std::remove(before.begin(), before.end(), "Notes.CATPart"), before.end());

    JNLManager::clear();
    EXPECT_EQ(before, pointed(-1));
    const auto& lines = JNLManager::entries();
    EXPECT_EQ(1, std::count_if(lines.begin(), lines.end(), [](std::string_view line) {
                  return line.find("Loose.CATPart has no GRM link DRAWING_OF_LINK") != std::string::npos;
              }));
}

// ---- dump ----------------------------------------------------------------------

