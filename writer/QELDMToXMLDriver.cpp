// Entries of the description writer: the export of the session (handed to
// the catalog or the ordinary traversal), the update-status description and
// the document lists of the status window and the catalog browser.

#include "QELDMToXML.h"

#include <memory>

#include "CV5CAAToolsCommon.h"
#include "EMHManager.h"
#include "ENVManager.h"
#include "JNLManager.h"
#include "PROCManager.h"
#include "QELElementNames.h"
#include "QELLink.h"
#include "QELLookups.h"
#include "QELSession.h"
#include "QELWorkSpace.h"
#include "UTILFile.h"

using QELLookups::hostDocument;
using QELLookups::hostItem;
using QELLookups::hostWorkSpace;

namespace {

const int kCatalogWorkSpace = 8;

} // namespace

// ---- entries ----------------------------------------------------------------

void QELDMToXML::execute(QELSession* session) {
    QELWorkSpace* active = session ? session->getActiveWorkSpace() : nullptr;
    CV5CAAQELWorkSpace* host = hostWorkSpace(active);
    const int type = host ? host->getWorkSpaceType() : -1;
    const bool stateDetailsUpdate = PROCManager::isCommandStateDetailsUpdate();

    if (type == kCatalogWorkSpace) {
        if (stateDetailsUpdate) {
            CATListValCATUnicodeString names, selected;
            if (CV5CAAToolsCommon::readListOfElements(CATUnicodeString(), names, selected) < 0)
                EMHManager::writeMsg("QELDMToXML::execute", 2102, "readListOfElements");
            executeForCatalogWorkSpaceForUpdateStateDetails(session, selected);
        } else {
            executeForCatalogWorkSpace(session);
        }
    } else {
        executeForNonCatalogWorkSpace(session);
    }

    // The status window's selection is consumed by this export.
    if (stateDetailsUpdate) UTILFile::deleteFile(ENVManager::getTempDirectory() + "documentsOfStatusWindow.xml");
}

long QELDMToXML::execute(QELSession* session, TYPVectorPCV5CAAQELDocument* documents) {
    const char* function = "QELDMToXML::execute";
    JNLManager::beginFunction(function);

    int count = documents ? documents->size() : 0;
    if (documents && PROCManager::isProcessStateDetailsFactory()) {
        for (CV5CAAQELDocument* document : *documents) {
            if (!document) continue;
            if (document->isABrokenIcon()) {
                JNLManager::writeMsg("It is a broken icon, we skip it");
                --count;
                continue;
            }
            if (document->getType() != EnumDocumentType_Product) continue;
            std::unique_ptr<TYPVectorPQELLink> secondaries(document->getGRMDocumentLinks("CATIA_secondary_Link_type"));
            if (secondaries) count += secondaries->size();
        }
    }
    writeHeader(count, session);

    // The broken icons left out of the count are described all the same; the
    // count check then reports them.
    long result = 0;
    if (PROCManager::isCommandUpdateStatus()) result = writeDescForUpdateStatus(documents);

    finishDescription(function);
    JNLManager::endFunction(function, result);
    return result;
}

long QELDMToXML::execute(TYPVectorPQELItem* items) {
    const char* function = "QELDMToXML::execute";
    JNLManager::beginFunction(function);
    if (items) {
        for (QELItem* item : *items) {
            if (!item) continue;
            CV5CAAQELItem* host = hostItem(item);
            writeDocEntry(host ? host->getItemDefaultDocument() : nullptr, item->get_Name());
        }
    }
    JNLManager::endFunction(function, 0);
    return 0;
}

// The browser lists documents rather than items: revuid is then the name of
// the document's default item, the other fields as in the status window.
long QELDMToXML::writeDocumentsForCatalogBrowser(TYPVectorPQELDocument* documents) {
    const char* function = "QELDMToXML::writeDocumentsForCatalogBrowser";
    JNLManager::beginFunction(function);
    if (documents) {
        for (QELDocument* document : *documents) {
            if (!document) continue;
            CV5CAAQELDocument* host = hostDocument(document);
            QELItem* item = host ? host->getDefaultItem() : nullptr;
            writeDocEntry(document, item ? item->get_Name() : CATUnicodeString());
        }
    }
    JNLManager::endFunction(function, 0);
    return 0;
}

void QELDMToXML::writeDocEntry(QELDocument* document, const CATUnicodeString& revuid) {
    CATUnicodeString fileName, dstuid, namedrefuid;
    if (CV5CAAQELDocument* host = hostDocument(document)) {
        dstuid = host->getDocumentUID();
        if (host->getNamedRefUID(namedrefuid) < 0) namedrefuid = CATUnicodeString();
        if (QELFile* file = host->getDefaultFile()) fileName = file->get_Name();
    }
    writeOpenBalise(QELElement::doc);
    writeBalise(QELElement::filename, fileName, "", 0);
    writeBalise(QELElement::revuid, revuid, "", 0);
    writeBalise(QELElement::dstuid, dstuid, "", 0);
    writeBalise(QELElement::namedrefuid, namedrefuid, "", 0);
    writeCloseBalise(QELElement::doc);
}
