#include "QELDocument.h"
#include "QELLinkType.h"
#include "SampleModel.h"

#include <string>

#include "CV5CAAQELAbsoluteOccurrence.h"
#include "CV5CAAQELAbsoluteView.h"
#include "CV5CAAQELDocument.h"
#include "CV5CAAQELItem.h"
#include "CV5CAAQELScene.h"
#include "CV5CAAQELStacking.h"
#include "CV5CAAQELWorkSpace.h"

#include "QELFile.h"
#include "QELGeoDatas.h"
#include "QELLink.h"
#include "QELModelHeap.h"
#include "QELPliesGroup.h"
#include "QELPly.h"
#include "QELRelativeOccurrence.h"
#include "QELScene.h"
#include "QELSequence.h"
#include "QELStacking.h"
#include "QELUtilities.h"

namespace {

// Items and documents are the host's: the writer asks them for default
// documents, files and UIDs.
QELItem* item(QELSession* session, const char* name, const char* revision) {
    auto* it = QELModelHeap::adopt(new CV5CAAQELItem(name));
    it->addStringProperty("Item_ID", name);
    it->addStringProperty("ItemRev_ID", revision);
    it->addStringProperty("ItemRev_UID", CATUnicodeString("UID-") + name);
    it->addStringProperty("ItemRev_Name", CATUnicodeString(name) + " rev " + revision);
    session->addItem(it);
    return it;
}

QELDocument* document(QELItem* owner, EnumDocumentType type, const char* fileName, const char* partNumber) {
    auto* doc = QELModelHeap::adopt(new CV5CAAQELDocument(fileName, type));
    QELSession::getInstance()->addDocument(doc);
    owner->linkDocument(QELLinkType::LINKNAME_CHILD, doc);
    doc->linkItem(QELLinkType::LINKNAME_CHILD, owner);
    doc->linkItem(QELLinkType::LINKNAME_PARENT, owner);
    QELFile* file = doc->createFile(QELUtilities::getDocFilRefNameFromDocumentType(type), fileName);
    file->addStringProperty("File_Name", fileName);
    file->addStringProperty("fullPathName", CATUnicodeString("/data/work/") + fileName);
    auto* host = static_cast<CV5CAAQELItem*>(owner);
    host->setItemDefaultDocument(doc);
    doc->setDefaultItem(owner);
    doc->setDefaultFile(file);
    doc->setDocumentUID(CATUnicodeString("DST-") + partNumber);
    doc->setNamedRefUID(CATUnicodeString("NR-") + partNumber);
    owner->addStringProperty("Part_Number", partNumber);
    doc->addStringProperty("Part_Number", partNumber);
    doc->addStringProperty("DST_UID", CATUnicodeString("DST-") + partNumber);
    doc->addStringProperty("NamedRef_UID", CATUnicodeString("NR-") + partNumber);
    doc->addStringProperty("Dat_File_Version", "1");
    doc->addStringProperty("catia_uuid", CATUnicodeString("uuid-") + partNumber);
    doc->addStringProperty("BVR_Date", "2026-11-02");
    doc->addBooleanProperty("IsBrokenIcon", false);
    return doc;
}

QELWorkSpace* workspace(QELSession* session, QELDocument* root, QELItem* rootItem, int fileType, int index) {
    auto* ws = QELModelHeap::adopt(new CV5CAAQELWorkSpace());
    ws->setWorkSpaceType(fileType);
    ws->setWorkSpaceDefaultDocument(root);
    ws->set_Name(root->get_Name());
    ws->linkDocument(root);
    ws->linkItem(rootItem);
    ws->setDocFileLinkType(root->getType());
    ws->setItemDocLinkType(QELLinkType::LINKNAME_CHILD);
    ws->addBooleanProperty("IsVisible", true);
    ws->addBooleanProperty("IsAnIgnoreNode", false);
    ws->addIntegerProperty("FileType", fileType);
    ws->addIntegerProperty("WorkspaceIndex", index);
    session->addWorkSpace(ws);
    return ws;
}

QELAbsoluteOccurrence* occurrence(QELWorkSpace* ws, QELComponent* parent, QELItem* shown, const char* uid,
                                  const char* instance, int index) {
    auto* occ = QELModelHeap::adopt(new CV5CAAQELAbsoluteOccurrence(uid, instance, parent));
    ws->linkAbsoluteOccurrence(occ);
    if (parent == ws) occ->linkWorkSpace(ws);
    occ->linkItem(shown);
    shown->linkAbsOcc(occ);
    occ->addIntegerProperty("IndiceOfAbsolute", index);
    occ->addIntegerProperty("Modified_Flag", 1);
    occ->addIntegerProperty("Check_Action", 0);
    occ->addIntegerProperty("MAJ", 1);
    if (auto* host = static_cast<CV5CAAQELItem*>(shown); !host->getFirstCreatedAbsoluteOccurrence()) {
        host->setFirstCreatedAbsoluteOccurrence(occ);
        host->setOneAbsoluteOccurrence(occ);
    }

    // The instance in its parent product, shared by every place that product is used.
    auto* relative = shown->getLinkedRelativeOccurrence(CATUnicodeString("REL-") + uid);
    if (!relative) {
        relative = QELModelHeap::adopt(new QELRelativeOccurrence(CATUnicodeString("REL-") + uid, instance));
        relative->linkItem(shown);
        shown->linkRelativeOccurrence(relative);
    }
    relative->addAbsoluteOccurrence(occ);
    occ->linkRelativeOccurrence(relative);
    // Rotation rows, then the translation; the last four are not used.
    const double placement[16] = {1, 0, 0, 0, 1, 0, 0, 0, 1, 10.0 * index, 2.5, -0.125, 0, 0, 0, 1};
    relative->addMatrixProperty("RelativeMatrix", placement);
    return occ;
}

QELDocument* designTable(SampleModel& m, const char* name, const char* fileName, int index, bool visible) {
    auto* dt = QELModelHeap::adopt(new CV5CAAQELDocument(fileName, EnumDocumentType_DesignTable));
    dt->addIntegerProperty("indiceDesignTable", index);
    dt->addStringProperty("OldDesignTableName", fileName);
    dt->addStringProperty("DesignTableName", name);
    dt->addBooleanProperty("IsDesignTableVisible", visible);
    dt->setDesignTableVisibility(visible ? 1 : 0);
    QELFile* file = dt->createFile("catdesigntable", fileName);
    file->addStringProperty("File_Name", fileName);
    dt->linkItem(QELLinkType::LINKNAME_PARENT, m.shaftItem);
    dt->addStringProperty("DST_UID", CATUnicodeString("DST-") + fileName);
    dt->addStringProperty("NamedRef_UID", CATUnicodeString("NR-") + fileName);
    dt->addIntegerProperty("Modified_Flag", 1);
    dt->addDynamicProperty(QELDocument::kMappingAttributes, "PartNumber", "SHF-010", false);
    dt->addDynamicProperty(QELDocument::kMappingAttributes, "Colour", "red", false);
    m.session->addDocument(dt);
    m.shaft->addDesignTable(dt);
    return dt;
}

// A view of `occ` as seen from `context`, with its own placement.
void view(QELAbsoluteOccurrence* occ, QELItem* context, double offset) {
    CATUnicodeString signature;
    // A split "Parent_Comp" answers the number of its pieces: only a negative
    // status is a failure.
    if (occ->buildAbsoluteViewSignature(context, signature) < 0) return;
    auto* v = QELModelHeap::adopt(new CV5CAAQELAbsoluteView(signature));
    v->setVisible(offset < 100);
    v->setHide(offset >= 100);
    v->linkItem(context);
    context->linkAbsoluteView(v);
    occ->linkAbsoluteView(v);
    const double matrix[16] = {0, -1, 0, 1, 0, 0, 0, 0, 1, offset, 1.0 / 3.0, 1e-7, 0, 0, 0, 1};
    v->addMatrixProperty("AbsoluteMatrix", matrix);
    v->addBooleanProperty("IsVisible", offset < 100);
}

// What the description needs besides the structure: the PDM attributes the
// model holds and the answers of the CAD host.
void addHostAnswers(SampleModel& m) {
    m.session->addBooleanProperty("IsDesignTableManagedAsked", true);
    m.session->addBooleanProperty("IsDesignTableManaged", true);

    // Mapping attributes, with an OEM description (prefix "VT") long enough to
    // be cut before the separator that straddles the 255th character.
    m.shaft->addDynamicProperty(QELDocument::kMappingAttributes, "PartNumber", "SHF-010", false);
    m.shaft->addDynamicProperty(QELDocument::kMappingAttributes, "Nomenclature", "Arbre \xE9tag\xE9", false);
    m.shaft->addDynamicProperty(QELDocument::kMappingAttributes, "VT_description",
                                CATUnicodeString((std::string(254, 'd') + "@=@" + std::string(40, 'e')).c_str()),
                                false);
    m.gearbox->addDynamicProperty(QELDocument::kOEMMappingAttributes, "Revision", "A", false);
    m.gearbox->addDynamicProperty(QELDocument::kCATIAMappingAttributes, "Definition", "Gearbox assembly", false);

    // The shaft design tables and their links from the owner.
    TYPVectorPQELLink* links = m.shaft->getGRMLinks("catdesigntable");
    for (int i = 0; links && i < links->size(); ++i) {
        (*links)[i]->addIntegerProperty("Sheet", i + 1);
        (*links)[i]->addIntegerProperty("Cfg", 2 * i);
        (*links)[i]->addStringProperty("DTMap", i == 0 ? "Length!!!Diameter!!!Chamfer" : "");
    }
    // The housing product drives its bore from the shaft sizes as well.
    QELLink* housingTable = m.housing->addGRMDocumentLink("catdesigntable", m.shaftSizes);
    housingTable->addIntegerProperty("Sheet", 1);
    housingTable->addIntegerProperty("Cfg", 0);
    housingTable->addStringProperty("DTMap", "Bore!!!Depth");
    for (QELDocument* dt : {m.shaftSizes, m.shaftOptions}) {
        dt->addStringProperty("Dat_File_Version", dt == m.shaftSizes ? "0" : "3");
        dt->addStringProperty("DST_Version", "1");
        dt->addStringProperty("Date_Last_Modification", "2026-10-30");
        dt->addStringArrayProperty("Sheet", "Sizes");
        dt->addStringArrayProperty("Cfg", "Standard");
        dt->addStringArrayProperty("CheckSum", "5f3a");
    }

    // The drawing: two sheets, the second active, showing the gearbox.
    auto* drawing = static_cast<CV5CAAQELDocument*>(m.drawing);
    drawing->addSheetName("Sheet.1");
    drawing->addSheetName("Vue \xE9" "clat\xE9" "e");
    drawing->setDWActiveSheet("Vue \xE9" "clat\xE9" "e");
    static_cast<CV5CAAQELDocument*>(m.gearbox)->setIsPointedDocOfActiveSheet(1);
    m.drawingWorkSpace->addStringProperty("resolvedcontextid", "CTX-GBX-100");

    // Occurrence attributes the PDM side reads.
    m.shaft1->addStringProperty("Type", "COMP");
    m.panel1->addStringProperty("Type", "Cgr");
    m.bolt1->addStringProperty("Inst_Description", "Vis de fixation");
    m.bolt2->addIntegerProperty("Mask", 3);
    m.housing1->addStringArrayProperty("VtSkipped", "Washer.1");
    m.housing1->addStringArrayProperty("VtSkipped", "Washer.2");
    if (QELRelativeOccurrence* relative = m.bolt1->getLinkedRelativeOccurrence()) {
        relative->addDynamicProperty("Mapping_Inst_CATIA", "Torque", "25 Nm", false);
    }
    m.cover1->addDynamicProperty("DefaultShapeForCache", "Envelope", "1", false);
    m.cover1->addDynamicProperty("ActivateShapes", "Enveloppe", "1", false);
    m.boltItem->addStringProperty("Nomenclature", "Vis H M8");
    m.boltItem->addStringProperty("Old_Model_Name", "BOLT_M8");
    if (TYPMapCATUnicodeStringPVoid* files = m.bolt->getLinkedFiles(
            QELUtilities::getDocFilRefNameFromDocumentType(EnumDocumentType_Part)))
        static_cast<QELFile*>(files->first())->addStringProperty("Old_File_Name", "Bolt_M8.CATPart");

    // The root product lists its component occurrences for the shapes (two
    // announced, one with a shape representation of its own).
    m.gearbox->linkComponentAbsoluteOccurrence(m.shaft1);
    m.gearbox->linkComponentAbsoluteOccurrence(m.panel1);
    m.active->addIntegerProperty("totalComponent", 2);
    m.shaft1->addBooleanProperty("HasComponentShapeRep", true);

    // The cover's secondary as the PDM side knows it.
    m.coverMesh->addStringProperty("spfilenametodisplay", "C:\\parts\\Couvercle_maillage.model");
    m.coverMesh->addStringProperty("DST_UID", "DST-MESH");
    m.coverMesh->addStringProperty("NamedRef_UID", "NR-MESH");
    m.coverMesh->addIntegerProperty("Mask", 1);
    m.coverMesh->addBooleanProperty("IsSecondary", true);
    m.coverEnvelope->addStringProperty("ShortFileName", "Couvercle_enveloppe");
    m.coverEnvelope->addStringProperty("DST_UID", "DST-ENV");
    m.coverEnvelope->addStringProperty("NamedRef_UID", "NR-ENV");
    m.coverEnvelope->addBooleanProperty("Modified_Flag", true);

    // Composites as the CAD host answers them for the panel.
    auto* panel = static_cast<CV5CAAQELDocument*>(m.panel);
    auto* stacking = QELModelHeap::adopt(new CV5CAAQELStacking("Stacking.1"));
    auto* group = QELModelHeap::adopt(new CV5CAAQELPliesGroup("Plies Group.1"));
    auto* sequence = QELModelHeap::adopt(new CV5CAAQELSequence("Sequence.1"));
    auto* ply = QELModelHeap::adopt(new CV5CAAQELPly("Ply.1"));
    ply->setValue(CV5CAAQELPly::RepresentationFilePath3D, "/data/plies/Ply.1.3dxml");
    ply->setValue(CV5CAAQELPly::MaterialName, "Carbon T700");
    ply->setValue(CV5CAAQELPly::COGX, "12.5");
    ply->setValue(CV5CAAQELPly::Mass, "0.042");
    sequence->addPly(ply);
    group->addSequence(sequence);
    stacking->addPliesGroup(group);
    panel->addStacking(stacking);

    // Analysis files of the analysis document, external files of the shaft.
    m.analysis->addDynamicProperty("AnalysisResult", "/data/results/Shaft_results.CATAnalysisResults", "1", false);
    m.analysis->addDynamicProperty("AnalysisComputation", "/data/results/Shaft.CATAnalysisComputations", "1",
                                   false);
    auto* external = QELModelHeap::adopt(new QELDocument("Shaft_spec.pdf"));
    external->addStringProperty("Doc_Old_File_Name", "Shaft_spec.pdf");
    QELLink* toExternal = m.shaft->addGRMDocumentLink("CATIA_external_file_link", external);
    static_cast<CV5CAAQELDocument*>(m.shaft)->addExternalFileDocument(toExternal);

    // The host's view of the occurrences: scenes and visibility in contexts.
    static_cast<CV5CAAQELDocument*>(m.gearbox)->addSceneName("Exploded");
    auto* hostScene = QELModelHeap::adopt(new CV5CAAQELScene("Exploded", "FALSE", "1 0 0 0 1 0 0 0 1 0 0 50"));
    static_cast<CV5CAAQELAbsoluteOccurrence*>(m.cover1)->addSceneContext(hostScene);
}

} // namespace

