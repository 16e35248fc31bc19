// The scanning operations at arbitrary positions of an arbitrary file: the
// reader's sibling search, value, value list and tag search, and the
// line-level closing search, tag name and value. The input begins with
// kSteps steps of four bytes (operation, name, position on two bytes); the
// rest is the file, kMaxFile bytes at most (positions take two bytes).
// Every operation must leave the position inside the file.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>

#include "CV5CAAToolsDesc.h"
#include "JNLManager.h"
#include "QELElementNames.h"
#include "QELFuzzSupport.h"
#include "QELXMLToDMScannerAccess.h"
#include "UTILLineFile.h"

namespace {

using Access = QELXMLToDMScannerAccess;

constexpr size_t kSteps = 3;
constexpr size_t kStepSize = 4;
constexpr size_t kMaxFile = 64 * 1024;

const char* const kNames[] = {QELElement::DESCFILE,
                              QELElement::NBElements,
                              QELElement::Options,
                              QELElement::CATPart,
                              QELElement::CATProduct,
                              QELElement::Item_Info,
                              QELElement::POINTER_ADDRESS,
                              QELElement::Mapping_Attribut,
                              QELElement::Mapping_Inst,
                              QELElement::Attribut,
                              QELElement::Shapes,
                              QELElement::SR,
                              QELElement::secondaries,
                              QELElement::secondary,
                              QELElement::Auxiliaries,
                              QELElement::PartComposites,
                              QELElement::Stacking,
                              QELElement::Ply,
                              QELElement::Externals,
                              QELElement::AnalysisFiles,
                              QELElement::Components,
                              QELElement::LinkedDocs,
                              "",
                              "<",
                              ">",
                              "/"};
constexpr size_t kNameCount = sizeof kNames / sizeof *kNames;

void check(bool inside, const char* operation) {
    if (inside) return;
    std::fprintf(stderr, "qel fuzz: %s left the position outside the file\n", operation);
    std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size < kSteps * kStepSize || size - kSteps * kStepSize > kMaxFile) return 0;
    const size_t header = kSteps * kStepSize;
    const std::string& path = qelfuzz::writeInput(data + header, size - header);
    const long long fileSize = static_cast<long long>(size - header);
    const auto inside = [fileSize](long long pos) { return pos >= 0 && pos <= fileSize; };

    QELXMLToDM reader(path.c_str());
    UTILLineFile file;
    if (Access::openFile(reader) != 0 || file.open(path.c_str()) != 0) std::abort();
    for (size_t step = 0; step < kSteps; ++step) {
        const uint8_t* s = data + step * kStepSize;
        const char* name = kNames[s[1] % kNameCount];
        const char* other = kNames[(s[1] / kNameCount) % kNameCount];
        // 0 stands for "where the file stands"; past the end is allowed.
        const long long start = (s[2] | s[3] << 8) % (fileSize + 2);
        long long pos = 0;
        std::string value;
        switch (s[0] % 8) {
        case 0:
            Access::getNodePosition(reader, name, start, pos);
            check(inside(pos), "getNodePosition");
            break;
        case 1:
            Access::getBaliseValueByName(reader, start, name, pos, value);
            check(inside(pos), "getBaliseValueByName");
            break;
        case 2:
            Access::getBaliseValueListByName(reader, start, name, pos);
            check(inside(pos), "getBaliseValueListByName");
            break;
        case 3: {
            CATUnicodeString found;
            Access::getTagValueByName(reader, start, CATUnicodeString("</") + other + ">", name, pos, found);
            check(inside(pos), "getTagValueByName");
            break;
        }
        case 4:
            CV5CAAToolsDesc::searchClosingNode(file, name, start, pos);
            check(inside(pos), "searchClosingNode");
            break;
        case 5:
            if (CV5CAAToolsDesc::getNodeName(file, start, pos, value)) CV5CAAToolsDesc::getDocumentTypeFromBalise(value);
            check(inside(pos), "getNodeName");
            break;
        case 6:
            CV5CAAToolsDesc::getNodeValue(file, start, name, pos, value);
            check(inside(pos), "getNodeValue");
            break;
        default:
            Access::moveTo(reader, start);
            file.seek(start);
            break;
        }
    }
    JNLManager::clear();
    return 0;
}
