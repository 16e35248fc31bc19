#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "CATListValCATUnicodeString.h"
#include "QELChangeTable.h"
#include "QELDocument.h"
#include "QELElementNames.h"
#include "QELHandleTable.h"
#include "QELItem.h"
#include "QELModelHeap.h"
#include "QELPropertyText.h"
#include "QELSession.h"

namespace {

struct Row {
    std::string className, component, property, type, oldValue, newValue;
    bool hadValue, hasValue;
};

class ChangeTableTest : public ::testing::Test {
protected:
    void SetUp() override { QELSession::freeModel(); }
    void TearDown() override {
        QELSession::freeModel();
        EXPECT_EQ(QELHandleTable::liveCount(), 0u);
    }

    // Each row as "class component property type: old -> new", "(none)" for
    // an old value there was not.
    std::vector<std::string> lines() const {
        std::vector<std::string> out;
        for (const Row& r : rows())
            out.push_back(r.className + " " + r.component + " " + r.property + " " + r.type + ": " +
                          (r.hadValue ? r.oldValue : "(none)") + " -> " + r.newValue);
        return out;
    }
    std::vector<Row> rows() const {
        std::vector<Row> out;
        table.diff([&out](const QELChange& c) {
            out.push_back({std::string(c.className), std::string(c.component), std::string(c.property),
                           std::string(c.type), std::string(c.oldValue), std::string(c.newValue), c.hadValue,
                           c.hasValue});
        });
        return out;
    }

    QELChangeTable table;
};

TEST_F(ChangeTableTest, NothingChangedGivesNoRow) {
    auto* item = QELModelHeap::adopt(new QELItem("Bolt"));
    item->addStringProperty("Item_ID", "Bolt");
    item->addIntegerProperty("MAJ", 1);
    QELSession::getInstance()->addBooleanProperty("Calcul", true);
    table.snapshot();
    // Writing the same values again is no change.
    item->addStringProperty("Item_ID", "Bolt");
    QELSession::getInstance()->addBooleanProperty("Calcul", true);
    EXPECT_TRUE(rows().empty());
}

TEST_F(ChangeTableTest, ChangedAndNewPropertiesInComponentOrder) {
    auto* bolt = QELModelHeap::adopt(new QELItem("Bolt"));
    auto* shaft = QELModelHeap::adopt(new QELItem("Shaft"));
    bolt->addStringProperty("Item_ID", "Bolt");
    bolt->addStringProperty("Nomenclature", "M8");
    shaft->addIntegerProperty("Update_Flag", 0);
    table.snapshot();

    // Changed in the later component first: rows still follow construction order.
    shaft->addIntegerProperty("Update_Flag", 1);
    bolt->addStringProperty("Item_ID", "ITM-000001");
    bolt->addStringProperty("Old_Part_Number", "BLT-008");
    // A replaced property moves to the end of the set, and its kind may change.
    bolt->addIntegerProperty("Nomenclature", 7);

    EXPECT_EQ(lines(), (std::vector<std::string>{"QELITEM Bolt Item_ID string: Bolt -> ITM-000001",
                                                 "QELITEM Bolt Old_Part_Number string: (none) -> BLT-008",
                                                 "QELITEM Bolt Nomenclature integer: M8 -> 7",
                                                 "QELITEM Shaft Update_Flag integer: 0 -> 1"}));
}

TEST_F(ChangeTableTest, SessionComesFirstAndNewComponentsShowEveryProperty) {
    auto* item = QELModelHeap::adopt(new QELItem("Bolt"));
    table.snapshot();
    item->addStringProperty("Item_ID", "ITM-000001");
    QELSession::getInstance()->addBooleanProperty("UpdateStatusIcons", true);
    auto* made = QELModelHeap::adopt(new QELDocument("Bolt_aux.pdf"));
    made->addStringProperty("TypeAuxiliary", "PDF");

    const std::vector<Row> changes = rows();
    ASSERT_GE(changes.size(), 3u);
    EXPECT_EQ(changes[0].className, "QELSESSION");
    EXPECT_EQ(changes[0].component, "session");
    EXPECT_EQ(changes[0].newValue, "true");
    EXPECT_EQ(changes[1].component, "Bolt");
    // Whatever the new document holds is new, its own property among it.
    bool typeShown = false;
    for (size_t i = 2; i < changes.size(); ++i) {
        EXPECT_EQ(changes[i].className, "QELDOCUMENT");
        EXPECT_EQ(changes[i].component, "Bolt_aux.pdf");
        EXPECT_FALSE(changes[i].hadValue) << changes[i].property;
        typeShown = typeShown || (changes[i].property == "TypeAuxiliary" && changes[i].newValue == "PDF");
    }
    EXPECT_TRUE(typeShown);
}

TEST_F(ChangeTableTest, ValuesOfEveryKindAreComparedAsText) {
    auto* document = QELModelHeap::adopt(new QELDocument("Bolt.CATPart"));
    const double identity[16] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0.1, 0, 0, 1};
    document->addMatrixProperty("RelativeMatrix", identity);
    document->addDynamicProperty(QELDocument::kMappingAttributes, "Material", "Steel", false);
    document->addStringArrayProperty("VtSkipped", "a");
    table.snapshot();

    double moved[16];
    std::copy(identity, identity + 16, moved);
    moved[12] = 0.1 + 1e-16; // the last bit of a number is a change
    document->addMatrixProperty("RelativeMatrix", moved);
    document->addDynamicProperty(QELDocument::kMappingAttributes, "pdm_status", "Working", false);
    document->addStringArrayProperty("VtSkipped", "b");

    const std::vector<std::string> changes = lines();
    ASSERT_EQ(changes.size(), 3u);
    EXPECT_EQ(changes[0], "QELDOCUMENT Bolt.CATPart Mapping_Attribut pairs: Material=Steel -> "
                          "Material=Steel; pdm_status=Working");
    EXPECT_EQ(changes[1], "QELDOCUMENT Bolt.CATPart VtSkipped strings: [a] -> [a, b]");
    // The two matrices differ in their last digits only.
    EXPECT_EQ(changes[2].rfind("QELDOCUMENT Bolt.CATPart RelativeMatrix matrix: ", 0), 0u) << changes[2];
    const Row matrix = rows()[2];
    EXPECT_NE(matrix.oldValue, matrix.newValue);
}

} // namespace
