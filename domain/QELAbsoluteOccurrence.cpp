#include "QELAbsoluteOccurrence.h"

#include <algorithm>
#include <cstdio>

#include "CATListValCATUnicodeString.h"
#include "JNLManager.h"
#include "QELAbsoluteView.h"
#include "QELDocument.h"
#include "QELItem.h"
#include "QELLink.h"
#include "QELLinkType.h"
#include "QELModelHeap.h"
#include "QELRelativeOccurrence.h"
#include "QELScene.h"
#include "QELStatus.h"
#include "QELWorkSpace.h"
#include "UTILString.h"

namespace {

const char* const kSeparator = "+++";
const char* const kChild = "LINKNAME_CHILD";
const char* const kParent = "LINKNAME_PARENT";
const char* const kShapeRepLink = "CATIA_componentShapeRep_Link_type";

const char* const kOccUID = "Occ_UID";
const char* const kInstanceName = "InstanceName";
const char* const kParentUID = "QELABSOLUTEOCCURRENCE_PROPERTY_PARENT_UID";
const char* const kPathOccUID = "QELABSOLUTEOCCURRENCE_PROPERTY_PATH_OCC_UID";
const char* const kPathInstanceName = "QELABSOLUTEOCCURRENCE_PROPERTY_PATH_INSTANCE_NAME";
const char* const kRelativeUID = "QELABSOLUTEOCCURRENCE_PROPERTY_RELATIVE_UID";
const char* const kHidden = "IsHideInContext";
const char* const kParentComp = "Parent_Comp";

// Built once: the traversals ask for it at every step.
const CATUnicodeString& definitionKey() {
    static const CATUnicodeString key("LINKNAME_DEFINITION");
    return key;
}

QELComponent* firstOf(const TYPMapCATUnicodeStringPVoid* map) {
    return map ? static_cast<QELComponent*>(map->first()) : nullptr;
}

// A path property of a child extends its occurrence parent's; under a
// workspace the path starts with the child's own value.
CATUnicodeString extendPath(const QELComponent* parent, const char* pathProperty,
                            const CATUnicodeString& own) {
    if (!parent->isAbsolute())
        return own;
    return parent->getStringProperty(pathProperty) + kSeparator + own;
}

// Appends the "Parent_Comp" pieces of `occ`, last piece first. `status`
// becomes the piece count when there was something to split.
void appendParentComp(const QELAbsoluteOccurrence* occ, CATUnicodeString& text, long& status) {
    CATUnicodeString parentComp = occ->getStringProperty(kParentComp);
    if (parentComp.IsNull())
        return;
    CATListValCATUnicodeString pieces;
    status = UTILString::split(parentComp, "/", pieces);
    for (int i = pieces.Size(); i >= 1; --i) {
        text += kSeparator;
        text += pieces[i];
    }
}

QELItem* rootItemOf(const QELAbsoluteOccurrence* occ) {
    QELWorkSpace* workspace = occ->getLinkedWorkSpace();
    return workspace ? workspace->getItem() : nullptr;
}

bool sameName(const QELComponent* a, const QELComponent* b) {
    return a->get_Name() == b->get_Name();
}

} // namespace

QELAbsoluteOccurrence::QELAbsoluteOccurrence() { set_ClassName("QELABSOLUTEOCCURRENCE_CLASSNAME"); }

QELAbsoluteOccurrence::QELAbsoluteOccurrence(const CATUnicodeString& occUID,
                                             const CATUnicodeString& instanceName,
                                             QELComponent* parent) {
    set_ClassName("QELABSOLUTEOCCURRENCE_CLASSNAME");
    build(occUID, instanceName, parent);
}

