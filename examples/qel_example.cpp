// Builds a small model (a session, a few components with properties,
// relations and GRM links) and prints it in both dump styles.
#include <cstdio>

#include "QELComponent.h"
#include "QELLink.h"
#include "QELModelHeap.h"
#include "QELSession.h"

namespace {

// Until the domain kinds are used here, a plain component with its kind's
// class name stands for each node.
class ExampleNode : public QELComponent {
public:
    ExampleNode(const char* className, const char* name) {
        set_ClassName(className);
        set_Name(name);
    }
};

void show(const char* title, const CATUnicodeString& text) {
    std::printf("==== %s\n%s\n", title, text.ConvertToChar());
}

} // namespace

int main() {
    QELSession* session = QELSession::getInstance();
    session->setCalculGeometricStatus(true);
    session->setGeoDescDocuments("Bracket.CATPart");

    auto* item = QELModelHeap::adopt(new ExampleNode("QELITEM_CLASSNAME", "ITM-000123/A"));
    auto* product = QELModelHeap::adopt(new ExampleNode("QELDOCUMENT_CLASSNAME", "Gearbox.CATProduct"));
    auto* part = QELModelHeap::adopt(new ExampleNode("QELDOCUMENT_CLASSNAME", "Bracket.CATPart"));
    auto* drawing = QELModelHeap::adopt(new ExampleNode("QELDOCUMENT_CLASSNAME", "Gearbox.CATDrawing"));

    product->addIntegerProperty("DocumentType", 1);
    part->addIntegerProperty("DocumentType", 2);
    part->addStringProperty("Part_Number", "BRK-\xC9tag\xE8re"); // Latin-1 text
    part->addBooleanProperty("Modified_Flag", true);
    const double placement[16] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 120.5, -4, 0, 1};
    part->addMatrixProperty("RelativeMatrix", placement);
    part->addDynamicProperty("CATIA_Mapping_Attribut", "Material", "Steel", false);
    drawing->addIntegerProperty("DocumentType", 3);

    item->addChildrenComponent(product, 11); // ITM_DOC
    product->addParentComponent(item, 15);   // DOC_ITM
    QELLink* dwg = drawing->addGRMLink("VT_CATIAV5_DWGLINK", item);
    dwg->addStringProperty("Sheet", "Sheet.1");
    product->addGRMLink("catdesigntable", part);

    show("session, style 0", session->print(0));
    show("session, style 1", session->print(1));
    for (QELComponent* c : {static_cast<QELComponent*>(item), static_cast<QELComponent*>(product),
                            static_cast<QELComponent*>(part), static_cast<QELComponent*>(drawing)}) {
        show(c->get_Name().ConvertToChar(), c->print(0));
        show(c->get_Name().ConvertToChar(), c->print(1));
    }

    QELSession::freeModel();
    return 0;
}
