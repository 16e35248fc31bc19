// Items and documents of a session file, with what belongs to each one alone:
// the item a document is filed under, its files, its properties and the CAD
// host's answers about it. What refers to other components comes later
// (QELSessionFileRelations.cpp), once every component has its name.

#include <utility>
#include <vector>

#include "CV5CAAQELDocument.h"
#include "CV5CAAQELItem.h"
#include "QELFile.h"
#include "QELLinkType.h"
#include "QELModelHeap.h"
#include "QELSession.h"
#include "QELSessionFileBuilder.h"
#include "QELUtilities.h"

namespace {

// What only a document of the CAD host answers; a plain model document
// ("host": false) refuses them rather than dropping them.
const char* const kHostAnswers[] = {
    "defaultItem", "defaultFile", "documentUID", "namedRefUID", "fileName", "catalogComponent", "primary",
    "brokenIcon", "designTableVisible", "sheets", "activeSheet", "pointedByActiveSheet", "scenes",
    "maskStatus", "stackingsStatus", "stackings", "externalFiles",
};

void refuseHostAnswers(const QELJson& object, const QELJsonPath& path) {
    for (const char* key : kHostAnswers) {
        if (qelMember(object, key))
            qelSessionFault(path / key, "only a document of the CAD host has this answer; this one has \"host\": false");
    }
}

using NamedFiles = std::vector<std::pair<std::string, QELFile*>>;

// "files": names, or objects with a reference name and properties. Files are
// shared by name across documents, as the model's createFile does.
NamedFiles buildFiles(QELDocument& document, const QELJson& files, const QELJsonPath& path) {
    qelExpectArray(files, path, "an array of files");
    const CATUnicodeString ownReference = QELUtilities::getDocFilRefNameFromDocumentType(document.getType());
    NamedFiles made;
    made.reserve(files.size());
    for (size_t i = 0; i < files.size(); ++i) {
        const QELJsonPath at = path / i;
        const QELJson& entry = files[i];
        std::string name;
        CATUnicodeString reference = ownReference;
        const QELJson* properties = nullptr;
        if (entry.is_string()) {
            name = entry.get<std::string>();
            if (name.empty()) qelSessionFault(at, "expected a file name, got an empty string");
        } else {
            qelExpectObject(entry, at, "a file name or a file object");
            qelCheckKeys(entry, at, {"name", "reference", "properties"});
            name = qelRequiredName(entry, at, "name");
            if (const std::string* given = qelOptionalString(entry, at, "reference")) reference = qelText(*given);
            properties = qelMember(entry, "properties");
        }
        QELFile* file = document.createFile(reference, qelText(name));
        if (properties) qelApplyProperties(*file, *properties, at / "properties");
        // The name the description gives the PDM side is the file's own
        // unless the file says otherwise.
        if (!file->isPropertyExist("File_Name")) file->addStringProperty("File_Name", qelText(name));
        made.emplace_back(name, file);
    }
    return made;
}

QELFile* defaultFileOf(QELDocument& document, const NamedFiles& files, const QELJson& object,
                       const QELJsonPath& path) {
    if (const std::string* name = qelOptionalString(object, path, "defaultFile")) {
        for (const auto& file : files) {
            if (file.first == *name) return file.second;
        }
        qelSessionFault(path / "defaultFile", "no file named \"" + *name + "\" in this document's \"files\"");
    }
    // The file under the document's own reference, as the host would open it.
    TYPMapCATUnicodeStringPVoid* own =
        document.getLinkedFiles(QELUtilities::getDocFilRefNameFromDocumentType(document.getType()));
    if (own && own->size() > 0) return static_cast<QELFile*>(own->first());
    return files.empty() ? nullptr : files.front().second;
}

void applyHostAnswers(CV5CAAQELDocument& document, const QELJson& object, const QELJsonPath& path,
                      CV5CAAQELItem* item, const NamedFiles& files, const QELSessionFileBuild& build) {
    CV5CAAQELItem* defaultItem = build.item(object, path, "defaultItem");
    document.setDefaultItem(defaultItem ? defaultItem : item);
    document.setDefaultFile(defaultFileOf(document, files, object, path));
    document.setDocumentUID(qelText(qelString(object, path, "documentUID")));
    document.setNamedRefUID(qelText(qelString(object, path, "namedRefUID")));
    if (const std::string* fileName = qelOptionalString(object, path, "fileName")) document.setFileName(qelText(*fileName));
    document.setIsCatalogComp(qelBool(object, path, "catalogComponent", false));
    document.setIsPrimaryDocument(qelBool(object, path, "primary", false));
    document.setIsABrokenIcon(qelBool(object, path, "brokenIcon", false));
    document.setDesignTableVisibility(qelBool(object, path, "designTableVisible", false));
    document.setDWActiveSheet(qelText(qelString(object, path, "activeSheet")));
    document.setIsPointedDocOfActiveSheet(qelBool(object, path, "pointedByActiveSheet", false));
    document.setMaskStatus(qelInt(object, path, "maskStatus", 0));
    document.setStackingsStatus(qelInt(object, path, "stackingsStatus", 0));
    if (const QELJson* sheets = qelMember(object, "sheets")) {
        qelExpectArray(*sheets, path / "sheets", "an array of sheet names");
        for (size_t i = 0; i < sheets->size(); ++i)
            document.addSheetName(qelText(qelExpectString((*sheets)[i], path / "sheets" / i)));
    }
    if (const QELJson* scenes = qelMember(object, "scenes")) {
        qelExpectArray(*scenes, path / "scenes", "an array of scene names");
        for (size_t i = 0; i < scenes->size(); ++i)
            document.addSceneName(qelText(qelExpectString((*scenes)[i], path / "scenes" / i)));
    }
}

QELDocument* buildDocument(const QELJson& object, const QELJsonPath& path, QELSessionFileBuild& build) {
    qelCheckKeys(object, path,
                 {"name", "type", "host", "registered", "item", "files", "properties", "defaultItem", "defaultFile",
                  "documentUID", "namedRefUID", "fileName", "catalogComponent", "primary", "brokenIcon",
                  "designTableVisible", "sheets", "activeSheet", "pointedByActiveSheet", "scenes", "maskStatus",
                  "stackingsStatus", "stackings", "externalFiles", "designTables", "alternateShapes",
                  "secondaries", "publications", "forms", "linkedDocuments", "bodies", "links"});
    const std::string name = qelRequiredName(object, path, "name");
    if (build.documents.find(name)) qelSessionFault(path / "name", "a second document named \"" + name + "\"");
    const QELJson* typeValue = qelMember(object, "type");
    if (!typeValue) qelSessionFault(path, "missing \"type\"");
    const EnumDocumentType type = qelExpectDocumentType(*typeValue, path / "type");
    const bool host = qelBool(object, path, "host", true);
    if (!host) refuseHostAnswers(object, path);
    CV5CAAQELItem* item = build.item(object, path, "item");

    QELDocument* document = host ? QELModelHeap::adopt(new CV5CAAQELDocument(qelText(name), type))
                                 : QELModelHeap::adopt(new QELDocument(qelText(name), type));
    build.documents.add(name, document);
    if (qelBool(object, path, "registered", true)) QELSession::getInstance()->addDocument(document);
    if (item) {
        // The references under which an item and its documents point at each
        // other, as the host's command modules file them.
        item->linkDocument(QELLinkType::LINKNAME_CHILD, document);
        document->linkItem(QELLinkType::LINKNAME_CHILD, item);
        document->linkItem(QELLinkType::LINKNAME_PARENT, item);
        // The first document filed under an item is the one the host opens
        // for it, unless the item names another.
        if (!item->getItemDefaultDocument()) item->setItemDefaultDocument(document);
    }
    NamedFiles files;
    if (const QELJson* list = qelMember(object, "files")) files = buildFiles(*document, *list, path / "files");
    qelApplyPropertiesOf(*document, object, path);
    if (host) applyHostAnswers(*static_cast<CV5CAAQELDocument*>(document), object, path, item, files, build);
    return document;
}

} // namespace

