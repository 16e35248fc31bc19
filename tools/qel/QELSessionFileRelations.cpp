// What items and documents say about other components: design tables,
// shape representations, secondaries, forms, publications, bodies, the
// composites tree, external files and GRM links. Run once every item,
// document and workspace exists, so that a reference never depends on the
// order of the file.

#include "CV5CAAQELDocument.h"
#include "CV5CAAQELItem.h"
#include "CV5CAAQELStacking.h"
#include "CV5CAAQELWorkSpace.h"
#include "QELForm.h"
#include "QELGeoDatas.h"
#include "QELLink.h"
#include "QELModelHeap.h"
#include "QELSessionFileBuilder.h"

namespace {

const int kGRMLinkType = 19;
const char* const kDesignTableLink = "catdesigntable";
const char* const kSecondaryLink = "CATIA_secondary_Link_type";
const char* const kExternalFileLink = "CATIA_external_Link_type";

// An entry given by its name alone, or as an object naming it under `key`
// with more members. Answers the object, or null for the short form.
const QELJson* nameOrObject(const QELJson& entry, const QELJsonPath& path, const char* key,
                            std::initializer_list<const char*> known, std::string& name) {
    if (entry.is_string()) {
        name = entry.get<std::string>();
        if (name.empty()) qelSessionFault(path, "expected a name, got an empty string");
        return nullptr;
    }
    qelExpectObject(entry, path, (std::string("a name or an object with \"") + key + "\"").c_str());
    qelCheckKeys(entry, path, known);
    name = qelRequiredName(entry, path, key);
    return &entry;
}

const QELJson* arrayMember(const QELJson& object, const QELJsonPath& path, const char* key, const char* what) {
    const QELJson* value = qelMember(object, key);
    if (value) qelExpectArray(*value, path / key, what);
    return value;
}

void buildDesignTables(QELDocument& owner, const QELJson& tables, const QELJsonPath& path,
                       const QELSessionFileBuild& build) {
    for (size_t i = 0; i < tables.size(); ++i) {
        const QELJsonPath at = path / i;
        const QELJson& entry = qelExpectObject(tables[i], at, "a design table object");
        qelCheckKeys(entry, at, {"document", "name", "properties"});
        if (!qelMember(entry, "document")) qelSessionFault(at, "missing \"document\"");
        QELDocument* table = build.document(entry, at, "document");
        if (table == &owner) qelSessionFault(at / "document", "a document cannot be its own design table");
        // What the model's addDesignTable records, unless the table's own
        // properties (or an earlier owner) said it already.
        if (!table->isPropertyExist("indiceDesignTable"))
            table->addIntegerProperty("indiceDesignTable", static_cast<int>(i));
        if (!table->isPropertyExist("OldDesignTableName")) table->addStringProperty("OldDesignTableName", table->get_Name());
        if (!table->isPropertyExist("DesignTableName")) {
            const std::string* name = qelOptionalString(entry, at, "name");
            table->addStringProperty("DesignTableName", name ? qelText(*name) : table->get_Name());
        }
        owner.addDesignTable(table);
        QELLink* link = owner.addGRMDocumentLink(kDesignTableLink, table);
        qelApplyPropertiesOf(*link, entry, at);
    }
}

// Alternate shapes of a document and component shapes of an occurrence share
// this form: {"name": shape representation name, "document": its document}.
void buildAlternateShapes(QELDocument& owner, const QELJson& shapes, const QELJsonPath& path,
                          const QELSessionFileBuild& build) {
    for (size_t i = 0; i < shapes.size(); ++i) {
        const QELJsonPath at = path / i;
        const QELJson& entry = qelExpectObject(shapes[i], at, "a shape representation object");
        qelCheckKeys(entry, at, {"name", "document"});
        const std::string name = qelRequiredName(entry, at, "name");
        if (!qelMember(entry, "document")) qelSessionFault(at, "missing \"document\"");
        owner.linkAlternateShapeRepresentation(qelText(name), build.document(entry, at, "document"));
    }
}

void buildSecondaries(QELDocument& owner, const QELJson& secondaries, const QELJsonPath& path,
                      const QELSessionFileBuild& build) {
    for (size_t i = 0; i < secondaries.size(); ++i) {
        const QELJsonPath at = path / i;
        std::string name;
        const QELJson* object = nameOrObject(secondaries[i], at, "document", {"document", "properties"}, name);
        QELDocument* secondary = build.documentNamed(object ? (*object)["document"] : secondaries[i],
                                                     object ? at / "document" : at);
        QELLink* link = owner.addGRMDocumentLink(kSecondaryLink, secondary);
        if (object) qelApplyPropertiesOf(*link, *object, at);
    }
}

void buildPublications(QELDocument& owner, const QELJson& publications, const QELJsonPath& path) {
    for (size_t i = 0; i < publications.size(); ++i) {
        const QELJsonPath at = path / i;
        std::string name;
        const QELJson* object = nameOrObject(publications[i], at, "name", {"name", "properties"}, name);
        QELForm* publication = owner.addPublication(qelText(name));
        if (object) qelApplyPropertiesOf(*publication, *object, at);
    }
}

QELForm* buildForm(const QELJson& entry, const QELJsonPath& path) {
    qelExpectObject(entry, path, "a form object");
    qelCheckKeys(entry, path, {"type", "name", "properties"});
    const CATUnicodeString type = qelText(qelRequiredName(entry, path, "type"));
    const std::string* name = qelOptionalString(entry, path, "name");
    QELForm* form = QELModelHeap::adopt(name ? new QELForm(type, qelText(*name)) : new QELForm(type));
    qelApplyPropertiesOf(*form, entry, path);
    return form;
}

void buildDocumentForms(QELDocument& owner, const QELJson& forms, const QELJsonPath& path) {
    for (size_t i = 0; i < forms.size(); ++i) {
        QELForm* form = buildForm(forms[i], path / i);
        owner.linkForm(form);
        form->linkDocument(&owner);
    }
}

void buildLinkedDocuments(QELDocument& owner, const QELJson& linked, const QELJsonPath& path,
                          const QELSessionFileBuild& build) {
    for (size_t i = 0; i < linked.size(); ++i) {
        const QELJsonPath at = path / i;
        const QELJson& entry = qelExpectObject(linked[i], at, "a linked document object");
        qelCheckKeys(entry, at, {"reference", "document"});
        const std::string reference = qelRequiredName(entry, at, "reference");
        if (!qelMember(entry, "document")) qelSessionFault(at, "missing \"document\"");
        owner.linkDocument(qelText(reference), build.document(entry, at, "document"));
    }
}

void buildBodies(QELDocument& owner, const QELJson& bodies, const QELJsonPath& path) {
    for (size_t i = 0; i < bodies.size(); ++i) {
        const QELJsonPath at = path / i;
        std::string name;
        const QELJson* object = nameOrObject(bodies[i], at, "name", {"name", "properties"}, name);
        auto* body = QELModelHeap::adopt(new QELGeoDatas(&owner, qelText(name)));
        if (object) qelApplyPropertiesOf(*body, *object, at);
    }
}

void buildExternalFiles(CV5CAAQELDocument& owner, const QELJson& externals, const QELJsonPath& path,
                        const QELSessionFileBuild& build) {
    for (size_t i = 0; i < externals.size(); ++i) {
        const QELJsonPath at = path / i;
        std::string name;
        const QELJson* object = nameOrObject(externals[i], at, "document", {"document", "properties"}, name);
        QELDocument* external = build.documentNamed(object ? (*object)["document"] : externals[i],
                                                    object ? at / "document" : at);
        // The host holds these links itself; the model's GRM tables do not list them.
        auto* link = QELModelHeap::adopt(new QELLink(kGRMLinkType, kExternalFileLink, &owner, external));
        if (object) qelApplyPropertiesOf(*link, *object, at);
        owner.addExternalFileDocument(link);
    }
}

// ---- the composites tree, as the CAD host answers it ----------------------------

// Each level: {"name", "status", <children>}; the status is what the host
// answers when asked for the level's name and children (negative: failure).
template <typename Level>
Level* compositeLevel(const QELJson& entry, const QELJsonPath& path, const char* what,
                      std::initializer_list<const char*> known) {
    qelExpectObject(entry, path, what);
    qelCheckKeys(entry, path, known);
    auto* level = QELModelHeap::adopt(new Level(qelText(qelRequiredName(entry, path, "name"))));
    level->setStatus(qelInt(entry, path, "status", 0));
    return level;
}

struct PlyValue {
    const char* key;
    CV5CAAQELPly::Value value;
};

const PlyValue kPlyValues[] = {
    {"representation3D", CV5CAAQELPly::RepresentationFilePath3D},
    {"representation2D", CV5CAAQELPly::RepresentationFilePath2D},
    {"material", CV5CAAQELPly::MaterialName},
    {"cogX", CV5CAAQELPly::COGX},
    {"cogY", CV5CAAQELPly::COGY},
    {"cogZ", CV5CAAQELPly::COGZ},
    {"inertiaXX", CV5CAAQELPly::InertiaXX},
    {"inertiaYY", CV5CAAQELPly::InertiaYY},
    {"inertiaZZ", CV5CAAQELPly::InertiaZZ},
    {"inertiaXY", CV5CAAQELPly::InertiaXY},
    {"inertiaZX", CV5CAAQELPly::InertiaZX},
    {"inertiaZY", CV5CAAQELPly::InertiaZY},
    {"direction", CV5CAAQELPly::Direction},
    {"surfacicMass", CV5CAAQELPly::SurfacicMass},
    {"mass", CV5CAAQELPly::Mass},
    {"wetArea", CV5CAAQELPly::WetArea},
};

CV5CAAQELPly* buildPly(const QELJson& entry, const QELJsonPath& path) {
    auto* ply = compositeLevel<CV5CAAQELPly>(
        entry, path, "a ply object",
        {"name", "status", "representation3D", "representation2D", "material", "cogX", "cogY", "cogZ", "inertiaXX",
         "inertiaYY", "inertiaZZ", "inertiaXY", "inertiaZX", "inertiaZY", "direction", "surfacicMass", "mass",
         "wetArea"});
    // The host formats its numbers itself, so every value is text.
    for (const PlyValue& value : kPlyValues) {
        if (const std::string* text = qelOptionalString(entry, path, value.key)) ply->setValue(value.value, qelText(*text));
    }
    return ply;
}

const QELJson& children(const QELJson& entry, const QELJsonPath& path, const char* key, const char* what) {
    static const QELJson none = QELJson::array();
    const QELJson* list = arrayMember(entry, path, key, what);
    return list ? *list : none;
}

CV5CAAQELSequence* buildSequence(const QELJson& entry, const QELJsonPath& path) {
    auto* sequence = compositeLevel<CV5CAAQELSequence>(entry, path, "a sequence object", {"name", "status", "plies"});
    const QELJson& plies = children(entry, path, "plies", "an array of plies");
    for (size_t i = 0; i < plies.size(); ++i) sequence->addPly(buildPly(plies[i], path / "plies" / i));
    return sequence;
}

CV5CAAQELPliesGroup* buildPliesGroup(const QELJson& entry, const QELJsonPath& path) {
    auto* group =
        compositeLevel<CV5CAAQELPliesGroup>(entry, path, "a plies group object", {"name", "status", "sequences"});
    const QELJson& sequences = children(entry, path, "sequences", "an array of sequences");
    for (size_t i = 0; i < sequences.size(); ++i) group->addSequence(buildSequence(sequences[i], path / "sequences" / i));
    return group;
}

void buildStackings(CV5CAAQELDocument& owner, const QELJson& stackings, const QELJsonPath& path) {
    for (size_t i = 0; i < stackings.size(); ++i) {
        const QELJsonPath at = path / i;
        auto* stacking =
            compositeLevel<CV5CAAQELStacking>(stackings[i], at, "a stacking object", {"name", "status", "pliesGroups"});
        const QELJson& groups = children(stackings[i], at, "pliesGroups", "an array of plies groups");
        for (size_t g = 0; g < groups.size(); ++g) stacking->addPliesGroup(buildPliesGroup(groups[g], at / "pliesGroups" / g));
        owner.addStacking(stacking);
    }
}

void buildDocumentRelations(QELDocument& document, const QELJson& object, const QELJsonPath& path,
                            const QELSessionFileBuild& build) {
    if (const QELJson* list = arrayMember(object, path, "designTables", "an array of design tables"))
        buildDesignTables(document, *list, path / "designTables", build);
    if (const QELJson* list = arrayMember(object, path, "alternateShapes", "an array of shape representations"))
        buildAlternateShapes(document, *list, path / "alternateShapes", build);
    if (const QELJson* list = arrayMember(object, path, "secondaries", "an array of secondary documents"))
        buildSecondaries(document, *list, path / "secondaries", build);
    if (const QELJson* list = arrayMember(object, path, "publications", "an array of publications"))
        buildPublications(document, *list, path / "publications");
    if (const QELJson* list = arrayMember(object, path, "forms", "an array of forms"))
        buildDocumentForms(document, *list, path / "forms");
    if (const QELJson* list = arrayMember(object, path, "linkedDocuments", "an array of linked documents"))
        buildLinkedDocuments(document, *list, path / "linkedDocuments", build);
    if (const QELJson* list = arrayMember(object, path, "bodies", "an array of bodies"))
        buildBodies(document, *list, path / "bodies");
    if (const QELJson* list = arrayMember(object, path, "links", "an array of links"))
        qelBuildLinks(document, *list, path / "links", build);
    // Host answers: documents made with "host": false refused them already.
    if (!document.instanceOf("CV5CAAQELDOCUMENT_CLASSNAME")) return;
    auto& host = static_cast<CV5CAAQELDocument&>(document);
    if (const QELJson* list = arrayMember(object, path, "stackings", "an array of stackings"))
        buildStackings(host, *list, path / "stackings");
    if (const QELJson* list = arrayMember(object, path, "externalFiles", "an array of external file documents"))
        buildExternalFiles(host, *list, path / "externalFiles", build);
}

} // namespace

