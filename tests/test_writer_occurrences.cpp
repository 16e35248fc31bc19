#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "CV5CAAQELAbsoluteOccurrence.h"
#include "CV5CAAQELAbsoluteView.h"
#include "QELDMToXMLAssemblyAccess.h"
#include "QELLink.h"
#include "QELRelativeOccurrence.h"
#include "QELWorkSpace.h"

using namespace assembly_test;
typedef QELDMToXMLAssemblyAccess Access;

class OccurrenceWriterTest : public AssemblyWriterTest {};

namespace {

// Workspace Root.CATProduct > Top > Sub > Leaf, each level with its own item
// and file: Leaf has a view in the contexts Sub, Top and Root, nearest first.
struct Tree {
    QELWorkSpace* workspace = nullptr;
    QELAbsoluteOccurrence *top = nullptr, *sub = nullptr;
    CV5CAAQELAbsoluteOccurrence* leaf = nullptr;
    std::vector<CV5CAAQELAbsoluteView*> views;

    Tree() {
        QELItem* root = itemWithFile("Root", "Root.CATProduct");
        workspace = QELModelHeap::adopt(new QELWorkSpace());
        workspace->linkItem(root);
        top = QELModelHeap::adopt(new QELAbsoluteOccurrence("u1", "Top", workspace));
        top->linkWorkSpace(workspace);
        top->linkItem(itemWithFile("TopItem", "Top.CATProduct"));
        sub = QELModelHeap::adopt(new QELAbsoluteOccurrence("u2", "Sub", top));
        sub->linkItem(itemWithFile("SubItem", "Sub.CATProduct"));
        leaf = QELModelHeap::adopt(new CV5CAAQELAbsoluteOccurrence("u3", "Leaf", sub));
        for (QELItem* context : {sub->getLinkedItem(), top->getLinkedItem(), root}) views.push_back(addView(context));
    }

    CV5CAAQELAbsoluteView* addView(QELItem* context) {
        CATUnicodeString signature;
        if (leaf->buildAbsoluteViewSignature(context, signature) != 0) signature = context->get_Name();
        auto* view = QELModelHeap::adopt(new CV5CAAQELAbsoluteView(signature));
        view->linkItem(context);
        context->linkAbsoluteView(view);
        leaf->linkAbsoluteView(view);
        return view;
    }
};

void setMatrix(QELComponent* c, const char* property, double x) {
    const double m[16] = {1, 0, 0, 0, 1, 0, 0, 0, 1, x, 0.5, -2, 0, 0, 0, 1};
    c->addMatrixProperty(property, m);
}

} // namespace

TEST_F(OccurrenceWriterTest, RelativeMatrixIsAlwaysThereForAWorkspaceAndFilledOnlyForAnOccurrence) {
    auto* placed = QELModelHeap::adopt(new QELRelativeOccurrence("REL-1", ""));
    setMatrix(placed, "RelativeMatrix", 10);
    auto* unplaced = QELModelHeap::adopt(new QELRelativeOccurrence("REL-2", ""));
    struct {
        QELRelativeOccurrence* relative;
        unsigned char isAbsolute;
        const char* expected;
    } cases[] = {{nullptr, 0, "<Matrix>||</Matrix>"},
                 {placed, 0, "<Matrix>||</Matrix>"},
                 {placed, 1, "<Matrix>|1 0 0 0 1 0 0 0 1 10 0.5 -2|</Matrix>"},
                 {unplaced, 1, "<Matrix>||</Matrix>"},
                 {nullptr, 1, ""}};
    for (const auto& c : cases) {
        EXPECT_EQ(L(c.expected), written([&](QELDMToXML& w) { Access::relativeMatrix(w, c.relative, c.isAbsolute); }));
    }
    EXPECT_TRUE(JNLManager::contains("QELDMToXML::writeRelativeMatrix: ip_relative is NULL"));
}

