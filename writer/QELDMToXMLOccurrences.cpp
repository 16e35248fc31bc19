// Where and how a component stands in its assembly: placements, visibility
// overrides, scenes, skipped occurrences, shape representations and the
// dynamic lists that ride along with an occurrence.

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "CV5CAAQELSession.h"
#include "ENVManager.h"
#include "JNLManager.h"
#include "PROCManager.h"
#include "QELAbsoluteOccurrence.h"
#include "QELAbsoluteView.h"
#include "QELDMToXML.h"
#include "QELElementNames.h"
#include "QELLink.h"
#include "QELLookups.h"
#include "QELRelativeOccurrence.h"

using namespace QELLookups;

namespace {

// (context file name, value) pairs gathered before a list is written, because
// the list starts with their count.
typedef std::vector<std::pair<CATUnicodeString, CATUnicodeString>> ContextPairs;

// The file that names a view's context, or null when the context has no
// document or the document no file of its own type.
QELFile* contextFile(QELItem* context) { return firstFile(firstDocument(context)); }

bool isComp(const QELComponent* component) { return component->getStringProperty("Type") == "COMP"; }

bool hideShowManaged() {
    if (!PROCManager::manageHideShow()) {
        JNLManager::writeMsg("Does not manage hide show");
        return false;
    }
    const bool asked = PROCManager::isCommandImport()
                           ? ENVManager::isSaveHideShowManagedOnImport()
                           : CV5CAAQELSession::getCATIASessionInstance()->getAsManageHideShow() != 0;
    if (!asked) JNLManager::writeMsg("No need to manage manage_hide_show");
    return asked;
}

bool scenesManaged() {
    if (!PROCManager::manageScenes()) {
        JNLManager::writeMsg("Does not manage scenes");
        return false;
    }
    if (!ENVManager::isSaveScenesManagedOnSave()) {
        JNLManager::writeMsg("No need to manage manage scenes");
        return false;
    }
    return true;
}

// The host's answers for one view; a plain model view answers "no".
struct ViewState {
    bool visible = false;
    bool hidden = false;
    bool hasParentComponent = false;
};

ViewState viewState(QELComponent* view) {
    ViewState state;
    if (CV5CAAQELAbsoluteView* host = hostView(view)) {
        state.visible = host->getVisible() != 0;
        state.hidden = host->getHide() != 0;
        state.hasParentComponent = host->getHasParentComponent() != 0;
    }
    return state;
}

// Whether view `current` overrides the visibility that `previous` (the next
// nearer context) already gives, so that the PDM side must store it.
bool overridesPrevious(const ViewState& current, const ViewState& previous) {
    if (!current.visible && !previous.visible) return false;
    if (current.hasParentComponent) return current.hidden ? previous.visible : !previous.visible;
    return current.hidden ? !previous.hidden : previous.hidden;
}

QELItem* viewContext(QELComponent* view) {
    return view && view->isAKindOf("QELABSOLUTEVIEW_CLASSNAME") ? static_cast<QELAbsoluteView*>(view)->getContext()
                                                                 : nullptr;
}

// The visible line of a scene override says whether the scene shows the
// occurrence, which is the opposite of the host's hide state.
const char* sceneShowLine(const CATUnicodeString& hide) {
    if (hide == "FALSE") return "1";
    if (hide == "TRUE") return "0";
    return "";
}

} // namespace

CATUnicodeString QELDMToXML::getContextFileName(QELItem* context) {
    QELFile* file = contextFile(context);
    return file ? file->getStringProperty("File_Name") : CATUnicodeString();
}

void QELDMToXML::writeAttributList(const CATUnicodeString& element, const TYPVectorCATUnicodeString& values) {
    writeOpenBalise(element);
    writeBalise(QELElement::NBElements, values.size());
    for (const CATUnicodeString& value : values) writeBalise(QELElement::Attribut, value, "", 0);
    writeCloseBalise(element);
}

void QELDMToXML::writeRelativeMatrix(QELRelativeOccurrence* relative, unsigned char isAbsolute) {
    // A workspace has no relative occurrence, yet its block carries an empty
    // Matrix all the same: only an occurrence without one is an anomaly.
    if (isAbsolute && !relative) {
        JNLManager::writeMsg("QELDMToXML::writeRelativeMatrix: ip_relative is NULL");
        return;
    }
    std::string matrix;
    if (isAbsolute) getMatrixString(relative->getMatrixProperty("RelativeMatrix"), matrix);
    writeBalise(QELElement::Matrix, CATUnicodeString(matrix), "", 1);
}

