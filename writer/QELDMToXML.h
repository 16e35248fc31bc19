#ifndef QELDMToXML_H
#define QELDMToXML_H

#include <cstdio>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_set>

#include "CATListValCATUnicodeString.h"
#include "CATUnicodeString.h"
#include "CV5CAAQELDocument.h"
#include "TYPVector.h"

class QELAbsoluteOccurrence;
class QELComponent;
class QELDocument;
class QELFile;
class QELItem;
class QELRelativeOccurrence;
class QELSession;
class QELWorkSpace;

// Writes the description of the session for the PDM side: a line-framed XML
// file, one tag or one value per line, CR LF line ends, declared ISO-8859-1,
// nothing escaped. Every write is flushed at once (one system call per
// formatted write), so that a reader on the other side sees each line as soon
// as it is written.
//
// One writer serves one export: construct it on a path, call one execute,
// destroy it. If the file cannot be opened or a write fails, the failure is
// reported once through the error handler (code 2102, the detail names the
// call, the path and the system's reason) and the journal, and every later
// write of the export is skipped; hasFailed() tells the caller.
class QELDMToXML {
public:
    explicit QELDMToXML(const char* path);
    QELDMToXML(const QELDMToXML&) = delete;
    QELDMToXML& operator=(const QELDMToXML&) = delete;
    ~QELDMToXML();

    // The description of the session for every process but update status.
    void execute(QELSession* session);
    // The update-status description over a list of host documents.
    long execute(QELSession* session, TYPVectorPCV5CAAQELDocument* documents);
    // The status window's document list: one `doc` block per item, no header.
    long execute(TYPVectorPQELItem* items);

    // The composites tree of a host part (`doc` is a CV5CAAQELDocument).
    long writeComposites(QELDocument* doc, QELComponent* component);
    // The catalog browser's list: one `doc` block per document.
    long writeDocumentsForCatalogBrowser(TYPVectorPQELDocument* documents);

    bool hasFailed() const { return _failed; }
    // After a failure: the system's reason (errno) of the call that failed.
    int failureReason() const { return _failureReason; }

private:
    // Tests reach the private writers through these, one per group of sources.
    friend struct QELDMToXMLPrimitivesAccess;
    friend struct QELDMToXMLDocumentsAccess;
    friend struct QELDMToXMLAssemblyAccess;

    // ---- primitives and header (QELDMToXMLPrimitives.cpp) ----------------
    void openFile(const char* path);
    // The one place that writes bytes: formats, turns every "\n" into CR LF,
    // writes, and flushes unless told not to.
    void writeFormatted(bool flush, const char* format, ...) __attribute__((format(printf, 3, 4)));
    // The same for the tag and value lines, without a format to interpret:
    // `before`, `text` up to its first NUL (as "%s" takes it) with its LFs
    // turned into CR LF, and `after` as it is (it carries the CR LF), flushed.
    // `before` and `after` are literals: their lengths are known where they
    // are written, and `text` is scanned once.
    void writeLine(std::string_view before, const char* text, std::string_view after);
    // Writes out what is pending and closes; a failure is reported under
    // `function`, the operation that ends the description.
    void closeFile(const char* function);
    // The first failure of the stream only: error 2102 under `function`,
    // detail "<call>: <path>: <reason>", and a journal line.
    void reportFailure(const char* function, const char* call);

