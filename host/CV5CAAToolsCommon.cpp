#include "CV5CAAToolsCommon.h"

#include <cstdio>
#include <memory>
#include <string>

#include "ENVManager.h"
#include "UTILFile.h"

namespace {
CATDocument* gActiveDocument = nullptr;
}

long CV5CAAToolsCommon::readListOfElements(const CATUnicodeString& fileName, CATListValCATUnicodeString& names,
                                           CATListValCATUnicodeString& elements) {
    CATUnicodeString path =
        fileName.IsNull() ? ENVManager::getTempDirectory() + "documentsOfStatusWindow.xml" : fileName;
    std::unique_ptr<FILE, int (*)(FILE*)> file(std::fopen(path.ConvertToChar(), "r"), &std::fclose);
    if (!file) return -1;
    std::string line;
    while (UTILFile::readLine(file.get(), line) > 0) {
        if (line.empty()) continue;
        names.Append(CATUnicodeString(line));
        elements.Append(CATUnicodeString(line));
    }
    return 0;
}

CATDocument* CV5CAAToolsCommon::getActiveCATDocument() { return gActiveDocument; }

void CV5CAAToolsCommon::setActiveCATDocument(CATDocument* document) { gActiveDocument = document; }
