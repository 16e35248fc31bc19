#ifndef QELFuzzSession_H
#define QELFuzzSession_H

#include <cstddef>
#include <cstdint>
#include <functional>
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
// The sessions of the last kRecipeCacheSize recipes stay parsed; the
// session of the last header stays built (see readAnswerInput).
constexpr size_t kRecipeSize = 48;
constexpr size_t kRecipeCacheSize = 256;
constexpr size_t kHeaderSize = 3 + kRecipeSize;
constexpr uint8_t kBundledRecipe[] = {0xFF, 0xFF, 0xFF, 0xFF};
void buildReaderSession(const uint8_t* header);

// The reader harnesses' whole input: refuses one beyond the limits, writes
// the answer, reads it (the full reading, or only the options pass) into the
// session of the header and puts that session back as it was built. The
// session stays for the next input of the same header; a reading that
// changed more than a restore puts back (see QELFuzzKeptSession.h) drops it,
// and the next input builds it anew. Either way an input reads into the
// model its header builds, whatever came before. Limits: kMaxAnswer bytes of
// answer, tags kMaxAnswerDepth deep.
constexpr size_t kMaxAnswer = 64 * 1024;
constexpr size_t kMaxAnswerDepth = 32;
enum class Reading { Full, OptionsOnly };
// `afterReading`, when given, runs between the reading and the restore.
void readAnswerInput(const uint8_t* data, size_t size, Reading reading,
                     const std::function<void()>& afterReading = {});
// Whether the session of the last header is kept (its reading was put back).
bool readerSessionKept();
// Frees the kept reader session and resets every process-wide setting.
void dropReaderSession();
// When set, every restore is compared with the session as built, and a
// difference aborts (the replay programs set it; the comparison costs about
// as much as the reading).
void checkRestores(bool check);

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