    // Element names are mostly literals: each writer takes them as text, so
    // that no string is built for every line; a CATUnicodeString name is
    // written as its ISO-8859-1 text.
    void writeOpenBalise(const char* name);
    void writeOpenBalise(const CATUnicodeString& name) { writeOpenBalise(name.ConvertToChar()); }
    void writeCloseBalise(const char* name);
    void writeCloseBalise(const CATUnicodeString& name) { writeCloseBalise(name.ConvertToChar()); }
    void writeValue(int value);
    void writeValue(const CATUnicodeString& value);
    void writeBalise(const char* name, const CATUnicodeString& value, const char* fallback, unsigned char writeIfEmpty);
    void writeBalise(const char* name, const CATUnicodeString& value, const CATUnicodeString& fallback,
                     unsigned char writeIfEmpty) {
        writeBalise(name, value, fallback.ConvertToChar(), writeIfEmpty);
    }
    void writeBalise(const CATUnicodeString& name, const CATUnicodeString& value, const char* fallback,
                     unsigned char writeIfEmpty) {
        writeBalise(name.ConvertToChar(), value, fallback, writeIfEmpty);
    }
    void writeBalise(const char* name, int value);
    void writeBalise(const CATUnicodeString& name, int value) { writeBalise(name.ConvertToChar(), value); }
    // The component's handle, 16 upper-case hexadecimal digits.
    void writeBalise(const char* name, const QELComponent* value);
    void writeBalise(const CATUnicodeString& name, const QELComponent* value) {
        writeBalise(name.ConvertToChar(), value);
    }
    static CATUnicodeString replaceAll(CATUnicodeString text, const CATUnicodeString& what, const CATUnicodeString& by);
    // Twelve numbers, "%.16G", single spaces, a point whatever the locale;
    // empty for a null matrix.
    static void getMatrixString(const double* matrix, std::string& out);
    void writeHeader(int numberOfElements, QELSession* session);
    // Closes the root and the file and makes the count check (error 2104).
    void finishDescription(const char* function);

    void writeMAJ(QELComponent* component);
    void writeModifiedFlag(QELComponent* component);
    void writeCheckAction(QELComponent* component);
    void writeMatrixAction(QELComponent* component, unsigned char write);
    void writePointerAddress(QELComponent* component);

    // ---- entries (QELDMToXMLDriver.cpp) --------------------------------
    // One `doc` block of the status-window and catalog-browser lists.
    void writeDocEntry(QELDocument* document, const CATUnicodeString& revuid);

    // ---- the ordinary traversal (QELDMToXMLAssembly.cpp) ------------------
    void executeForNonCatalogWorkSpace(QELSession* session);
    int getNumberOfObjectsInWsp(QELWorkSpace* workspace);
    void writeDescAssemblyAbsoluteOccurrences(QELWorkSpace* workspace, QELSession* session, unsigned char flattening);
    void recurseOnAbsoluteOccurrence(QELAbsoluteOccurrence* occurrence, QELSession* session, unsigned char flattening);
    // The children of an occurrence in ascending "IndiceOfAbsolute"; a new
    // vector, which the caller deletes (null without children).
    static TYPVectorPQELAbsoluteOccurrence* getOrderedChildren(QELAbsoluteOccurrence* occurrence);
    // The workspace opened on the document, else the occurrence of the item
    // it belongs to; owned by its maker (the model heap for the library's
    // factories), valid until freed there.
    QELComponent* getMasterComponent(QELDocument* document);

    // ---- catalog traversals (QELDMToXMLCatalog.cpp) ----------------------
    void executeForCatalogWorkSpace(QELSession* session);
    void executeForCatalogWorkSpaceForUpdateStateDetails(QELSession* session,
                                                         const CATListValCATUnicodeString& selected);
    // `selected`: the selected document names as keys (looked up in constant
    // time); null selects every document.
    void writeDescAssemblyAbsoluteOccurrencesCatalogSD(QELWorkSpace* workspace, QELSession* session,
                                                       QELDocument* catalogDocument,
                                                       const TYPMapCATUnicodeStringPVoid* selected);
    void recurseOnAbsoluteOccurrenceCatalogSD(QELAbsoluteOccurrence* occurrence, QELSession* session,
                                              QELDocument* catalogDocument,
                                              const TYPMapCATUnicodeStringPVoid* selected);
    int getNumberOfObjectsInWspForCatalog(QELWorkSpace* workspace);
    int getNumberOfObjectsWithInstanceForCatalog(QELWorkSpace* workspace, const TYPMapCATUnicodeStringPVoid* selected);
    unsigned char isDocumentSelectedInStateDetailsUpdate(QELComponent* component,
                                                         const TYPMapCATUnicodeStringPVoid* selected);

