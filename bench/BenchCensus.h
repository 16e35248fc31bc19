#ifndef BenchCensus_H
#define BenchCensus_H

#include <cstdio>

// What the built model holds (components, relation tables and their
// entries, properties, shared texts) and the heap each structure takes as the
// containers lay it out: every map, entry array, index, property and value
// counted at its allocated size with glibc's chunk rounding. The model's heap
// over the sum is the components themselves and the handle table.
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
    long sharedTexts = 0; // keys, component names and property names, one copy each
    long long sharedTextBytes = 0;
};

// Walks every live component of the model.
BenchCensus benchCensus();
void benchPrintCensus(std::FILE* out, const BenchCensus& census, long occurrences);

#endif
