// Workspaces and their assembly trees: absolute occurrences at every level,
// their relative occurrences, views, scenes and component shapes.

#include "CATListValCATUnicodeString.h"
#include "CV5CAAQELAbsoluteOccurrence.h"
#include "CV5CAAQELAbsoluteView.h"
#include "CV5CAAQELItem.h"
#include "CV5CAAQELScene.h"
#include "CV5CAAQELWorkSpace.h"
#include "QELDocument.h"
#include "QELLinkType.h"
#include "QELModelHeap.h"
#include "QELRelativeOccurrence.h"
#include "QELScene.h"
#include "QELSession.h"
#include "QELSessionFileBuilder.h"

namespace {

// Far deeper than any real assembly; it keeps a hostile file from exhausting
// the stack of the recursive build.
const int kMaxDepth = 1000;

// The workspace being built and the occurrence above the one being built.
struct Place {
    CV5CAAQELWorkSpace* workspace;
    CV5CAAQELAbsoluteOccurrence* parent; // null for a top-level occurrence
    int depth;
};

const QELJson* arrayMember(const QELJson& object, const QELJsonPath& path, const char* key, const char* what) {
    const QELJson* value = qelMember(object, key);
    if (value) qelExpectArray(*value, path / key, what);
    return value;
}

// A view is the occurrence's path as seen from one context item, so every
// occurrence with the same path in that context shares it: the first entry
// makes it, later ones change the answers they give.
void buildViews(CV5CAAQELAbsoluteOccurrence& occurrence, const QELJson& views, const QELJsonPath& path,
                const QELSessionFileBuild& build) {
    for (size_t i = 0; i < views.size(); ++i) {
        const QELJsonPath at = path / i;
        const QELJson& entry = qelExpectObject(views[i], at, "a view object");
        qelCheckKeys(entry, at, {"context", "visible", "hide", "hasParentComponent", "matrix", "properties"});
        if (!qelMember(entry, "context")) qelSessionFault(at, "missing \"context\"");
        CV5CAAQELItem* context = build.item(entry, at, "context");
        CATUnicodeString signature;
        occurrence.buildAbsoluteViewSignature(context, signature);
        if (signature.IsNull())
            qelSessionFault(at / "context", "expected the item of an ancestor occurrence or of the workspace's root");
        QELAbsoluteView* known = context->getLinkedAbsoluteViews(signature);
        CV5CAAQELAbsoluteView* view = nullptr;
        if (known) {
            if (!known->instanceOf("CV5CAAQELABSOLUTEVIEW_CLASSNAME"))
                qelSessionFault(at, "the context holds a view of this signature that the host does not answer for");
            view = static_cast<CV5CAAQELAbsoluteView*>(known);
        } else {
            view = QELModelHeap::adopt(new CV5CAAQELAbsoluteView(signature));
            view->linkItem(context);
            context->linkAbsoluteView(view);
        }
        occurrence.linkAbsoluteView(view);
        if (qelMember(entry, "visible")) view->setVisible(qelBool(entry, at, "visible", true));
        if (qelMember(entry, "hide")) view->setHide(qelBool(entry, at, "hide", false));
        if (qelMember(entry, "hasParentComponent"))
            view->setHasParentComponent(qelBool(entry, at, "hasParentComponent", false));
        if (const QELJson* matrix = qelMember(entry, "matrix")) {
            double values[16];
            qelExpectMatrix(*matrix, at / "matrix", values);
            view->addMatrixProperty("AbsoluteMatrix", values);
        }
        qelApplyPropertiesOf(*view, entry, at);
    }
}

void buildScenes(CV5CAAQELAbsoluteOccurrence& occurrence, const QELJson& scenes, const QELJsonPath& path,
                 const QELSessionFileBuild& build) {
    for (size_t i = 0; i < scenes.size(); ++i) {
        const QELJsonPath at = path / i;
        const QELJson& entry = qelExpectObject(scenes[i], at, "a scene object");
        qelCheckKeys(entry, at, {"context", "name", "properties"});
        if (!qelMember(entry, "context")) qelSessionFault(at, "missing \"context\"");
        CV5CAAQELItem* context = build.item(entry, at, "context");
        const CATUnicodeString name = qelText(qelRequiredName(entry, at, "name"));
        if (occurrence.getLinkedScene(name)) qelSessionFault(at / "name", "a second scene of this name on the occurrence");
        occurrence.createScene(context, name);
        if (QELScene* scene = occurrence.getLinkedScene(name)) qelApplyPropertiesOf(*scene, entry, at);
    }
}

// The scenes the CAD host reports the occurrence in, with its hide state
// ("TRUE" or "FALSE") and placement as the host gives them: text.
void buildSceneContexts(CV5CAAQELAbsoluteOccurrence& occurrence, const QELJson& scenes, const QELJsonPath& path) {
    for (size_t i = 0; i < scenes.size(); ++i) {
        const QELJsonPath at = path / i;
        const QELJson& entry = qelExpectObject(scenes[i], at, "a scene context object");
        qelCheckKeys(entry, at, {"name", "hide", "matrix"});
        occurrence.addSceneContext(QELModelHeap::adopt(new CV5CAAQELScene(qelText(qelRequiredName(entry, at, "name")),
                                                                          qelText(qelString(entry, at, "hide")),
                                                                          qelText(qelString(entry, at, "matrix")))));
    }
}

void buildComponentShapes(CV5CAAQELAbsoluteOccurrence& occurrence, const QELJson& shapes, const QELJsonPath& path,
                          const QELSessionFileBuild& build) {
    for (size_t i = 0; i < shapes.size(); ++i) {
        const QELJsonPath at = path / i;
        const QELJson& entry = qelExpectObject(shapes[i], at, "a shape representation object");
        qelCheckKeys(entry, at, {"name", "document"});
        const std::string name = qelRequiredName(entry, at, "name");
        if (!qelMember(entry, "document")) qelSessionFault(at, "missing \"document\"");
        occurrence.linkComponentShapeRepresentation(qelText(name), build.document(entry, at, "document"));
    }
}

// The instance in its parent product, shared by every occurrence that names
// it: the item keeps it under its identifier.
void buildRelative(CV5CAAQELAbsoluteOccurrence& occurrence, CV5CAAQELItem* item, const QELJson& object,
                   const QELJsonPath& path, const CATUnicodeString& instance) {
    const std::string* identifier = qelOptionalString(object, path, "relative");
    const QELJson* matrix = qelMember(object, "matrix");
    if (!identifier) {
        if (matrix) qelSessionFault(path / "matrix", "a relative matrix needs a \"relative\" occurrence");
        return;
    }
    if (identifier->empty()) qelSessionFault(path / "relative", "expected an identifier, got an empty string");
    if (!item) qelSessionFault(path / "relative", "a relative occurrence needs the occurrence's \"item\"");
    const CATUnicodeString key = qelText(*identifier);
    QELRelativeOccurrence* relative = item->getLinkedRelativeOccurrence(key);
    if (!relative) {
        relative = QELModelHeap::adopt(new QELRelativeOccurrence(key, instance));
        relative->linkItem(item);
        item->linkRelativeOccurrence(relative);
    }
    relative->addAbsoluteOccurrence(&occurrence);
    occurrence.linkRelativeOccurrence(relative);
    if (matrix) {
        double values[16];
        qelExpectMatrix(*matrix, path / "matrix", values);
        relative->addMatrixProperty("RelativeMatrix", values);
    }
}

void buildOccurrences(QELJson& occurrences, const QELJsonPath& path, const Place& place,
                      const QELSessionFileBuild& build);

void buildOccurrence(QELJson& object, const QELJsonPath& path, const Place& place, size_t position,
                     const QELSessionFileBuild& build) {
    qelExpectObject(object, path, "an occurrence object");
    qelCheckKeys(object, path,
                 {"instance", "uid", "item", "index", "parentComp", "relative", "matrix", "properties", "views",
                  "scenes", "sceneContexts", "componentShapes", "maskStatus", "links", "children"});
    const CATUnicodeString instance = qelText(qelString(object, path, "instance"));
    const CATUnicodeString uid = qelText(qelString(object, path, "uid"));
    if (instance.IsNull() && uid.IsNull()) qelSessionFault(path, "expected an \"instance\" name or a \"uid\"");
    CV5CAAQELItem* item = build.item(object, path, "item");

    QELComponent* parent = place.parent ? static_cast<QELComponent*>(place.parent) : place.workspace;
    auto* occurrence = QELModelHeap::adopt(new CV5CAAQELAbsoluteOccurrence(uid, instance, parent));
    // Before the occurrence is filed: the workspace keys it by its name and "Parent_Comp".
    if (const std::string* parentComp = qelOptionalString(object, path, "parentComp"))
        occurrence->addStringProperty("Parent_Comp", qelText(*parentComp));
    occurrence->addIntegerProperty("IndiceOfAbsolute", qelInt(object, path, "index", static_cast<int>(position)));
    qelApplyPropertiesOf(*occurrence, object, path);

    // The workspace keeps one occurrence per path: a second one would be
    // left out of it without a word. Its count tells, at no extra look-up.
    const TYPMapCATUnicodeStringPVoid* filed = place.workspace->getLinkedAbsoluteOccurrences();
    const int before = filed ? filed->size() : 0;
    place.workspace->linkAbsoluteOccurrence(occurrence);
    filed = place.workspace->getLinkedAbsoluteOccurrences();
    if (!filed || filed->size() == before)
        qelSessionFault(path, "a second occurrence with the path \"" + occurrence->get_Name().ConvertToUTF8() +
                                  "\" in this workspace");
    if (!place.parent) occurrence->linkWorkSpace(place.workspace);
    if (item) {
        occurrence->linkItem(item);
        item->linkAbsOcc(occurrence);
        if (!item->getFirstCreatedAbsoluteOccurrence()) {
            item->setFirstCreatedAbsoluteOccurrence(occurrence);
            item->setOneAbsoluteOccurrence(occurrence);
        }
    }
    buildRelative(*occurrence, item, object, path, instance);
    occurrence->setMaskStatus(qelInt(object, path, "maskStatus", 0));

    if (const QELJson* views = arrayMember(object, path, "views", "an array of views"))
        buildViews(*occurrence, *views, path / "views", build);
    if (const QELJson* scenes = arrayMember(object, path, "scenes", "an array of scenes"))
        buildScenes(*occurrence, *scenes, path / "scenes", build);
    if (const QELJson* scenes = arrayMember(object, path, "sceneContexts", "an array of scene contexts"))
        buildSceneContexts(*occurrence, *scenes, path / "sceneContexts");
    if (const QELJson* shapes = arrayMember(object, path, "componentShapes", "an array of shape representations"))
        buildComponentShapes(*occurrence, *shapes, path / "componentShapes", build);
    if (const QELJson* links = qelMember(object, "links")) qelBuildLinks(*occurrence, *links, path / "links", build);

    auto children = object.find("children");
    if (children != object.end()) {
        if (place.depth + 1 > kMaxDepth)
            qelSessionFault(path / "children", "the tree is deeper than " + std::to_string(kMaxDepth) + " levels");
        buildOccurrences(*children, path / "children", Place{place.workspace, occurrence, place.depth + 1}, build);
    }
}

void buildOccurrences(QELJson& occurrences, const QELJsonPath& path, const Place& place,
                      const QELSessionFileBuild& build) {
    qelExpectArray(occurrences, path, "an array of occurrences");
    for (size_t i = 0; i < occurrences.size(); ++i) {
        buildOccurrence(occurrences[i], path / i, place, i, build);
        if (build.consume) occurrences[i] = nullptr; // built: its text is no longer needed
    }
}

} // namespace

