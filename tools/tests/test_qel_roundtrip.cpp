// Round trips on the bundled example, one per process: the session is
// described, the simulated PDM side answers, the reader reads the answer back.
// Every value the answer gives must reach the component it belongs to, and no
// other property of any component may change. Every prefix of the answer must
// then be read safely.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <map>
#include <memory>
#include <set>
#include <sstream>
#include <string>
#include <tuple>
#include <vector>

#include "QELDocument.h"
#include "QELElementNames.h"
#include "ScratchDir.h"
#include "SessionReset.h"
#include "CV5CAAQELAbsoluteOccurrence.h"
#include "CV5CAAQELDocument.h"
#include "CV5CAAQELItem.h"
#include "CV5CAAQELSession.h"
#include "CV5CAAQELStacking.h"
#include "CV5CAAQELWorkSpace.h"
#include "EMHManager.h"
#include "ENVManager.h"
#include "JNLManager.h"
#include "PROCManager.h"
#include "QELAnswerSimulator.h"
#include "QELChangeTable.h"
#include "QELDMToXML.h"
#include "QELDescriptionScanner.h"
#include "QELFile.h"
#include "QELHandleTable.h"
#include "QELLink.h"
#include "QELPropertySet.h"
#include "QELPropertyText.h"
#include "QELSession.h"
#include "QELSessionFile.h"
#include "QELUtilities.h"
#include "QELXMLToDM.h"
#include "QELXMLToDMScannerAccess.h"
#include "UTILFile.h"

