// The property update of one answer entry: the key table with its limits,
// and the blocks read after it.

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "QELDocument.h"
#include "QELElementNames.h"
#include "QELFile.h"
#include "QELLink.h"
#include "QELXMLToDMUpdateAccess.h"
#include "QELLinkType.h"

using Access = QELXMLToDMUpdateAccess;
using namespace reader_test;

namespace {

// The element names, unqualified: the answers below read as their lines do.
using namespace QELElement;

std::string lines(const std::vector<std::string>& values) {
    std::string out;
    for (const auto& v : values) out += v + "\n";
    return out;
}

QELFile* fileOf(QELDocument* document) {
    auto* files = document->getLinkedFiles(QELUtilities::getDocFilRefNameFromDocumentType(document->getType()));
    return files ? static_cast<QELFile*>(files->first()) : nullptr;
}

const std::string kAllKeys = leaf(Occ_UID, "OCC-9") + leaf(Occ_CreatedFlag, "1") + leaf(InstanceName, "Part.9") +
                             leaf(Part_Number, "PN-2") + leaf(ItemRev_UID, "UID-9") + leaf(Update_Flag, "3") +
                             leaf(Check_Action, "7") + leaf(DST_UID, "DST-9") + leaf(Old_File_Name, "Old.CATPart") +
                             leaf(File_Name, "New.CATPart") + leaf(File_Version, "CATPartV5") +
                             leaf(Synchronize_Flag, "2") + leaf(Type, "CatalogCompScrew") + leaf(Mask, "5");

class ReaderUpdate : public ReaderTest {
protected:
    void SetUp() override {
        m = SmallModel::build();
        m.partItem->addStringProperty("Part_Number", "PN-1");
        m.occurrence->addStringProperty("InstanceName", "Part.1");
        PROCManager::setIsCommandSave(true);
        PROCManager::setManageCATIAIcons(true);
    }
    void restart() {
        TearDown();
        SetUp();
    }

    void update(QELComponent* component, const std::string& children, bool crlf = false) {
        LoadedEntry entry("update.xml", children, crlf);
        Access::updateProperty(entry.reader(), component, entry.map());
    }

    // (owner, property, value after kAllKeys, value before)
    struct Expectation {
        const QELPropertyHolder* owner;
        const char* property;
        std::string updated;
        std::string before;
    };
    std::vector<Expectation> expectations() {
        QELFile* file = fileOf(m.partDocument);
        return {{m.occurrence, "InstanceName", "Part.9", "Part.1"},
                {m.partItem, "Part_Number", "PN-2", "PN-1"},
                {m.partItem, "Old_Part_Number", "PN-1", ""},
                {m.partItem, "ItemRev_UID", "UID-9", "UID-Part"},
                {m.partDocument, "DST_UID", "DST-9", ""},
                {m.partDocument, "Doc_Old_File_Name", "Old.CATPart", ""},
                {m.partDocument, "ShortFileName", "New.CATPart", ""},
                {file, "Old_File_Name", "Old.CATPart", ""},
                {file, "File_Name", "New.CATPart", ""},
                {file, "File_Version", "CATPartV5", "CATPart"}};
    }

