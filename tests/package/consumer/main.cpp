// Uses qeldm through its installed headers and the QELDM CMake package.
#include "QELSession.h"

#include <cstdio>

int main() {
    auto session = QELSession::getInstance();
    if (!session) {
        std::fputs("qeldm_consumer: QELSession::getInstance() returned no session\n", stderr);
        return 1;
    }

    session->addStringProperty("k", "v");
    const bool stored = session->getStringProperty("k") == CATUnicodeString("v");

    QELSession::removeInstance();

    if (!stored) {
        std::fputs("qeldm_consumer: string property \"k\" does not read back as \"v\"\n", stderr);
        return 1;
    }
    std::puts("qeldm_consumer: ok");
    return 0;
}