namespace {

const std::string kExample = std::string(QEL_SOURCE_DIR) + "/examples/session.json";

struct Process {
    const char* name;
    // As the session file and the command line name them.
    const char* command;
    const char* process;
    const char* phase;
    // Update status describes a list of documents, not the workspaces.
    bool documents = false;
    bool catalog = false;
};

void PrintTo(const Process& process, std::ostream* out) { *out << process.name; }

const Process kProcesses[] = {
    {"SavePhase1", "save", "none", "1"},
    {"SavePhase2", "save", "none", "2"},
    {"CreateSpreadSheet", "create-spreadsheet", "none", "none"},
    {"Import", "import", "none", "none"},
    {"StateDetails", "none", "state-details,state-details-factory", "none"},
    {"LifeCycle", "none", "life-cycle-factory", "none"},
    {"BRR", "none", "brr-save", "none"},
    {"SynchronizeActiveShapes", "synchronize-active-shapes", "none", "none"},
    {"UpdateStatus", "update-status", "none", "none", true},
    {"CatalogWorkspace", "save", "none", "1", false, true},
};

std::string latin1(const CATUnicodeString& text) { return text.ToLatin1(); }

// The change table and the property texts speak UTF-8; the files Latin-1.
std::string latin1FromUtf8(const std::string& text) {
    CATUnicodeString converted;
    converted.BuildFromUTF8(text);
    return converted.ToLatin1();
}

std::string textOf(const QELPropertyHolder& holder, const std::string& property) {
    const QELPropertySet* set = holder.getPropertySet();
    for (int i = 0; set && i < set->getPropertiesCount(); ++i)
        if (latin1(set->getPropertyNameByIndex(i)) == property) return qelPropertyText(holder, i);
    return "(none)";
}

QELFile* firstFileOf(QELDocument* document) {
    if (!document) return nullptr;
    TYPMapCATUnicodeStringPVoid* files =
        document->getLinkedFiles(QELUtilities::getDocFilRefNameFromDocumentType(document->getType()));
    return files ? static_cast<QELFile*>(files->first()) : nullptr;
}

// What an answer entry designates, and the objects its values belong to.
struct Targets {
    QELComponent* component = nullptr;
    QELItem* item = nullptr;
    QELDocument* document = nullptr;
    QELFile* file = nullptr;
    bool instance = false; // a workspace or an occurrence, not a document entry
};

Targets targetsOf(QELComponent* component) {
    Targets t;
    t.component = component;
    if (component->isAbsolute()) {
        t.instance = true;
        t.item = static_cast<QELAbsoluteOccurrence*>(component)->getLinkedItem();
        auto* host =
            t.item && t.item->instanceOf("CV5CAAQELITEM_CLASSNAME") ? static_cast<CV5CAAQELItem*>(t.item) : nullptr;
        t.document = host ? host->getItemDefaultDocument() : nullptr;
        t.file = firstFileOf(t.document);
    } else if (component->isWorkSpace()) {
        t.instance = true;
        auto* workspace = static_cast<QELWorkSpace*>(component);
        t.item = workspace->getItem();
        t.document = workspace->getLinkedDocument();
        t.file = workspace->getFile();
    } else if (component->isAKindOf("QELDOCUMENT_CLASSNAME")) {
        t.document = static_cast<QELDocument*>(component);
        if (component->instanceOf("CV5CAAQELDOCUMENT_CLASSNAME"))
            t.item = static_cast<CV5CAAQELDocument*>(component)->getDefaultItem();
        t.file = firstFileOf(t.document);
    }
    return t;
}

// The child whose host name compares equal, letter case ignored.
template <typename Child, typename Parent, typename List, typename Name>
Child* childNamed(const Parent* parent, List list, Name name, const std::string& wanted) {
    TYPVector<Child*> children;
    if (!parent || (parent->*list)(children) < 0) return nullptr;
    for (Child* child : children) {
        CATUnicodeString text;
        if ((child->*name)(text) >= 0 && text.Compare(CATUnicodeString(wanted)) != 0) return child;
    }
    return nullptr;
}

// The ply a path of names (stacking, plies group, sequence, ply) designates.
CV5CAAQELPly* plyAt(const CV5CAAQELDocument* document, const std::vector<std::string>& names) {
    if (names.size() != 4) return nullptr;
    auto* stacking = childNamed<CV5CAAQELStacking>(document, &CV5CAAQELDocument::getAllStackings,
                                                   &CV5CAAQELStacking::getStackingName, names[0]);
    auto* group = childNamed<CV5CAAQELPliesGroup>(stacking, &CV5CAAQELStacking::getAllPliesGroups,
                                                  &CV5CAAQELPliesGroup::getPliesGroupName, names[1]);
    auto* sequence = childNamed<CV5CAAQELSequence>(group, &CV5CAAQELPliesGroup::getAllSequences,
                                                   &CV5CAAQELSequence::getSequenceName, names[2]);
    return childNamed<CV5CAAQELPly>(sequence, &CV5CAAQELSequence::getAllPlies, &CV5CAAQELPly::getPlyName, names[3]);
}

// The groups of lines of every `element` child inside a block of an entry.
std::vector<std::vector<std::string>> groups(const QELDescriptionEntry& entry, const char* block, const char* element) {
    std::vector<std::vector<std::string>> out;
    const QELDescriptionElement* found = entry.find(block);
    if (!found) return out;
    const std::string open = std::string("<") + element + ">";
    const std::string close = std::string("</") + element + ">";
    for (size_t i = found->begin; i < found->end; ++i) {
        if (entry.line(i) != open) continue;
        std::vector<std::string>& group = out.emplace_back();
        for (++i; i < found->end && entry.line(i) != close; ++i) group.emplace_back(entry.line(i));
    }
    return out;
}

// Expected values, by component handle and property: every value an answer
// entry gives for it. Properties the reader derives from the answer rather
// than copy (bookkeeping) may change without being listed.
class Expectations {
public:
    void must(const QELComponent* owner, const std::string& property, const std::string& value) {
        if (owner) _must[{owner->get_Handle(), property}].insert(value);
    }
    // Values the reader takes only under conditions of the model (a first
    // entry, an unset value): when the property changed, it took one of them.
    void may(const QELComponent* owner, const std::string& property, const std::string& value) {
        if (owner) _may[{owner->get_Handle(), property}].insert(value);
    }
    // A (name, value) pair of a dynamic property. A name keeps the value it
    // was first given, so any of the values answered for it will do.
    void pair(const QELComponent* owner, const std::string& property, const std::string& name,
              const std::string& value) {
        if (owner) _pairs[{owner->get_Handle(), property, name}].insert(value);
    }
    void mention(const QELComponent* component) {
        if (component) _mentioned.insert(component->get_Handle());
    }