void QELAbsoluteOccurrence::build(const CATUnicodeString& occUID,
                                  const CATUnicodeString& instanceName, QELComponent* parent) {
    if (!parent) {
        std::fputs("Error : parent component of an absolute occurrence cannot be null\n", stdout);
        return;
    }
    if (!parent->isWorkSpace() && !parent->isAbsolute()) {
        std::fputs("Error : parent component is not wsp nore abs\n", stdout);
        return;
    }
    addStringProperty(kOccUID, occUID);
    addStringProperty(kInstanceName, instanceName);
    addStringProperty(kParentUID, parent->get_Name());
    if (!occUID.IsNull()) {
        CATUnicodeString path = extendPath(parent, kPathOccUID, occUID);
        addStringProperty(kPathOccUID, path);
        set_Name(path);
    }
    if (!instanceName.IsNull()) {
        CATUnicodeString path = extendPath(parent, kPathInstanceName, instanceName);
        addStringProperty(kPathInstanceName, path);
        set_Name(path);
    }
    if (parent->isAbsolute()) {
        auto* parentOcc = static_cast<QELAbsoluteOccurrence*>(parent);
        linkParentAbsoluteOccurrence(parentOcc);
        parentOcc->linkChildAbsoluteOccurrence(this);
    }
}

// ---- properties ------------------------------------------------------------

CATUnicodeString QELAbsoluteOccurrence::getOccUID() const { return getStringProperty(kOccUID); }

CATUnicodeString QELAbsoluteOccurrence::getInstanceName() const {
    return getStringProperty(kInstanceName);
}

CATUnicodeString QELAbsoluteOccurrence::getPathOccUIDS() const {
    return getStringProperty(kPathOccUID);
}

CATUnicodeString QELAbsoluteOccurrence::getPathInstanceNames() const {
    return getStringProperty(kPathInstanceName);
}

long QELAbsoluteOccurrence::getHideInAnyContext(unsigned char& hidden) const {
    hidden = getBooleanProperty(kHidden) ? 1 : 0;
    return 0;
}

long QELAbsoluteOccurrence::setHideInAnyContext(unsigned char hidden) {
    addBooleanProperty(kHidden, hidden != 0);
    return 0;
}

// ---- links -----------------------------------------------------------------

void QELAbsoluteOccurrence::linkItem(QELItem* item) {
    addComponent(item, QELLinkType::ABS_ITM, definitionKey());
}

QELItem* QELAbsoluteOccurrence::getLinkedItem() const {
    return static_cast<QELItem*>(firstOf(getComponents(QELLinkType::ABS_ITM, definitionKey())));
}

void QELAbsoluteOccurrence::linkRelativeOccurrence(QELRelativeOccurrence* relative) {
    if (!relative)
        return;
    addComponent(relative, QELLinkType::ABS_REL, definitionKey());
    addStringProperty(kRelativeUID, relative->get_Name());
}

QELRelativeOccurrence* QELAbsoluteOccurrence::getLinkedRelativeOccurrence() const {
    return static_cast<QELRelativeOccurrence*>(
        firstOf(getComponents(QELLinkType::ABS_REL, definitionKey())));
}

void QELAbsoluteOccurrence::linkWorkSpace(QELWorkSpace* workspace) {
    addParentComponent(workspace, QELLinkType::ABS_WSP);
}

QELWorkSpace* QELAbsoluteOccurrence::getLinkedWorkSpace() const {
    return static_cast<QELWorkSpace*>(firstOf(getParentComponents(QELLinkType::ABS_WSP)));
}

void QELAbsoluteOccurrence::linkParentAbsoluteOccurrence(QELAbsoluteOccurrence* parent) {
    addParentAbsolute(parent, QELLinkType::ABS_ABS, kParent);
}

QELAbsoluteOccurrence* QELAbsoluteOccurrence::getLinkedParentAbsoluteOccurrence() const {
    return static_cast<QELAbsoluteOccurrence*>(firstOf(getParentComponents(QELLinkType::ABS_ABS)));
}

void QELAbsoluteOccurrence::linkChildAbsoluteOccurrence(QELAbsoluteOccurrence* child) {
    addAbsolute(child, QELLinkType::ABS_ABS, kChild);
}

TYPMapCATUnicodeStringPVoid* QELAbsoluteOccurrence::getLinkedChildAbsoluteOccurrences() const {
    return getChildrenComponents(QELLinkType::ABS_ABS);
}

