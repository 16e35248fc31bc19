// Answer blocks that rename files: the new names of external documents
// (Externals), the new representation files of composite plies
// (PartComposites) and the analysis result and computation files
// (AnalysisFiles).

#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "CV5CAAQELDocument.h"
#include "CV5CAAQELStacking.h"
#include "CV5CAAToolsDesc.h"
#include "JNLManager.h"
#include "QELDocument.h"
#include "QELElementNames.h"
#include "QELSession.h"
#include "QELXMLToDM.h"
#include "QELXMLToDMUpdateTools.h"

using namespace QELLookups;
using namespace QELXMLToDMUpdateTools;

namespace {

bool isTagLine(const std::string& line) { return line.size() >= 3 && line.front() == '<' && line.back() == '>'; }

bool isPrimary(QELDocument* document) {
    CV5CAAQELDocument* host = hostDocument(document);
    return host && host->isPrimaryDocument();
}

// ---- PartComposites ---------------------------------------------------------

// The levels of the composites tree, outermost first; the block itself is
// level -1.
enum CompositeLevel { kBlock = -1, kStacking, kPliesGroup, kSequence, kPly, kLevelCount };

const char* const kLevelNames[kLevelCount] = {QELElement::Stacking, QELElement::PliesGroup, QELElement::Sequence,
                                              QELElement::Ply};

const char* levelName(int level) { return level == kBlock ? QELElement::PartComposites : kLevelNames[level]; }

// The level a tag name stands for; kLevelCount for any other element.
int levelOf(const std::string& name) {
    for (int level = kBlock; level < kLevelCount; ++level) {
        if (name == levelName(level)) return level;
    }
    return kLevelCount;
}

// Reads a PartComposites block against the host's composites tree of one
// document. The answer is matched level by level by name (letter case
// ignored, as Compare does); an element that matches nothing is still read
// through, tag by tag, so that what follows it stays in step. Elements of
// other kinds are skipped whole. A level that ends on anything but its own
// closing line gets the journal line and hands the line it met back to the
// enclosing level, which then takes it as its own next element or closing.
class CompositeAnswer {
public:
    CompositeAnswer(UTILLineFile& file, CV5CAAQELDocument* document) : _file(file), _document(document) {}

    // Reads from the block's content position; the last failing host status,
    // or 0.
    long read(long long start) {
        if (!_file.seek(start)) return 0;
        readContent(kBlock, std::vector<void*>{_document});
        return _status;
    }

private:
    enum class Line { Open, Close, Value, End };

    // The host children of one object, by lower-cased name.
    typedef std::unordered_map<CATUnicodeString, std::vector<void*>, CATUnicodeStringHash> ChildIndex;

    Line next(std::string& text, std::string& tag, long long& lineStart) {
        lineStart = _file.tell();
        if (!_file.readLine(text)) return Line::End;
        if (!isTagLine(text)) return Line::Value;
        const bool closing = text[1] == '/';
        tag.assign(text, closing ? 2 : 1, text.size() - (closing ? 3 : 2));
        return closing ? Line::Close : Line::Open;
    }

    void giveBack(long long lineStart) { _file.seek(lineStart); }

    static void reportMissingClosing(int level) {
        JNLManager::writeMsgFormatted("ERROR: </%s> is missing in Desc", levelName(level));
    }

    // The content of an element of `level` whose opening (and name) lines are
    // behind, up to its closing line. `self` holds the host objects it matched.
    void readContent(int level, const std::vector<void*>& self) {
        bool reported = false;
        if (level == kPly) reported = !readPlyFiles(self);
        std::string text, tag;
        long long lineStart = 0;
        for (;;) {
            const Line kind = next(text, tag, lineStart);
            if (kind == Line::End) {
                if (!reported) reportMissingClosing(level);
                return;
            }
            if (kind == Line::Value) continue;
            const int tagLevel = levelOf(tag);
            if (kind == Line::Close) {
                if (tagLevel == level) return;
                if (tagLevel < level || tagLevel == kLevelCount) {
                    // An enclosing element closes (one of the tree, or the
                    // entry around the block): this one's closing is missing.
                    if (!reported) reportMissingClosing(level);
                    giveBack(lineStart);
                    return;
                }
                continue; // a stray closing line of a deeper level
            }
            if (tagLevel == level + 1 && tagLevel < kLevelCount) {
                readChild(tagLevel, self);
            } else if (tagLevel <= level) {
                // A sibling or an outer element opens: this one was not closed.
                if (!reported) reportMissingClosing(level);
                giveBack(lineStart);
                return;
            } else {
                long long after = 0;
                CV5CAAToolsDesc::searchClosingNode(_file, tag, lineStart, after);
            }
        }
    }