void qelBuildWorkspaces(const QELJson& workspaces, const QELJsonPath& path, QELSessionFileBuild& build) {
    qelExpectArray(workspaces, path, "an array of workspaces");
    QELSession* session = QELSession::getInstance();
    std::string activeAt; // the path of the active workspace met so far
    for (size_t i = 0; i < workspaces.size(); ++i) {
        const QELJsonPath at = path / i;
        const QELJson& object = qelExpectObject(workspaces[i], at, "a workspace object");
        qelCheckKeys(object, at,
                     {"name", "type", "active", "visible", "index", "document", "item", "defaultDocument",
                      "itemDocumentReference", "configuration", "maskStatus", "properties", "links", "occurrences"});
        const std::string name = qelRequiredName(object, at, "name");
        if (build.workspaces.find(name)) qelSessionFault(at / "name", "a second workspace named \"" + name + "\"");
        QELDocument* document = build.document(object, at, "document");
        CV5CAAQELItem* item = build.item(object, at, "item");
        QELDocument* defaultDocument = build.document(object, at, "defaultDocument");
        const QELJson* typeValue = qelMember(object, "type");
        const EnumDocumentType type = typeValue ? qelExpectDocumentType(*typeValue, at / "type")
                                                : (document ? document->getType() : EnumDocumentType_Unset);
        const bool active = qelBool(object, at, "active", false);
        if (active && !activeAt.empty())
            qelSessionFault(at / "active", "only one workspace can be active, and " + activeAt + " is");
        if (active) activeAt = at.text();

        auto* workspace = QELModelHeap::adopt(new CV5CAAQELWorkSpace());
        build.workspaces.add(name, workspace);
        workspace->set_Name(qelText(name));
        workspace->setWorkSpaceType(type);
        workspace->setActiveWorkspace(active);
        workspace->setMaskStatus(qelInt(object, at, "maskStatus", 0));
        if (document) {
            workspace->linkDocument(document);
            workspace->setDocFileLinkType(document->getType());
        }
        workspace->setWorkSpaceDefaultDocument(defaultDocument ? defaultDocument : document);
        if (item) workspace->linkItem(item);
        workspace->setItemDocLinkType(
            qelText(qelString(object, at, "itemDocumentReference", QELLinkType::LINKNAME_CHILD)));
        workspace->addBooleanProperty("IsVisible", qelBool(object, at, "visible", true));
        workspace->addIntegerProperty("WorkspaceIndex", qelInt(object, at, "index", static_cast<int>(i)));
        workspace->addIntegerProperty("FileType", type);
        if (const QELJson* configuration = arrayMember(object, at, "configuration", "an array of strings")) {
            CATListValCATUnicodeString lines;
            for (size_t c = 0; c < configuration->size(); ++c)
                lines.Append(qelText(qelExpectString((*configuration)[c], at / "configuration" / c)));
            workspace->setConfiguration(lines);
        }
        qelApplyPropertiesOf(*workspace, object, at);
        session->addWorkSpace(workspace);
    }
}

void qelBuildAssemblies(QELJson& workspaces, const QELJsonPath& path, QELSessionFileBuild& build) {
    for (size_t i = 0; i < workspaces.size(); ++i) {
        const QELJsonPath at = path / i;
        QELJson& object = workspaces[i];
        CV5CAAQELWorkSpace* workspace = build.workspaces.find(qelRequiredName(object, at, "name"));
        if (const QELJson* links = qelMember(object, "links")) qelBuildLinks(*workspace, *links, at / "links", build);
        auto occurrences = object.find("occurrences");
        if (occurrences != object.end())
            buildOccurrences(*occurrences, at / "occurrences", Place{workspace, nullptr, 1}, build);
    }
}
