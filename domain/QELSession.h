#ifndef QELSession_H
#define QELSession_H

#include "CATUnicodeString.h"
#include "EnumDocumentType.h"
#include "QELObject.h"
#include "QELPropertyHolder.h"
#include "TYPMapCATUnicodeStringPVoid.h"
#include "TYPVector.h"

class QELComponent;
class QELDocument;
class QELFile;
class QELItem;
class QELWorkSpace;

// The process-wide root of the model: a registry of components by class name
// and name, and session-wide properties. The session forgets components and
// never frees them (see QELModelHeap and freeModel).
//
// Not thread-safe: the singleton is created lazily without locking, so calls
// come from one thread at a time.
class QELSession : public QELObject, public QELPropertyHolder {
public:
    // Made at the first call; owned by the class, valid until removeInstance.
    static QELSession* getInstance();
    // Releases and destroys the session; the remembered pointer becomes null.
    static void removeInstance();
    // Frees a whole model in one call: the session, then every component,
    // link and value that the library's factories created.
    static void freeModel();

    QELSession(const QELSession&) = delete;
    QELSession& operator=(const QELSession&) = delete;

    // Session-wide values
    long getCalculGeometricStatus(bool& status) const;
    long setCalculGeometricStatus(bool status);
    // Owned by the session's property set, valid until release().
    TYPVectorCATUnicodeString* getGeoDescDocuments() const;
    void setGeoDescDocuments(const CATUnicodeString& documentName);

    // An existing key keeps its value.
    void addDynamicProperty(const CATUnicodeString& name, const CATUnicodeString& key, const CATUnicodeString& value);

    // Typed registry. The sub-maps are owned by the session, valid until
    // release() (null while the kind has none; counts are 0 then). The
    // components are owned by their makers (the model heap for the library's
    // factories), valid until freed there: the session only forgets them.
    void addDocument(QELDocument* document);
    void addItem(QELItem* item);
    void addFile(QELFile* file);
    void addWorkSpace(QELWorkSpace* workSpace);
    QELDocument* getDocument(const CATUnicodeString& name) const;
    QELItem* getItem(const CATUnicodeString& name) const;
    QELFile* getFile(const CATUnicodeString& name) const;
    QELWorkSpace* getWorkSpace(const CATUnicodeString& name) const;
    TYPMapCATUnicodeStringPVoid* getDocuments() const;
    TYPMapCATUnicodeStringPVoid* getItems() const;
    TYPMapCATUnicodeStringPVoid* getFiles() const;
    TYPMapCATUnicodeStringPVoid* getWorkSpaces() const;
    int getDocumentCount() const;
    int getItemCount() const;
    int getFileCount() const;
    int getWorkSpaceCount() const;

    // Queries over the registered domain. A vector answered is new and the
    // caller deletes it, not the components in it; a component answered is
    // owned as in the registry.
    //
    // Finds the workspace registered as a + "+++" + b + "+++" + c; otherwise
    // makes a new, unnamed workspace (the key is not given to it and the type
    // is not used) and registers it under its empty name; a new workspace is
    // owned by the model heap, valid until QELModelHeap::freeAll.
    QELWorkSpace* createWorkSpace(EnumDocumentType type, const CATUnicodeString& a, const CATUnicodeString& b,
                                  const CATUnicodeString& c);
    QELWorkSpace* getActiveWorkSpace() const;
    TYPVectorPQELWorkSpace* getPassiveWorkSpaces() const;
    // The passive workspaces by ascending "WorkspaceIndex" (one per index), in
    // a new vector, caller deletes.
    long getOrderedPassiveWorkSpaces(TYPVectorPQELWorkSpace*& out) const;
    TYPVectorPQELDocument* getAllQELDocuments() const;
    QELDocument* getDocumentByOldName(const CATUnicodeString& name) const;
    QELDocument* getDocumentByStringProperty(const CATUnicodeString& propertyName,
                                             const CATUnicodeString& value) const;
    // Items whose "MAJ" is 2; null when no item is registered.
    TYPVectorPQELItem* getItemsWithMajExisting() const;
    // What the component's document points to through item links of that
    // name: the workspace opened on each pointed document, or the document
    // itself for kinds not opened as workspaces. Null when there is nothing.
    TYPVectorPQELComponent* getLinkedComponents(QELComponent* component, const CATUnicodeString& linkTypeName) const;
    // Depth-first listing of what a visible workspace drags along through its
    // drawing, analysis, process and catalog links; the two vectors stay
    // parallel. 0x80004005 for a null component.
    long getOrderedLinkedComponents(QELComponent* component, QELDocument* document,
                                    TYPVectorPQELComponent& components, TYPVectorPQELDocument& documents) const;
    // Whether the host session holds a flattening workspace: the session's
    // boolean property "HasFlatteningWorkspace", set by the command module.
    bool hasFlatteningWorkspace() const;

    CATUnicodeString print(int style) const;
    // Forgets every component and frees the registry and the properties; the
    // session stays usable.
    void release();

protected:
    QELSession();
    ~QELSession();
    static void setInstance(QELSession* session);

    // The registry by class name; maps and components owned as in the typed
    // registry above.
    void addComponent(QELComponent* component, const CATUnicodeString& className);
    QELComponent* getComponent(const CATUnicodeString& className, const CATUnicodeString& name) const;
    QELComponent* getComponent(const CATUnicodeString& name) const;
    TYPMapCATUnicodeStringPVoid* getComponents(const CATUnicodeString& className) const;
    bool hasComponent(const CATUnicodeString& className, const CATUnicodeString& name) const;
    bool hasComponent(const CATUnicodeString& name) const;
    bool hasComponents(const CATUnicodeString& className) const;
    void removeComponent(const CATUnicodeString& className, const CATUnicodeString& name);
    void removeComponent(const CATUnicodeString& name);
    void removeComponents(const CATUnicodeString& className);
    void removeAllComponents();
    // Java-style 31-multiplier hash of the bytes, taken as signed.
    static int hashCode(const char* text);

private:
    TYPMapCATUnicodeStringPVoid* _registry; // "MAP_LIST_OF_COMPONENTS"
    static QELSession* _instance;
};

#endif
