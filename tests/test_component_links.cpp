#include <gtest/gtest.h>

#include "CleanSessionTest.h"

#include <regex>

#include "QELComponent.h"
#include "QELLink.h"
#include "QELLinkType.h"
#include "QELSession.h"
#include "QELUtilities.h"
#include "TYPSharedText.h"

namespace {

// A component of any kind, as the concrete classes make them.
class Node : public QELComponent {
public:
    Node(const char* className, const char* name) {
        set_ClassName(className);
        set_Name(name);
    }
};

using ComponentTest = qeltest::CleanSessionTest;

} // namespace

TEST(QELUtilities, LinkTypeNamesWithTheDeliberateGaps) {
    EXPECT_EQ(QELUtilities::getLinkTypeName(1), CATUnicodeString("WSP_ABS"));
    EXPECT_EQ(QELUtilities::getLinkTypeName(19), CATUnicodeString("GRM_LINK"));
    EXPECT_EQ(QELUtilities::getLinkTypeName(22), CATUnicodeString("WSP_ITEM"));
    EXPECT_EQ(QELUtilities::getLinkTypeName(24), CATUnicodeString("ITM_ADDIN_DOC"));
    EXPECT_EQ(QELUtilities::getLinkTypeName(32), CATUnicodeString("SEQUENCE_PLY"));
    for (int code : {0, -1, 23, 27, 33}) {
        EXPECT_EQ(QELUtilities::getLinkTypeName(code), CATUnicodeString(std::to_string(code)));
    }
}

TEST(QELObject, HostBackedKindsCountAsTheirBaseKindOnly) {
    Node hostDoc("CV5CAAQELDOCUMENT_CLASSNAME", "d");
    Node hostItem("CV5CAAQELITEM_CLASSNAME", "i");
    Node stacking("CV5CAAQELSTACKING_CLASSNAME", "s");
    EXPECT_TRUE(hostDoc.isAKindOf("QELDOCUMENT_CLASSNAME"));
    EXPECT_TRUE(hostDoc.isAKindOf("CV5CAAQELDOCUMENT_CLASSNAME"));
    EXPECT_FALSE(hostDoc.instanceOf("QELDOCUMENT_CLASSNAME"));
    EXPECT_FALSE(hostItem.isAKindOf("QELDOCUMENT_CLASSNAME"));
    EXPECT_FALSE(stacking.isAKindOf("QELSTACKING_CLASSNAME")); // no host-backed pair for it
    EXPECT_FALSE(hostDoc.isAKindOf("QELCOMPONENT_CLASSNAME"));
    EXPECT_FALSE(Node("QELDOCUMENT_CLASSNAME", "x").isAKindOf("CV5CAAQELDOCUMENT_CLASSNAME"));
    // Only the host's own prefix makes a variant, through either overload.
    for (const char* own : {"XV5CAAQELDOCUMENT_CLASSNAME", "cv5caaQELDOCUMENT_CLASSNAME", "CV5CAAQELDOCUMENT"}) {
        const Node other(own, "o");
        EXPECT_FALSE(other.isAKindOf("QELDOCUMENT_CLASSNAME")) << own;
        EXPECT_FALSE(other.isAKindOf(CATUnicodeString("QELDOCUMENT_CLASSNAME"))) << own;
    }
    EXPECT_TRUE(hostDoc.isAKindOf(CATUnicodeString("QELDOCUMENT_CLASSNAME")));
}

TEST_F(ComponentTest, RelationsCountFindAndIndex) {
    Node parent("QELITEM_CLASSNAME", "p");
    Node a("QELDOCUMENT_CLASSNAME", "a"), b("QELDOCUMENT_CLASSNAME", "b"), a2("QELFILE_CLASSNAME", "a");
    EXPECT_EQ(parent.getChildrenCount(QELLinkType::ABS_REL), -1);
    parent.addChildrenComponent(&a, QELLinkType::ABS_REL);
    EXPECT_EQ(parent.getChildrenCount(QELLinkType::ABS_REL), 1);
    EXPECT_EQ(parent.getParentsCount(5), -1);
    parent.addChildrenComponent(&a2, QELLinkType::ABS_REL); // same name: the first one stays
    parent.addChildrenComponent(&b, QELLinkType::ABS_REL);
    EXPECT_EQ(parent.getChildrenCount(QELLinkType::ABS_REL), 2);
    EXPECT_EQ(parent.getChildrenComponent(5, "a"), &a);
    EXPECT_EQ(parent.getChildrenComponent(5, 1), &b);
    EXPECT_EQ(parent.getChildrenComponent(5, 2), nullptr);
    EXPECT_EQ(parent.getChildrenComponent(5, "a", "b"), &b);
    EXPECT_EQ(parent.getChildrenComponent(5, "zz", "b"), nullptr);
    parent.addComponent(&b, QELLinkType::ABS_REL, "CUSTOM");
    EXPECT_EQ(parent.getComponent(QELLinkType::ABS_REL, "ignored", 1),
              parent.getComponents(QELLinkType::ABS_REL, "CUSTOM"));
    EXPECT_EQ(parent.getComponent(QELLinkType::ABS_REL, "x", 2), nullptr);
    EXPECT_EQ(parent.getComponent(QELLinkType::ABS_ABV, "x", 0), nullptr);
}

