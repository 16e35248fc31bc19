#include <gtest/gtest.h>

#include "QELLinkType.h"
#include "QELStatus.h"

#include <memory>
#include <string>
#include <vector>

#include "CV5CAAQELAbsoluteOccurrence.h"
#include "CV5CAAQELWorkSpace.h"
#include "JNLManager.h"
#include "QELAbsoluteOccurrence.h"
#include "QELAbsoluteView.h"
#include "QELDocument.h"
#include "QELItem.h"
#include "QELLink.h"
#include "QELRelativeOccurrence.h"
#include "QELScene.h"
#include "QELSession.h"
#include "QELWorkSpace.h"

namespace {

std::string text(const CATUnicodeString& s) { return s.ToLatin1(); }

std::vector<std::string> namesOf(const TYPVectorPQELComponent& components) {
    std::vector<std::string> names;
    for (const QELComponent* c : components)
        names.push_back(text(c->get_Name()));
    return names;
}

// Bolt under Sub under the top-level Top of workspace WS, whose root item is
// Root; Sub shows ItemSub and Top shows ItemTop.
struct Assembly {
    QELWorkSpace ws;
    QELItem root{"Root"};
    QELItem itemTop{"ItemTop"};
    QELItem itemSub{"ItemSub"};
    QELItem itemBolt{"ItemBolt"};
    std::unique_ptr<QELAbsoluteOccurrence> top;
    std::unique_ptr<QELAbsoluteOccurrence> sub;
    std::unique_ptr<QELAbsoluteOccurrence> bolt;

    Assembly() {
        ws.set_Name("WS");
        ws.linkItem(&root);
        top.reset(new QELAbsoluteOccurrence("u1", "Top", &ws));
        sub.reset(new QELAbsoluteOccurrence("u2", "Sub", top.get()));
        bolt.reset(new QELAbsoluteOccurrence("u3", "Bolt", sub.get()));
        top->linkWorkSpace(&ws);
        for (QELAbsoluteOccurrence* occ : {top.get(), sub.get(), bolt.get()})
            ws.linkAbsoluteOccurrence(occ);
        top->linkItem(&itemTop);
        sub->linkItem(&itemSub);
        bolt->linkItem(&itemBolt);
    }
};

class AbsoluteOccurrenceTest : public ::testing::Test {
protected:
    void SetUp() override { JNLManager::clear(); }
    void TearDown() override {
        QELSession::freeModel();
        JNLManager::clear();
    }

    // The occurrence A at the top of WS, for the tests of one occurrence.
    QELWorkSpace ws;
    QELAbsoluteOccurrence occ{"u1", "A", &ws};
    QELItem ctx{"Ctx"};
};

} // namespace

// ---- construction ------------------------------------------------------------

TEST_F(AbsoluteOccurrenceTest, ChildOfOccurrenceExtendsPathsAndLinksBothWays) {
    QELAbsoluteOccurrence b("u2", "B", &occ);
    QELAbsoluteOccurrence c("u3", "", &b);

    EXPECT_EQ("A+++B", text(b.get_Name()));
    EXPECT_EQ("u1+++u2", text(b.getPathOccUIDS()));
    EXPECT_EQ("A", text(b.getStringProperty("QELABSOLUTEOCCURRENCE_PROPERTY_PARENT_UID")));
    EXPECT_EQ(&occ, b.getLinkedParentAbsoluteOccurrence());
    EXPECT_EQ(&b, occ.getLinkedChildAbsoluteOccurrence(0));
    EXPECT_EQ(nullptr, occ.getLinkedChildAbsoluteOccurrence(1));

    // Without an instance name the UID path names it, and it has no
    // instance-name path of its own.
    EXPECT_EQ("u1+++u2+++u3", text(c.get_Name()));
    EXPECT_EQ("", text(c.getPathInstanceNames()));
}

// ---- views -------------------------------------------------------------------