    // One failure per value that did not arrive where it belongs.
    void checkArrived() const {
        for (const auto& [key, values] : _must) {
            const QELComponent* owner = QELHandleTable::resolve(key.first);
            ASSERT_NE(owner, nullptr);
            const std::string now = textOf(*owner, key.second);
            EXPECT_TRUE(values.count(latin1FromUtf8(now)))
                << latin1(owner->get_Name()) << " " << key.second << " is " << now << ", expected " << *values.begin();
        }
        for (const auto& [key, values] : _pairs) {
            const QELComponent* owner = QELHandleTable::resolve(std::get<0>(key));
            ASSERT_NE(owner, nullptr);
            const TYPVectorCATUnicodeString* pairs = owner->getDynamicProperty(std::get<1>(key).c_str());
            bool found = false;
            for (int i = 0; pairs && i + 1 < pairs->size(); i += 2)
                found = found || (latin1((*pairs)[i]) == std::get<2>(key) && values.count(latin1((*pairs)[i + 1])));
            EXPECT_TRUE(found) << latin1(owner->get_Name()) << " " << std::get<1>(key) << " lacks " << std::get<2>(key);
        }
    }

    // One failure per change the answer does not explain.
    void checkChange(const QELChange& change) const {
        static const std::set<std::string> kBookkeeping = {"Already_treated", "Old_Part_Number", "CatalogComp",
                                                           QELDocument::kMappingAttributes};
        const std::string property(change.property);
        if (change.handle == 0) return; // the session takes the options
        const std::string where = std::string(change.component) + " " + property + ": " +
                                  std::string(change.oldValue) + " -> " + std::string(change.newValue);
        EXPECT_TRUE(_mentioned.count(change.handle)) << "a component the answer does not mention changed: " << where;
        const std::pair<uint64_t, std::string> key{change.handle, property};
        if (_must.count(key) || kBookkeeping.count(property)) return;
        auto may = _may.find(key);
        if (may == _may.end()) {
            ADD_FAILURE() << "no value of the answer explains " << where;
            return;
        }
        const std::string now = latin1FromUtf8(std::string(change.newValue));
        EXPECT_TRUE(may->second.count(now)) << where;
    }

    size_t size() const { return _must.size(); }

private:
    std::map<std::pair<uint64_t, std::string>, std::set<std::string>> _must, _may;
    std::map<std::tuple<uint64_t, std::string, std::string>, std::set<std::string>> _pairs;
    std::set<uint64_t> _mentioned;
};

class RoundTrip : public ::testing::TestWithParam<Process> {
protected:
    void SetUp() override {
        reset();
        QELSessionFileError error;
        ASSERT_TRUE(qelLoadSessionFile(kExample, error)) << error.message;
        const Process& p = GetParam();
        std::string message;
        ASSERT_TRUE(qelApplyCommand(p.command, p.process, p.phase, message)) << message;
        session = QELSession::getInstance();
        if (p.catalog) {
            PROCManager::setManageCatalog(true);
            static_cast<CV5CAAQELWorkSpace*>(session->getActiveWorkSpace())->setWorkSpaceType(8);
        }
        reachEveryAnsweredBlock();
        describeAndAnswer();
    }
    void TearDown() override {
        reset();
        std::remove(descriptionPath.c_str());
        std::remove(answerPath.c_str());
    }

    static void reset() { qeltest::resetSession(); }

    static QELComponent* componentNamed(const char* name) {
        for (QELComponent* component : QELHandleTable::liveComponents())
            if (latin1(component->get_Name()) == name) return component;
        return nullptr;
    }

    // The example describes neither a secondary's path nor component shapes,
    // and its primary document has no composites: give the cover's
    // secondaries a path, the shaft a component shape, and make the panel the
    // primary document, so that every block the PDM side answers is read.
    void reachEveryAnsweredBlock() {
        auto* gearbox = static_cast<CV5CAAQELDocument*>(componentNamed("Gearbox.CATProduct"));
        auto* panel = static_cast<CV5CAAQELDocument*>(componentNamed("Panel.CATPart"));
        ASSERT_TRUE(gearbox && panel);
        gearbox->setIsPrimaryDocument(0);
        panel->setIsPrimaryDocument(1);
        auto* cover = static_cast<QELDocument*>(componentNamed("Couvercle_\xE9l\xE9ment.CATPart"));
        ASSERT_NE(cover, nullptr);
        std::unique_ptr<TYPVectorPQELLink> secondaries(cover->getLinkedSecondaries());
        ASSERT_TRUE(secondaries && !secondaries->empty());
        for (QELLink* link : *secondaries) {
            QELComponent* secondary = link->get_Secondary();
            secondary->addStringProperty("spfilenametodisplay",
                                         "C:\\data\\" + secondary->getStringProperty("ShortFileName"));
        }
        auto* shaft = static_cast<QELDocument*>(componentNamed("Shaft.CATPart"));
        auto* shaft1 = static_cast<QELAbsoluteOccurrence*>(componentNamed("Shaft.1"));
        ASSERT_TRUE(shaft && shaft1 && shaft1->isAbsolute());
        shaft->linkComponentAbsoluteOccurrence(shaft1);
        shaft1->addBooleanProperty("HasComponentShapeRep", true);
        shaft1->addIntegerProperty("totalComponent", 1);
    }