    // ---- per-process descriptions (QELDMToXMLProcesses.cpp) ----------------
    void writeDesc(QELComponent* component, QELSession* session, QELDocument* catalogDocument,
                   unsigned char flattening);
    void writeDescForSavePhase1(unsigned char isAbsolute, QELSession* session, QELComponent* component, QELItem* item,
                                QELDocument* document, QELFile* file, QELRelativeOccurrence* relative,
                                QELComponent* parent, QELItem* parentItem, QELDocument* parentDocument,
                                QELFile* parentFile, unsigned char flattening);
    void writeDescForSavePhase2(unsigned char isAbsolute, QELSession* session, QELComponent* component, QELItem* item,
                                QELDocument* document, QELFile* file, QELRelativeOccurrence* relative,
                                QELComponent* parent, QELItem* parentItem, QELDocument* parentDocument,
                                QELFile* parentFile);
    void writeDescForCreateSpreadSheet(unsigned char isAbsolute, QELSession* session, QELComponent* component,
                                       QELItem* item, QELDocument* document, QELFile* file,
                                       QELRelativeOccurrence* relative, QELComponent* parent, QELItem* parentItem,
                                       QELDocument* parentDocument, QELFile* parentFile, unsigned char flattening);
    void writeDescForImport(unsigned char isAbsolute, QELSession* session, QELComponent* component, QELItem* item,
                            QELDocument* document, QELFile* file, QELRelativeOccurrence* relative,
                            QELComponent* parent, QELItem* parentItem, QELDocument* parentDocument,
                            QELFile* parentFile, unsigned char flattening);
    void writeDescForStateDetails(unsigned char isAbsolute, QELSession* session, QELComponent* component,
                                  QELItem* item, QELDocument* document, QELFile* file);
    void writeDescForLifeCycle(unsigned char isAbsolute, QELSession* session, QELComponent* component, QELItem* item,
                               QELDocument* document, QELFile* file);
    void writeDescForBRR(unsigned char isAbsolute, QELSession* session, QELComponent* component, QELItem* item,
                         QELDocument* document, QELFile* file, QELRelativeOccurrence* relative, QELComponent* parent,
                         QELItem* parentItem, QELDocument* parentDocument, QELFile* parentFile);
    long writeDescForUpdateStatus(TYPVectorPCV5CAAQELDocument* documents);
    // The modified state of a block in a flattening export; answers whether
    // the mapping attributes are to be written and with which component (one
    // of the block's own, owned by the model).
    int flatteningModifiedFlag(QELSession* session, QELComponent* component, QELItem* item, QELDocument* document,
                               unsigned char flattening, bool& writeMapping, QELComponent*& mappingComponent);
    // DST_Version + Date_Last_Modification when "Dat_File_Version" is "0",
    // else NamedRef_UID.
    void writeVersionOrNamedRef(QELDocument* document, QELComponent* component, bool dateFirst);
    void writeAllSecondariesForStateDetail(QELDocument* document, QELComponent* component);
    // One counted block for one secondary document of the state-details factory.
    void writeSecondaryForStateDetail(QELDocument* secondary, QELDocument* primary);
    // DT_Files, DT_Sheets, DT_Cfgs and DT_Map of an owner, unless its component is a "COMP".
    void writeDesignTableSummaries(QELComponent* component, QELDocument* document);
    // The secondaries described so far in this export: the driver counts each
    // secondary document once, so each gets one block however many primaries
    // point to it.
    std::unordered_set<const QELComponent*> _secondariesWritten;