TEST_F(AbsoluteOccurrenceTest, ViewsAreFoundBySignatureAndByContextName) {
    EXPECT_EQ(nullptr, occ.getLinkedAbsoluteViews());

    QELItem ctx1("Ctx1");
    QELItem ctx2("Ctx2");
    QELAbsoluteView v1("A+++Ctx1");
    QELAbsoluteView v2("A+++Ctx2");
    v1.linkItem(&ctx1);
    v2.linkItem(&ctx2);
    occ.linkAbsoluteView(&v1);
    occ.linkAbsoluteView(&v2);

    EXPECT_EQ(&v2, occ.getLinkedAbsoluteView(CATUnicodeString("A+++Ctx2")));
    EXPECT_EQ(nullptr, occ.getLinkedAbsoluteView(CATUnicodeString("A+++Nope")));
    // The context is matched by name, not by object.
    QELItem sameName("Ctx2");
    EXPECT_EQ(&v2, occ.getLinkedAbsoluteView(&sameName));
    QELItem other("Other");
    EXPECT_EQ(nullptr, occ.getLinkedAbsoluteView(&other));
    EXPECT_EQ(nullptr, occ.getLinkedAbsoluteView(static_cast<const QELItem*>(nullptr)));

    // A new map each time: deleting it leaves the occurrence's views alone.
    TYPMapCATUnicodeStringPVoid* views = occ.getLinkedAbsoluteViews();
    ASSERT_NE(nullptr, views);
    EXPECT_EQ("p_map_result", views->name());
    ASSERT_EQ(2, views->size());
    EXPECT_EQ(&v1, views->find("A+++Ctx1"));
    delete views;
    EXPECT_EQ(&v1, occ.getLinkedAbsoluteView(CATUnicodeString("A+++Ctx1")));
}

// ---- scenes ------------------------------------------------------------------

// ---- component shape representations -----------------------------------------

// ---- signatures --------------------------------------------------------------

// A context that is no ancestor's item (its own item included) fails and
// clears the signature; contexts are compared by name.
TEST_F(AbsoluteOccurrenceTest, SignatureRunsUpToEachAncestorContext) {
    Assembly a;
    QELItem rootTwin("Root");
    QELItem stranger("Stranger");
    const struct {
        QELAbsoluteOccurrence* occurrence;
        const QELItem* context;
        long status;
        const char* expected;
    } rows[] = {
        {a.bolt.get(), &a.itemSub, 0, "Bolt+++ItemSub"},
        {a.bolt.get(), &a.itemTop, 0, "Bolt+++Sub+++ItemTop"},
        {a.bolt.get(), &a.root, 0, "Bolt+++Sub+++Top+++Root"},
        {a.top.get(), &a.root, 0, "Top+++Root"},
        {a.bolt.get(), &rootTwin, 0, "Bolt+++Sub+++Top+++Root"},
        {a.bolt.get(), &stranger, QEL_E_FAIL, ""},
        {a.bolt.get(), &a.itemBolt, QEL_E_FAIL, ""},
        {a.bolt.get(), nullptr, QEL_E_FAIL, ""},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.context ? text(row.context->get_Name()) : "no context");
        CATUnicodeString signature("left over");
        EXPECT_EQ(row.status, row.occurrence->buildAbsoluteViewSignature(row.context, signature));
        EXPECT_EQ(row.expected, text(signature));
    }

    // A parent without an item ends the walk.
    CATUnicodeString signature;
    QELAbsoluteOccurrence leaf("v2", "L", &occ);
    EXPECT_EQ(QEL_E_FAIL, leaf.buildAbsoluteViewSignature(&a.root, signature));
}

TEST_F(AbsoluteOccurrenceTest, ParentCompPiecesEnterTheSignatureLastFirst) {
    Assembly a;
    a.bolt->addStringProperty("Parent_Comp", "X/Y");
    CATUnicodeString signature;
    // The status is the piece count of the last split.
    EXPECT_EQ(2, a.bolt->buildAbsoluteViewSignature(&a.itemSub, signature));
    EXPECT_EQ("Bolt+++Y+++X+++ItemSub", text(signature));
    EXPECT_EQ(2, a.bolt->buildAbsoluteViewSignature(&a.root, signature));
    EXPECT_EQ("Bolt+++Y+++X+++Sub+++Top+++Root", text(signature));

    // An ancestor's pieces follow its instance name; the last split counts.
    a.sub->addStringProperty("Parent_Comp", "P");
    EXPECT_EQ(1, a.bolt->buildAbsoluteViewSignature(&a.itemTop, signature));
    EXPECT_EQ("Bolt+++Y+++X+++Sub+++P+++ItemTop", text(signature));
}

// ---- ancestry and views of all contexts ----------------------------------------

TEST_F(AbsoluteOccurrenceTest, AllParentsListWorkspaceThenAncestorsTopDown) {
    Assembly a;
    TYPVectorPQELComponent* parents = nullptr;
    EXPECT_EQ(0, a.bolt->getAllParents(parents));
    ASSERT_NE(nullptr, parents);
    EXPECT_EQ((std::vector<std::string>{"WS", "Top", "Top+++Sub"}), namesOf(*parents));
    delete parents;

    EXPECT_EQ(0, a.top->getAllParents(parents));
    EXPECT_EQ((std::vector<std::string>{"WS"}), namesOf(*parents));
    delete parents;

    TYPMapCATUnicodeStringPVoid* map = a.bolt->getAllParentComponents();
    ASSERT_NE(nullptr, map);
    EXPECT_EQ("p_returned_map", map->name());
    ASSERT_EQ(3, map->size());
    EXPECT_EQ(a.sub.get(), map->getObject(0));
    EXPECT_EQ(a.top.get(), map->getObject(1));
    EXPECT_EQ(&a.ws, map->getObject(2));
    delete map;
}