    void describeAndAnswer() {
        const std::string prefix = qeltest::scratchDir() + GetParam().name;
        descriptionPath = prefix + "-description.xml";
        answerPath = prefix + "-answer.xml";
        if (GetParam().documents) {
            TYPVectorPCV5CAAQELDocument documents;
            for (const char* name : {"Gearbox.CATProduct", "Shaft.CATPart", "Couvercle_\xE9l\xE9ment.CATPart"})
                documents.push_back(static_cast<CV5CAAQELDocument*>(componentNamed(name)));
            QELDMToXML writer(descriptionPath.c_str());
            writer.execute(session, &documents);
        } else {
            QELDMToXML writer(descriptionPath.c_str());
            writer.execute(session);
        }
        QELAnswerSimulator simulator;
        std::string error;
        ASSERT_TRUE(simulator.run(descriptionPath, answerPath, error)) << error;
        std::ifstream in(answerPath, std::ios::binary);
        std::stringstream text;
        text << in.rdbuf();
        answerText = text.str();
        JNLManager::clear();
        EMHManager::clear();
    }

    std::vector<QELDescriptionEntry> answerEntries() const {
        std::vector<QELDescriptionEntry> entries;
        QELDescriptionScanner scanner;
        std::string error;
        EXPECT_TRUE(scanner.open(answerPath, error) && scanner.readHeader(error)) << error;
        QELDescriptionEntry entry;
        while (scanner.nextEntry(entry, error)) entries.push_back(entry);
        EXPECT_EQ(error, "");
        return entries;
    }

    // What the answer says, entry by entry, for the full reading.
    Expectations expectations() {
        Expectations e;
        for (const QELDescriptionEntry& entry : answerEntries()) {
            if (!entry.has(QELElement::POINTER_ADDRESS)) continue; // placed by its parent: nothing to update
            QELComponent* component = QELHandleTable::resolve(std::string(entry.value(QELElement::POINTER_ADDRESS)));
            EXPECT_NE(component, nullptr) << entry.value(QELElement::POINTER_ADDRESS);
            if (!component) continue;
            e.mention(component);
            const Targets t = targetsOf(component);
            for (const QELComponent* c : {static_cast<const QELComponent*>(t.item),
                                          static_cast<const QELComponent*>(t.document),
                                          static_cast<const QELComponent*>(t.file)})
                e.mention(c);
            expectKeys(e, entry, t);
            expectBlocks(e, entry, t);
        }
        return e;
    }

    static void expectKeys(Expectations& e, const QELDescriptionEntry& entry, const Targets& t) {
        auto value = [&entry](const char* key) { return std::string(entry.value(key)); };
        if (t.instance) {
            if (entry.has(QELElement::Occ_UID)) e.must(t.component, "Occ_UID", value(QELElement::Occ_UID));
            if (entry.has(QELElement::Occ_CreatedFlag))
                e.must(t.component, "Occ_CreatedFlag", value(QELElement::Occ_CreatedFlag) == "1" ? "true" : "false");
        }
        for (const char* key : {"Item_ID", "ItemRev_ID", "Part_Number"})
            if (entry.has(key)) e.must(t.item, key, value(key));
        if (t.instance && entry.has(QELElement::ItemRev_UID))
            e.must(t.item, "ItemRev_UID", value(QELElement::ItemRev_UID));
        for (const char* key : {"DST_UID", "DST_Version", "Date_Last_Modification"})
            if (entry.has(key)) e.must(t.document, key, value(key));
        if (entry.has(QELElement::File_Name)) {
            e.must(t.file, "File_Name", value(QELElement::File_Name));
            e.must(t.document, "ShortFileName", value(QELElement::File_Name));
        }
        if (entry.has(QELElement::Old_File_Name)) {
            e.must(t.file, "Old_File_Name", value(QELElement::Old_File_Name));
            e.must(t.document, "Doc_Old_File_Name", value(QELElement::Old_File_Name));
        }
        // The first entry of a document decides these; an unset Check_Action
        // is only taken in saves.
        if (entry.has(QELElement::Update_Flag)) e.may(t.document, "Update_Flag", value(QELElement::Update_Flag));
        if (entry.has(QELElement::Check_Action)) e.may(t.document, "Check_Action", value(QELElement::Check_Action));
        if (t.instance && entry.has(QELElement::Mask)) e.may(t.component, "Mask", value(QELElement::Mask));
    }