TEST_F(ComponentTest, AbsoluteKeysIncludeParentCompAndTheParentKeyIsOwn) {
    Node ws("QELWORKSPACE_CLASSNAME", "ws");
    Node occ("QELABSOLUTEOCCURRENCE_CLASSNAME", "A");
    Node child("QELABSOLUTEOCCURRENCE_CLASSNAME", "B");
    occ.addStringProperty("Parent_Comp", "X/Y");
    child.addStringProperty("Parent_Comp", "Z");
    ws.addAbsolute(&occ, QELLinkType::WSP_ABS, QELLinkType::LINKNAME_CHILD);
    EXPECT_EQ(ws.getChildrenComponent(1, "AX/Y"), &occ);
    child.addParentAbsolute(&occ, QELLinkType::ABS_ABS, QELLinkType::LINKNAME_PARENT);
    EXPECT_EQ(child.getParentComponent(17, "BZ"), &occ);
}

TEST_F(ComponentTest, GRMLinksAreSharedReusedOrAlwaysNew) {
    Node a("QELDOCUMENT_CLASSNAME", "a"), b("QELITEM_CLASSNAME", "b");
    QELLink* l1 = a.addGRMLink("VT_LINK", &b);
    EXPECT_EQ(a.addGRMLink("VT_LINK", &b), l1);
    EXPECT_EQ(l1->get_Type(), 19);
    EXPECT_EQ(l1->get_Primary(), &a);
    EXPECT_EQ(l1->get_Secondary(), &b);
    ASSERT_NE(b.getGRMLinks("VT_LINK"), nullptr);
    EXPECT_EQ((*b.getGRMLinks("VT_LINK"))[0], l1);
    // From the other end a link of that name is a new one.
    EXPECT_NE(b.addGRMLink("VT_LINK", &a), l1);
    QELLink* d1 = a.addGRMLink("catdesigntable", &b);
    QELLink* d2 = a.addGRMLink("CATDesignTable", &b); // equal ignoring case counts too
    EXPECT_NE(d1, d2);
    EXPECT_NE(a.addGRMLink("CATIA_alternateShapeRep_Link_type", &b),
              a.addGRMLink("CATIA_alternateShapeRep_Link_type", &b));
    TYPVectorPQELLink all;
    a.getAllLinks(all);
    EXPECT_EQ(all.size(), 6);
}

TEST_F(ComponentTest, FilteredLinksUseTheOrRule) {
    Node doc("QELDOCUMENT_CLASSNAME", "doc"), item("QELITEM_CLASSNAME", "item"), form("QELFORM_CLASSNAME", "f");
    EXPECT_EQ(doc.getGRMLinks("L", "QELDOCUMENT_CLASSNAME", "QELITEM_CLASSNAME"), nullptr);
    doc.addGRMLink("L", &item);
    form.addGRMLink("L", &doc);
    std::unique_ptr<TYPVectorPQELLink> both(doc.getGRMLinks("L", "QELDOCUMENT_CLASSNAME", "QELITEM_CLASSNAME"));
    EXPECT_EQ(both->size(), 1);
    std::unique_ptr<TYPVectorPQELLink> either(doc.getGRMLinks("L", "QELFORM_CLASSNAME", "QELITEM_CLASSNAME"));
    EXPECT_EQ(either->size(), 2);
    std::unique_ptr<TYPVectorPQELLink> none(doc.getGRMLinks("absent", "QELFORM_CLASSNAME", "QELITEM_CLASSNAME"));
    EXPECT_EQ(none->size(), 0);
    TYPMapCATUnicodeStringPVoid* byName = doc.getAllGRMLinks("QELFORM_CLASSNAME", "QELITEM_CLASSNAME");
    ASSERT_EQ(byName->size(), 1);
    auto* l = static_cast<TYPVectorPQELLink*>(byName->find("L"));
    EXPECT_EQ(l->size(), 2);
    delete l;
    delete byName;
}