SampleModel SampleModel::build() {
    SampleModel m;
    m.session = QELSession::getInstance();

    m.gearboxItem = item(m.session, "Gearbox", "A");
    m.housingItem = item(m.session, "Housing", "B");
    m.clampItem = item(m.session, "Clamp", "A");
    m.boltItem = item(m.session, "Bolt M8", "C");
    m.shaftItem = item(m.session, "Shaft", "A");
    m.coverItem = item(m.session, "Couvercle \xE9l\xE9ment", "A");
    m.panelItem = item(m.session, "Panel", "A");
    m.drawingItem = item(m.session, "Gearbox drawing", "A");
    m.analysisItem = item(m.session, "Shaft analysis", "A");
    m.fixtureItem = item(m.session, "Fixture", "A");

    m.gearbox = document(m.gearboxItem, EnumDocumentType_Product, "Gearbox.CATProduct", "GBX-100");
    m.housing = document(m.housingItem, EnumDocumentType_Product, "Housing.CATProduct", "HSG-200");
    m.clamp = document(m.clampItem, EnumDocumentType_Product, "Clamp.CATProduct", "CLP-300");
    m.bolt = document(m.boltItem, EnumDocumentType_Part, "Bolt.CATPart", "BLT-008");
    m.shaft = document(m.shaftItem, EnumDocumentType_Part, "Shaft.CATPart", "SHF-010");
    m.cover = document(m.coverItem, EnumDocumentType_Part, "Couvercle_\xE9l\xE9ment.CATPart", "CVR-\xC9-01");
    m.panel = document(m.panelItem, EnumDocumentType_Part, "Panel.CATPart", "PNL-001");
    m.drawing = document(m.drawingItem, EnumDocumentType_Drawing, "Gearbox.CATDrawing", "GBX-100-D");
    m.analysis = document(m.analysisItem, EnumDocumentType_Analysis, "Shaft.CATAnalysis", "SHF-010-A");
    m.fixture = document(m.fixtureItem, EnumDocumentType_Product, "Fixture.CATProduct", "FIX-001");

    // Workspaces: the product being saved, and two passive ones given out of order.
    m.active = workspace(m.session, m.gearbox, m.gearboxItem, EnumDocumentType_Product, 0);
    m.active->setActiveWorkspace(1);
    CATListValCATUnicodeString configuration;
    configuration.Append("RevisionRule=Latest Working");
    configuration.Append("Variant=Standard");
    m.active->setConfiguration(configuration);
    m.drawingWorkSpace = workspace(m.session, m.drawing, m.drawingItem, EnumDocumentType_Drawing, 2);
    m.fixtureWorkSpace = workspace(m.session, m.fixture, m.fixtureItem, EnumDocumentType_Product, 1);
    // Workspaces named as instances; the fixture comes from a component
    // catalog, which is no instance of anything.
    m.active->addStringProperty("InstanceName", "Gearbox.1");
    m.fixtureWorkSpace->addStringProperty("InstanceName", "Fixture.1");
    m.fixtureWorkSpace->addBooleanProperty("IsCompCatalog", true);

    // The tree; siblings are created in another order than their indices.
    m.housing1 = occurrence(m.active, m.active, m.housingItem, "u-hsg1", "Housing.1", 2);
    m.shaft1 = occurrence(m.active, m.active, m.shaftItem, "u-shf1", "Shaft.1", 0);
    m.panel1 = occurrence(m.active, m.active, m.panelItem, "u-pnl1", "Panel.1", 1);
    m.bolt1 = occurrence(m.active, m.housing1, m.boltItem, "u-blt1", "Bolt.1", 1);
    m.bolt2 = occurrence(m.active, m.housing1, m.boltItem, "u-blt2", "Bolt.2", 0);
    m.clamp1 = occurrence(m.active, m.housing1, m.clampItem, "u-clp1", "Clamp.1", 2);
    m.cover1 = occurrence(m.active, m.housing1, m.coverItem, "u-cvr1", "Cover.1", 3);
    m.bolt3 = occurrence(m.active, m.clamp1, m.boltItem, "u-blt3", "Bolt.3", 0);
    m.shaft2 = occurrence(m.active, m.clamp1, m.shaftItem, "u-shf2", "Shaft.2", 1);
    m.cover1->addStringProperty("Parent_Comp", "Flange/Seal");

    // Views of Bolt.3 in its three contexts, and one of Cover.1.
    view(m.bolt3, m.clampItem, 1.5);
    view(m.bolt3, m.housingItem, 20);
    view(m.bolt3, m.gearboxItem, 150);
    view(m.cover1, m.gearboxItem, 42);

    // A scene of the cover in the root product.
    m.cover1->createScene(m.gearboxItem, "Exploded");
    if (QELScene* scene = m.cover1->getLinkedScene("Exploded")) scene->addStringProperty("nameOfScene", "Exploded");

    // Shaft: two design tables (the second hidden) and a simplified shape.
    // They are host documents of the session, filed under their owner in the
    // order the owner gives them (the second first, to show the order comes
    // from "indiceDesignTable").
    m.shaftOptions = designTable(m, "Shaft options", "ShaftOptions.xls", 1, false);
    m.shaftSizes = designTable(m, "Shaft sizes", "ShaftSizes.xls", 0, true);
    for (QELDocument* dt : {m.shaftSizes, m.shaftOptions}) m.shaft->addGRMDocumentLink("catdesigntable", dt);
    m.shaft1->addStringProperty("ComponentName", "Shaft simplified");
    QELDocument* simplified = m.shaft1->addComponentShapeRepresentation("Simplified", "Shaft_simplified.cgr");
    simplified->addStringProperty("ShortFileName", "Shaft_simplified.cgr");

    // Cover: an alternate shape and a secondary document, Latin-1 names.
    m.coverEnvelope = m.cover->addAlternateShapeRepresentation("Enveloppe", "Couvercle_enveloppe.CATPart");
    m.coverMesh = QELModelHeap::adopt(new QELDocument("Couvercle_maillage.model", EnumDocumentType_Model));
    m.coverMesh->addStringProperty("Part_Number", "CVR-\xC9-01-M");
    m.session->addDocument(m.coverMesh);
    m.cover->addGRMDocumentLink("CATIA_secondary_Link_type", m.coverMesh);

    // Composites: one stacking tree and a body on the panel.
    auto* stacking = QELModelHeap::adopt(new QELStacking(m.panel, "Stacking.1"));
    stacking->addStringProperty("stacking_name", "Stacking.1");
    auto* group = QELModelHeap::adopt(new QELPliesGroup(stacking, "Plies Group.1"));
    group->addStringProperty("plies_group_name", "Plies Group.1");
    auto* sequence = QELModelHeap::adopt(new QELSequence(group, "Sequence.1"));
    sequence->addStringProperty("sequence_name", "Sequence.1");
    for (const char* ply : {"Ply.1", "Ply.2"}) {
        QELModelHeap::adopt(new QELPly(sequence, ply))->addStringProperty("ply_name", ply);
    }
    QELModelHeap::adopt(new QELGeoDatas(m.panel, "PartBody"))->addStringProperty("display_name", "PartBody");

    // The drawing shows the gearbox; the analysis works on the shaft.
    // The drawing shows the housing too; the active sheet's gearbox comes first.
    m.drawing->addGRMItemLink("VT_CATIAV5_DWGLINK", m.housingItem);
    m.drawing->addGRMItemLink("VT_CATIAV5_DWGLINK", m.gearboxItem);
    m.analysis->addGRMItemLink("CATIA_analysis_Link_type", m.shaftItem);
    m.analysis->createFile("catanalysis_results", "Shaft_results.CATAnalysisResults");

    // Forms and publications.
    QELForm* attributes = m.gearbox->addCATIADocAttributesForm();
    attributes->addStringProperty("Designer", "J. M\xFCller");
    m.bolt->addPublication("Axis");
    m.bolt->addPublication("Thread face");
    auto* master = QELModelHeap::adopt(new QELForm("vt_item_master", "Bolt master"));
    master->addStringProperty("Material", "Steel 8.8");
    m.boltItem->linkForm(master);

    m.bolt->addDynamicProperty(QELDocument::kCATIAMappingAttributes, "Material", "Steel 8.8", false);
    m.session->setCalculGeometricStatus(true);
    addHostAnswers(m);
    return m;
}
