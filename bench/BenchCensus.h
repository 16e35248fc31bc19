#ifndef BenchCensus_H
#define BenchCensus_H

#include <cstdio>

// What the built model holds (components, relation tables and their
// entries, properties) and the heap that this layout needs at the least:
// every table, entry array, property, value and long text allocated at its
// exact size, with glibc's chunk rounding and nothing else. The model's real
// heap over this figure is what an implementation can still win; this figure
// over pugixml's document is what the layout itself costs.
struct BenchCensus {
    long components = 0;
    long relationTables = 0; // "MAP_TYPED_LINK", one per component with a relation
    long typeMaps = 0;       // "p_sub_map": one per component and link type
    long relationMaps = 0;   // "p_sub_sub_map": one per component, type and relation name
    long relationEntries = 0;
    long longKeys = 0; // keys past the 15 characters a string keeps inline
    long properties = 0;
    long longNames = 0;
    long long relationBytes = 0;
    long long propertyBytes = 0;
};

// Walks every live component of the model.
BenchCensus benchCensus();
void benchPrintCensus(std::FILE* out, const BenchCensus& census, long occurrences);

#endif
