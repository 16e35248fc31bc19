// Builds a small session the way a command module does (items, documents,
// files, a workspace with a two-level assembly, properties, relations and GRM
// links) and prints the session and its components in both dump styles.
#include <cstdio>

#include "QELAbsoluteOccurrence.h"
#include "QELDocument.h"
#include "QELItem.h"
#include "QELLink.h"
#include "QELLinkType.h"
#include "QELModelHeap.h"
#include "QELSession.h"
#include "QELWorkSpace.h"

namespace {

void show(const char* title, const CATUnicodeString& text) {
    std::printf("==== %s\n%s\n", title, text.ConvertToChar());
}

QELAbsoluteOccurrence* place(QELWorkSpace* ws, QELComponent* parent, QELItem* item, const char* uid,
                             const char* instance, int index) {
    auto* occ = QELModelHeap::adopt(new QELAbsoluteOccurrence(uid, instance, parent));
    ws->linkAbsoluteOccurrence(occ);
    if (parent == ws) occ->linkWorkSpace(ws);
    occ->linkItem(item);
    item->linkAbsOcc(occ);
    occ->addIntegerProperty("IndiceOfAbsolute", index);
    return occ;
}

} // namespace

int main() {
    QELSession* session = QELSession::getInstance();
    session->setCalculGeometricStatus(true);
    session->setGeoDescDocuments("Bracket.CATPart");

    // Items and their documents; documents are filed under "LINKNAME_CHILD",
    // where workspaces look for an item's document.
    auto* gearboxItem = QELModelHeap::adopt(new QELItem("ITM-000123/A"));
    auto* bracketItem = QELModelHeap::adopt(new QELItem("ITM-000456/B"));
    auto* drawingItem = QELModelHeap::adopt(new QELItem("ITM-000789/A"));
    for (QELItem* it : {gearboxItem, bracketItem, drawingItem}) session->addItem(it);
    QELDocument* gearbox =
        gearboxItem->createDocument(QELLinkType::LINKNAME_CHILD, EnumDocumentType_Product, "Gearbox.CATProduct");
    QELDocument* bracket =
        bracketItem->createDocument(QELLinkType::LINKNAME_CHILD, EnumDocumentType_Part, "Bracket.CATPart");
    QELDocument* drawing =
        drawingItem->createDocument(QELLinkType::LINKNAME_CHILD, EnumDocumentType_Drawing, "Gearbox.CATDrawing");
    gearbox->createFile("catproduct", "Gearbox.CATProduct");
    bracket->createFile("catpart", "Bracket.CATPart");

    bracket->addStringProperty("Part_Number", "BRK-\xC9tag\xE8re"); // Latin-1 text
    bracket->addBooleanProperty("Modified_Flag", true);
    bracket->addDynamicProperty(QELDocument::kCATIAMappingAttributes, "Material", "Steel", false);
    QELDocument* sizes = bracket->addDesignTable("Bracket sizes", "BracketSizes.xls");
    sizes->setType(EnumDocumentType_DesignTable);
    bracket->addGRMDocumentLink("catdesigntable", sizes)->addIntegerProperty("Sheet", 1);
    QELLink* shows = drawing->addGRMItemLink("VT_CATIAV5_DWGLINK", gearboxItem);
    shows->addStringProperty("Sheet", "Sheet.1");

    // The workspace of the product, with a bracket placed twice.
    auto* ws = QELModelHeap::adopt(new QELWorkSpace());
    ws->set_Name("Gearbox.CATProduct");
    ws->setActiveWorkspace(1);
    ws->linkDocument(gearbox);
    ws->linkItem(gearboxItem);
    session->addWorkSpace(ws);
    QELAbsoluteOccurrence* left = place(ws, ws, bracketItem, "u-1", "Bracket.1", 1);
    place(ws, ws, bracketItem, "u-2", "Bracket.2", 0);
    const double placement[16] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 120.5, -4, 0, 1};
    left->addMatrixProperty("AbsoluteMatrix", placement);

    show("session, style 0", session->print(0));
    show("session, style 1", session->print(1));
    for (QELComponent* c : {static_cast<QELComponent*>(gearboxItem), static_cast<QELComponent*>(bracket),
                            static_cast<QELComponent*>(drawing), static_cast<QELComponent*>(left)}) {
        show(c->get_Name().ConvertToChar(), c->print(0));
        show(c->get_Name().ConvertToChar(), c->print(1));
    }
    std::printf("==== assembly tree\n");
    ws->describeComponents();

    QELSession::freeModel();
    return 0;
}