    // ---- leaf and list writers (QELDMToXMLFields.cpp) ----------------------
    // flag 1 opens the element named after the document's type, any other
    // value closes it; "Unknown" for a broken icon.
    void writeBaliseFileType(QELDocument* document, int flag, QELComponent* component);
    void writeItemID(QELItem* item, QELComponent* component);
    void writeItemRevID(QELItem* item);
    void writeItemRevUID(QELItem* item, QELComponent* component);
    void writeItemRevName(QELItem* item);
    void writePartNumber(QELItem* item, QELComponent* component);
    void writeNomenclature(QELItem* item);
    void writeOldModelName(QELItem* item);
    void writeDatasetUID(QELDocument* document, QELComponent* component);
    void writeDatasetVersion(QELDocument* document);
    void writeDateLastModification(QELDocument* document);
    void writeNamedRefUID(QELDocument* document, QELComponent* component);
    void writeBVRDate(QELDocument* document);
    void writeDocUUID(QELDocument* document);
    void writeFileName(QELFile* file, QELComponent* component);
    void writeFileVersion(QELFile* file);
    void writeOldFileName(QELFile* file);
    void writeInstanceName(QELComponent* component);
    void writeInstanceDescription(QELComponent* component);
    void writeOCCUID(QELComponent* component);
    void writeParentPartNumber(QELItem* parentItem, unsigned char isAbsolute);
    void writeParentInstanceName(QELComponent* parent, unsigned char isAbsolute);
    void writeParentDocName(QELFile* parentFile, unsigned char isAbsolute);
    void writeParentDatasetUID(QELDocument* parentDocument, unsigned char isAbsolute);
    void writeParentItemRevUID(QELItem* parentItem);
    void writeParentItemID(QELItem* parentItem, unsigned char isAbsolute);
    void writeParentItemRevID(QELItem* parentItem, unsigned char isAbsolute);
    void writeParentComp(QELComponent* component, unsigned char isAbsolute);
    void writeMask(QELComponent* component);
    void writeIsDocSelected(QELDocument* document);
    void writeType(QELComponent* component, QELDocument* document);
    long writeMappingAttributes(QELComponent* component, QELDocument* document);
    long writeOEMMappingAttributes(QELComponent* component, QELDocument* document);
    long writeCATIAMappingAttributes(QELComponent* component, QELDocument* document);
    void writeDynamicAttributes(const CATUnicodeString& element, TYPVectorCATUnicodeString* values,
                                const CATUnicodeString& itemElement, QELComponent* component, QELDocument* document);
    void writeMappingAttributesForDrawingOnImport(QELComponent* component, QELDocument* document);
    void writeDynamicAttributesForImportCompCatalog(const CATUnicodeString& element, QELComponent* component,
                                                    QELDocument* document);
    void writeSecondariesAttributes(const CATUnicodeString& listElement, const CATUnicodeString& itemElement,
                                    QELDocument* document);
    void writeLinkedDocuments(QELComponent* component, QELDocument* document, unsigned char withUuid);
    // The LinkedDocs list over the document's item links of the given names
    // (later names added to the earlier ones), with the resolved context last.
    void writeLinkedDocumentList(QELDocument* document, const TYPVectorCATUnicodeString& linkNames,
                                 const CATUnicodeString& context, unsigned char withUuid);
    void writeLinkedDocumentsForSpreadSheet(QELComponent* component, QELDocument* document);
    void writeSheetsForDrawing(QELDocument* document);
    long writeConfiguration(QELWorkSpace* workspace);
    // Adds to `into` the links of `from` whose secondary it does not name yet
    // (names compared ignoring letter case); `into` keeps its own vector,
    // owned by the caller, and the links stay the model heap's.
    static void merge(TYPVectorPQELLink*& into, TYPVectorPQELLink* from);

