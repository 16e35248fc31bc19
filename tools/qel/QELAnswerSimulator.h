#ifndef QELAnswerSimulator_H
#define QELAnswerSimulator_H

#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "QELDescriptionScanner.h"
#include "QELFrameWriter.h"

// The PDM side, simulated: reads a description and writes the answer a PDM
// gives it, in the same line frame.
//
// Every entry is answered with its POINTER_ADDRESS echoed, so that the reader
// finds the component again. The PDM side treats each distinct document of
// the description (the same file name in several entries is one document) as
// an item revision of its own:
//   - Item_ID "ITM-000001", "ITM-000002", ... in order of first appearance,
//     ItemRev_ID "A", Part_Number as described (the Item_ID when none);
//   - ItemRev_UID and DST_UID as described, new ones when the description has
//     none: the PDM keeps the identity of what it knows;
//   - a new NamedRef_UID for a modified document (the saved file is a new
//     named reference), or the next DST_Version when the description carries
//     versions; a new file name "ITM-000001_A.CATPart", with the described
//     name as Old_File_Name;
//   - occurrences keep their Occ_UID, or get a new one with Occ_CreatedFlag 1;
//   - the described mapping attributes, followed by the PDM's own
//     (pdm_item_id, pdm_revision, pdm_status);
//   - secondaries and shape representations echoed in their compact form with
//     new file names, new named references and the dataset UIDs they lacked;
//     external files and the composite plies' 3D and 2D representations
//     renamed the same way;
//   - Mask 0, Update_Flag 1 when the file is renamed, Check_Action as
//     described (0 when unset).
// Broken icons (the "Unknown" wrapper, "ERROR" values) get their
// POINTER_ADDRESS only. An Options block carries the switches the PDM hands
// back. The same description always gives the same bytes.
class QELAnswerSimulator {
public:
    using Progress = std::function<void(long long done, long long total)>;

    // False with `error` when the description cannot be read or is not in
    // the line frame, when a value would break the answer's frame, or when
    // the answer cannot be written. No answer is left behind.
    bool run(const std::string& descriptionPath, const std::string& answerPath, std::string& error,
             const Progress& progress = {});
    // After a failed run: the answer could not be written (rather than the
    // description being unreadable or malformed). `error` then names the
    // answer, and writeError() is the system's reason.
    bool writeFailed() const { return _writeFailed; }
    int writeError() const { return _out.failureReason(); }
    // After a failed run: the description's line at fault, 0 for none.
    long errorLine() const { return _errorLine; }
    // After a failed run: the description is well framed, but a value it
    // holds cannot be carried where the answer puts it.
    bool unanswerable() const { return _unanswerable; }
    long entries() const { return _entries; }
    long items() const { return static_cast<long>(_items.size()); }

private:
    // What the PDM side answers for one document, whatever entry shows it.
    struct ItemAnswer {
        long ordinal = 0;
        std::string itemId;
        std::string partNumber;
        std::string itemRevUid;
        std::string datasetUid;
        std::string namedRefUid;
        std::string fileName;
    };

    void writeHeader(const QELDescriptionScanner& scanner, long count);
    void answerEntry(const QELDescriptionEntry& entry);
    const ItemAnswer& itemFor(const QELDescriptionEntry& entry);
    void writeOccurrence(const QELDescriptionEntry& entry, const ItemAnswer& item);
    void writeDataset(const QELDescriptionEntry& entry, const ItemAnswer& item);
    void writeMapping(const QELDescriptionEntry& entry, const ItemAnswer& item);
    void writeSecondaries(const QELDescriptionEntry& entry, const ItemAnswer& item);
    // A Shapes or Components block: copied, with every SR group renamed.
    void writeShapes(const QELDescriptionEntry& entry, const QELDescriptionElement& block, const ItemAnswer& item);
    void writeShapeRepresentation(const std::vector<std::string_view>& lines, const ItemAnswer& item);
    void writeExternals(const QELDescriptionEntry& entry, const ItemAnswer& item);
    void writeComposites(const QELDescriptionEntry& entry, const ItemAnswer& item);
    // "ITM-000001_A" + suffix + the original's extension.
    static std::string derivedName(const ItemAnswer& item, const std::string& suffix, std::string_view original);

    QELFrameWriter _out;
    std::unordered_map<std::string, ItemAnswer> _items;
    long _entries = 0;
    long _occurrences = 0;
    bool _writeFailed = false;
    bool _unanswerable = false;
    long _errorLine = 0;
    // Secondaries and shapes renamed within the entry being answered: the
    // same document gets the same names in every entry that shows it.
    int _secondaryIndex = 0;
    int _shapeIndex = 0;
    int _fileIndex = 0; // external files and ply representations
};

#endif
