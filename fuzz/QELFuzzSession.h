#ifndef QELFuzzSession_H
#define QELFuzzSession_H

#include <cstddef>
#include <cstdint>
#include <string>

#include "QELFrameCheck.h"
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
//   [3, kHeaderSize) the session, made by composeSession from these bytes;
//       a recipe that begins with kBundledRecipe asks for the bundled
//       example session instead, with a few host states it lacks.
// The sessions of the last kRecipeCacheSize recipes stay parsed and are
// built again for every input, so that the same input always reads into the
// same fresh model.
constexpr size_t kRecipeSize = 48;
constexpr size_t kRecipeCacheSize = 256;
constexpr size_t kHeaderSize = 3 + kRecipeSize;
constexpr uint8_t kBundledRecipe[] = {0xFF, 0xFF, 0xFF, 0xFF};
void buildReaderSession(const uint8_t* header);

// The reader harnesses' whole input: refuses one beyond the limits, writes
// the answer, builds the session of the header, reads the answer into it
// (the full reading, or only the options pass) and resets. Limits:
// kMaxAnswer bytes of answer, tags kMaxAnswerDepth deep.
constexpr size_t kMaxAnswer = 64 * 1024;
constexpr size_t kMaxAnswerDepth = 32;
enum class Reading { Full, OptionsOnly };
void readAnswerInput(const uint8_t* data, size_t size, Reading reading);

// Whether a problem the frame check finds in a description is one the
// writer allows itself: an NBElements that does not match the entries, when
// the writer reported it (error 2104), and in phase 2 an empty Item_Info (a
// design table's phase-2 entry only completes phase 1 with its external
// files, and may have none; the golden save_phase2.xml holds one).
bool writerAllows(const QELFrameProblem& problem);

// Writes the description of the session built; false when the writer
// itself reported a failure.
bool describeSession(const std::string& path);

// A session composed from the bytes, loaded into the model; false when the
// loader refuses it (the model is left empty then). `raw` tells whether its
// names and values are arbitrary bytes.
bool loadComposedSession(ByteSource& bytes, bool allowRaw, bool& raw);

} // namespace qelfuzz

#endif