TEST_F(AbsoluteOccurrenceTest, AllAbsViewsComeNearestContextFirst) {
    Assembly a;
    QELAbsoluteView inSub("Bolt+++ItemSub");
    QELAbsoluteView inRoot("Bolt+++Sub+++Top+++Root");
    QELAbsoluteView topInRoot("Top+++Root");
    // A view filed under a signature that is not Bolt's in that context.
    QELAbsoluteView wrong("Bolt+++ItemTop");
    a.itemSub.linkAbsoluteView(&inSub);
    a.root.linkAbsoluteView(&inRoot);
    a.root.linkAbsoluteView(&topInRoot);
    a.itemTop.linkAbsoluteView(&wrong);

    TYPVectorPQELComponent* views = nullptr;
    EXPECT_EQ(0, a.bolt->getAllAbsViews(views));
    ASSERT_NE(nullptr, views);
    EXPECT_EQ((std::vector<std::string>{"Bolt+++ItemSub", "Bolt+++Sub+++Top+++Root"}),
              namesOf(*views));
    delete views;
    EXPECT_TRUE(JNLManager::contains("BEGIN QELAbsoluteOccurrence::getAllAbsViews"));
    EXPECT_TRUE(JNLManager::contains("END QELAbsoluteOccurrence::getAllAbsViews (0)"));

    // A top-level occurrence looks in the workspace's root item only.
    EXPECT_EQ(0, a.top->getAllAbsViews(views));
    ASSERT_NE(nullptr, views);
    EXPECT_EQ((std::vector<std::string>{"Top+++Root"}), namesOf(*views));
    delete views;
}

TEST_F(AbsoluteOccurrenceTest, AllAbsViewsPassesOnTheLastSignatureStatus) {
    Assembly a;
    a.bolt->addStringProperty("Parent_Comp", "X/Y");
    QELAbsoluteView inTop("Bolt+++Y+++X+++Sub+++ItemTop");
    a.itemTop.linkAbsoluteView(&inTop);

    TYPVectorPQELComponent* views = nullptr;
    EXPECT_EQ(2, a.bolt->getAllAbsViews(views));
    ASSERT_NE(nullptr, views);
    EXPECT_EQ((std::vector<std::string>{"Bolt+++Y+++X+++Sub+++ItemTop"}), namesOf(*views));
    delete views;

    // A parent without an item is skipped as a context, and it also cuts
    // every walk that has to pass it: nothing is found above it.
    QELItem rootItem("R");
    QELWorkSpace other;
    other.linkItem(&rootItem);
    QELAbsoluteOccurrence top("v1", "T", &other);
    top.linkWorkSpace(&other);
    QELAbsoluteOccurrence leaf("v2", "L", &top);
    QELAbsoluteView leafView("L+++T+++R");
    rootItem.linkAbsoluteView(&leafView);
    EXPECT_EQ(QEL_E_FAIL, leaf.getAllAbsViews(views));
    ASSERT_NE(nullptr, views);
    EXPECT_TRUE(views->empty());
    delete views;
}

// The synchronize command activates the shape last answered for a name: a
// second answer for it replaces the first instead of being dropped.
TEST(HostActiveShapes, TheLastValueOfANameWins) {
    CV5CAAQELWorkSpace workspace;
    CV5CAAQELAbsoluteOccurrence occurrence;
    const std::vector<QELComponent*> holders = {&workspace, &occurrence};
    auto add = [&](size_t which, const char* name, const char* value) {
        if (which == 0) workspace.addActiveShape(name, value);
        else occurrence.addActiveShape(name, value);
    };
    for (size_t which = 0; which < holders.size(); ++which) {
        SCOPED_TRACE(which == 0 ? "workspace" : "occurrence");
        add(which, "Rep", "old.cgr");
        add(which, "Other", "other.cgr");
        add(which, "Rep", "new.cgr");
        const TYPVectorCATUnicodeString* shapes = holders[which]->getDynamicProperty("ActiveShapes");
        ASSERT_NE(shapes, nullptr);
        std::vector<std::string> pairs;
        for (int i = 0; i < shapes->size(); ++i) pairs.push_back(text((*shapes)[i]));
        EXPECT_EQ(pairs, (std::vector<std::string>{"Rep", "new.cgr", "Other", "other.cgr"}));
    }
}
