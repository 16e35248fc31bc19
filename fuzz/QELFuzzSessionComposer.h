#ifndef QELFuzzSessionComposer_H
#define QELFuzzSessionComposer_H

#include <string>

#include "QELFuzzBytes.h"

namespace qelfuzz {

// A session file (qel's JSON) made from bytes, so that the harnesses reach
// models no hand-written session holds: the running command, processes and
// phase, the service switches, items, documents of every type with their
// host answers, design tables, shapes, secondaries, external files,
// composites, GRM links, and workspaces with small assembly trees, views,
// scenes and component shapes. Every name and value is either taken from the
// words the writer and the reader know or, in raw mode, made of arbitrary
// bytes (each byte becomes the Latin-1 character of that value, so the model
// holds exactly those bytes). The text keeps within the loader's rules most
// of the time; what it breaks is refused by the loader, which is fuzzed too.
// The same bytes give the same text.
struct ComposedSession {
    std::string text;
    bool raw = false; // names and values of arbitrary bytes
};

// How large a session may grow: counts of items, documents (each at least
// one), workspaces and occurrences per workspace.
struct ComposeLimits {
    size_t items;
    size_t documents;
    size_t workspaces;
    size_t occurrences;
};
// Enough for every relation between documents and a few levels of assembly.
constexpr ComposeLimits kModelLimits{4, 6, 2, 6};
// The reader harnesses build a session for every input: one workspace, a
// few components, so that the build costs about what the reading does.
constexpr ComposeLimits kReaderLimits{3, 4, 1, 3};

// `allowRaw` lets the first byte choose raw mode.
ComposedSession composeSession(ByteSource& bytes, bool allowRaw,
                               const ComposeLimits& limits = kModelLimits);

// Sets the running command, processes and phase that `selector` picks among
// every command (and none), the processes alone and in pairs, and the two
// phases: kProcessChoices choices, then again from the start.
constexpr int kProcessChoices = 9 * 8 * 2;
void applyProcessChoice(int selector);

} // namespace qelfuzz

#endif
