// The light pass over an answer (options, entry flags, item identifiers) on a
// small session made from the input's header (see QELFuzzSupport.h: the
// command, processes and phase, the host switches and active document, the
// session itself); the rest is the answer file.
// Limits: kMaxAnswer bytes of answer, tags kMaxDepth deep.
#include <cstddef>
#include <cstdint>

#include "QELFuzzSession.h"
#include "QELFuzzSupport.h"
#include "QELSession.h"
#include "QELXMLToDM.h"

namespace {
constexpr size_t kMaxAnswer = 64 * 1024;
constexpr size_t kMaxDepth = 32;
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size < qelfuzz::kHeaderSize || size - qelfuzz::kHeaderSize > kMaxAnswer)
        return 0;
    const uint8_t* answer = data + qelfuzz::kHeaderSize;
    const size_t answerSize = size - qelfuzz::kHeaderSize;
    if (qelfuzz::frameDepth(answer, answerSize) > kMaxDepth)
        return 0;
    const std::string& path = qelfuzz::writeInput(answer, answerSize);
    qelfuzz::buildReaderSession(data);
    {
        QELXMLToDM reader(path.c_str());
        reader.readOptions(QELSession::getInstance());
    }
    qelfuzz::resetSession();
    return 0;
}
