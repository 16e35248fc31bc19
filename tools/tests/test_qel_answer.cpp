#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "QELAnswerNames.h"
#include "QELAnswerSimulator.h"
#include "QELDescriptionScanner.h"
#include "QELElementNames.h"

namespace {

// The element names, unqualified: the answers below read as their lines do.
using namespace QELElement;

// Descriptions are written as the writer writes them: one tag or value per
// line, CR LF.
std::string frame(const std::vector<std::string>& lines) {
    std::string text;
    for (const std::string& line : lines) text += line + "\r\n";
    return text;
}

std::vector<std::string> leaf(const std::string& name, const std::string& value) {
    return {"<" + name + ">", value, "</" + name + ">"};
}

class AnswerSimulatorTest : public ::testing::Test {
protected:
    void SetUp() override {
        directory = std::filesystem::temp_directory_path() /
                    ("qel-answer-" + std::to_string(::testing::UnitTest::GetInstance()->random_seed()) + "-" +
                     ::testing::UnitTest::GetInstance()->current_test_info()->name());
        std::filesystem::create_directories(directory);
    }
    void TearDown() override { std::filesystem::remove_all(directory); }

    // A description of the given entries, each a wrapper name and the
    // children of its Item_Info; NBElements as given.
    std::string describe(const std::vector<std::pair<std::string, std::vector<std::string>>>& entries, int count) {
        std::vector<std::string> lines = {"<?xml version=\"1.0\" encoding=\"ISO-8859-1\" ?>", "<DESCFILE>",
                                          "<Options>"};
        for (const std::string& line : leaf(SaveDesignTables, "0")) lines.push_back(line);
        lines.push_back("</Options>");
        for (const std::string& line : leaf(NBElements, std::to_string(count))) lines.push_back(line);
        for (const auto& [type, children] : entries) {
            lines.push_back("<" + type + ">");
            lines.push_back("<Item_Info>");
            lines.insert(lines.end(), children.begin(), children.end());
            lines.push_back("</Item_Info>");
            lines.push_back("</" + type + ">");
        }
        lines.push_back("</DESCFILE>");
        const std::string path = (directory / "description.xml").string();
        std::ofstream(path, std::ios::binary) << frame(lines);
        return path;
    }

    // Answers the description and reads the answer back entry by entry.
    void answer(const std::string& description) {
        const std::string path = (directory / "answer.xml").string();
        QELAnswerSimulator simulator;
        std::string error;
        ASSERT_TRUE(simulator.run(description, path, error)) << error;
        std::ifstream in(path, std::ios::binary);
        std::stringstream text;
        text << in.rdbuf();
        answerText = text.str();

        QELDescriptionScanner scanner;
        ASSERT_TRUE(scanner.open(path, error)) << error;
        ASSERT_TRUE(scanner.readHeader(error)) << error;
        options = scanner.options();
        answered.clear();
        QELDescriptionEntry entry;
        while (scanner.nextEntry(entry, error)) answered.push_back(entry);
        ASSERT_EQ(error, "");
    }

    // The lines of a block of an answered entry.
    std::vector<std::string> block(size_t entry, const char* name) const {
        const QELDescriptionElement* element = answered[entry].find(name);
        if (!element) return {};
        std::vector<std::string> lines;
        for (size_t i = element->begin; i < element->end; ++i) lines.emplace_back(answered[entry].line(i));
        return lines;
    }