    SmallModel m;
};

TEST_F(ReaderUpdate, KeysReachTheirOwnersUnlessBrokenOrForeign) {
    struct Case {
        const char* what;
        bool broken, foreign, foreignManaged, crlf;
        bool limited;
    };
    const Case cases[] = {
        {"plain entry", false, false, false, false, false},
        {"plain entry, CR LF", false, false, false, true, false},
        {"broken occurrence", true, false, false, false, true},
        {"foreign file", false, true, false, false, true},
        {"foreign file managed on save", false, true, true, false, false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        restart();
        m.occurrence->addBooleanProperty("IsBrokenIcon", c.broken);
        if (c.foreign) m.partDocument->addStringProperty("IsAForeignFile", "FF");
        ENVManager::setManageForeignFilesOnSave(c.foreignManaged);
        const std::string mapping = element(Mapping_Attribut, count(2) + leaf(Attribut, "k") + leaf(Attribut, "v"));
        update(m.occurrence, kAllKeys + mapping, c.crlf);

        // Always taken.
        EXPECT_EQ("OCC-9", text(m.occurrence->getStringProperty("Occ_UID")));
        EXPECT_TRUE(m.occurrence->getBooleanProperty("Occ_CreatedFlag"));
        EXPECT_EQ(c.limited, JNLManager::contains("updating occ uid property for foreign file"));
        for (const Expectation& e : expectations()) {
            EXPECT_EQ(c.limited ? e.before : e.updated, text(e.owner->getStringProperty(e.property))) << e.property;
        }
        EXPECT_EQ(c.limited ? -1 : 3, m.partDocument->getIntegerProperty("Update_Flag"));
        EXPECT_EQ(c.limited ? -1 : 7, m.partDocument->getIntegerProperty("Check_Action"));
        EXPECT_EQ(c.limited ? -1 : 2, m.partDocument->getIntegerProperty("Synchronize_Flag"));
        EXPECT_EQ(c.limited ? -1 : 5, m.occurrence->getIntegerProperty("Mask"));
        EXPECT_EQ(!c.limited, m.partItem->getBooleanProperty("CatalogComp"));
        // Only a foreign file stops before the blocks.
        const bool stopped = c.foreign && c.limited;
        EXPECT_EQ(stopped, m.partDocument->getDynamicProperty(QELDocument::kMappingAttributes) == nullptr);
        EXPECT_EQ(stopped, JNLManager::contains("current object is a foreign file, stop here update of properties"));
    }
}

TEST_F(ReaderUpdate, CheckActionOnlyInSavesAndOnlyWhileUnset) {
    struct Case {
        void (*command)(bool);
        int before; // -1: no property at all
        int after;
    };
    const Case cases[] = {{PROCManager::setIsCommandSave, -1, 7},
                          {PROCManager::setIsCommandSaveAs, -1, 7},
                          {PROCManager::setIsCommandSaveSelected, -1, 7},
                          {PROCManager::setIsCommandSave, 0, 0},
                          {PROCManager::setIsCommandImport, -1, -1}};
    for (const Case& c : cases) {
        restart();
        PROCManager::setIsCommandSave(false);
        c.command(true);
        if (c.before != -1) m.partDocument->addIntegerProperty("Check_Action", c.before);
        update(m.occurrence, leaf(Check_Action, "7"));
        EXPECT_EQ(c.after, m.partDocument->getIntegerProperty("Check_Action"));
    }
}

TEST_F(ReaderUpdate, RefusedEntriesEndWithTheirJournalLine) {
    auto* orphan = QELModelHeap::adopt(new CV5CAAQELAbsoluteOccurrence("OCC-3", "Orphan.1", m.workspace));
    auto* itemOnly = QELModelHeap::adopt(new CV5CAAQELWorkSpace());
    itemOnly->linkItem(m.partItem);
    auto* shape = QELModelHeap::adopt(new CV5CAAQELAbsoluteOccurrence("OCC-S", "Shape.1", m.workspace));
    shape->linkItem(m.partItem);
    shape->addStringProperty("Type", "COMP");
    const std::pair<QELComponent*, const char*> cases[] = {
        {shape, "Component found is a Shape Representation. Update properties is not necessary. Skip."},
        {orphan, "unable to get absolute item"},
        {itemOnly, "unable to get workspace document"},
        {m.partDocument, "current component is not a workspace neither an absolute"},
    };
    for (const auto& c : cases) {
        update(c.first, leaf(Part_Number, "PN-2"));
        EXPECT_TRUE(JNLManager::contains(c.second)) << c.second;
    }
    EXPECT_EQ("PN-1", text(m.partItem->getStringProperty("Part_Number")));
}

TEST_F(ReaderUpdate, StagingPathFollowsTheActiveWorkspaceItem) {
    PROCManager::setIsCatalogStagingManaged(true);
    ENVManager::setCatalogPath("/catalog/");
    ENVManager::setFilesDirectory("/files/");
    CV5CAAQELSession* host = CV5CAAQELSession::getCATIASessionInstance();
    update(m.workspace, leaf(Nomenclature, "x"));
    EXPECT_EQ("/files/", text(host->getStagingPath()));
    m.rootItem->setIsCatalogComp(1);
    update(m.workspace, leaf(Nomenclature, "x"));
    EXPECT_EQ("/catalog/", text(host->getStagingPath()));
    host->setStagingPath("");
    m.workspace->setActiveWorkspace(0);
    update(m.workspace, leaf(Nomenclature, "x"));
    EXPECT_EQ("", text(host->getStagingPath()));
}

// ---- blocks -------------------------------------------------------------------------

TEST_F(ReaderUpdate, AuxiliariesUseASlidingPair) {
    const std::string block = element(Auxiliaries, count(1) + element(Attribut, lines({"a", "b", "c", "d"})));
    m.occurrence->addIntegerProperty("Modified_Flag", -1);
    update(m.occurrence, block);
    EXPECT_EQ(nullptr, m.session->getDocument("b"));

    m.occurrence->addIntegerProperty("Modified_Flag", 1);
    update(m.occurrence, block);
    update(m.occurrence, block); // answered twice: found, not made again
    // (type a, file b) and (type b, file c); d is never a file.
    for (const auto& e : {std::make_pair("b", "a"), std::make_pair("c", "b")}) {
        QELDocument* auxiliary = m.session->getDocument(e.first);
        ASSERT_NE(nullptr, auxiliary) << e.first;
        EXPECT_EQ(e.second, text(auxiliary->getStringProperty("TypeAuxiliary")));
        EXPECT_EQ(e.first, text(auxiliary->getStringProperty("ShortFileName")));
        auto* files = auxiliary->getLinkedFiles("auxiliary");
        ASSERT_NE(nullptr, files);
        EXPECT_EQ(m.session->getFile(e.first), files->first());
        std::unique_ptr<TYPVectorPQELLink> links(m.partDocument->getGRMDocumentLinks(
            CATUnicodeString("CATIA_catpart_") + e.second + "_aux_Link_on_dataset"));
        ASSERT_NE(nullptr, links);
        EXPECT_EQ(1, links->size());
        EXPECT_EQ(auxiliary, (*links)[0]->get_Secondary());
    }
    EXPECT_EQ(nullptr, m.session->getDocument("d"));
}

TEST_F(ReaderUpdate, ShapeListsAreReadInOverlappingGroupsOfSix) {
    QELDocument* envelope = m.partDocument->addAlternateShapeRepresentation("Envelope", "Part_envelope.cgr");
    QELDocument* simplified = m.partDocument->addAlternateShapeRepresentation("dst-1", "Part_simplified.cgr");
    std::unique_ptr<TYPVectorPQELLink> links(m.partDocument->getLinkedAlternateShapeRepresentations());
    ASSERT_EQ(2, links->size());
    // Twelve lines give two groups, at lines 1-3 and 2-4; names compare
    // without letter case; a link already treated keeps its first values.
    const std::string twelve =
        lines({"", "env.cgr", "envelope", "DST-1", "NR-1", "true", "", "x.cgr", "X", "DST-X", "NR-X", "false"});
    const std::string again = lines({"", "late.cgr", "Envelope", "DST-L", "NR-L", "true"});
    update(m.occurrence, element(Shapes, count(2) + element(SR, twelve) + element(SR, again)));
    EXPECT_EQ("env.cgr", text((*links)[0]->getStringProperty("ShortFileName")));
    EXPECT_EQ("DST-1", text(envelope->getStringProperty("DST_UID")));
    EXPECT_EQ("envelope", text((*links)[1]->getStringProperty("ShortFileName")));
    EXPECT_EQ("NR-1", text(simplified->getStringProperty("DST_UID")));
}

TEST_F(ReaderUpdate, ActiveShapesAreReadInPairsInTheSynchronizeCommand) {
    // NBElements 3 reads one pair.
    const std::string block =
        element(ActivateShapes, count(3) + leaf(Attribut, "Light") + leaf(Attribut, "1") + leaf(Attribut, "Heavy"));
    const struct {
        bool synchronize;
        int maj;
        std::vector<std::string> expected;
    } cases[] = {{false, 2, {}}, {true, 1, {}}, {true, 2, {"Light", "1"}}};
    for (const auto& c : cases) {
        restart();
        PROCManager::setIsCommandSynchronizeActiveShapes(c.synchronize);
        m.occurrence->addIntegerProperty("MAJ", c.maj);
        update(m.occurrence, block);
        EXPECT_EQ(c.expected, strings(m.occurrence->getDynamicProperty("ActiveShapes")));
    }
}

TEST_F(ReaderUpdate, AnalysisFilesArePairedOnlyWhenTheCountsAgree) {
    m.occurrence->addDynamicProperty("AnalysisResult", "/r/a.res", "stress", false);
    m.occurrence->addDynamicProperty("AnalysisResult", "/r/b.res", "modes", false);
    m.occurrence->addDynamicProperty("AnalysisComputation", "/c/x.cmp", "solver", false);
    const std::string results = count(2) + leaf(Attribut, "A.res") + leaf(Attribut, "B.res");
    const std::string computations = count(2) + leaf(Attribut, "X1.cmp") + leaf(Attribut, "X2.cmp");
    update(m.occurrence, element(AnalysisFiles, count(2) + element(AnalysisResultsFiles, results) +
                                                    element("OldAnalysisResultsFiles", leaf(Attribut, "a.res")) +
                                                    element(AnalysisComputeFiles, computations)));
    EXPECT_EQ((std::vector<std::string>{"/r/a.res", "A.res", "/r/b.res", "B.res"}),
              strings(m.occurrence->getDynamicProperty("FinalAnalysisResultsFiles")));
    EXPECT_EQ(nullptr, m.occurrence->getDynamicProperty("FinalAnalysisComputeFiles"));
}

TEST_F(ReaderUpdate, BadBlocksEndWithAJournalLine) {
    const struct {
        std::string children;
        const char* journal;
    } cases[] = {
        {element(Auxiliaries, count(1000000) + element(Attribut, lines({"a", "b"}))),
         "Auxiliaries announces 1000000 elements but holds 1"},
        {element(ActivateShapes, count(2) + leaf(Attribut, "Light")),
         "ActivateShapes announces 2 elements but holds 1"},
        {element(DesignTable_File, count(3) + leaf(Attribut, "S.xls")),
         "DesignTable_File announces 3 elements but holds 1"},
        // Cut by the end of the file: the block, then a list inside it.
        {"<Auxiliaries>\n" + count(4) + element(Attribut, lines({"a", "b"})),
         "Auxiliaries announces 4 elements but holds 1"},
        {"<Shapes>\n" + count(2) + "<SR>\n\nf\n", "Shapes announces 2 elements but holds 1"},
    };
    PROCManager::setIsCommandSynchronizeActiveShapes(true);
    m.occurrence->addIntegerProperty("MAJ", 2);
    for (const auto& c : cases) {
        JNLManager::clear();
        update(m.occurrence, c.children);
        EXPECT_TRUE(JNLManager::contains(c.journal)) << c.journal;
        EXPECT_TRUE(JNLManager::contains("END QELXMLToDM::updateProperty"));
    }
}

// ---- catalog component and design table entries ----------------------------------------

TEST_F(ReaderUpdate, DocumentEntriesTakeTheDocumentKeysOnly) {
    m.partItem->addStringProperty("Old_Part_Number", "kept");
    const std::string children =
        leaf(Part_Number, "PN-C") + leaf(ItemRev_UID, "UID-C") + leaf(Occ_UID, "OCC-C") + leaf(Check_Action, "7") +
        leaf(File_Name, "Cat.CATPart") +
        element(Mapping_Attribut, count(2) + leaf(Attribut, "colour") + element(Attribut, "dark\nred\n"));
    // A catalog component's mapping is read for a foreign file only.
    for (bool foreign : {false, true}) {
        if (foreign) m.partDocument->addStringProperty("IsAForeignFile", "FF");
        LoadedEntry entry("catalog.xml", children);
        Access::updatePropertyCompCatalogSpecific(entry.reader(), m.partDocument, entry.map());
        EXPECT_EQ("PN-C", text(m.partItem->getStringProperty("Part_Number")));
        EXPECT_EQ("kept", text(m.partItem->getStringProperty("Old_Part_Number")));
        EXPECT_EQ("UID-Part", text(m.partItem->getStringProperty("ItemRev_UID")));
        EXPECT_EQ("OCC-1", text(m.occurrence->getStringProperty("Occ_UID")));
        EXPECT_EQ(-1, m.partDocument->getIntegerProperty("Check_Action"));
        EXPECT_EQ("Cat.CATPart", text(fileOf(m.partDocument)->getStringProperty("File_Name")));
        // A value over two lines keeps the scanner's line feed and trailing blank.
        const std::vector<std::string> mapping = {"colour", "dark\nred "};
        EXPECT_EQ(foreign ? mapping : std::vector<std::string>(),
                  strings(m.partDocument->getDynamicProperty(QELDocument::kMappingAttributes)));
    }

    // A plain design table document: its item is the one it is filed under,
    // and its mapping is always read.
    QELDocument* table = m.partDocument->addDesignTable("Sizes", "Sizes.xls");
    table->setType(EnumDocumentType_DesignTable);
    auto* owner = QELModelHeap::adopt(new QELItem("Sizes item"));
    table->linkItem(QELLinkType::LINKNAME_PARENT, owner);
    LoadedEntry entry("dt.xml",
                      leaf(Part_Number, "DT-1") +
                          element(Mapping_Attribut, count(2) + leaf(Attribut, "rows") + leaf(Attribut, "12")));
    Access::updatePropertyDT(entry.reader(), table, entry.map());
    EXPECT_EQ("DT-1", text(owner->getStringProperty("Part_Number")));
    EXPECT_EQ((std::vector<std::string>{"rows", "12"}),
              strings(table->getDynamicProperty(QELDocument::kMappingAttributes)));
}

} // namespace
