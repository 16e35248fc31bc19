#ifndef QELFuzzSession_H
#define QELFuzzSession_H

#include <cstddef>
#include <cstdint>

#include "QELFuzzBytes.h"

// The sessions the harnesses read into and write from, made from their input
// (see QELFuzzSessionComposer.h) and loaded by qel's session-file loader.
namespace qelfuzz {

// The reader harnesses' input: a header of kHeaderSize bytes, then the answer.
//   [0] the command, the processes and the phase;
//   [1] the host switches (low six bits, each flips one) and the document
//       active in the host (top two bits: none, the first, the second or the
//       last document of the session);
//   [2] further host state: bit 0 links the first document to the first
//       occurrence as its component occurrence;
//   [3, kHeaderSize) the session, made by composeSession from these bytes.
// The session is parsed once per distinct recipe and built again for every
// input, so that the same input always reads into the same fresh model.
constexpr size_t kRecipeSize = 48;
constexpr size_t kHeaderSize = 3 + kRecipeSize;
void buildReaderSession(const uint8_t* header);

// A session composed from the bytes, loaded into the model; false when the
// loader refuses it (the model is left empty then). `raw` tells whether its
// names and values are arbitrary bytes.
bool loadComposedSession(ByteSource& bytes, bool allowRaw, bool& raw);

} // namespace qelfuzz

#endif
