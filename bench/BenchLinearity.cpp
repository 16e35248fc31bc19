#include "BenchLinearity.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>
#include <string>

#include "BenchPairs.h"
#include "EMHManager.h"
#include "JNLManager.h"
#include "QELAbsoluteOccurrence.h"
#include "QELPropertySet.h"
#include "QELSession.h"
#include "QELSessionFile.h"
#include "QELWorkSpace.h"
#include "TYPMapCATUnicodeStringPVoid.h"

namespace {

const int kDepth = 6;
const unsigned long kSeed = 1;

void dropJournal() {
    JNLManager::clear();
    EMHManager::clear();
}

double generateSeconds(long occurrences) {
    std::string text;
    return benchTime([&] { text = qelGenerateSession(occurrences, kDepth, kSeed); });
}

// First-level occurrences and documents of every workspace, and the views of
// each occurrence, on the generated session of that size.
double traverseSeconds(long occurrences) {
    QELSessionFileError error;
    if (!qelLoadSessionText(qelGenerateSession(occurrences, kDepth, kSeed), error)) {
        std::fprintf(stderr, "qel_bench: the generated session does not load: %s\n", error.message.c_str());
        std::exit(1);
    }
    dropJournal();
    TYPMapCATUnicodeStringPVoid* workspaces = QELSession::getInstance()->getWorkSpaces();
    const double seconds = benchTime([&] {
        for (int w = 0; workspaces && w < workspaces->size(); ++w) {
            auto* workspace = static_cast<QELWorkSpace*>(workspaces->getObject(w));
            delete workspace->getFirstLevelAbsoluteOccurrences();
            delete workspace->getWorkspaceDocuments();
            TYPMapCATUnicodeStringPVoid* all = workspace->getLinkedAbsoluteOccurrences();
            for (int i = 0; all && i < all->size(); ++i) {
                TYPVectorPQELComponent* views = nullptr;
                static_cast<QELAbsoluteOccurrence*>(all->getObject(i))->getAllAbsViews(views);
                delete views;
            }
        }
    });
    QELSession::freeModel();
    dropJournal();
    return seconds;
}

double mapIndexSeconds(long entries) {
    TYPMapCATUnicodeStringPVoid map;
    for (long i = 0; i < entries; ++i)
        map.insert(CATUnicodeString(("key" + std::to_string(i)).c_str()), reinterpret_cast<void*>(i + 1));
    intptr_t sum = 0;
    const double seconds = benchTime([&] {
        for (int i = 0; i < map.size(); ++i) sum += reinterpret_cast<intptr_t>(map.getObject(i));
    });
    if (sum == 0) std::fprintf(stderr, "qel_bench: the map is empty\n");
    return seconds;
}

double propertyIndexSeconds(long properties) {
    QELPropertySet set;
    for (long i = 0; i < properties; ++i)
        set.addIntegerProperty(CATUnicodeString(std::to_string(i).c_str()), static_cast<int>(i));
    long sum = 0;
    const double seconds = benchTime([&] {
        for (int i = 0; i < set.getPropertiesCount(); ++i)
            sum += set.getIntegerPropertyByIndex(i) + set.getPropertyTypeByIndex(i) +
                   set.getPropertyNameByIndex(i).GetLengthInChar();
    });
    if (sum == 0) std::fprintf(stderr, "qel_bench: the property set is empty\n");
    return seconds;
}

// One row: per-unit time at `large` over that at `small`, the two sizes
// measured one after the other in alternating order.
BenchRatio perUnit(const char* name, long small, long large, int pairs, const std::function<double(long)>& seconds) {
    BenchRatio row;
    row.name = name;
    row.size = std::to_string(large) + "/" + std::to_string(small);
    for (int pair = 0; pair < pairs; ++pair) {
        double atSmall = 0, atLarge = 0;
        if (pair % 2 == 0) {
            atSmall = seconds(small) / static_cast<double>(small);
            atLarge = seconds(large) / static_cast<double>(large);
        } else {
            atLarge = seconds(large) / static_cast<double>(large);
            atSmall = seconds(small) / static_cast<double>(small);
        }
        row.ratios.push_back(atLarge / atSmall);
        row.first += atLarge / pairs;
        row.second += atSmall / pairs;
    }
    return row;
}

} // namespace

void benchLinearity(long small, long large, int pairs) {
    benchPrint(perUnit("S generate per occurrence, large / small", small, large, pairs, generateSeconds));
    benchPrint(perUnit("S traverse per occurrence, large / small", small, large, pairs, traverseSeconds));
    benchPrint(perUnit("S map index per entry, large / small", small, large, pairs, mapIndexSeconds));
    benchPrint(perUnit("S property index per property, large / small", small, large, pairs, propertyIndexSeconds));
}
