// The light pass over an answer (options, entry flags, item identifiers) on
// the example session. The first byte picks the command, the processes and
// the phase, the second the host switches and the active document; the rest
// is the answer file.
#include <cstddef>
#include <cstdint>

#include "QELFuzzSupport.h"
#include "QELSession.h"
#include "QELXMLToDM.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size < 2) return 0;
    const std::string& path = qelfuzz::writeInput(data + 2, size - 2);
    qelfuzz::buildSession(data[0], data[1]);
    {
        QELXMLToDM reader(path.c_str());
        reader.readOptions(QELSession::getInstance());
    }
    qelfuzz::resetSession();
    return 0;
}