    // An element of `level` has just opened: its name line, then its content.
    void readChild(int level, const std::vector<void*>& parents) {
        std::string name, tag;
        long long lineStart = 0;
        const Line kind = next(name, tag, lineStart);
        std::vector<void*> matches;
        if (kind == Line::Value) {
            matches = matchChildren(level, parents, CATUnicodeString(name));
        } else if (kind != Line::End) {
            giveBack(lineStart); // no name line: the element matches nothing
        }
        readContent(level, matches);
    }

    // The two value lines of a ply: new 3D, then new 2D representation file
    // name, each applied only when not empty; then the ply's closing line.
    // False (after the journal line) when the closing line does not follow.
    bool readPlyFiles(const std::vector<void*>& plies) {
        std::string text, tag;
        long long lineStart = 0;
        for (int which = 0; which < 2; ++which) {
            const Line kind = next(text, tag, lineStart);
            if (kind != Line::Value) {
                if (kind != Line::End) giveBack(lineStart);
                break;
            }
            if (text.empty()) continue;
            for (void* object : plies) {
                auto* ply = static_cast<CV5CAAQELPly*>(object);
                if (which == 0) {
                    ply->set3DRepresentationNewFileName(CATUnicodeString(text));
                } else {
                    ply->set2DRepresentationNewFileName(CATUnicodeString(text));
                }
            }
        }
        const Line kind = next(text, tag, lineStart);
        if (kind == Line::Close && tag == QELElement::Ply) {
            giveBack(lineStart); // readContent takes it as the closing line
            return true;
        }
        if (kind != Line::End) giveBack(lineStart);
        reportMissingClosing(kPly);
        return false;
    }

    std::vector<void*> matchChildren(int level, const std::vector<void*>& parents, const CATUnicodeString& name) {
        std::vector<void*> matches;
        const CATUnicodeString key = lowered(name);
        for (void* parent : parents) {
            const ChildIndex& index = childIndex(level - 1, parent);
            auto it = index.find(key);
            if (it != index.end()) matches.insert(matches.end(), it->second.begin(), it->second.end());
        }
        return matches;
    }

    // Built once per host object however often the answer names it.
    const ChildIndex& childIndex(int parentLevel, void* parent) {
        auto found = _indexes.find(parent);
        if (found != _indexes.end()) return found->second;
        ChildIndex& index = _indexes[parent];
        std::vector<void*> children;
        keep(childrenOf(parentLevel, parent, children));
        for (void* child : children) {
            CATUnicodeString name;
            if (child && keep(nameOf(parentLevel + 1, child, name)) >= 0) index[lowered(name)].push_back(child);
        }
        return index;
    }

    long keep(long status) {
        if (status < 0) _status = status;
        return status;
    }

    static long childrenOf(int level, void* parent, std::vector<void*>& out) {
        long status = 0;
        switch (level) {
        case kBlock: {
            TYPVectorPCV5CAAQELStacking stackings;
            status = static_cast<CV5CAAQELDocument*>(parent)->getAllStackings(stackings);
            if (status >= 0) out.assign(stackings.begin(), stackings.end());
            break;
        }
        case kStacking: {
            TYPVectorPCV5CAAQELPliesGroup groups;
            status = static_cast<CV5CAAQELStacking*>(parent)->getAllPliesGroups(groups);
            if (status >= 0) out.assign(groups.begin(), groups.end());
            break;
        }
        case kPliesGroup: {
            TYPVectorPCV5CAAQELSequence sequences;
            status = static_cast<CV5CAAQELPliesGroup*>(parent)->getAllSequences(sequences);
            if (status >= 0) out.assign(sequences.begin(), sequences.end());
            break;
        }
        case kSequence: {
            TYPVectorPCV5CAAQELPly plies;
            status = static_cast<CV5CAAQELSequence*>(parent)->getAllPlies(plies);
            if (status >= 0) out.assign(plies.begin(), plies.end());
            break;
        }
        default:
            break;
        }
        return status;
    }

