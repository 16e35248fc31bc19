#ifndef QELXMLToDM_H
#define QELXMLToDM_H

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "CATUnicodeString.h"
#include "EnumDocumentType.h"
#include "QELDocumentOldNameIndex.h"
#include "TYPMapCATUnicodeStringPVoid.h"
#include "TYPMapIntPVoid.h"
#include "TYPVector.h"
#include "UTILLineFile.h"

class CV5CAAQELDocument;
class CV5CAAQELWorkSpace;
class QELAbsoluteOccurrence;
class QELAnswerEntry;
class QELComponent;
class QELDocument;
class QELItem;
class QELRelativeOccurrence;
class QELSession;
class QELWorkSpace;

// Reads the PDM side's answer (the description's line-framed dialect) and
// updates the session's model.
//
// The file may come from anywhere and be anything: lines of any length are
// read whole and values kept whole; every loop ends at the end of the file; a
// count larger than the content, a missing closing line, a truncated entry or
// an empty file ends the reading with a journal line. POINTER_ADDRESS is
// resolved through the table of live components, so an unknown, malformed or
// stale token designates no component. Positions are tracked by the reader
// itself; going back to a block already in memory costs no system call.
class QELXMLToDM {
public:
    explicit QELXMLToDM(const char* path);
    QELXMLToDM(const QELXMLToDM&) = delete;
    QELXMLToDM& operator=(const QELXMLToDM&) = delete;
    ~QELXMLToDM();

    // Reads the whole answer and updates the model.
    void execute(QELSession* session);
    // The light pass: options, entry flags and item identifiers only.
    void readOptions(QELSession* session);

    // The absolute occurrences updated by execute, in answer order: the vector
    // is owned by this reader, valid until its destruction; the occurrences
    // by their makers (the model heap for the library's factories).
    const TYPVectorPQELAbsoluteOccurrence& getOccurrences() const { return *_occurrences; }

private:
    // Tests reach the private readers through these, one per group of sources.
    friend struct QELXMLToDMScannerAccess;
    friend struct QELXMLToDMUpdateAccess;

    // ---- scanner (QELXMLToDMScanner.cpp) ------------------------------------
    // The opening shared by execute and readOptions: checks the session,
    // opens the answer and reads its first two lines, the second into
    // `rootLine`. False, with the journal lines and the function's end
    // written, when the reading cannot start.
    bool beginReading(const char* function, QELSession* session, std::string& rootLine);
    int openFile();
    int closeFile();
    // Reads the next line; false at the end of the file.
    bool readLine(std::string& line);
    // Moves to `start` when it is positive.
    void moveTo(long long start);
    // The sibling search: true when the opening line of `name` is met among
    // the siblings that follow; the file then stands after it.
    bool findSibling(std::string_view name, long long start, long long& pos);
    bool getNodePosition(const char* name, long long start, long long& pos);
    // Value lines after the first get a line feed before and a blank after.
    bool getBaliseValueByName(long long start, const char* name, long long& pos, std::string& value);
    // A new vector, caller deletes (empty when the element is not found).
    TYPVectorCATUnicodeString* getBaliseValueListByName(long long start, const char* name, long long& pos);
    long getTagValueByName(long long start, const CATUnicodeString& stopLine, const CATUnicodeString& name,
                           long long& pos, CATUnicodeString& value);
    // The component designated by a POINTER_ADDRESS text, or null; owned by
    // its maker, valid while it lives (the table of live components answers).
    static QELComponent* resolvePointer(const CATUnicodeString* token);
    // NBElements read at a block position stored in the entry map; -1 when
    // the block or the count is missing.
    int readBlockCount(const QELAnswerEntry* map, const char* block, long long& pos);
    // NBElements among the children that follow `start` (a block's content),
    // so that a block without a count never borrows a later block's; -1 when
    // the count is missing.
    int readCount(long long start, long long& pos);
    // Whether entry `index` (from 0) of the `count` announced begins at
    // `start`; false, with a journal line, when the file or the root ends
    // first.
    bool entryBegins(long long start, int index, int count);
    // Whether an element opens at `start`, where the root should close.
    bool moreEntriesFollow(long long start);

    // ---- entries (QELXMLToDMEntries.cpp) ------------------------------------
    // One answer entry: the element around it, named after its document's
    // type, and where the reading of its Item_Info began and ended.
    struct Entry {
        std::string typeName;
        EnumDocumentType type = EnumDocumentType_Unset;
        long long valuesStart = 0;
        long long end = 0;
        bool complete = false; // its Item_Info closed
    };
    // Reads the entry that begins at `start`, its values into `values`
    // (emptied first). False when it holds no Item_Info; `entry.end` is then
    // where the search for its closing line starts.
    bool readEntry(long long start, long long& pos, Entry& entry, QELAnswerEntry& values);
    // Adds the values up to `endLine` to `values`; blocks are kept as the
    // position of their content.
    bool getValuesAndStore(long long start, long long& pos, QELAnswerEntry& values, std::string_view endLine);
    // `map` (running index -> component name -> SR list) is made when null;
    // caller deletes it with freeComponentsMap, which frees everything in it.
    bool getValuesAndStoreForComponents(long long start, long long& pos, TYPMapIntPVoid*& map);
    // Frees the shape sub-maps, their vectors and the map itself.
    static void freeComponentsMap(TYPMapIntPVoid* map);

