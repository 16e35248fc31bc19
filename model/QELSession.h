#ifndef QELSession_H
#define QELSession_H

#include "CATUnicodeString.h"
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
    TYPVectorCATUnicodeString* getGeoDescDocuments() const;
    void setGeoDescDocuments(const CATUnicodeString& documentName);

    // An existing key keeps its value.
    void addDynamicProperty(const CATUnicodeString& name, const CATUnicodeString& key, const CATUnicodeString& value);

    // Typed registry. The sub-maps returned belong to the session (null while
    // the kind has none); counts are 0 then.
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

    CATUnicodeString print(int style) const;
    // Forgets every component and frees the registry and the properties; the
    // session stays usable.
    void release();

protected:
    QELSession();
    ~QELSession();
    static void setInstance(QELSession* session);

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