    static long nameOf(int level, void* object, CATUnicodeString& name) {
        switch (level) {
        case kStacking:
            return static_cast<CV5CAAQELStacking*>(object)->getStackingName(name);
        case kPliesGroup:
            return static_cast<CV5CAAQELPliesGroup*>(object)->getPliesGroupName(name);
        case kSequence:
            return static_cast<CV5CAAQELSequence*>(object)->getSequenceName(name);
        case kPly:
            return static_cast<CV5CAAQELPly*>(object)->getPlyName(name);
        default:
            return -1;
        }
    }

    UTILLineFile& _file;
    CV5CAAQELDocument* _document;
    std::unordered_map<const void*, ChildIndex> _indexes;
    long _status = 0;
};

// ---- AnalysisFiles ----------------------------------------------------------

// The value line of a three-line element whose opening line starts at
// `lineStart`; the file then stands after its closing line. An element
// closed at once has an empty value; one cut short by an enclosing closing
// line has none either, and that line is left to be read.
std::string elementValue(UTILLineFile& file, const std::string& name, long long lineStart) {
    std::string value;
    const long long valueStart = file.tell();
    if (!file.readLine(value)) return value;
    if (value.compare(0, 2, "</") == 0) {
        if (value != "</" + name + ">") file.seek(valueStart);
        return std::string();
    }
    long long after = 0;
    CV5CAAToolsDesc::searchClosingNode(file, name, lineStart, after);
    return value;
}

// The Attribut values of one list, up to its closing line; at most as many as
// its NBElements announces when it comes first.
void readAnalysisList(UTILLineFile& file, const std::string& listName, TYPVectorCATUnicodeString& out) {
    static const std::string kCountLine = QELElement::openingLine(QELElement::NBElements);
    static const std::string kAttributLine = QELElement::openingLine(QELElement::Attribut);
    const std::string closing = QELElement::closingLine(listName);
    int announced = -1;
    int read = 0;
    std::string line;
    for (;;) {
        const long long lineStart = file.tell();
        const bool more = file.readLine(line);
        if (line == closing) break;
        if (!more || line.compare(0, 2, "</") == 0) {
            // The file ends, or an enclosing element closes first.
            JNLManager::writeMsgFormatted("ERROR: %s is missing in Desc", closing.c_str());
            file.seek(lineStart);
            break;
        }
        if (line == kCountLine) {
            announced = toInt(elementValue(file, QELElement::NBElements, lineStart).c_str());
        } else if (line == kAttributLine) {
            std::string value = elementValue(file, QELElement::Attribut, lineStart);
            if (announced < 0 || read < announced) {
                out.push_back(CATUnicodeString(value));
                ++read;
            }
        } else if (isTagLine(line) && line[1] != '/') {
            long long after = 0;
            CV5CAAToolsDesc::searchClosingNode(file, line.substr(1, line.size() - 2), lineStart, after);
        }
    }
    if (read < announced) reportShortBlock("QELXMLToDM::getValuesAndStoreAnalysisFiles", listName.c_str(), announced, read);
}

} // namespace