void QELDMToXML::writeAbsoluteMatrix(QELAbsoluteOccurrence* occurrence, unsigned char isAbsolute) {
    if (!isAbsolute) return;
    if (!PROCManager::manageFlexibility() || !CV5CAAQELSession::getCATIASessionInstance()->getAsManageFlexibility()) {
        JNLManager::writeMsg("No need to manage flexibility");
        return;
    }
    if (!occurrence) {
        JNLManager::writeMsg("QELDMToXML::writeAbsoluteMatrix: ip_occurrence is NULL");
        return;
    }
    std::unique_ptr<TYPMapCATUnicodeStringPVoid> views(occurrence->getLinkedAbsoluteViews());
    if (!views) return;

    ContextPairs pairs;
    std::string matrix;
    for (const auto& entry : *views) {
        auto* view = static_cast<QELComponent*>(entry.object);
        QELFile* file = contextFile(viewContext(view));
        if (!file) continue;
        getMatrixString(view->getMatrixProperty("AbsoluteMatrix"), matrix);
        if (!matrix.empty()) pairs.emplace_back(file->getStringProperty("File_Name"), CATUnicodeString(matrix));
    }
    if (pairs.empty()) return;

    writeOpenBalise(QELElement::AbsoluteMatrix);
    writeBalise(QELElement::NBElements, static_cast<int>(pairs.size()));
    for (const auto& pair : pairs) {
        writeOpenBalise(QELElement::Element);
        writeBalise(QELElement::Context, pair.first, "", 0);
        writeBalise(QELElement::Matrix, pair.second, "", 0);
        writeCloseBalise(QELElement::Element);
    }
    writeCloseBalise(QELElement::AbsoluteMatrix);
}

void QELDMToXML::writeVisibility(QELAbsoluteOccurrence* occurrence) {
    const char* const function = "QELDMToXML::writeVisibility";
    JNLManager::beginFunction(function);
    TYPVectorPQELComponent* found = nullptr;
    // The gate is journalled for every block, as the scenes gate is.
    if (hideShowManaged() && occurrence) occurrence->getAllAbsViews(found);
    std::unique_ptr<TYPVectorPQELComponent> views(found);

    ContextPairs pairs;
    if (views && !views->empty()) {
        // Views come nearest context first; each is compared with the one
        // just nearer, whose visibility it inherits unless it overrides it.
        ViewState previous = viewState((*views)[0]);
        if (!previous.visible) pairs.emplace_back(getContextFileName(viewContext((*views)[0])), "FALSE");
        for (int i = 1; i < views->size(); ++i) {
            const ViewState current = viewState((*views)[i]);
            if (overridesPrevious(current, previous)) {
                pairs.emplace_back(getContextFileName(viewContext((*views)[i])), current.visible ? "TRUE" : "FALSE");
            }
            previous = current;
        }
    }
    if (!pairs.empty()) {
        writeOpenBalise(QELElement::VisibleOverrides);
        writeBalise(QELElement::NBElements, static_cast<int>(pairs.size()));
        for (const auto& pair : pairs) {
            writeOpenBalise(QELElement::Visible);
            writeValue(pair.first);
            writeValue(pair.second == "TRUE" ? 1 : 0);
            writeCloseBalise(QELElement::Visible);
        }
        writeCloseBalise(QELElement::VisibleOverrides);
    }
    JNLManager::endFunction(function, -1);
}

void QELDMToXML::writeScenes(QELComponent* component, QELDocument* document) {
    const char* const function = "QELDMToXML::writeScenes";
    JNLManager::beginFunction(function);
    CV5CAAQELDocument* host = hostDocument(document);
    if (scenesManaged() && component && component->isWorkSpace() && host && !host->getScenesNames().empty()) {
        writeAttributList(QELElement::Scenes, host->getScenesNames());
    }
    JNLManager::endFunction(function, -1);
}

