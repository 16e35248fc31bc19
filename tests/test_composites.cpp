#include <gtest/gtest.h>

#include "CleanSessionTest.h"

#include <functional>
#include <string>

#include "QELDocument.h"
#include "QELGeoDatas.h"
#include "QELLinkType.h"
#include "QELPliesGroup.h"
#include "QELPly.h"
#include "QELSequence.h"
#include "QELSession.h"
#include "QELStacking.h"

namespace {

std::string text(const CATUnicodeString& s) { return s.ToLatin1(); }

using CompositesTest = qeltest::CleanSessionTest;

} // namespace

TEST_F(CompositesTest, TreeHangsFromTheDocumentUnderOneKeyPerLink) {
    QELDocument doc("Wing.CATPart", EnumDocumentType_Part);
    QELStacking stacking(&doc, "Stacking.1");
    QELPliesGroup group1(&stacking, "PG.1");
    QELPliesGroup group2(&stacking, "PG.2");
    QELSequence sequence(&group1, "Seq.1");
    QELPly ply1(&sequence, "Ply.1");
    QELPly ply2(&sequence, "Ply.2");

    EXPECT_EQ(&stacking, doc.getComponent(QELLinkType::DOC_STACKING, "LINKNAME_DOC_STACKING", "Stacking.1"));
    TYPMapCATUnicodeStringPVoid* groups =
        stacking.getComponents(QELLinkType::STACKING_PLIES_GROUP, "LINKNAME_STACKING_PLIESGROUP");
    ASSERT_NE(nullptr, groups);
    EXPECT_EQ(2, groups->size());
    EXPECT_EQ(&group2, groups->find("PG.2"));
    EXPECT_EQ(&sequence,
              group1.getComponent(QELLinkType::PLIES_GROUP_SEQUENCE, "LINKNAME_PLIESGROUP_SEQUENCE", "Seq.1"));
    EXPECT_EQ(nullptr, group2.getComponents(QELLinkType::PLIES_GROUP_SEQUENCE));
    TYPMapCATUnicodeStringPVoid* plies = sequence.getComponents(QELLinkType::SEQUENCE_PLY, "LINKNAME_SEQUENCE_PLY");
    ASSERT_NE(nullptr, plies);
    EXPECT_EQ(&ply1, plies->getObject(0));
    EXPECT_EQ(&ply2, plies->getObject(1));

    EXPECT_EQ("Ply.2", text(ply2.getSignature()));
    EXPECT_TRUE(stacking.instanceOf("QELSTACKING_CLASSNAME"));
    EXPECT_TRUE(group1.instanceOf("QELPLIES_GROUP_CLASSNAME"));
    EXPECT_TRUE(sequence.instanceOf("QELSEQUENCE_CLASSNAME"));
    EXPECT_TRUE(ply1.instanceOf("QELPLY_CLASSNAME"));
}

TEST_F(CompositesTest, GettersReadTheirOwnPropertyNotTheName) {
    QELDocument doc("Wing.CATPart");
    QELGeoDatas body(&doc, "Body.1");
    QELStacking stacking(&doc, "Stacking.1");
    QELPliesGroup group(&stacking, "PG.1");
    QELSequence sequence(&group, "Seq.1");
    QELPly ply(&sequence, "Ply.1");

    const struct {
        QELComponent* component;
        const char* property;
        std::function<CATUnicodeString()> get;
    } rows[] = {{&body, "display_name", [&] { return body.getBody(); }},
                {&stacking, "stacking_name", [&] { return stacking.getStacking(); }},
                {&group, "plies_group_name", [&] { return group.getPliesGroup(); }},
                {&sequence, "sequence_name", [&] { return sequence.getSequence(); }},
                {&ply, "ply_name", [&] { return ply.getPly(); }}};
    for (const auto& row : rows) {
        EXPECT_EQ("", text(row.get())) << row.property;
        row.component->addStringProperty(row.property, "value");
        EXPECT_EQ("value", text(row.get())) << row.property;
    }
    EXPECT_EQ("Ply.1", text(ply.get_Name()));
}

TEST_F(CompositesTest, PliesOfOneNameInASequenceAreOneEntry) {
    QELDocument doc("Wing.CATPart");
    QELStacking stacking(&doc, "Stacking.1");
    QELPliesGroup group(&stacking, "PG.1");
    QELSequence sequence(&group, "Seq.1");
    QELPly first(&sequence, "Ply.1");
    QELPly twin(&sequence, "Ply.1");

    TYPMapCATUnicodeStringPVoid* plies = sequence.getComponents(QELLinkType::SEQUENCE_PLY, "LINKNAME_SEQUENCE_PLY");
    ASSERT_NE(nullptr, plies);
    EXPECT_EQ(1, plies->size());
    EXPECT_EQ(&first, plies->find("Ply.1"));

    // An existing ply may be filed under a second sequence too.
    QELSequence other(&group, "Seq.2");
    other.linkPly(&first);
    EXPECT_EQ(&first, other.getComponent(QELLinkType::SEQUENCE_PLY, "LINKNAME_SEQUENCE_PLY", "Ply.1"));
    EXPECT_EQ(2, group.getComponents(QELLinkType::PLIES_GROUP_SEQUENCE, "LINKNAME_PLIESGROUP_SEQUENCE")->size());
}