long QELXMLToDM::readAndUpdateExternalFiles(QELSession* session, const QELAnswerEntry* map) {
    const char* const function = "QELXMLToDM::readAndUpdateExternalFiles";
    JNLManager::beginFunction(function);
    long long pos = 0;
    if (!entryValue(map, QELElement::Externals)) {
        JNLManager::writeMsg("There is no Externals balise.");
    } else if (const int count = readBlockCount(map, QELElement::Externals, pos); count >= 1 && session) {
        // One cursor for the whole block: each list searches on from where
        // the previous one stopped, so the lists follow the session's order.
        size_t cursor = 0;
        forEachList(
            _file, function, QELElement::Externals, QELElement::Attribut, count, pos,
            [this](long long start, const char* name, long long& at) {
                return getBaliseValueListByName(start, name, at);
            },
            [&](const TYPVectorCATUnicodeString& list) {
                if (list.size() < 2) {
                    JNLManager::writeMsgFormatted("%s: an Externals entry holds %d lines instead of two", function,
                                                  list.size());
                    return;
                }
                const CATUnicodeString& oldName = list[0];
                const CATUnicodeString& newName = list[1];
                for (;;) {
                    cursor = _oldNames.findFrom(session, oldName, cursor);
                    if (cursor >= _oldNames.size()) break;
                    QELDocument* document = _oldNames.at(cursor++);
                    if (isPrimary(document)) continue;
                    document->addStringProperty("New_File_name", newName);
                    JNLManager::writeMsgFormatted("New File name of [%s] is [%s].", oldName.ConvertToChar(),
                                                  newName.ConvertToChar());
                    break;
                }
            });
    }
    JNLManager::endFunction(function, 0);
    return 0;
}

long QELXMLToDM::readAndUpdateCompositeFiles(QELSession* session, const QELAnswerEntry* map) {
    const char* const function = "QELXMLToDM::readAndUpdateCompositeFiles";
    JNLManager::beginFunction(function);
    long status = 0;
    const long long start = blockPosition(map, QELElement::PartComposites);
    if (start > 0 && session) {
        // The walk for the first primary document resumes where the previous
        // entry left it, so the session is walked once per reading.
        _oldNames.follow(session);
        while (!_primary && _primaryScanned < _oldNames.size()) {
            QELDocument* document = _oldNames.at(_primaryScanned++);
            if (document && isPrimary(document)) _primary = document;
        }
        if (CV5CAAQELDocument* primary = _primary ? hostDocument(_primary) : nullptr) {
            status = CompositeAnswer(_file, primary).read(start);
        } else {
            JNLManager::writeMsg("There is no primary document for the PartComposites balise.");
        }
    }
    JNLManager::endFunction(function, status);
    return status;
}

bool QELXMLToDM::getValuesAndStoreAnalysisFiles(long long start, long long& pos, TYPVectorCATUnicodeString*& resultFiles,
                                                TYPVectorCATUnicodeString*& computeFiles) {
    static const std::string kEnd = QELElement::closingLine(QELElement::AnalysisFiles);
    static const std::string kResults = QELElement::openingLine(QELElement::AnalysisResultsFiles);
    static const std::string kComputations = QELElement::openingLine(QELElement::AnalysisComputeFiles);
    resultFiles = new TYPVectorCATUnicodeString();
    computeFiles = new TYPVectorCATUnicodeString();
    moveTo(start);
    std::string line;
    for (;;) {
        const long long lineStart = _file.tell();
        const bool more = _file.readLine(line);
        if (line == kEnd) break;
        if (!more || line.compare(0, 2, "</") == 0) {
            // The file ends, or the entry around the block closes first.
            JNLManager::writeMsg("ERROR: </AnalysisFiles> is missing in Desc");
            moveTo(lineStart);
            pos = lineStart;
            return false;
        }
        if (line == kResults) {
            readAnalysisList(_file, QELElement::AnalysisResultsFiles, *resultFiles);
        } else if (line == kComputations) {
            readAnalysisList(_file, QELElement::AnalysisComputeFiles, *computeFiles);
        } else if (isTagLine(line) && line[1] != '/') {
            // The count and the old lists (OldAnalysisResultsFiles,
            // OldAnalysisComputeFiles) are read past.
            long long after = 0;
            CV5CAAToolsDesc::searchClosingNode(_file, line.substr(1, line.size() - 2), lineStart, after);
        }
    }
    pos = _file.tell();
    return true;
}