void QELDMToXML::writeScenesOverrides(QELAbsoluteOccurrence* occurrence) {
    const char* const function = "QELDMToXML::writeScenesOverrides";
    JNLManager::beginFunction(function);
    CV5CAAQELAbsoluteOccurrence* host = hostOccurrence(occurrence);
    if (scenesManaged() && host && !host->getScenesContexts().empty()) {
        const TYPVectorPCV5CAAQELScene& scenes = host->getScenesContexts();
        writeOpenBalise(QELElement::ScenesOverrides);
        writeBalise(QELElement::NBElements, scenes.size());
        for (const CV5CAAQELScene* scene : scenes) {
            // A null entry answers nothing but keeps its place, so that the
            // count stays true.
            writeOpenBalise(QELElement::SceneOverride);
            writeValue(scene ? scene->getNameScene() : CATUnicodeString());
            writeValue(CATUnicodeString(sceneShowLine(scene ? scene->getHideScene() : CATUnicodeString())));
            writeValue(scene ? scene->getMatrixScene() : CATUnicodeString());
            writeCloseBalise(QELElement::SceneOverride);
        }
        writeCloseBalise(QELElement::ScenesOverrides);
    }
    JNLManager::endFunction(function, -1);
}

void QELDMToXML::writeSkippedOccList(QELComponent* component) {
    const TYPVectorCATUnicodeString* skipped = component ? component->getStringArrayProperty("VtSkipped") : nullptr;
    if (skipped && !skipped->empty()) writeAttributList(QELElement::VTSkippedOcc, *skipped);
}

void QELDMToXML::writeShape(QELDocument* document, QELComponent* component) {
    if (!document || !component) {
        JNLManager::writeMsg(!document ? "QELDMToXML::writeShape: ip_document is NULL"
                                       : "QELDMToXML::writeShape: ip_component is NULL");
        return;
    }
    if (isComp(component)) return;
    writeAlternateShapeRepresentations(document);

    TYPMapCATUnicodeStringPVoid* occurrences = document->getLinkedComponentAbsoluteOccurrences();
    const int total = component->getIntegerProperty("totalComponent");
    if (!occurrences || occurrences->empty() || total <= 0) return;
    writeOpenBalise(QELElement::Components);
    // The PDM side sizes its list by the total, not by what follows.
    writeBalise(QELElement::NBElements, total);
    for (const auto& entry : *occurrences) {
        auto* occurrence = static_cast<QELAbsoluteOccurrence*>(entry.object);
        if (occurrence && occurrence->getBooleanProperty("HasComponentShapeRep")) {
            writeComponentShapeRepresentations(occurrence);
        }
    }
    writeCloseBalise(QELElement::Components);
}

void QELDMToXML::writeAlternateShapeRepresentations(QELDocument* document) {
    const char* const function = "QELDMToXML::writeAlternateShapeRepresentations";
    if (!document) {
        JNLManager::writeMsgFormatted("%s: ip_document is NULL", function);
        return;
    }
    std::unique_ptr<TYPVectorPQELLink> links(document->getLinkedAlternateShapeRepresentations());
    if (!links) {
        JNLManager::writeMsgFormatted("%s : getLinkedAlternateShapeRepresentations returns NULL", function);
    } else if (links->empty()) {
        JNLManager::writeMsgFormatted("%s : getLinkedAlternateShapeRepresentations returns 0 element", function);
    } else {
        writeShapeList(*links, function);
    }
}

void QELDMToXML::writeComponentShapeRepresentations(QELAbsoluteOccurrence* occurrence) {
    const char* const function = "QELDMToXML::writeComponentShapeRepresentations";
    if (!occurrence) {
        JNLManager::writeMsgFormatted("%s: ip_occurrence is NULL", function);
        return;
    }
    writeBalise(QELElement::ComponentName, occurrence->getStringProperty("ComponentName"), "", 0);
    std::unique_ptr<TYPVectorPQELLink> links(occurrence->getLinkedComponentShapeRepresentations());
    if (!links) {
        JNLManager::writeMsgFormatted("%s : getLinkedComponentShapeRepresentations returns NULL", function);
    } else if (links->empty()) {
        JNLManager::writeMsgFormatted("%s : getLinkedComponentShapeRepresentations returns 0 element", function);
    } else {
        writeShapeList(*links, function);
    }
}