void qelBuildItems(const QELJson& items, const QELJsonPath& path, QELSessionFileBuild& build) {
    qelExpectArray(items, path, "an array of items");
    build.items.reserve(items.size());
    QELSession* session = QELSession::getInstance();
    for (size_t i = 0; i < items.size(); ++i) {
        const QELJsonPath at = path / i;
        const QELJson& object = qelExpectObject(items[i], at, "an item object");
        qelCheckKeys(object, at, {"name", "properties", "catalogComponent", "maskStatus", "defaultDocument", "forms", "links"});
        const std::string name = qelRequiredName(object, at, "name");
        if (build.items.find(name)) qelSessionFault(at / "name", "a second item named \"" + name + "\"");
        auto* item = QELModelHeap::adopt(new CV5CAAQELItem(qelText(name)));
        build.items.add(name, item);
        item->setIsCatalogComp(qelBool(object, at, "catalogComponent", false));
        item->setMaskStatus(qelInt(object, at, "maskStatus", 0));
        qelApplyPropertiesOf(*item, object, at);
        session->addItem(item);
    }
}

void qelBuildDocuments(const QELJson& documents, const QELJsonPath& path, QELSessionFileBuild& build) {
    qelExpectArray(documents, path, "an array of documents");
    build.documents.reserve(documents.size());
    for (size_t i = 0; i < documents.size(); ++i) {
        const QELJsonPath at = path / i;
        buildDocument(qelExpectObject(documents[i], at, "a document object"), at, build);
    }
}