void qelBuildLinks(QELComponent& primary, const QELJson& links, const QELJsonPath& path,
                   const QELSessionFileBuild& build) {
    qelExpectArray(links, path, "an array of links");
    for (size_t i = 0; i < links.size(); ++i) {
        const QELJsonPath at = path / i;
        const QELJson& entry = qelExpectObject(links[i], at, "a link object");
        qelCheckKeys(entry, at, {"name", "document", "item", "workspace", "properties"});
        const std::string name = qelRequiredName(entry, at, "name");
        QELComponent* secondary = nullptr;
        int targets = 0;
        if (const QELJson* value = qelMember(entry, "document")) {
            secondary = build.documentNamed(*value, at / "document");
            ++targets;
        }
        if (const QELJson* value = qelMember(entry, "item")) {
            secondary = build.itemNamed(*value, at / "item");
            ++targets;
        }
        if (const QELJson* value = qelMember(entry, "workspace")) {
            secondary = build.workspaceNamed(*value, at / "workspace");
            ++targets;
        }
        if (targets != 1) qelSessionFault(at, "expected exactly one of \"document\", \"item\" or \"workspace\"");
        QELLink* link = primary.addGRMLink(qelText(name), secondary);
        qelApplyPropertiesOf(*link, entry, at);
    }
}

void qelBuildItemRelations(const QELJson& items, const QELJsonPath& path, QELSessionFileBuild& build) {
    for (size_t i = 0; i < items.size(); ++i) {
        const QELJsonPath at = path / i;
        const QELJson& object = items[i];
        CV5CAAQELItem* item = build.items.find(qelRequiredName(object, at, "name"));
        if (QELDocument* document = build.document(object, at, "defaultDocument")) item->setItemDefaultDocument(document);
        if (const QELJson* forms = arrayMember(object, at, "forms", "an array of forms")) {
            for (size_t f = 0; f < forms->size(); ++f) item->linkForm(buildForm((*forms)[f], at / "forms" / f));
        }
        if (const QELJson* links = qelMember(object, "links")) qelBuildLinks(*item, *links, at / "links", build);
    }
}

void qelBuildDocumentRelations(const QELJson& documents, const QELJsonPath& path, QELSessionFileBuild& build) {
    for (size_t i = 0; i < documents.size(); ++i) {
        const QELJsonPath at = path / i;
        const QELJson& object = documents[i];
        QELDocument* document = build.documents.find(qelRequiredName(object, at, "name"));
        buildDocumentRelations(*document, object, at, build);
    }
}