void QELDMToXML::writeShapeList(const TYPVectorPQELLink& links, const char* function) {
    // The list goes out in one piece: lines are left in the buffer and the
    // closing tag flushes them all.
    writeFormatted(false, "<%s>\n", QELElement::Shapes);
    writeFormatted(false, "<%s>\n%d\n</%s>\n", QELElement::NBElements, links.size(), QELElement::NBElements);
    for (const QELLink* link : links) {
        const QELComponent* secondary = link ? link->get_Secondary() : nullptr;
        if (!secondary) {
            JNLManager::writeMsgFormatted("%s : Linked shape document is NULL", function);
            continue;
        }
        writeFormatted(false, "<%s>\n", QELElement::SR);
        // The PDM side reads the SR block by line position; its blank first
        // line is part of that layout.
        writeFormatted(false, "\n%s\n", secondary->getStringProperty("ShortFileName").ConvertToChar());
        writeFormatted(false, "%s\n", link->getStringProperty("ShapeRepName").ConvertToChar());
        writeFormatted(false, "%s\n", secondary->getStringProperty("DST_UID").ConvertToChar());
        writeFormatted(false, "%s\n", secondary->getStringProperty("NamedRef_UID").ConvertToChar());
        writeFormatted(false, "%s\n", secondary->getBooleanProperty("Modified_Flag") ? "true" : "false");
        writeFormatted(false, "</%s>\n", QELElement::SR);
    }
    writeFormatted(true, "</%s>\n", QELElement::Shapes);
}

void QELDMToXML::writeMappingInst(QELRelativeOccurrence* relative) {
    if (!relative || !ENVManager::manageOccmappVtproperties()) return;
    const TYPVectorCATUnicodeString* mapping = relative->getDynamicProperty("Mapping_Inst_CATIA");
    if (!mapping || mapping->empty()) return;
    writeOpenBalise(QELElement::Mapping_Inst);
    writeBalise(QELElement::NBElements, mapping->size());
    // Names and values alternate, one Attribut each, as the count says; an
    // empty value keeps its element so that the pairs stay aligned.
    for (const CATUnicodeString& text : *mapping) writeBalise(QELElement::Attribut, text, "", 1);
    writeCloseBalise(QELElement::Mapping_Inst);
}

void QELDMToXML::writeActiveShape(QELComponent* component) {
    if (!component) {
        JNLManager::writeMsg("QELDMToXML::writeActiveShape: ip_component is NULL");
        return;
    }
    // Same form as the answer's ActivateShapes list, which the reader takes
    // back as (shape, value) pairs of Attribut elements.
    if (!isComp(component)) writeDescDynamicProperties(QELElement::ActivateShapes, QELElement::Attribut, 0, component);
}

void QELDMToXML::writeDefaultShape(QELComponent* component) {
    if (!component) {
        JNLManager::writeMsg("QELDMToXML::writeDefaultShape: ip_component is NULL");
        return;
    }
    if (!isComp(component))
        writeDescDynamicProperties(QELElement::DefaultShapeForCache, QELElement::Attribut, 0, component);
}

void QELDMToXML::writeDescDynamicProperties(const CATUnicodeString& listName, const CATUnicodeString& itemName,
                                            unsigned char paired, QELComponent* component) {
    const TYPVectorCATUnicodeString* values = component ? component->getDynamicProperty(listName) : nullptr;
    if (!values || values->empty()) return;
    const char* list = listName.ConvertToChar();
    const char* item = itemName.ConvertToChar();
    const int count = values->size();

    // Lines stay in the buffer until the closing tag flushes the whole list.
    writeFormatted(false, "<%s>\n", list);
    writeFormatted(false, "<%s>\n%d\n</%s>\n", QELElement::NBElements, paired ? count / 2 : count,
                   QELElement::NBElements);
    if (paired) {
        // A trailing name without its value is not counted and not written.
        for (int i = 0; i + 1 < count; i += 2) {
            writeFormatted(false, "<%s>\n%s\n\n%s\n</%s>\n", item, (*values)[i].ConvertToChar(),
                           (*values)[i + 1].ConvertToChar(), item);
        }
    } else {
        for (const CATUnicodeString& text : *values) {
            writeFormatted(false, "<%s>\n%s\n</%s>\n", item, text.ConvertToChar(), item);
        }
    }
    writeFormatted(true, "</%s>\n", list);
}