TEST_F(OccurrenceWriterTest, AbsoluteMatrixListsViewsWithAContextFileAndAMatrix) {
    Tree t;
    setMatrix(t.views[0], "AbsoluteMatrix", 1);
    setMatrix(t.views[2], "AbsoluteMatrix", 3); // views[1] has none: not listed
    setMatrix(t.addView(QELModelHeap::adopt(new QELItem("No document"))), "AbsoluteMatrix", 4);
    QELItem* unnamed = itemWithFile("Unnamed", "Unnamed.CATProduct");
    QELLookups::firstFile(QELLookups::firstDocument(unnamed))->addStringProperty("File_Name", "");
    setMatrix(t.addView(unnamed), "AbsoluteMatrix", 5);
    auto matrix = [&](QELDMToXML& w) { Access::absoluteMatrix(w, t.leaf, 1); };

    EXPECT_EQ(Lines(), written(matrix)) << "flexibility not managed";
    EXPECT_TRUE(JNLManager::contains("No need to manage flexibility"));
    PROCManager::setManageFlexibility(true);
    EXPECT_EQ(Lines(), written(matrix)) << "the host does not manage it";
    CV5CAAQELSession::getCATIASessionInstance()->setAsManageFlexibility(1);
    EXPECT_EQ(L("<AbsoluteMatrix>|<NBElements>|3|</NBElements>"
                "|<Element>|<Context>|Sub.CATProduct|</Context>"
                "|<Matrix>|1 0 0 0 1 0 0 0 1 1 0.5 -2|</Matrix>|</Element>"
                "|<Element>|<Context>|Root.CATProduct|</Context>"
                "|<Matrix>|1 0 0 0 1 0 0 0 1 3 0.5 -2|</Matrix>|</Element>"
                "|<Element>|<Matrix>|1 0 0 0 1 0 0 0 1 5 0.5 -2|</Matrix>|</Element>|</AbsoluteMatrix>"),
              written(matrix));
    EXPECT_EQ(Lines(), written([&](QELDMToXML& w) { Access::absoluteMatrix(w, t.leaf, 0); })) << "workspace block";
}

TEST_F(OccurrenceWriterTest, VisibilityRecordsOnlyViewsThatOverrideTheNearerContext) {
    // Per view, nearest context first: visible, hidden, has a parent component.
    struct {
        unsigned char states[3][3];
        const char* expected; // the Visible pairs
    } cases[] = {
        {{{1, 0, 0}, {1, 0, 0}, {1, 0, 0}}, ""},
        {{{0, 0, 0}, {0, 0, 0}, {1, 0, 0}}, "Sub.CATProduct|0"}, // the second invisible view says nothing
        {{{1, 0, 0}, {0, 1, 1}, {1, 0, 1}}, "Top.CATProduct|0|Root.CATProduct|1"},
        {{{1, 0, 0}, {1, 0, 1}, {0, 1, 1}}, "Root.CATProduct|0"},
        {{{1, 0, 0}, {1, 1, 0}, {1, 1, 0}}, "Top.CATProduct|1"},
        {{{1, 1, 0}, {1, 0, 0}, {0, 1, 0}}, "Top.CATProduct|1|Root.CATProduct|0"},
    };
    PROCManager::setManageHideShow(true);
    CV5CAAQELSession::getCATIASessionInstance()->setAsManageHideShow(1);
    Tree t;
    for (const auto& c : cases) {
        for (int i = 0; i < 3; ++i) {
            t.views[i]->setVisible(c.states[i][0]);
            t.views[i]->setHide(c.states[i][1]);
            t.views[i]->setHasParentComponent(c.states[i][2]);
        }
        const Lines pairs = L(c.expected);
        std::string expected;
        if (!pairs.empty()) {
            expected = "<VisibleOverrides>|<NBElements>|" + std::to_string(pairs.size() / 2) + "|</NBElements>";
            for (size_t i = 0; i < pairs.size(); i += 2) {
                expected += "|<Visible>|" + pairs[i] + "|" + pairs[i + 1] + "|</Visible>";
            }
            expected += "|</VisibleOverrides>";
        }
        EXPECT_EQ(L(expected), written([&](QELDMToXML& w) { Access::visibility(w, t.leaf); })) << c.expected;
    }
}

TEST_F(OccurrenceWriterTest, VisibilityAsksTheEnvironmentOnImportAndTheHostOtherwise) {
    Tree t;
    t.views[0]->setVisible(0);
    auto overrides = [&] { return !written([&](QELDMToXML& w) { Access::visibility(w, t.leaf); }).empty(); };
    EXPECT_FALSE(overrides());
    EXPECT_TRUE(JNLManager::contains("Does not manage hide show"));
    PROCManager::setManageHideShow(true);
    CV5CAAQELSession::getCATIASessionInstance()->setAsManageHideShow(1);
    EXPECT_TRUE(overrides());
    PROCManager::setIsCommandImport(true);
    EXPECT_FALSE(overrides());
    EXPECT_TRUE(JNLManager::contains("No need to manage manage_hide_show"));
    ENVManager::setIsSaveHideShowManagedOnImport(true);
    EXPECT_TRUE(overrides());
}

