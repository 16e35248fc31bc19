#ifndef QELXMLToDMScannerAccess_H
#define QELXMLToDMScannerAccess_H

#include <memory>
#include <string>

#include "QELXMLToDM.h"

// The reader's private scanner, driver and options members, for the tests of
// those sources and the fuzz harnesses.
struct QELXMLToDMScannerAccess {
    // ---- the file
    static int openFile(QELXMLToDM& r) { return r.openFile(); }
    static bool isOpen(const QELXMLToDM& r) { return r._file.isOpen(); }
    static void moveTo(QELXMLToDM& r, long long start) { r.moveTo(start); }
    static long long systemSeeks(const QELXMLToDM& r) { return r._file.systemSeeks(); }

    // ---- scanner
    static bool getNodePosition(QELXMLToDM& r, const char* name, long long start, long long& pos) {
        return r.getNodePosition(name, start, pos);
    }
    static bool getBaliseValueByName(QELXMLToDM& r, long long start, const char* name, long long& pos,
                                     std::string& value) {
        return r.getBaliseValueByName(start, name, pos, value);
    }
    static std::unique_ptr<TYPVectorCATUnicodeString> getBaliseValueListByName(QELXMLToDM& r, long long start,
                                                                               const char* name, long long& pos) {
        return std::unique_ptr<TYPVectorCATUnicodeString>(r.getBaliseValueListByName(start, name, pos));
    }
    static long getTagValueByName(QELXMLToDM& r, long long start, const CATUnicodeString& stopLine,
                                  const CATUnicodeString& name, long long& pos, CATUnicodeString& value) {
        return r.getTagValueByName(start, stopLine, name, pos, value);
    }
    static QELComponent* resolvePointer(const CATUnicodeString* token) { return QELXMLToDM::resolvePointer(token); }
    static int readBlockCount(QELXMLToDM& r, const QELAnswerEntry* map, const char* block, long long& pos) {
        return r.readBlockCount(map, block, pos);
    }

    // ---- driver
    static bool getValuesAndStore(QELXMLToDM& r, long long start, long long& pos, QELAnswerEntry& values,
                                  const char* endLine) {
        return r.getValuesAndStore(start, pos, values, endLine);
    }
    static bool getValuesAndStoreForComponents(QELXMLToDM& r, long long start, long long& pos, TYPMapIntPVoid*& map) {
        return r.getValuesAndStoreForComponents(start, pos, map);
    }
    static void freeComponentsMap(TYPMapIntPVoid* map) { QELXMLToDM::freeComponentsMap(map); }
    static void createAbsoluteOccurrence(QELXMLToDM& r, QELAbsoluteOccurrence* occurrence, QELSession* session,
                                         long long& pos, const QELAnswerEntry* map) {
        r.createAbsoluteOccurrence(occurrence, session, 0, pos, EnumDocumentType_Part, map);
    }
};

#endif
