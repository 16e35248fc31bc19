#ifndef QELXMLToDMUpdateAccess_H
#define QELXMLToDMUpdateAccess_H

// The reader's private update members (property update, mapping, composite,
// external and analysis files), for the tests of those sources only.

#include <memory>
#include <string>

#include "QELAnswerEntry.h"
#include "QELXMLToDM.h"
#include "ReaderAnswerSupport.h"

struct QELXMLToDMUpdateAccess {
    // Opens the reader's file, which starts with "<Item_Info>", and fills
    // `values` with that entry the way the driver does.
    static bool loadEntry(QELXMLToDM& r, QELAnswerEntry& values) {
        if (r.openFile() != 0) return false;
        std::string first;
        r.readLine(first);
        long long pos = 0;
        return r.getValuesAndStore(r._file.tell(), pos, values, "</Item_Info>");
    }

    // ---- property update
    static void updateProperty(QELXMLToDM& r, QELComponent* c, const QELAnswerEntry* map) { r.updateProperty(c, map); }
    static void updatePropertyCompCatalogSpecific(QELXMLToDM& r, QELDocument* d, const QELAnswerEntry* map) {
        r.updatePropertyCompCatalogSpecific(d, map);
    }
    static void updatePropertyDT(QELXMLToDM& r, QELDocument* d, const QELAnswerEntry* map) {
        r.updatePropertyDT(d, map);
    }

    // ---- mapping, secondaries, item identifiers
    static long updateMappingAttributs(QELXMLToDM& r, const QELAnswerEntry* map, QELDocument* d) {
        long long pos = 0;
        return r.updateMappingAttributs(map, d, pos);
    }
    static long updateMappingInst(QELXMLToDM& r, const QELAnswerEntry* map, QELRelativeOccurrence* rel) {
        long long pos = 0;
        return r.updateMappingInst(map, rel, pos);
    }
    static void readSecondariesAttributes(QELXMLToDM& r, QELDocument* d, const QELAnswerEntry* map) {
        r.readSecondariesAttributes(d, map);
    }
    static long readAndUpdateItemIdItemRevId(QELXMLToDM& r, QELComponent* c, QELItem* item, const QELAnswerEntry* map) {
        return r.readAndUpdateItemIdItemRevId(c, item, map);
    }
    static long updateDocumentForMaskManagement(QELXMLToDM& r, CV5CAAQELWorkSpace* w, CV5CAAQELDocument* d,
                                                const QELAnswerEntry* map) {
        return r.updateDocumentForMaskManagement(w, d, map);
    }

    // ---- composite, external and analysis files
    static long readAndUpdateExternalFiles(QELXMLToDM& r, QELSession* s, const QELAnswerEntry* map) {
        return r.readAndUpdateExternalFiles(s, map);
    }
    static long readAndUpdateCompositeFiles(QELXMLToDM& r, QELSession* s, const QELAnswerEntry* map) {
        return r.readAndUpdateCompositeFiles(s, map);
    }
    static bool getValuesAndStoreAnalysisFiles(QELXMLToDM& r, long long start, TYPVectorCATUnicodeString*& results,
                                               TYPVectorCATUnicodeString*& computations) {
        long long pos = 0;
        return r.getValuesAndStoreAnalysisFiles(start, pos, results, computations);
    }
};

namespace reader_test {

// One answer entry loaded as the driver loads it: a file holding
// "<Item_Info>", the given children and "</Item_Info>", a reader on it and
// the filled entry map, freed on destruction.
class LoadedEntry {
public:
    LoadedEntry(const std::string& name, const std::string& children, bool crlf = false)
        : _path(writeAnswer(name, "<Item_Info>\n" + children + "</Item_Info>\n", crlf)),
          _reader(new QELXMLToDM(_path.c_str())) {
        _loaded = QELXMLToDMUpdateAccess::loadEntry(*_reader, _values);
    }
    LoadedEntry(const LoadedEntry&) = delete;
    LoadedEntry& operator=(const LoadedEntry&) = delete;

    bool loaded() const { return _loaded; }
    QELXMLToDM& reader() { return *_reader; }
    const QELAnswerEntry* map() const { return &_values; }
    // The content position the driver stored for a block, 0 when absent.
    long long block(const char* name) const {
        const CATUnicodeString* text = _values.find(name);
        return text ? std::stoll(text->ToLatin1()) : 0;
    }

private:
    std::string _path;
    std::unique_ptr<QELXMLToDM> _reader;
    QELAnswerEntry _values;
    bool _loaded = false;
};

} // namespace reader_test

#endif