TEST_F(OccurrenceWriterTest, ScenesOfAWorkspaceAndSceneOverridesOfAnOccurrence) {
    PROCManager::setManageScenes(true);
    ENVManager::setIsSaveScenesManagedOnSave(true);
    Tree t;
    auto* document = QELModelHeap::adopt(new CV5CAAQELDocument("Root.CATProduct", EnumDocumentType_Product));
    for (const char* scene : {"Exploded", "", "Service"}) document->addSceneName(scene);
    EXPECT_EQ(L("<Scenes>|<NBElements>|3|</NBElements>|<Attribut>|Exploded|</Attribut>|<Attribut>|Service|</Attribut>"
                "|</Scenes>"),
              written([&](QELDMToXML& w) { Access::scenes(w, t.workspace, document); }));
    EXPECT_EQ(Lines(), written([&](QELDMToXML& w) { Access::scenes(w, t.top, document); })) << "not a workspace";

    // The show line is the inverse of the host's hide state.
    for (const char* hide : {"FALSE", "TRUE", "true"}) {
        t.leaf->addSceneContext(QELModelHeap::adopt(new CV5CAAQELScene(std::string("S-") + hide, hide, "1 0 0")));
    }
    t.leaf->addSceneContext(nullptr);
    EXPECT_EQ(L("<ScenesOverrides>|<NBElements>|4|</NBElements>|<SceneOverride>|S-FALSE|1|1 0 0|</SceneOverride>"
                "|<SceneOverride>|S-TRUE|0|1 0 0|</SceneOverride>|<SceneOverride>|S-true||1 0 0|</SceneOverride>"
                "|<SceneOverride>||||</SceneOverride>|</ScenesOverrides>"),
              written([&](QELDMToXML& w) { Access::scenesOverrides(w, t.leaf); }));

    ENVManager::setIsSaveScenesManagedOnSave(false);
    EXPECT_EQ(Lines(), written([&](QELDMToXML& w) { Access::scenesOverrides(w, t.leaf); }));
    EXPECT_TRUE(JNLManager::contains("No need to manage manage scenes"));
}

TEST_F(OccurrenceWriterTest, ShapeListsAlternatesThenComponentsAnnouncingTheTotal) {
    auto shapeDocument = [](QELDocument* shape, const char* file, const char* uid, bool modified) {
        shape->addStringProperty("ShortFileName", file);
        shape->addStringProperty("DST_UID", uid);
        shape->addStringProperty("NamedRef_UID", std::string("NR-") + uid);
        shape->addBooleanProperty("Modified_Flag", modified);
    };
    Tree t;
    auto* document = QELModelHeap::adopt(new QELDocument("Shaft.CATPart", EnumDocumentType_Part));
    shapeDocument(document->addAlternateShapeRepresentation("Envelope", "Env"), "Env.CATPart", "D1", false);
    auto* withShape = QELModelHeap::adopt(new QELAbsoluteOccurrence("c1", "Light", t.sub));
    withShape->addBooleanProperty("HasComponentShapeRep", true);
    withShape->addStringProperty("ComponentName", "Shaft light");
    shapeDocument(withShape->addComponentShapeRepresentation("Light", "Light"), "Light.cgr", "D2", true);
    // A link that lost its document is counted but has no SR block.
    withShape->addGRMLink(
        QELModelHeap::adopt(new QELLink(19, "CATIA_componentShapeRep_Link_type", withShape, nullptr)));
    auto* withoutShape = QELModelHeap::adopt(new QELAbsoluteOccurrence("c2", "Plain", t.sub));
    auto* emptyShape = QELModelHeap::adopt(new QELAbsoluteOccurrence("c3", "Empty", t.sub));
    emptyShape->addBooleanProperty("HasComponentShapeRep", true);
    for (QELAbsoluteOccurrence* o : {withShape, withoutShape, emptyShape}) document->linkComponentAbsoluteOccurrence(o);
    t.top->addIntegerProperty("totalComponent", 5);
    auto shape = [&](QELDMToXML& w) { Access::shape(w, document, t.top); };

    const std::string alternates = "<Shapes>|<NBElements>|1|</NBElements>|<SR>||Env.CATPart|Envelope|D1|NR-D1|false"
                                   "|</SR>|</Shapes>";
    EXPECT_EQ(L(alternates + "|<Components>|<NBElements>|5|</NBElements>|<ComponentName>|Shaft light|</ComponentName>"
                             "|<Shapes>|<NBElements>|2|</NBElements>|<SR>||Light.cgr|Light|D2|NR-D2|true|</SR>"
                             "|</Shapes>|</Components>"),
              written(shape));
    EXPECT_TRUE(JNLManager::contains(
        "QELDMToXML::writeComponentShapeRepresentations : Linked shape document is NULL"));
    EXPECT_TRUE(JNLManager::contains(
        "QELDMToXML::writeComponentShapeRepresentations : getLinkedComponentShapeRepresentations returns NULL"));
    t.top->addIntegerProperty("totalComponent", 0);
    EXPECT_EQ(L(alternates), written(shape)) << "no total, no Components";
    t.top->addStringProperty("Type", "COMP");
    EXPECT_EQ(Lines(), written(shape));
}