QELAbsoluteOccurrence* QELAbsoluteOccurrence::getLinkedChildAbsoluteOccurrence(int index) const {
    return static_cast<QELAbsoluteOccurrence*>(getChildrenComponent(QELLinkType::ABS_ABS, index));
}

// ---- views -----------------------------------------------------------------

void QELAbsoluteOccurrence::linkAbsoluteView(QELAbsoluteView* view) {
    if (view)
        addComponent(view, QELLinkType::ABS_ABV, view->getSignature());
}

QELAbsoluteView*
QELAbsoluteOccurrence::getLinkedAbsoluteView(const CATUnicodeString& signature) const {
    return static_cast<QELAbsoluteView*>(firstOf(getComponents(QELLinkType::ABS_ABV, signature)));
}

QELAbsoluteView* QELAbsoluteOccurrence::getLinkedAbsoluteView(const QELItem* context) const {
    if (!context)
        return nullptr;
    TYPMapCATUnicodeStringPVoid* views = getLinkedAbsoluteViews();
    if (!views)
        return nullptr;
    QELAbsoluteView* found = nullptr;
    for (const auto& e : *views) {
        auto* view = static_cast<QELAbsoluteView*>(e.object);
        const QELItem* viewContext = view->getContext();
        if (viewContext && sameName(viewContext, context)) {
            found = view;
            break;
        }
    }
    delete views;
    return found;
}

TYPMapCATUnicodeStringPVoid* QELAbsoluteOccurrence::getLinkedAbsoluteViews() const {
    TYPMapCATUnicodeStringPVoid* bySignature = getComponents(QELLinkType::ABS_ABV);
    if (!bySignature)
        return nullptr;
    auto* result = new TYPMapCATUnicodeStringPVoid("p_map_result", bySignature->size());
    for (const auto& signature : *bySignature) {
        for (const auto& view : *static_cast<TYPMapCATUnicodeStringPVoid*>(signature.object)) {
            result->insert(signature.key, view.object, "QELAbsoluteView", 0);
        }
    }
    return result;
}

// ---- scenes ----------------------------------------------------------------

void QELAbsoluteOccurrence::linkScene(QELScene* scene) {
    if (scene)
        addComponent(scene, QELLinkType::ABS_SCENE, scene->getSignature());
}

QELScene* QELAbsoluteOccurrence::getLinkedScene(const CATUnicodeString& signature) const {
    return static_cast<QELScene*>(firstOf(getComponents(QELLinkType::ABS_SCENE, signature)));
}

TYPMapCATUnicodeStringPVoid* QELAbsoluteOccurrence::getLinkedScenes() const {
    return getComponents(QELLinkType::ABS_SCENE);
}

void QELAbsoluteOccurrence::createScene(QELItem* context, const CATUnicodeString& name) {
    // The scene reports a null context itself; filing a scene that built
    // nothing would only add an unnamed entry.
    auto* scene = QELModelHeap::adopt(new QELScene(this, context, name));
    if (!context)
        return;
    // The scene filed itself already; this second filing uses the same keys.
    linkScene(scene);
    context->linkScene(scene);
}

// ---- component shape representations ---------------------------------------

QELDocument*
QELAbsoluteOccurrence::addComponentShapeRepresentation(const CATUnicodeString& shapeRepName,
                                                       const CATUnicodeString& docName) {
    auto* document = QELModelHeap::adopt(new QELDocument(docName));
    linkComponentShapeRepresentation(shapeRepName, document);
    return document;
}

void QELAbsoluteOccurrence::linkComponentShapeRepresentation(const CATUnicodeString& shapeRepName,
                                                             QELDocument* document) {
    if (QELLink* link = addGRMLink(kShapeRepLink, document))
        link->addStringProperty("ShapeRepName", shapeRepName);
}

TYPVectorPQELLink* QELAbsoluteOccurrence::getLinkedComponentShapeRepresentations() const {
    return getGRMLinks(kShapeRepLink, "QELABSOLUTEOCCURRENCE_CLASSNAME", "QELDOCUMENT_CLASSNAME");
}

// ---- ancestry --------------------------------------------------------------

