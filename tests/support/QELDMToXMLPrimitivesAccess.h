#ifndef QELDMToXMLPrimitivesAccess_H
#define QELDMToXMLPrimitivesAccess_H

#include <string>

#include "QELDMToXML.h"

// The writer's private primitives, driver and catalog members, for the tests
// of those sources only.
struct QELDMToXMLPrimitivesAccess {
    // ---- primitives and header
    static void write(QELDMToXML& w, bool flush, const char* text) { w.writeFormatted(flush, "%s", text); }
    static void closeFile(QELDMToXML& w) { w.closeFile("QELDMToXML::test"); }
    static void openFile(QELDMToXML& w, const char* path) { w.openFile(path); }
    static FILE* stream(const QELDMToXML& w) { return w._file; }
    static void writeOpenBalise(QELDMToXML& w, const CATUnicodeString& name) { w.writeOpenBalise(name); }
    static void writeCloseBalise(QELDMToXML& w, const CATUnicodeString& name) { w.writeCloseBalise(name); }
    static void writeValue(QELDMToXML& w, int value) { w.writeValue(value); }
    static void writeValue(QELDMToXML& w, const CATUnicodeString& value) { w.writeValue(value); }
    static void writeBalise(QELDMToXML& w, const CATUnicodeString& name, const CATUnicodeString& value,
                            const CATUnicodeString& fallback, unsigned char writeIfEmpty) {
        w.writeBalise(name.ConvertToChar(), value, fallback, writeIfEmpty);
    }
    static void writeBalise(QELDMToXML& w, const CATUnicodeString& name, int value) { w.writeBalise(name, value); }
    static void writeBalise(QELDMToXML& w, const CATUnicodeString& name, const QELComponent* value) {
        w.writeBalise(name, value);
    }
    static std::string matrixString(const double* matrix) {
        std::string out = "not cleared";
        QELDMToXML::getMatrixString(matrix, out);
        return out;
    }
    static void writeHeader(QELDMToXML& w, int count, QELSession* session) { w.writeHeader(count, session); }
    static void writeMAJ(QELDMToXML& w, QELComponent* c) { w.writeMAJ(c); }
    static void writeModifiedFlag(QELDMToXML& w, QELComponent* c) { w.writeModifiedFlag(c); }
    static void writeCheckAction(QELDMToXML& w, QELComponent* c) { w.writeCheckAction(c); }
    static void writeMatrixAction(QELDMToXML& w, QELComponent* c, unsigned char on) { w.writeMatrixAction(c, on); }
    static void writePointerAddress(QELDMToXML& w, QELComponent* c) { w.writePointerAddress(c); }
    static int writtenItems(const QELDMToXML& w) { return w._writtenItems; }

    // ---- driver
    static void recurseOnAbsoluteOccurrence(QELDMToXML& w, QELAbsoluteOccurrence* occurrence, QELSession* session) {
        w.recurseOnAbsoluteOccurrence(occurrence, session, 0);
    }

    // ---- catalog traversals
    static int numberOfObjectsInWspForCatalog(QELDMToXML& w, QELWorkSpace* ws) {
        return w.getNumberOfObjectsInWspForCatalog(ws);
    }
};

#endif