TEST_F(ComponentTest, WhereUsedQueriesMatchNamesIdentically) {
    Node doc("QELDOCUMENT_CLASSNAME", "doc"), twin("QELDOCUMENT_CLASSNAME", "DOC");
    Node i1("QELITEM_CLASSNAME", "i1"), i2("QELITEM_CLASSNAME", "i2");
    doc.addGRMLink("L", &i1);
    doc.addGRMLink("L", &i2);
    twin.addGRMLink("L", &i1);

    std::unique_ptr<TYPVectorPQELLink> asPrimary(doc.getGRMLinksWhereUsedAsPrimary(CATUnicodeString("L")));
    EXPECT_EQ(asPrimary->size(), 2);
    std::unique_ptr<TYPVectorPQELLink> withI1(doc.getGRMLinksWhereUsedAsPrimary(&i1));
    EXPECT_EQ(withI1->size(), 1);
    EXPECT_EQ(doc.getGRMLinksWhereUsedAsPrimary("L", &i2)->get_Secondary(), &i2);
    EXPECT_EQ(doc.getGRMLinksWhereUsedAsPrimary("L", &doc), nullptr);

    std::unique_ptr<TYPVectorPQELLink> items(doc.getGRMLinksWhereUsedAsPrimary("L", "QELITEM_CLASSNAME"));
    EXPECT_EQ(items->size(), 2);
    std::unique_ptr<TYPVectorPQELLink> forms(doc.getGRMLinksWhereUsedAsPrimary("L", "QELFORM_CLASSNAME"));
    EXPECT_EQ(forms->size(), 0);
    EXPECT_EQ(doc.getGRMLinksWhereUsedAsPrimary("none", "QELITEM_CLASSNAME"), nullptr);

    std::unique_ptr<TYPVectorPQELLink> usedBy(i1.getGRMLinksWhereUsedAsSecondary("L", "QELDOCUMENT_CLASSNAME"));
    EXPECT_EQ(usedBy->size(), 2); // doc and DOC are two primaries
    EXPECT_TRUE(i1.hasGRMLinkWhereUsedAsSecondary("L", "QELDOCUMENT_CLASSNAME"));
    EXPECT_FALSE(i1.hasGRMLinkWhereUsedAsSecondary("L", "QELFORM_CLASSNAME"));
    EXPECT_FALSE(doc.hasGRMLinkWhereUsedAsSecondary("L", "QELDOCUMENT_CLASSNAME"));
}

TEST_F(ComponentTest, DesignTableLinksAreAllTakenOtherNamesOncePerSecondary) {
    Node owner("QELDOCUMENT_CLASSNAME", "owner"), dt("QELDOCUMENT_CLASSNAME", "dt");
    owner.addGRMLink("catdesigntable", &dt);
    owner.addGRMLink("catdesigntable", &dt);
    std::unique_ptr<TYPVectorPQELLink> dts(owner.getGRMLinksWhereUsedAsPrimary("catdesigntable", "QELITEM_CLASSNAME"));
    EXPECT_EQ(dts->size(), 2); // unfiltered, whatever the class
    owner.addGRMLink("CATIA_componentShapeRep_Link_type", &dt);
    owner.addGRMLink("CATIA_componentShapeRep_Link_type", &dt);
    std::unique_ptr<TYPVectorPQELLink> shapes(
        owner.getGRMLinksWhereUsedAsPrimary("CATIA_componentShapeRep_Link_type", "QELDOCUMENT_CLASSNAME"));
    EXPECT_EQ(shapes->size(), 1);
}

