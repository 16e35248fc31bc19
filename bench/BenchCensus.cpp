#include "BenchCensus.h"

#include "QELComponent.h"
#include "QELHandleTable.h"
#include "QELProperty.h"
#include "QELPropertyList.h"
#include "QELPropertySet.h"
#include "TYPMapCATUnicodeStringPVoid.h"
#include "TYPMapIntPVoid.h"
#include "TYPSharedText.h"

namespace {

// A glibc malloc chunk for a request of n bytes (64-bit): the size word
// added, rounded up to 16, never under 32.
long long chunk(size_t n) {
    if (n == 0) return 0;
    const size_t size = (n + 8 + 15) & ~size_t(15);
    return static_cast<long long>(size < 32 ? 32 : size);
}

// A text past the inline capacity of std::string lives in a chunk of its own.
long long textBytes(const CATUnicodeString& text) {
    const size_t length = text.ToLatin1().size();
    return length > 15 ? chunk(length + 1) : 0;
}

long long valueBytes(const QELProperty& property) {
    switch (property.get_Type()) {
    case QELPROPERTY_STRING: {
        const auto* text = static_cast<const CATUnicodeString*>(property.get_Value());
        return chunk(sizeof(CATUnicodeString)) + (text ? textBytes(*text) : 0);
    }
    case QELPROPERTY_INTEGER:
    case QELPROPERTY_BOOLEAN:
        // Held inside the property, unless a caller gave its own value.
        return property.holdsValueInside() ? 0 : chunk(property.get_Type() == QELPROPERTY_INTEGER ? sizeof(int) : 1);
    case QELPROPERTY_MATRIX: return chunk(16 * sizeof(double));
    default: return 0; // arrays, lists and products: rare, left out of the floor
    }
}

// A text map: its object (a pool slot, no malloc header), its entry array
// past the one entry it holds inside, and its hash index; the keys are
// shared texts, counted apart.
long long mapBytes(const TYPMapCATUnicodeStringPVoid& map) {
    return static_cast<long long>(sizeof(TYPMapCATUnicodeStringPVoid)) +
           chunk(map.entryCapacity() * TYPMapCATUnicodeStringPVoid::kEntryBytes) +
           chunk(map.indexSlots() * sizeof(uint32_t));
}

// Link-type codes are small; the table is walked through its public view.
constexpr int kMaxLinkType = 256;

void countRelations(const QELComponent& component, BenchCensus& census) {
    int types = 0;
    for (int type = 0; type < kMaxLinkType; ++type) {
        const TYPMapCATUnicodeStringPVoid* byName = component.getComponents(type);
        if (!byName) continue;
        ++types;
        ++census.typeMaps;
        census.relationBytes += mapBytes(*byName);
        for (const auto& name : *byName) {
            const auto* byKey = static_cast<const TYPMapCATUnicodeStringPVoid*>(name.object);
            if (!byKey) continue;
            ++census.relationMaps;
            census.relationBytes += mapBytes(*byKey);
            for (const auto& entry : *byKey) {
                ++census.relationEntries;
                if (entry.key.ToLatin1().size() > 15) ++census.longKeys;
            }
        }
    }
    if (types == 0) return;
    ++census.relationTables;
    census.relationBytes += chunk(sizeof(TYPMapIntPVoid)) + chunk(types * sizeof(TYPMapIntPVoid::Entry));
}

void countProperties(const QELComponent& component, BenchCensus& census) {
    const QELPropertySet* set = component.getPropertySet();
    if (!set) return;
    const int count = set->getPropertiesCount();
    // The set with its list inside (a pool slot), the list's array of
    // pointers and its hash index.
    const QELPropertyList& list = set->list();
    census.propertyBytes += static_cast<long long>(sizeof(QELPropertySet)) +
                            chunk(list.capacity() * sizeof(QELProperty*)) + chunk(list.indexSlots() * sizeof(uint32_t));
    for (int i = 0; i < count; ++i) {
        const QELProperty* property = set->getProperty(i);
        if (!property) continue;
        ++census.properties;
        if (property->get_Name().ToLatin1().size() > 15) ++census.longNames;
        // A property is a pool slot, without a malloc header.
        census.propertyBytes += static_cast<long long>(sizeof(QELProperty)) + valueBytes(*property);
    }
}

} // namespace

BenchCensus benchCensus() {
    BenchCensus census;
    for (const QELComponent* component : QELHandleTable::liveComponents()) {
        ++census.components;
        countRelations(*component, census);
        countProperties(*component, census);
    }
    census.sharedTexts = static_cast<long>(TYPSharedText::count());
    census.sharedTextBytes = static_cast<long long>(TYPSharedText::heapBytes());
    return census;
}

void benchPrintCensus(std::FILE* out, const BenchCensus& census, long occurrences) {
    const double per = occurrences > 0 ? static_cast<double>(occurrences) : 1.0;
    std::fprintf(out, "components\t%ld\t%.2f per occurrence\n", census.components, census.components / per);
    std::fprintf(out, "relation tables\t%ld\n", census.relationTables);
    std::fprintf(out, "type maps\t%ld\n", census.typeMaps);
    std::fprintf(out, "relation maps\t%ld\n", census.relationMaps);
    std::fprintf(out, "relation entries\t%ld\t%ld with a key past 15 characters\n", census.relationEntries,
                 census.longKeys);
    std::fprintf(out, "properties\t%ld\t%ld with a name past 15 characters\n", census.properties, census.longNames);
    std::fprintf(out, "shared texts\t%ld\n", census.sharedTexts);
    std::fprintf(out, "relations\t%.0f B/occ\n", census.relationBytes / per);
    std::fprintf(out, "properties and values\t%.0f B/occ\n", census.propertyBytes / per);
    std::fprintf(out, "shared texts\t%.0f B/occ\n", census.sharedTextBytes / per);
}