long QELAbsoluteOccurrence::buildAbsoluteViewSignature(const QELItem* context,
                                                       CATUnicodeString& signature) const {
    signature = CATUnicodeString();
    if (!context)
        return QEL_E_FAIL;
    long status = 0;
    CATUnicodeString text = getInstanceName();
    appendParentComp(this, text, status);

    const QELAbsoluteOccurrence* parent = getLinkedParentAbsoluteOccurrence();
    const QELItem* candidate = parent ? parent->getLinkedItem() : rootItemOf(this);
    while (candidate && !sameName(candidate, context) && parent) {
        text += kSeparator;
        text += parent->getInstanceName();
        appendParentComp(parent, text, status);
        if (const QELAbsoluteOccurrence* grandParent =
                parent->getLinkedParentAbsoluteOccurrence()) {
            candidate = grandParent->getLinkedItem();
            parent = grandParent;
        } else {
            candidate = rootItemOf(parent);
            parent = nullptr;
        }
    }
    if (!candidate || !sameName(candidate, context))
        return QEL_E_FAIL;
    text += kSeparator;
    text += context->get_Name();
    signature = text;
    return status;
}

long QELAbsoluteOccurrence::getAllParents(TYPVectorPQELComponent*& parents) const {
    static const CATUnicodeString kFunction("QELAbsoluteOccurrence::getAllParents");
    JNLManager::beginFunction(kFunction);
    parents = new TYPVectorPQELComponent();
    const QELAbsoluteOccurrence* top = this;
    for (QELAbsoluteOccurrence* p = getLinkedParentAbsoluteOccurrence(); p;
         p = p->getLinkedParentAbsoluteOccurrence()) {
        parents->push_back(p);
        top = p;
    }
    if (QELWorkSpace* workspace = top->getLinkedWorkSpace())
        parents->push_back(workspace);
    std::reverse(parents->begin(), parents->end());
    if (parents->empty())
        JNLManager::writeMsg("getAllParents error : orphan absolute occurence");
    JNLManager::endFunction(kFunction, -1);
    return 0;
}

TYPMapCATUnicodeStringPVoid* QELAbsoluteOccurrence::getAllParentComponents() const {
    auto* result = new TYPMapCATUnicodeStringPVoid("p_returned_map");
    const QELAbsoluteOccurrence* top = this;
    for (QELAbsoluteOccurrence* p = getLinkedParentAbsoluteOccurrence(); p;
         p = p->getLinkedParentAbsoluteOccurrence()) {
        result->insert(p->get_Name(), p, "QELComponent", 0);
        top = p;
    }
    if (QELWorkSpace* workspace = top->getLinkedWorkSpace()) {
        result->insert(workspace->get_Name(), workspace, "QELComponent", 0);
    }
    if (result->empty())
        std::fputs("getAllParentComponents error : orphelan absolute occurence\n", stdout);
    return result;
}

long QELAbsoluteOccurrence::getAllAbsViews(TYPVectorPQELComponent*& views) const {
    static const CATUnicodeString kFunction("QELAbsoluteOccurrence::getAllAbsViews");
    JNLManager::beginFunction(kFunction);
    views = nullptr;
    TYPVectorPQELComponent* parents = nullptr;
    long status = getAllParents(parents);
    if (status != 0 || !parents) {
        JNLManager::endFunction(kFunction, status);
        return status;
    }
    if (!parents->empty()) {
        views = new TYPVectorPQELComponent();
        // Nearest context first: the direct parent is last in the list.
        for (int i = parents->size() - 1; i >= 0; --i) {
            QELComponent* parent = (*parents)[i];
            QELItem* context = parent->isWorkSpace()
                                   ? static_cast<QELWorkSpace*>(parent)->getItem()
                                   : static_cast<QELAbsoluteOccurrence*>(parent)->getLinkedItem();
            if (!context)
                continue;
            CATUnicodeString signature;
            status = buildAbsoluteViewSignature(context, signature);
            if (status == QEL_E_FAIL)
                continue;
            if (QELAbsoluteView* view = context->getLinkedAbsoluteViews(signature))
                views->push_back(view);
        }
    }
    delete parents;
    JNLManager::endFunction(kFunction, status);
    return status;
}
