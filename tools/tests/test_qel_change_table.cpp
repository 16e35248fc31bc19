#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "CATListValCATUnicodeString.h"
#include "QELChangeTable.h"
#include "QELDocument.h"
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

    const std::vector<Row> changes = rows();
    ASSERT_EQ(changes.size(), 4u);
    EXPECT_EQ(changes[0].className, "QELITEM");
    EXPECT_EQ(changes[0].component, "Bolt");
    EXPECT_EQ(changes[0].property, "Item_ID");
    EXPECT_EQ(changes[0].oldValue, "Bolt");
    EXPECT_EQ(changes[0].newValue, "ITM-000001");
    EXPECT_EQ(changes[1].property, "Old_Part_Number");
    EXPECT_FALSE(changes[1].hadValue);
    EXPECT_EQ(changes[2].property, "Nomenclature");
    EXPECT_EQ(changes[2].type, "integer");
    EXPECT_EQ(changes[2].oldValue, "M8");
    EXPECT_EQ(changes[2].newValue, "7");
    EXPECT_EQ(changes[3].component, "Shaft");
    EXPECT_EQ(changes[3].oldValue, "0");
    EXPECT_EQ(changes[3].newValue, "1");
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
    document->addDynamicProperty("Mapping_Attribut", "Material", "Steel", false);
    document->addStringArrayProperty("VtSkipped", "a");
    table.snapshot();

    double moved[16];
    std::copy(identity, identity + 16, moved);
    moved[12] = 0.1 + 1e-16; // the last bit of a number is a change
    document->addMatrixProperty("RelativeMatrix", moved);
    document->addDynamicProperty("Mapping_Attribut", "pdm_status", "Working", false);
    document->addStringArrayProperty("VtSkipped", "b");

    const std::vector<Row> changes = rows();
    ASSERT_EQ(changes.size(), 3u);
    EXPECT_EQ(changes[0].property, "Mapping_Attribut");
    EXPECT_EQ(changes[0].oldValue, "Material=Steel");
    EXPECT_EQ(changes[0].newValue, "Material=Steel; pdm_status=Working");
    EXPECT_EQ(changes[1].property, "VtSkipped");
    EXPECT_EQ(changes[1].newValue, "[a, b]");
    EXPECT_EQ(changes[2].property, "RelativeMatrix");
    EXPECT_NE(changes[2].oldValue, changes[2].newValue);
}

TEST_F(ChangeTableTest, TextRenderingOfEachKind) {
    auto* item = QELModelHeap::adopt(new QELItem("\xC9l\xE9ment"));
    item->addStringProperty("Name", "Fa\xE7" "ade");
    item->addBooleanProperty("Flag", false);
    item->addIntegerArrayProperty("Indices", 3);
    item->addIntegerArrayProperty("Indices", -1);
    item->addBooleanArrayProperty("Flags", true);
    CATListValCATUnicodeString list;
    list.Append("x");
    list.Append("y");
    item->addStringListProperty("List", list);
    EXPECT_EQ(qelPropertyText(*item, 0), "Fa\xC3\xA7" "ade") << "ISO-8859-1 is shown as UTF-8";
    EXPECT_EQ(qelPropertyText(*item, 1), "false");
    EXPECT_EQ(qelPropertyText(*item, 2), "[3, -1]");
    EXPECT_EQ(qelPropertyText(*item, 3), "[true]");
    EXPECT_EQ(qelPropertyText(*item, 4), "[x, y]");
    EXPECT_EQ(qelPropertyText(*item, 5), "") << "out of range";
}

TEST_F(ChangeTableTest, PrintedTableAndJson) {
    auto* item = QELModelHeap::adopt(new QELItem("Couvercle \xE9l\xE9ment"));
    item->addStringProperty("Nomenclature", "two\nlines");
    table.snapshot();
    item->addStringProperty("Item_ID", "ITM-000001");
    item->addStringProperty("Nomenclature", "say \"hi\"");

    std::ostringstream text;
    EXPECT_EQ(qelPrintChangeTable(table, text, false), 2);
    const std::string shown = text.str();
    EXPECT_EQ(shown.substr(0, shown.find('\n')).find("CLASS"), 0u);
    // Columns line up by characters, not bytes: "é" takes one column.
    std::istringstream lines(shown);
    std::string heading, first, second;
    std::getline(lines, heading);
    std::getline(lines, first);
    std::getline(lines, second);
    EXPECT_EQ(heading.find("PROPERTY") + 2, first.find("Item_ID")) << "two characters of two bytes each";
    EXPECT_EQ(heading.find("PROPERTY") + 2, second.find("Nomenclature"));
    EXPECT_NE(first.find("(none)"), std::string::npos);
    EXPECT_NE(second.find("two\\nlines"), std::string::npos) << "a row stays on one line";

    std::ostringstream json;
    EXPECT_EQ(qelPrintChangeTable(table, json, true), 2);
    EXPECT_NE(json.str().find("\"component\": \"Couvercle \xC3\xA9l\xC3\xA9ment\""), std::string::npos) << json.str();
    EXPECT_NE(json.str().find("\"old\": \"two\\nlines\", \"new\": \"say \\\"hi\\\"\""), std::string::npos);
    EXPECT_NE(json.str().find("\"property\": \"Item_ID\", \"type\": \"string\", \"old\": null"), std::string::npos);
    EXPECT_NE(json.str().find("\"rows\": 2}"), std::string::npos);
}

} // namespace