    // ---- driver (QELXMLToDMDriver.cpp) ------------------------------------
    // What the active document tells every entry of a reading.
    struct ActiveDocument;
    // False when the reading cannot go on; the error is reported.
    static bool findActiveDocument(QELSession* session, ActiveDocument& active);
    // The `count` entries from `pos`, each read and applied in turn.
    void readEntries(QELSession* session, const ActiveDocument& active, int count, long long pos);
    // One complete entry applied to the model; false when it ends the
    // reading (an empty session meets an entry it does not take).
    bool applyEntry(QELSession* session, const ActiveDocument& active, const Entry& entry,
                    const QELAnswerEntry* values);
    // The document, occurrence or workspace the entry designates, updated;
    // `workspace` is the workspace updated, if any: owned by its maker (the
    // model heap for the library's factories). False as applyEntry.
    bool updateDesignated(QELSession* session, const Entry& entry, const QELAnswerEntry* values,
                          QELWorkSpace*& workspace);
    // At checkout of a product, a part's Load_Flag on its default document.
    void applyLoadFlag(QELWorkSpace* workspace, const QELAnswerEntry* values);
    // The workspace updated: `workspace`, or one made for the entry, owned by
    // the model heap, valid until QELModelHeap::freeAll.
    QELWorkSpace* createWorkspace(QELWorkSpace* workspace, QELSession* session, EnumDocumentType type,
                                  const QELAnswerEntry* map);
    void createAbsoluteOccurrence(QELAbsoluteOccurrence* occurrence, QELSession* session, long long start,
                                  long long& pos, EnumDocumentType type, const QELAnswerEntry* map);
    void createDocument(QELDocument* document, EnumDocumentType type, const QELAnswerEntry* map);
    void createDesignTableDocument(QELDocument* document, const QELAnswerEntry* map);
    void createCompCatalogSpecificDocument(QELDocument* document, const QELAnswerEntry* map);

    // ---- options (QELXMLToDMOptions.cpp) -----------------------------------
    bool getOptions(QELSession* session, long long start, long long& pos);
    // The options, before or after the count, then the entry count (-1 when
    // there is none); `start` ends after both.
    int readOptionsAndCount(QELSession* session, long long& start);

    // ---- property update (QELXMLToDMUpdate.cpp) -----------------------------
    void updateProperty(QELComponent* component, const QELAnswerEntry* map);
    void updatePropertyCompCatalogSpecific(QELDocument* document, const QELAnswerEntry* map);
    void updatePropertyDT(QELDocument* document, const QELAnswerEntry* map);

    // ---- mapping, secondaries, item identifiers (QELXMLToDMMapping.cpp) ------
    long updateMappingAttributs(const QELAnswerEntry* map, QELDocument* document, long long& pos);
    long updateMappingInst(const QELAnswerEntry* map, QELRelativeOccurrence* relativeOccurrence, long long& pos);
    void readSecondariesAttributes(QELDocument* document, const QELAnswerEntry* map);
    long readAndUpdateItemIdItemRevId(QELComponent* component, QELItem* item, const QELAnswerEntry* map);
    long updateDocumentForMaskManagement(CV5CAAQELWorkSpace* workspace, CV5CAAQELDocument* document,
                                         const QELAnswerEntry* map);

    // ---- composites, external and analysis files (QELXMLToDMFiles.cpp) -------
    long readAndUpdateExternalFiles(QELSession* session, const QELAnswerEntry* map);
    long readAndUpdateCompositeFiles(QELSession* session, const QELAnswerEntry* map);
    // Both vectors are new, caller deletes.
    bool getValuesAndStoreAnalysisFiles(long long start, long long& pos, TYPVectorCATUnicodeString*& resultFiles,
                                        TYPVectorCATUnicodeString*& computeFiles);

    UTILLineFile _file;
    std::string _path;
    TYPVectorPQELAbsoluteOccurrence* _occurrences;
    // The session's documents, built at the first Externals or
    // PartComposites block of a reading and reset by execute.
    QELDocumentOldNameIndex _oldNames;
    QELDocument* _primary = nullptr;
    size_t _primaryScanned = 0;
    // The key and value being read, kept from entry to entry with their storage.
    std::string _key;
    std::string _value;
};

#endif
