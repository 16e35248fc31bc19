// The block of one node per process: what is gathered, which writer runs, the
// element order the PDM side reads, and the rules that change a block's
// content (broken icons, flattening, update status, secondaries).

#include <functional>
#include <string>
#include <vector>

#include "QELElementNames.h"
#include "QELLinkType.h"
#include "QELStatus.h"
#include "QELDMToXMLDocumentsAccess.h"

using namespace documents_test;
using Access = QELDMToXMLDocumentsAccess;
// The element names, unqualified: the lists below read as the blocks do.
using namespace QELElement;

namespace {

class ProcessesTest : public DocumentsTest {};

struct ProcessCase {
    const char* name;
    std::function<void()> select;
    bool neverStored; // "Dat_File_Version" "0": version and date instead of the named reference
    Lines children;   // of Part.1's Item_Info
};

void save1() {
    PROCManager::setIsCommandSave(true);
    PROCManager::setIsPhasePhase1(true);
}

// The lists are packed as the blocks read, one element after the other.
// clang-format off
const Lines kSavePhase1 = {POINTER_ADDRESS, InstanceName, Occ_UID, Inst_Description, Parent_Part_Number,
                           Parent_Instance_Name, Parent_Doc_Name, Parent_DST_UID, Parent_ItemRev_UID, Parent_Comp,
                           Matrix, Matrix_Action, Part_Number, DST_UID, Type, ItemRev_UID, NamedRef_UID,
                           Old_Model_Name, BVR_Date, Nomenclature, File_Name, Old_File_Name, File_Version,
                           Check_Action, MAJ, Modified_Flag, Doc_UUID, Mapping_Attribut, AnalysisFiles, VTSkippedOcc,
                           LinkedDocs, DT_Files, DT_Sheets, DT_Cfgs, secondaries, Shapes, Mask};

TEST_F(ProcessesTest, EachProcessWritesItsElementOrder) {
    const std::vector<ProcessCase> cases = {
        // Save phase 1 wins over the other commands.
        {"save phase 1",
         [] {
             save1();
             PROCManager::setIsCommandImport(true);
         },
         false, kSavePhase1},
        {"save as phase 1",
         [] {
             PROCManager::setIsCommandSaveAs(true);
             PROCManager::setIsPhasePhase1(true);
         },
         false, kSavePhase1},
        {"synchronize active shapes", [] { PROCManager::setIsCommandSynchronizeActiveShapes(true); }, false,
         kSavePhase1},
        {"save phase 2",
         [] {
             PROCManager::setIsCommandSaveSelected(true);
             PROCManager::setIsPhasePhase2(true);
         },
         false,
         {POINTER_ADDRESS, ActivateShapes, DefaultShapeForCache, AbsoluteMatrix, VisibleOverrides, Externals,
          ScenesOverrides, Mapping_Inst, PartComposites}},
        {"BRR",
         [] { PROCManager::setIsProcessBRRSave(true); },
         false,
         {POINTER_ADDRESS, InstanceName, Occ_UID, Inst_Description, Parent_Part_Number, Parent_Instance_Name,
          Parent_Doc_Name, Parent_DST_UID, Parent_Comp, Parent_ItemRev_UID, Matrix, Matrix_Action, Part_Number,
          DST_UID, Type, NamedRef_UID, ItemRev_UID, Old_Model_Name, BVR_Date, Nomenclature, File_Name, Old_File_Name,
          File_Version, Check_Action, MAJ, Modified_Flag, Doc_UUID, Mapping_Attribut, Mapping_Inst, AnalysisFiles,
          VTSkippedOcc, LinkedDocs, DT_Files, DT_Sheets, DT_Cfgs, Shapes, ActivateShapes, DefaultShapeForCache,
          AbsoluteMatrix, secondaries, PartComposites}},
        {"import",
         [] {
             PROCManager::setIsCommandImport(true);
             PROCManager::setIsProcessBRRSave(true);
         },
         true,
         {POINTER_ADDRESS, InstanceName, Occ_UID, Inst_Description, Parent_Part_Number, Parent_Instance_Name,
          Parent_Doc_Name, Parent_DST_UID, Parent_ItemRev_UID, Parent_Comp, Matrix, Matrix_Action, Part_Number,
          DST_UID, Type, Date_Last_Modification, DST_Version, ItemRev_UID, Old_Model_Name, BVR_Date, Nomenclature,
          File_Name, Old_File_Name, File_Version, Check_Action, MAJ, Modified_Flag, Doc_UUID, Mapping_Attribut,
          Mapping_Inst, AnalysisFiles, VTSkippedOcc, LinkedDocs, DT_Files, DT_Sheets, DT_Cfgs, Shapes, ActivateShapes,
          DefaultShapeForCache, AbsoluteMatrix, VisibleOverrides, ScenesOverrides, secondaries, Externals,
          PartComposites}},
        {"create spreadsheet",
         [] { PROCManager::setIsCommandCreateSpreadsheet(true); },
         false,
         {InstanceName, Parent_Part_Number, Parent_Instance_Name, Parent_Doc_Name, Parent_DST_UID, Parent_Comp,
          Parent_ItemRev_UID, NamedRef_UID, Matrix, Matrix_Action, Part_Number, DST_UID, Type, ItemRev_UID,
          Old_Model_Name, File_Name, File_Version, MAJ, Modified_Flag, Doc_UUID, Mapping_Attribut, LinkedDocs}},
        {"state details",
         [] {
             PROCManager::setIsProcessStateDetailsFactory(true);
             PROCManager::setIsProcessStateDetails(true);
         },
         true,
         {POINTER_ADDRESS, InstanceName, Matrix_Action, Part_Number, DST_UID, DST_Version, Date_Last_Modification,
          ItemRev_UID, File_Name, Type, File_Version, BVR_Date, MAJ, Modified_Flag, IsDocSelected, Mapping_Attribut}},
        {"life cycle, stored",
         [] { PROCManager::setIsProcessLifeCycleFactory(true); },
         false,
         {POINTER_ADDRESS, InstanceName, Matrix_Action, Part_Number, DST_UID, ItemRev_UID, NamedRef_UID, File_Name,
          Type, File_Version, Check_Action, MAJ, Mapping_Attribut, secondaries}},
        {"life cycle, never stored",
         [] {
             PROCManager::setIsProcessLifeCycleFactory(true);
             PROCManager::setIsProcessBRRSave(true);
         },
         true,
         {POINTER_ADDRESS, InstanceName, Matrix_Action, Part_Number, DST_UID, DST_Version, ItemRev_UID, File_Name,
          Type, File_Version, Check_Action, MAJ, Mapping_Attribut, secondaries}},
    };
    // clang-format on
    for (const ProcessCase& c : cases) {
        SCOPED_TRACE(c.name);
        ProcessModel m = ProcessModel::build();
        ProcessModel::manageEverything();
        c.select();
        m.partDoc->addStringProperty("Dat_File_Version", c.neverStored ? "0" : "1");

        const Lines lines = written([&](QELDMToXML& w) { Access::writeDesc(w, m.part); });
        const std::vector<Lines> blocks = childrenOf(lines, Item_Info);
        ASSERT_FALSE(blocks.empty());
        EXPECT_EQ(blocks[0], c.children);
        EXPECT_EQ(topElements(lines)[0], CATPart);
        EXPECT_EQ(childrenOf(lines, CATPart), std::vector<Lines>{{Item_Info}});

        QELSession::freeModel();
        resetAll();
    }
}

TEST_F(ProcessesTest, NoProcessWritesNothing) {
    ProcessModel m = ProcessModel::build();
    PROCManager::setIsCommandSave(true); // a save outside its phases
    EXPECT_TRUE(written([&](QELDMToXML& w) { Access::writeDesc(w, m.part); }).empty());
}

TEST_F(ProcessesTest, SavePhase1WorkspaceBlockEndsWithItsConfiguration) {
    ProcessModel m = ProcessModel::build();
    save1();
    const Lines lines = written([&](QELDMToXML& w) { Access::writeDesc(w, m.ws); });
    EXPECT_EQ(topElements(lines), Lines{CATProduct});
    EXPECT_EQ(childrenOf(lines, CATProduct), (std::vector<Lines>{{Item_Info, Configuration}}));
    EXPECT_EQ(valueOf(lines, Configuration), "Rule=Latest");
    EXPECT_EQ(valueOf(lines, Parent_Comp), "NO");
    EXPECT_EQ(valueOf(lines, Matrix), "");
    EXPECT_EQ(valueOf(lines, Parent_Instance_Name), "<absent>");
    EXPECT_EQ(valueOf(lines, Parent_DST_UID), "<absent>");

    PROCManager::reset();
    PROCManager::setIsCommandImport(true);
    const Lines imported = written([&](QELDMToXML& w) { Access::writeDesc(w, m.ws); });
    EXPECT_EQ(childrenOf(imported, CATProduct), std::vector<Lines>{{Item_Info}});
}

TEST_F(ProcessesTest, NodeWithoutWhatItStandsOnWritesNothing) {
    ProcessModel m = ProcessModel::build();
    save1();
    // An occurrence whose parent occurrence shows no item.
    auto* bare = QELModelHeap::adopt(new QELAbsoluteOccurrence("u-bare", "Bare.1", m.ws));
    bare->linkWorkSpace(m.ws);
    QELAbsoluteOccurrence* orphan = makeOccurrence(m.ws, bare, m.partItem, "u-orphan", "Orphan.1");
    // An occurrence without a relative occurrence.
    auto* loose = QELModelHeap::adopt(new QELAbsoluteOccurrence("u-loose", "Loose.1", m.sub));
    loose->linkItem(m.partItem);
    // A workspace without a document.
    auto* empty = QELModelHeap::adopt(new QELWorkSpace());
    empty->linkItem(m.rootItem);

    for (QELComponent* node : std::vector<QELComponent*>{orphan, loose, empty, m.partDoc, nullptr}) {
        EXPECT_TRUE(written([&](QELDMToXML& w) { Access::writeDesc(w, node); }).empty());
    }
}

TEST_F(ProcessesTest, CatalogDocumentStandsInForAWorkspaceParent) {
    ProcessModel m = ProcessModel::build();
    save1();
    CV5CAAQELItem* catalogItem = makeItem("Fasteners", "CAT-7");
    CV5CAAQELDocument* catalog = makeDocument(catalogItem, "Fasteners.catalog", EnumDocumentType_Catalog);

    const Lines plain = written([&](QELDMToXML& w) { Access::writeDesc(w, m.ws, catalog); });
    EXPECT_EQ(valueOf(plain, Parent_Part_Number), "<absent>");

    PROCManager::setManageCatalog(true);
    const Lines lines = written([&](QELDMToXML& w) { Access::writeDesc(w, m.ws, catalog); });
    EXPECT_EQ(valueOf(lines, Parent_Part_Number), "CAT-7");
    EXPECT_EQ(valueOf(lines, Parent_Doc_Name), "Fasteners.catalog");
    EXPECT_EQ(valueOf(lines, Parent_ItemRev_UID), "REV-CAT-7");
}

TEST_F(ProcessesTest, BrokenIconIsWrittenAsUnknownWithErrors) {
    ProcessModel m = ProcessModel::build();
    save1();
    m.part->addBooleanProperty("IsBrokenIcon", true);
    m.partDoc->addStringProperty("DST_UID", "");
    const Lines lines = written([&](QELDMToXML& w) { Access::writeDesc(w, m.part); });

    EXPECT_EQ(topElements(lines), Lines{Unknown});
    for (const char* element : {Part_Number, DST_UID, ItemRev_UID, File_Name}) {
        EXPECT_EQ(valueOf(lines, element), "ERROR") << element;
    }
    for (const char* element : {NamedRef_UID, File_Version, Mapping_Attribut}) {
        EXPECT_EQ(countOf(lines, std::string("<") + element + ">"), 0) << element;
    }
    EXPECT_TRUE(JNLManager::contains("QELDMToXML::writeNamedRefUID : ip_component is a broken icon"));
}

TEST_F(ProcessesTest, FlatteningDescribesADocumentOnce) {
    for (auto select : std::vector<std::function<void()>>{
             save1, [] { PROCManager::setIsCommandImport(true); },
             [] { PROCManager::setIsCommandCreateSpreadsheet(true); }}) {
        ProcessModel m = ProcessModel::build();
        select();
        m.partDoc->addStringProperty("Dat_File_Version", "1");
        CV5CAAQELAbsoluteOccurrence* second = makeOccurrence(m.ws, m.sub, m.partItem, "u-part2", "Part.2");

        const Lines lines = written([&](QELDMToXML& w) {
            Access::writeDesc(w, m.part, nullptr, 1);
            Access::writeDesc(w, second, nullptr, 1);
        });
        const std::vector<Lines> blocks = childrenOf(lines, Item_Info);
        ASSERT_EQ(blocks.size(), 2u);
        EXPECT_EQ(countOf(blocks[0], Mapping_Attribut), 1);
        EXPECT_EQ(countOf(blocks[1], Mapping_Attribut), 0);
        EXPECT_EQ(valuesOf(lines, Modified_Flag), (Lines{"1", "-1"}));
        EXPECT_TRUE(m.partDoc->getBooleanProperty("IsAlreadyWritten"));

        QELSession::freeModel();
        resetAll();
    }
}

TEST_F(ProcessesTest, FlatteningTakesAnUnmodifiedOccurrencesStateFromElsewhere) {
    struct Case {
        const char* name;
        bool workspaceNamedLikeDocument;
        bool firstCreated;
        const char* expected;
    };
    for (const Case& c : {Case{"from the workspace", true, true, "7"}, Case{"from the first created", false, true, "4"},
                          Case{"nowhere else", false, false, "-1"}}) {
        SCOPED_TRACE(c.name);
        ProcessModel m = ProcessModel::build();
        save1();
        m.part->addIntegerProperty("Modified_Flag", -1);
        if (c.workspaceNamedLikeDocument) {
            auto* own = QELModelHeap::adopt(new QELWorkSpace());
            own->set_Name("Part.CATPart");
            own->addIntegerProperty("Modified_Flag", 7);
            QELSession::getInstance()->addWorkSpace(own);
        }
        if (c.firstCreated) {
            CV5CAAQELAbsoluteOccurrence* first = makeOccurrence(m.ws, m.sub, m.partItem, "u-first", "Part.0");
            first->addIntegerProperty("Modified_Flag", 4);
            m.partItem->setFirstCreatedAbsoluteOccurrence(first);
        }
        const Lines lines = written([&](QELDMToXML& w) { Access::writeDesc(w, m.part, nullptr, 1); });
        EXPECT_EQ(valueOf(lines, Modified_Flag), c.expected);
        // Written without the occurrence, whose own state would hold them back.
        EXPECT_EQ(countOf(lines, "<Mapping_Attribut>"), 1);
        QELSession::freeModel();
        resetAll();
    }
}

TEST_F(ProcessesTest, UpdateStatusGoesOnWithoutAFileAndStopsWithoutAnItem) {
    ProcessModel m = ProcessModel::build();
    PROCManager::setIsCommandUpdateStatus(true);
    CV5CAAQELDocument* fileless = QELModelHeap::adopt(new CV5CAAQELDocument("Loose.CATPart", EnumDocumentType_Part));
    fileless->linkItem(QELLinkType::LINKNAME_PARENT, m.partItem);
    TYPVectorPCV5CAAQELDocument documents;
    documents.push_back(m.partDoc);
    documents.push_back(fileless);

    long status = -1;
    Lines lines = written([&](QELDMToXML& w) { status = Access::writeDescForUpdateStatus(w, &documents); });
    EXPECT_EQ(status, 0);
    EXPECT_EQ(childrenOf(lines, Item_Info),
              (std::vector<Lines>{{POINTER_ADDRESS, File_Name, DST_UID, ItemRev_UID, secondaries},
                                  {POINTER_ADDRESS, ItemRev_UID}}));
    ASSERT_EQ(EMHManager::entries().size(), 1u);
    EXPECT_EQ(EMHManager::entries()[0].function, "QELDMToXML::writeDescForUpdateStatus");
    EXPECT_EQ(EMHManager::entries()[0].code, 2103);
    EXPECT_EQ(EMHManager::entries()[0].detail, "p_file");

    // A document without an item ends the list; its block is still closed.
    CV5CAAQELDocument* itemless = QELModelHeap::adopt(new CV5CAAQELDocument("Free.CATPart", EnumDocumentType_Part));
    TYPVectorPCV5CAAQELDocument stopped;
    stopped.push_back(itemless);
    stopped.push_back(m.partDoc);
    lines = written([&](QELDMToXML& w) { status = Access::writeDescForUpdateStatus(w, &stopped); });
    EXPECT_EQ(status, QEL_E_FAIL);
    EXPECT_EQ(lines, (Lines{"<CATPart>", "<Item_Info>", "</Item_Info>", "</CATPart>"}));
}

TEST_F(ProcessesTest, StateDetailsFactoryDescribesEachSecondaryOnce) {
    ProcessModel m = ProcessModel::build();
    PROCManager::setIsProcessStateDetailsFactory(true);
    m.secondary->addStringProperty("Part_Number", "PART-1-M");
    m.secondary->addStringProperty("NamedRef_UID", "NR-M");
    m.secondary->addBooleanProperty("Modified_Flag", true);
    // Not flagged as a secondary, so not counted by the driver: no block.
    auto* unflagged = QELModelHeap::adopt(new QELDocument("Part.other", EnumDocumentType_Model));
    m.partDoc->addGRMDocumentLink("CATIA_secondary_Link_type", unflagged);
    CV5CAAQELAbsoluteOccurrence* second = makeOccurrence(m.ws, m.sub, m.partItem, "u-part2", "Part.2");

    const Lines lines = written([&](QELDMToXML& w) {
        Access::writeDesc(w, m.part);
        Access::writeDesc(w, second);
    });
    EXPECT_EQ(topElements(lines), (Lines{CATPart, CATModel, CATPart}));
    const std::vector<Lines> blocks = childrenOf(lines, Item_Info);
    ASSERT_EQ(blocks.size(), 3u);
    EXPECT_EQ(blocks[1], (Lines{POINTER_ADDRESS, InstanceName, Part_Number, NamedRef_UID, File_Name, File_Version,
                                Modified_Flag}));
    EXPECT_EQ(valueOf(lines, File_Version), "CATPart");
    EXPECT_EQ(countOf(lines, "model"), 1);
    EXPECT_EQ(countOf(lines, "Part.model"), 2); // InstanceName and File_Name
}

} // namespace