TEST_F(OccurrenceWriterTest, DynamicListsPairedAndUnpairedWithOddLengths) {
    Tree t;
    struct {
        std::initializer_list<const char*> strings;
        unsigned char paired;
        const char* expected;
    } cases[] = {
        {{"Colour", "red", "Size", ""}, 1,
         "<List>|<NBElements>|2|</NBElements>|<Item>|Colour||red|</Item>|<Item>|Size|||</Item>|</List>"},
        {{"Colour", "red", "Size"}, 1, "<List>|<NBElements>|1|</NBElements>|<Item>|Colour||red|</Item>|</List>"},
        {{"Colour", "red", "Size"}, 0,
         "<List>|<NBElements>|3|</NBElements>|<Item>|Colour|</Item>|<Item>|red|</Item>|<Item>|Size|</Item>|</List>"},
        {{}, 0, ""},
    };
    for (const auto& c : cases) {
        setStrings(t.top, "List", c.strings);
        EXPECT_EQ(L(c.expected),
                  written([&](QELDMToXML& w) { Access::dynamicProperties(w, "List", c.paired, t.top); }));
    }
    EXPECT_EQ(Lines(), written([&](QELDMToXML& w) { Access::dynamicProperties(w, "Missing", 0, t.top); }));
}

TEST_F(OccurrenceWriterTest, ActiveAndDefaultShapesAndInstanceMapping) {
    Tree t;
    setStrings(t.top, "ActivateShapes", {"Light", "1"});
    setStrings(t.top, "DefaultShapeForCache", {"Envelope"});
    EXPECT_EQ(L("<ActivateShapes>|<NBElements>|2|</NBElements>|<Attribut>|Light|</Attribut>|<Attribut>|1|</Attribut>"
                "|</ActivateShapes>|<DefaultShapeForCache>|<NBElements>|1|</NBElements>|<Attribut>|Envelope"
                "|</Attribut>|</DefaultShapeForCache>"),
              written([&](QELDMToXML& w) {
                  Access::activeShape(w, t.top);
                  Access::defaultShape(w, t.top);
              }));
    t.top->addStringProperty("Type", "COMP");
    EXPECT_EQ(Lines(), written([&](QELDMToXML& w) {
                  Access::activeShape(w, t.top);
                  Access::defaultShape(w, nullptr);
              }));
    EXPECT_TRUE(JNLManager::contains("QELDMToXML::writeDefaultShape: ip_component is NULL"));

    // Instance mapping counts strings and keeps an empty value in its place.
    auto* relative = QELModelHeap::adopt(new QELRelativeOccurrence("REL-1", ""));
    setStrings(relative, "Mapping_Inst_CATIA", {"PartNumber", "P1", "Finish", ""});
    auto mapping = [&](QELDMToXML& w) { Access::mappingInst(w, relative); };
    EXPECT_EQ(Lines(), written(mapping)) << "not managed";
    ENVManager::setManageOccmappVtproperties(true);
    EXPECT_EQ(L("<Mapping_Inst>|<NBElements>|4|</NBElements>|<Attribut>|PartNumber|</Attribut>|<Attribut>|P1"
                "|</Attribut>|<Attribut>|Finish|</Attribut>|<Attribut>||</Attribut>|</Mapping_Inst>"),
              written(mapping));
}