    void expectBlocks(Expectations& e, const QELDescriptionEntry& entry, const Targets& t) {
        QELDocument* document = t.document;
        if (!document) return;
        // Mapping attributes: always for an instance, for a document entry
        // only when it is a design table or a foreign file.
        const bool mapped =
            t.instance || document->getType() == EnumDocumentType_DesignTable || document->isAForeignFile();
        const auto attributes = groups(entry, QELElement::Mapping_Attribut, QELElement::Attribut);
        for (size_t i = 0; mapped && i + 1 < attributes.size(); i += 2)
            e.pair(document, QELDocument::kMappingAttributes, attributes[i].at(0), attributes[i + 1].at(0));
        if (!t.instance) return;

        // Secondaries by the file name of their path: new file name, part
        // number, modified flag.
        std::unique_ptr<TYPVectorPQELLink> secondaries(document->getLinkedSecondaries());
        for (const std::vector<std::string>& group : groups(entry, QELElement::secondaries, QELElement::secondary)) {
            ASSERT_EQ(group.size(), 7u);
            CATUnicodeString directory, fileName;
            UTILFile::splitPathAndFileName(CATUnicodeString(group[0]), directory, fileName);
            for (int i = 0; secondaries && i < secondaries->size(); ++i) {
                QELComponent* secondary = (*secondaries)[i]->get_Secondary();
                if (secondary->getStringProperty("ShortFileName") != fileName) continue;
                e.mention(secondary);
                e.must(secondary, "New_File_name", group[1]);
                e.must(secondary, "Part_Number", group[3]);
                e.must(secondary, "Modified_Flag", group[5] == "1" ? "true" : "false");
                ++matchedSecondaries;
            }
        }

        // Shape representations: the dataset UID of each one named.
        std::unique_ptr<TYPVectorPQELLink> shapes(document->getLinkedAlternateShapeRepresentations());
        expectShapes(e, groups(entry, QELElement::Shapes, QELElement::SR), shapes.get());
        if (const QELDescriptionElement* block = entry.find(QELElement::Components)) {
            std::string name;
            for (size_t i = block->begin; i < block->end; ++i) {
                if (entry.line(i) == "<ComponentName>") name = std::string(entry.line(i + 1));
                if (entry.line(i) != "<SR>") continue;
                std::vector<std::string> group;
                for (++i; i < block->end && entry.line(i) != "</SR>"; ++i) group.emplace_back(entry.line(i));
                TYPMapCATUnicodeStringPVoid* occurrences = document->getLinkedComponentAbsoluteOccurrences();
                if (!occurrences) continue;
                for (const auto& found : *occurrences) {
                    auto* occurrence = static_cast<QELAbsoluteOccurrence*>(found.object);
                    if (latin1(occurrence->getStringProperty("ComponentName")) != name) continue;
                    std::unique_ptr<TYPVectorPQELLink> links(occurrence->getLinkedComponentShapeRepresentations());
                    expectShapes(e, {group}, links.get());
                }
            }
        }

        checkPlies(entry);

        // External files, by their old name, when they are managed.
        if (PROCManager::manageExternalFiles()) {
            std::unique_ptr<TYPVectorPQELDocument> all(session->getAllQELDocuments());
            for (const std::vector<std::string>& pair : groups(entry, QELElement::Externals, QELElement::Attribut)) {
                ASSERT_EQ(pair.size(), 2u);
                for (QELDocument* candidate : *all) {
                    if (latin1(candidate->getStringProperty("Doc_Old_File_Name")) != pair[0]) continue;
                    e.mention(candidate);
                    e.must(candidate, "New_File_name", pair[1]);
                    ++matchedExternals;
                }
            }
        }
    }

