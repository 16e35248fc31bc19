// The whole answer reading on the example session. The first byte picks the
// command, the processes and the phase; the rest is the answer file.
#include <cstddef>
#include <cstdint>

#include "QELFuzzSupport.h"
#include "QELSession.h"
#include "QELXMLToDM.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size == 0) return 0;
    const std::string& path = qelfuzz::writeInput(data + 1, size - 1);
    qelfuzz::buildSession(data[0]);
    {
        QELXMLToDM reader(path.c_str());
        reader.execute(QELSession::getInstance());
    }
    qelfuzz::resetSession();
    return 0;
}