TEST_F(ComponentTest, PrintStyleOneWritesClassUsageAndLinkBlocks) {
    Node doc("QELDOCUMENT_CLASSNAME", "doc"), item("QELITEM_CLASSNAME", "item");
    doc.addGRMLink("L", &item);
    doc.addChildrenComponent(&item, QELLinkType::DOC_ITM);
    std::string out = doc.print(1).ConvertToChar();
    const std::string uuid = "[0-9a-f-]{36}";
    std::regex expected(
        "\t\t<Class Id=\"QELDOCUMENT_CLASSNAMEdoc\" Name=\"QELDOCUMENT_CLASSNAME::doc\">\n"
        "\t\t\t<ModelChildren>\n_p_property_set is NULL\n\t\t\t</ModelChildren>\n\t\t</Class>\n"
        "\t\t<Usage From=\"QELDOCUMENT_CLASSNAMEdoc\" Id=\"" + uuid + "\" Name=\"GRM_LINK / L\" "
        "To=\"QELDOCUMENT_CLASSNAMEdocQELITEM_CLASSNAMEitem\" />\n"
        "\t\t<Usage From=\"QELDOCUMENT_CLASSNAMEdoc\" Id=\"" + uuid + "\" Name=\"DOC_ITM / LINKNAME_CHILD\" "
        "To=\"QELITEM_CLASSNAMEitem\" />\n");
    EXPECT_TRUE(std::regex_match(out, expected)) << out;

    // Printed for the other end, the link writes its own class block first.
    std::string fromItem = item.print(1).ConvertToChar();
    std::regex linkBlock("\t\t<Class Id=\"QELDOCUMENT_CLASSNAMEdocQELITEM_CLASSNAMEitem\" Name=\"QELLINK::[0-9a-f-]{2}\">\n"
                         "\t\t\t<ModelChildren>\n"
                         "\t\t\t\t<Attribute Id=\"" + uuid + "\" InitialValue=\"GRM_LINK\" Name=\"_type\"/>\n"
                         "\t\t\t\t<Attribute Id=\"" + uuid + "\" InitialValue=\"L\" Name=\"_name\"/>\n"
                         "\t\t\t\t<Attribute Id=\"" + uuid + "\" InitialValue=\"doc\" Name=\"_p_primary\"/>\n"
                         "\t\t\t\t<Attribute Id=\"" + uuid + "\" InitialValue=\"item\" Name=\"_p_secondary\"/>\n"
                         "\t\t\t</ModelChildren>\n\t\t</Class>\n");
    std::smatch m;
    EXPECT_TRUE(std::regex_search(fromItem, m, linkBlock)) << fromItem;
}

TEST_F(ComponentTest, ReleaseForgetsEverythingButTheRelatedObjects) {
    Node a("QELDOCUMENT_CLASSNAME", "a"), b("QELITEM_CLASSNAME", "b");
    a.addStringProperty("k", "v");
    a.addChildrenComponent(&b, QELLinkType::ITM_DOC);
    QELLink* link = a.addGRMLink("L", &b);
    a.release();
    EXPECT_EQ(a.getPropertiesCount(), 0);
    EXPECT_EQ(a.getChildrenCount(QELLinkType::ITM_DOC), -1);
    EXPECT_EQ(a.getGRMLinks("L"), nullptr);
    // The link still serves the other end.
    EXPECT_EQ((*b.getGRMLinks("L"))[0], link);
    EXPECT_EQ(link->get_Name(), CATUnicodeString("L"));
}

// The relation maps key a component by the shared copy of its name: renaming
// or deleting the component must leave the key as it was when related.
TEST_F(ComponentTest, RelationKeysOutliveARenameOrDeletionOfTheRelated) {
    const size_t before = TYPSharedText::count();
    {
        Node parent("QELITEM_CLASSNAME", "parent");
        auto* renamed = new Node("QELDOCUMENT_CLASSNAME", "Document_Name_Past_Fifteen_Characters");
        auto* deleted = new Node("QELDOCUMENT_CLASSNAME", "Another_Long_Document_Name_Here");
        parent.addChildrenComponent(renamed, 5);
        parent.addChildrenComponent(deleted, 5);
        deleted->addParentComponent(&parent, 5);
        renamed->addStringProperty("Parent_Comp", "_Under_A_Long_Parent_Name");
        parent.addAbsolute(renamed, 1, "LINKNAME_CHILD");

        renamed->set_Name("Renamed_Document_With_A_Long_Name");
        delete deleted;
        const TYPMapCATUnicodeStringPVoid* children = parent.getChildrenComponents(5);
        ASSERT_NE(children, nullptr);
        EXPECT_EQ(*children->getKey(0), CATUnicodeString("Document_Name_Past_Fifteen_Characters"));
        EXPECT_EQ(*children->getKey(1), CATUnicodeString("Another_Long_Document_Name_Here"));
        EXPECT_EQ(parent.getChildrenComponent(5, "Document_Name_Past_Fifteen_Characters"), renamed);
        EXPECT_EQ(parent.getChildrenComponent(5, "Renamed_Document_With_A_Long_Name"), nullptr);
        EXPECT_EQ(parent.getChildrenComponent(1, "Document_Name_Past_Fifteen_Characters_Under_A_Long_Parent_Name"),
                  renamed);
        // A new relation keys the new name, beside the old one.
        parent.addChildrenComponent(renamed, 5);
        EXPECT_EQ(parent.getChildrenCount(5), 3);
        EXPECT_NE(parent.getChildrenComponents(5)->erase("Another_Long_Document_Name_Here"), 0);
        delete renamed;
        EXPECT_EQ(*parent.getChildrenComponents(5)->getKey(1), CATUnicodeString("Renamed_Document_With_A_Long_Name"));
    }
    // Every copy went with its last holder.
    EXPECT_EQ(TYPSharedText::count(), before);
}