    // The plies the answer names in the primary document's composites tree
    // take their new 3D and 2D file names; a blank name changes nothing.
    void checkPlies(const QELDescriptionEntry& entry) {
        const QELDescriptionElement* block = entry.find(QELElement::PartComposites);
        if (!block || !ENVManager::isCompositeManaged()) return;
        CV5CAAQELDocument* primary = nullptr;
        std::unique_ptr<TYPVectorPQELDocument> all(session->getAllQELDocuments());
        for (QELDocument* document : *all) {
            if (document->instanceOf("CV5CAAQELDOCUMENT_CLASSNAME") &&
                static_cast<CV5CAAQELDocument*>(document)->isPrimaryDocument()) {
                primary = static_cast<CV5CAAQELDocument*>(document);
                break;
            }
        }
        std::vector<std::string> path;
        for (size_t i = block->begin; i + 1 < block->end; ++i) {
            const std::string_view line = entry.line(i);
            if (line == "<Stacking>" || line == "<PliesGroup>" || line == "<Sequence>") {
                path.emplace_back(entry.line(++i));
            } else if (line == "</Stacking>" || line == "</PliesGroup>" || line == "</Sequence>") {
                if (!path.empty()) path.pop_back();
            } else if (line == "<Ply>" && i + 3 < block->end) {
                path.emplace_back(entry.line(i + 1));
                CV5CAAQELPly* ply = plyAt(primary, path);
                path.pop_back();
                if (!ply) continue;
                ++matchedPlies;
                EXPECT_EQ(latin1(ply->get3DRepresentationNewFileName()), entry.line(i + 2));
                EXPECT_EQ(latin1(ply->get2DRepresentationNewFileName()), entry.line(i + 3));
            }
        }
    }

    void expectShapes(Expectations& e, const std::vector<std::vector<std::string>>& srGroups,
                      const TYPVectorPQELLink* links) {
        for (const std::vector<std::string>& group : srGroups) {
            ASSERT_EQ(group.size(), 6u);
            for (int i = 0; links && i < links->size(); ++i) {
                QELLink* link = (*links)[i];
                // Shapes are named with letter case ignored.
                if (link->getStringProperty("ShapeRepName").Compare(CATUnicodeString(group[2])) == 0) continue;
                e.mention(link->get_Secondary());
                e.must(link->get_Secondary(), "DST_UID", group[3]);
                EXPECT_EQ(latin1(link->getStringProperty("ShortFileName")), group[1]);
                ++matchedShapes;
            }
        }
    }