    // ---- assembly occurrence description (QELDMToXMLOccurrences.cpp) --------
    void writeRelativeMatrix(QELRelativeOccurrence* relative, unsigned char isAbsolute);
    void writeAbsoluteMatrix(QELAbsoluteOccurrence* occurrence, unsigned char isAbsolute);
    void writeVisibility(QELAbsoluteOccurrence* occurrence);
    void writeScenes(QELComponent* component, QELDocument* document);
    void writeScenesOverrides(QELAbsoluteOccurrence* occurrence);
    void writeSkippedOccList(QELComponent* component);
    void writeShape(QELDocument* document, QELComponent* component);
    void writeAlternateShapeRepresentations(QELDocument* document);
    void writeComponentShapeRepresentations(QELAbsoluteOccurrence* occurrence);
    void writeMappingInst(QELRelativeOccurrence* relative);
    void writeActiveShape(QELComponent* component);
    void writeDefaultShape(QELComponent* component);
    void writeDescDynamicProperties(const CATUnicodeString& listName, const CATUnicodeString& itemName,
                                    unsigned char paired, QELComponent* component);
    // The file name of a view's context: the context item's document's file.
    static CATUnicodeString getContextFileName(QELItem* context);
    // The compact Shapes list, shared by component and alternate shape
    // representations; `function` names the caller in the journal.
    void writeShapeList(const TYPVectorPQELLink& links, const char* function);
    // `element` with NBElements and one Attribut per non-empty value (also
    // used by the design-table summaries).
    void writeAttributList(const CATUnicodeString& element, const TYPVectorCATUnicodeString& values);

    // ---- design tables (QELDMToXMLDesignTables.cpp) -----------------------
    void writeDescDesignTable(QELDocument* designTable, QELSession* session, QELDocument* hostDoc,
                              unsigned char flag);
    void writeDescDesignTableForSavePhase1(QELSession* session, QELDocument* designTable, QELItem* item, QELFile* file,
                                           QELItem* parentItem, QELFile* parentFile, unsigned char flag);
    void writeDescDesignTableForSavePhase2(QELSession* session, QELDocument* designTable, QELItem* item,
                                           QELFile* file);
    void writeDescDesignTableForCreateSpreadSheet(QELSession* session, QELDocument* designTable, QELItem* item,
                                                  QELFile* file, QELItem* parentItem, QELFile* parentFile);
    void writeDescDesignTableForImport(QELSession* session, QELDocument* designTable, QELItem* item, QELFile* file,
                                       QELItem* parentItem, QELFile* parentFile);
    void writeDescDesignTableForStateDetails(QELSession* session, QELDocument* designTable, QELItem* item,
                                             QELFile* file);
    void writeDescDesignTableForLifeCycle(QELSession* session, QELDocument* designTable, QELItem* item,
                                          QELFile* file);
    void writeDescDesignTableForBRR(QELSession* session, QELDocument* designTable, QELItem* item, QELFile* file);
    void writeDesignTableInfo(QELDocument* designTable);
    void writeDesignTableMappingAttribute(const CATUnicodeString& propertyName, const CATUnicodeString& elementName,
                                          QELDocument* designTable);
    void writeDescDesignTableFile(const char* elementName, QELDocument* owner);
    void writeDescDesignTableSheets(const char* elementName, QELDocument* owner);
    void writeDescDesignTableCfgs(const char* elementName, QELDocument* owner);
    void writeDescDesignTableMap(const char* elementName, QELDocument* owner);
    void writeDescDesignTableName(const char* elementName, QELDocument* owner);
    // Which rows of the design-table block a process writes, and the block.
    struct DesignTableRows;
    void writeDesignTableBlock(const DesignTableRows& rows, QELDocument* designTable, QELItem* item, QELFile* file,
                               QELItem* parentItem, QELFile* parentFile);

    // ---- composites, analysis and external files (QELDMToXMLComposites.cpp) --
    void writeAnalysisFiles(QELComponent* component);
    void writeExternalFiles(QELDocument* doc);
    // One level of the host's composites tree each; `status` follows the
    // last host call.
    void writeCompositeStacking(class CV5CAAQELStacking* stacking, long& status);
    void writeCompositePliesGroup(class CV5CAAQELPliesGroup* group, long& status);
    void writeCompositeSequence(class CV5CAAQELSequence* sequence, long& status);
    void writeCompositePly(class CV5CAAQELPly* ply, long& status);

    FILE* _file;
    std::string _path;
    int _declaredElements;
    int _writtenItems;
    bool _failed;
    int _failureReason;
    std::string _buffer; // reused by every formatted write
    // The usual tag or value line, put together without a library call per
    // piece; grown when a longer line comes, never shrunk.
    std::unique_ptr<char[]> _line;
    size_t _lineCapacity = 0;
};

#endif