    std::filesystem::path directory;
    std::string answerText;
    std::vector<std::pair<std::string, std::string>> options;
    std::vector<QELDescriptionEntry> answered;
};

std::vector<std::string> join(std::initializer_list<std::vector<std::string>> parts) {
    std::vector<std::string> all;
    for (const auto& part : parts) all.insert(all.end(), part.begin(), part.end());
    return all;
}

// ---- identity: one document is one item, whatever entries show it ------------

TEST_F(AnswerSimulatorTest, OneDocumentGetsOneItemAcrossEntries) {
    const auto bolt = [](const char* pointer, const char* instance) {
        return join({leaf(POINTER_ADDRESS, pointer), leaf(InstanceName, instance), leaf(Part_Number, "BLT-008"),
                     leaf(File_Name, "Bolt.CATPart")});
    };
    answer(describe(
        {{CATProduct, join({leaf(POINTER_ADDRESS, "0000000000000001"), leaf(File_Name, "Gearbox.CATProduct")})},
         {CATPart, bolt("0000000000000002", "Bolt.1")},
         {CATPart, bolt("0000000000000003", "Bolt.2")}},
        3));
    ASSERT_EQ(answered.size(), 3u);
    EXPECT_EQ(answered[0].value(Item_ID), "ITM-000001");
    EXPECT_EQ(answered[0].value(File_Name), "ITM-000001_A.CATProduct");
    EXPECT_EQ(answered[0].value(Old_File_Name), "Gearbox.CATProduct");
    for (size_t i : {1u, 2u}) {
        EXPECT_EQ(answered[i].value(Item_ID), "ITM-000002");
        EXPECT_EQ(answered[i].value(ItemRev_ID), "A");
        EXPECT_EQ(answered[i].value(File_Name), "ITM-000002_A.CATPart");
        EXPECT_EQ(answered[i].value(Part_Number), "BLT-008");
    }
    EXPECT_EQ(answered[1].value(ItemRev_UID), answered[2].value(ItemRev_UID));
    EXPECT_EQ(answered[1].value(DST_UID), answered[2].value(DST_UID));
    EXPECT_NE(answered[0].value(DST_UID), answered[1].value(DST_UID));
    // Each entry still names its own component.
    EXPECT_EQ(answered[1].value(POINTER_ADDRESS), "0000000000000002");
    EXPECT_EQ(answered[2].value(POINTER_ADDRESS), "0000000000000003");
}

TEST_F(AnswerSimulatorTest, KnownUidsAreKeptAndMissingOnesMade) {
    answer(describe({{CATPart, join({leaf(POINTER_ADDRESS, "0000000000000001"), leaf(File_Name, "Old.CATPart"),
                                     leaf(ItemRev_UID, "UID-Old"), leaf(DST_UID, "DST-Old"),
                                     leaf(NamedRef_UID, "NR-Old"), leaf(Modified_Flag, "0")})},
                     {CATPart, join({leaf(POINTER_ADDRESS, "0000000000000002"), leaf(File_Name, "New.CATPart"),
                                     leaf(Modified_Flag, "1")})}},
                    2));
    ASSERT_EQ(answered.size(), 2u);
    EXPECT_EQ(answered[0].value(ItemRev_UID), "UID-Old");
    EXPECT_EQ(answered[0].value(DST_UID), "DST-Old");
    EXPECT_EQ(answered[0].value(NamedRef_UID), "NR-Old") << "an unmodified document keeps its named reference";
    EXPECT_EQ(answered[1].value(ItemRev_UID), qelAnswerUid("IR", 2, "New.CATPart"));
    EXPECT_EQ(answered[1].value(DST_UID), qelAnswerUid("DS", 2, "New.CATPart"));
    EXPECT_EQ(answered[1].value(NamedRef_UID), qelAnswerUid("NR", 2, "New.CATPart"));
    // No missing part number goes back empty.
    EXPECT_EQ(answered[1].value(Part_Number), "ITM-000002");
}

TEST_F(AnswerSimulatorTest, VersionedDatasetGetsTheNextVersionInsteadOfANamedReference) {
    answer(describe({{DesignTable, join({leaf(POINTER_ADDRESS, "0000000000000009"), leaf(File_Name, "Sizes.xls"),
                                         leaf(DST_Version, "3"), leaf(Date_Last_Modification, "2026-10-28")})}},
                    1));
    ASSERT_EQ(answered.size(), 1u);
    EXPECT_EQ(answered[0].value(DST_Version), "4");
    EXPECT_EQ(answered[0].value(Date_Last_Modification), "2026-10-28");
    EXPECT_FALSE(answered[0].has(NamedRef_UID));
    EXPECT_EQ(answered[0].value(File_Name), "ITM-000001_A.xls");
}

// ---- occurrences, broken icons, flags ---------------------------------------------

TEST_F(AnswerSimulatorTest, OccurrencesKeepTheirUidOrGetACreatedOne) {
    answer(describe({{CATPart, join({leaf(POINTER_ADDRESS, "0000000000000002"), leaf(InstanceName, "Bolt.1"),
                                     leaf(Occ_UID, "u-blt1"), leaf(File_Name, "Bolt.CATPart")})},
                     {CATPart, join({leaf(POINTER_ADDRESS, "0000000000000003"), leaf(InstanceName, "Bolt.2"),
                                     leaf(File_Name, "Bolt.CATPart")})},
                     {CATProduct, join({leaf(POINTER_ADDRESS, "0000000000000001"), leaf(Parent_Comp, "NO"),
                                        leaf(File_Name, "Gearbox.CATProduct")})}},
                    3));
    ASSERT_EQ(answered.size(), 3u);
    EXPECT_EQ(answered[0].value(Occ_UID), "u-blt1");
    EXPECT_FALSE(answered[0].has(Occ_CreatedFlag));
    EXPECT_EQ(answered[1].value(Occ_UID).substr(0, 4), "UID-");
    EXPECT_EQ(answered[1].value(Occ_CreatedFlag), "1");
    EXPECT_FALSE(answered[2].has(Occ_UID)) << "a workspace block names no parent and no instance";
}

TEST_F(AnswerSimulatorTest, BrokenIconGetsItsPointerOnly) {
    answer(describe({{Unknown, join({leaf(POINTER_ADDRESS, "0000000000000004"), leaf(Part_Number, "ERROR"),
                                     leaf(File_Name, "ERROR")})},
                     {CATPart, join({leaf(POINTER_ADDRESS, "0000000000000005"), leaf(DST_UID, "ERROR")})}},
                    2));
    ASSERT_EQ(answered.size(), 2u);
    for (const QELDescriptionEntry& entry : answered) {
        ASSERT_EQ(entry.elements.size(), 1u);
        EXPECT_EQ(entry.name(entry.elements[0]), POINTER_ADDRESS);
    }
}

TEST_F(AnswerSimulatorTest, FlagsFollowTheRenamingAndTheDescribedCheckAction) {
    answer(describe({{CATPart, join({leaf(POINTER_ADDRESS, "0000000000000001"), leaf(File_Name, "A.CATPart"),
                                     leaf(Check_Action, "-1")})},
                     {CATPart, join({leaf(POINTER_ADDRESS, "0000000000000002"), leaf(Check_Action, "2")})}},
                    2));
    ASSERT_EQ(answered.size(), 2u);
    EXPECT_EQ(answered[0].value(Update_Flag), "1");
    EXPECT_EQ(answered[0].value(Check_Action), "0") << "a negative Check_Action is unset";
    EXPECT_EQ(answered[0].value(Mask), "0");
    // Without a file name there is nothing to rename.
    EXPECT_FALSE(answered[1].has(File_Name));
    EXPECT_EQ(answered[1].value(Update_Flag), "0");
    EXPECT_EQ(answered[1].value(Check_Action), "2");
}

TEST_F(AnswerSimulatorTest, EntryWithoutPointerIsPlacedByItsParent) {
    answer(describe({{CATPart, join({leaf(InstanceName, "Bolt.1"), leaf(Parent_ItemRev_UID, "UID-Gearbox"),
                                     leaf(File_Name, "Bolt.CATPart")})}},
                    1));
    ASSERT_EQ(answered.size(), 1u);
    EXPECT_FALSE(answered[0].has(POINTER_ADDRESS));
    EXPECT_EQ(answered[0].value(Parent_ItemRev_UID), "UID-Gearbox");
}

// ---- blocks ------------------------------------------------------------------------

TEST_F(AnswerSimulatorTest, MappingAttributesAreEchoedThenThePdmOnesAdded) {
    answer(describe({{CATPart, join({leaf(POINTER_ADDRESS, "0000000000000001"),
                                     leaf(File_Name, "A.CATPart"),
                                     {"<Mapping_Attribut>"},
                                     leaf(NBElements, "4"),
                                     leaf(Attribut, "Material"),
                                     leaf(Attribut, "Steel"),
                                     leaf(Attribut, "pdm_status"),
                                     leaf(Attribut, "Released"),
                                     {"</Mapping_Attribut>"}})}},
                    1));
    const std::vector<std::string> expected =
        join({leaf(NBElements, "8"), leaf(Attribut, "Material"), leaf(Attribut, "Steel"), leaf(Attribut, "pdm_status"),
              leaf(Attribut, "Released"), leaf(Attribut, "pdm_item_id"), leaf(Attribut, "ITM-000001"),
              leaf(Attribut, "pdm_revision"), leaf(Attribut, "A")});
    EXPECT_EQ(block(0, Mapping_Attribut), expected) << "a described attribute is not given twice";
}

TEST_F(AnswerSimulatorTest, SecondariesAnswerInTheGroupsTheReaderReads) {
    // Described: path, "", part number, dataset UID, named reference UID,
    // true/false, mask.
    answer(describe({{CATPart, join({leaf(POINTER_ADDRESS, "0000000000000001"),
                                     leaf(File_Name, "Cover.CATPart"),
                                     {"<secondaries>"},
                                     leaf(NBElements, "2"),
                                     {"<secondary>", "C:\\data\\Cover_mesh.model", "", "CVR-M", "", "NR-M", "true", "3",
                                      "</secondary>", "<secondary>", "/data/Cover.pdf", "", "", "DST-P", "", "false",
                                      "0", "</secondary>"},
                                     {"</secondaries>"}})}},
                    1));
    const std::vector<std::string> lines = block(0, secondaries);
    // Read at g+1 (new name), g+3 (part number), g+5 (modified), g+6 (mask).
    const std::vector<std::string> expected =
        join({leaf(NBElements, "2"),
              {"<secondary>", "C:\\data\\Cover_mesh.model", "ITM-000001_A_S1.model",
               qelAnswerUid("DS", 1, "ITM-000001/S1/C:\\data\\Cover_mesh.model"), "CVR-M",
               qelAnswerUid("NR", 1, "ITM-000001/S1/C:\\data\\Cover_mesh.model"), "1", "3", "</secondary>"},
              {"<secondary>", "/data/Cover.pdf", "ITM-000001_A_S2.pdf", "DST-P", "ITM-000001-S2",
               qelAnswerUid("NR", 1, "ITM-000001/S2//data/Cover.pdf"), "0", "0", "</secondary>"}});
    EXPECT_EQ(lines, expected);
}

TEST_F(AnswerSimulatorTest, ShapeGroupsKeepTheirLayoutWithNewNames) {
    const std::vector<std::string> shapeGroup = {"<SR>", "", "Shaft_simplified.cgr", "Simplified", "", "NR-S", "true",
                                                 "</SR>"};
    answer(describe({{CATPart, join({leaf(POINTER_ADDRESS, "0000000000000001"),
                                     leaf(File_Name, "Shaft.CATPart"),
                                     {"<Components>"},
                                     leaf(NBElements, "1"),
                                     leaf(ComponentName, "Shaft simplified"),
                                     {"<Shapes>"},
                                     leaf(NBElements, "1"),
                                     shapeGroup,
                                     {"</Shapes>", "</Components>"}})}},
                    1));
    const std::string key = "ITM-000001/SR1/Simplified";
    const std::vector<std::string> expected =
        join({leaf(NBElements, "1"),
              leaf(ComponentName, "Shaft simplified"),
              {"<Shapes>"},
              leaf(NBElements, "1"),
              {"<SR>", "", "ITM-000001_A_SR1.cgr", "Simplified", qelAnswerUid("DS", 1, key), qelAnswerUid("NR", 1, key),
               "true", "</SR>"},
              {"</Shapes>"}});
    EXPECT_EQ(block(0, Components), expected);
}

TEST_F(AnswerSimulatorTest, ExternalFilesAndPliesGetNewNames) {
    answer(describe({{CATPart, join({leaf(POINTER_ADDRESS, "0000000000000001"),
                                     leaf(File_Name, "Panel.CATPart"),
                                     {"<Externals>"},
                                     leaf(NBElements, "1"),
                                     {"<Attribut>", "datasheet.pdf", "", "</Attribut>"},
                                     {"</Externals>", "<PartComposites>", "<Stacking>", "Stacking.1", "<Sequence>",
                                      "Sequence.1", "<Ply>", "Ply.1", "/data/Ply.1.3dxml", ""},
                                     leaf(Material, "Carbon"),
                                     {"<COGPosition>", "1", "2", "3", "</COGPosition>", "</Ply>", "</Sequence>",
                                      "</Stacking>", "</PartComposites>"}})}},
                    1));
    // The reader takes (old name, new name) per external file, and per ply
    // its name then the new 3D and 2D names, an empty one left as it is.
    EXPECT_EQ(block(0, Externals),
              join({leaf(NBElements, "1"), {"<Attribut>", "datasheet.pdf", "ITM-000001_A_X1.pdf", "</Attribut>"}}));
    EXPECT_EQ(block(0, PartComposites),
              (std::vector<std::string>{"<Stacking>", "Stacking.1", "<Sequence>", "Sequence.1", "<Ply>", "Ply.1",
                                        "ITM-000001_A_P2_3D.3dxml", "", "</Ply>", "</Sequence>", "</Stacking>"}));
}

// ---- the frame --------------------------------------------------------------------------

TEST_F(AnswerSimulatorTest, MalformedDescriptionNamesItsLineAndLeavesNoAnswer) {
    const std::string path = (directory / "broken.xml").string();
    std::ofstream(path, std::ios::binary) << frame(join({{"<?xml version=\"1.0\" ?>", "<DESCFILE>"},
                                                         leaf(NBElements, "1"),
                                                         {"<CATPart>", "<Item_Info>", "<Mapping_Attribut>"},
                                                         leaf(NBElements, "0"),
                                                         {"</Item_Info>", "</CATPart>", "</DESCFILE>"}}));
    const std::string answerPath = (directory / "answer.xml").string();
    QELAnswerSimulator simulator;
    std::string error;
    EXPECT_FALSE(simulator.run(path, answerPath, error));
    EXPECT_EQ(simulator.errorLine(), 12);
    EXPECT_NE(error.find("</Item_Info> closes <Mapping_Attribut> opened on line 8"), std::string::npos) << error;
    EXPECT_FALSE(simulator.writeFailed());
    EXPECT_FALSE(std::filesystem::exists(answerPath));
}

// ---- names ------------------------------------------------------------------------------

// Well-framed descriptions whose values the answer could misplace: an element
// where a positional value belongs is never echoed as structure, and a value
// the answer cannot carry fails the run with no answer left behind.
TEST_F(AnswerSimulatorTest, ValuesNeverBecomeStructure) {
    answer(describe({{CATPart, join({leaf(POINTER_ADDRESS, "0000000000000001"),
                                     leaf(File_Name, "Cover.CATPart"),
                                     {"<Part_Number>", "<X>", "v", "</X>", "</Part_Number>"},
                                     {"<secondaries>"},
                                     leaf(NBElements, "1"),
                                     {"<secondary>", "C:\\m.model", "", "<secondary>", "in", "</secondary>",
                                      "DS-1", "</secondary>"},
                                     {"</secondaries>"}})}},
                    1));
    EXPECT_EQ(answered[0].value(Part_Number), "ITM-000001");
    const std::vector<std::string> lines = block(0, secondaries);
    const std::vector<std::string> expected =
        join({leaf(NBElements, "1"),
              {"<secondary>", "C:\\m.model", "ITM-000001_A_S1.model", "in", "ITM-000001-S1",
               qelAnswerUid("NR", 1, "ITM-000001/S1/C:\\m.model"), "0", "0", "</secondary>"}});
    EXPECT_EQ(lines, expected);

    const std::string description =
        describe({{CATPart, join({leaf(POINTER_ADDRESS, "0000000000000001"), leaf(File_Name, "a</Old_File_Name>")})}},
                 1);
    const std::string answerPath = (directory / "unanswerable.xml").string();
    QELAnswerSimulator simulator;
    std::string error;
    EXPECT_FALSE(simulator.run(description, answerPath, error));
    EXPECT_TRUE(simulator.unanswerable());
    EXPECT_EQ(simulator.errorLine(), 11);
    EXPECT_NE(error.find("\"a</Old_File_Name>\" cannot be answered in <Old_File_Name>"), std::string::npos) << error;
    EXPECT_FALSE(std::filesystem::exists(answerPath));
}

} // namespace