    QELSession* session = nullptr;
    std::string descriptionPath;
    std::string answerPath;
    std::string answerText;
    // How many secondaries, shapes, external files and plies the answer reached:
    // the enriched example must reach some in the processes that describe
    // them, or the checks above would check nothing.
    int matchedSecondaries = 0, matchedShapes = 0, matchedExternals = 0, matchedPlies = 0;
};

TEST_P(RoundTrip, AnswerReachesItsComponentsAndNothingElse) {
    QELChangeTable table;
    table.snapshot();
    {
        QELXMLToDM reader(answerPath.c_str());
        reader.execute(session);
        // The reader goes back to every block it stored; within an answer
        // that fits its buffer, that never reaches the system.
        EXPECT_EQ(QELXMLToDMScannerAccess::systemSeeks(reader), 0);
    }
    EXPECT_TRUE(EMHManager::entries().empty());
    const Expectations e = expectations();
    e.checkArrived();
    table.diff([&](const QELChange& change) { e.checkChange(change); });
    EXPECT_TRUE(session->getBooleanProperty("UpdateStatusIcons")) << "the options are read";
    const std::string name = GetParam().name;
    if (name == "CreateSpreadSheet") {
        // Its entries name their parents, not themselves: only the session's
        // options may change.
        EXPECT_EQ(e.size(), 0u);
    } else {
        EXPECT_GT(e.size(), 20u);
    }
    if (name == "Import" || name == "BRR" || name == "SynchronizeActiveShapes") {
        EXPECT_GT(matchedShapes, 0);
        EXPECT_GT(matchedSecondaries, 0);
    }
    if (name == "Import" || name == "SavePhase2") {
        EXPECT_GT(matchedExternals, 0);
    }
    if (name == "Import" || name == "SavePhase2" || name == "BRR") {
        EXPECT_GT(matchedPlies, 0);
    }
}

TEST_P(RoundTrip, OptionsPassTakesOptionsIdentifiersAndFlagsOnly) {
    QELChangeTable table;
    table.snapshot();
    {
        QELXMLToDM reader(answerPath.c_str());
        reader.readOptions(session);
    }
    Expectations e;
    for (const QELDescriptionEntry& entry : answerEntries()) {
        QELComponent* component = QELHandleTable::resolve(std::string(entry.value(QELElement::POINTER_ADDRESS)));
        if (!component || !(component->isAbsolute() || component->isWorkSpace())) continue;
        const Targets t = targetsOf(component);
        e.mention(t.item);
        e.mention(t.document);
        // An unmodified component keeps its identifiers.
        if (component->getIntegerProperty("Modified_Flag") != -1) {
            for (const char* key : {"Item_ID", "ItemRev_ID"})
                if (entry.has(key)) e.must(t.item, key, std::string(entry.value(key)));
        }
        if (entry.has(QELElement::Update_Flag))
            e.may(t.document, "Update_Flag", std::string(entry.value(QELElement::Update_Flag)));
    }
    e.checkArrived();
    table.diff([&](const QELChange& change) { e.checkChange(change); });
    EXPECT_TRUE(session->getBooleanProperty("UpdateStatusIcons"));
    EXPECT_TRUE(session->isPropertyExist("ReloadModifiedDocuments"));
    EXPECT_FALSE(session->getBooleanProperty("ReloadModifiedDocuments"));
}

// Cut at every line end, one byte into every line, between the CR and the LF
// of every line, and at a sample of other offsets.
std::vector<size_t> cuts(const std::string& text) {
    std::vector<size_t> out;
    for (size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\n') {
            out.push_back(i + 1);
            if (i + 2 < text.size()) out.push_back(i + 2);
        } else if (text[i] == '\r') {
            out.push_back(i + 1);
        }
    }
    for (size_t step = text.size() / 97 + 1, i = 0; i < text.size(); i += step) out.push_back(i);
    std::sort(out.begin(), out.end());
    out.erase(std::unique(out.begin(), out.end()), out.end());
    return out;
}

bool journalSaysCut() {
    for (const std::string_view line : JNLManager::entries())
        for (const char* sign : {"Unexpected end of file", "is missing", "entries announced", "Balise DESC_FILE"})
            if (line.find(sign) != std::string::npos) return true;
    return false;
}

TEST_P(RoundTrip, EveryPrefixOfTheAnswerIsReadSafely) {
    auto readPrefix = [&](size_t size) {
        // A new file each time: rewriting one in place makes the file
        // system flush it to disk first.
        const std::string path = qeltest::scratchDir() + "prefix-" + std::to_string(size) + ".xml";
        std::ofstream(path, std::ios::binary) << answerText.substr(0, size);
        JNLManager::clear();
        EMHManager::clear();
        {
            QELXMLToDM reader(path.c_str());
            reader.execute(session);
        }
        std::remove(path.c_str());
    };
    readPrefix(answerText.size());
    EXPECT_FALSE(journalSaysCut());

    // Once the count is read, a cut before the last entry's closing line is
    // reported; the reading stops after that line, so a cut after it loses
    // nothing (the line end of a last line may be missing).
    const size_t counted = answerText.find("</NBElements>\r\n") + 15;
    const size_t complete = answerText.rfind("\r\n</DESCFILE>");
    for (size_t size : cuts(answerText)) {
        SCOPED_TRACE(size);
        readPrefix(size);
        if (size >= counted) {
            EXPECT_EQ(size < complete, journalSaysCut());
        }
    }
}

INSTANTIATE_TEST_SUITE_P(EveryProcess, RoundTrip, ::testing::ValuesIn(kProcesses),
                         [](const ::testing::TestParamInfo<Process>& info) { return std::string(info.param.name); });

} // namespace
