#include "QELDocument.h"
#include "QELFuzzSessionComposer.h"

#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "QELSessionFile.h"

namespace qelfuzz {
namespace {

using Json = nlohmann::ordered_json;

template <typename T, size_t N> constexpr size_t countOf(const T (&)[N]) { return N; }

// Words are Latin-1, as the model keeps them; toUtf8 makes them JSON text.
const char* const kCommands[] = {"none",
                                 "save",
                                 "save-as",
                                 "save-selected",
                                 "import",
                                 "create-spreadsheet",
                                 "synchronize-active-shapes",
                                 "update-status",
                                 "state-details-update"};
const char* const kProcesses[] = {"none",
                                  "state-details",
                                  "state-details-factory",
                                  "state-details-update",
                                  "life-cycle-factory",
                                  "brr-save",
                                  "checkout",
                                  "state-details,state-details-factory"};
const char* const kPhases[] = {"1", "2", "none"};
const char* const kManage[] = {"manageDescForEmptyQEL",
                               "manageSavableStatusForNonSave",
                               "manageCATIAIcons",
                               "manageFlexibility",
                               "manageHideShow",
                               "manageScenes",
                               "manageCatalog",
                               "manageExternalFiles",
                               "manageInvisibleBrokenIcon",
                               "isCatalogStagingManaged"};
const char* const kEnvironmentSwitches[] = {
    "isSaveHideShowManagedOnImport",  "isSaveScenesManagedOnSave",
    "isManageCatiaStatusInCatiaTree", "isCompositeManaged",
    "manageOccmappVtproperties",      "manageForeignFilesOnSave"};
const char* const kHostSwitches[] = {"saveAllSheetsInOneFile", "isThereDrawing",
                                     "manageFlexibility", "manageHideShow"};
const char* const kSessionProperties[] = {"IsDesignTableManagedAsked", "IsDesignTableManaged",
                                          "Calcul_Flag", "HasFlatteningWorkspace"};

struct DocumentType {
    const char* name;
    const char* extension;
};
const DocumentType kDocumentTypes[] = {
    {"product", ".CATProduct"}, {"part", ".CATPart"},         {"drawing", ".CATDrawing"},
    {"process", ".CATProcess"}, {"analysis", ".CATAnalysis"}, {"model", ".model"},
    {"design-table", ".xls"},   {"catalog", ".catalog"},      {"unset", ".cgr"}};
constexpr size_t kDesignTable = 6;

const char* const kNames[] = {"Gearbox", "Bolt M8", "Couvercle \xe9l\xe9ment", "Shaft", "Panel",
                              "A",       "x"};
// The property names the writer and the reader look at, and a few they do not.
const char* const kPropertyNames[] = {"Part_Number",
                                      "Item_ID",
                                      "ItemRev_ID",
                                      "ItemRev_UID",
                                      "ItemRev_Name",
                                      "Nomenclature",
                                      "DST_UID",
                                      "DST_Version",
                                      "Dat_File_Version",
                                      "Modified_Flag",
                                      "MAJ",
                                      "Type",
                                      "IsForeignFile",
                                      "IsBrokenIcon",
                                      "IsAForeignFile",
                                      "Doc_Old_File_Name",
                                      "ShortFileName",
                                      "File_Name",
                                      "File_Version",
                                      "Check_Action",
                                      "Occ_UID",
                                      "InstanceName",
                                      "Inst_Description",
                                      QELDocument::kCATIAMappingAttributes,
                                      QELDocument::kOEMMappingAttributes,
                                      "IsAnIgnoreNode",
                                      "IsVisible",
                                      "IsHideInContext",
                                      "Parent_Comp",
                                      "NamedRef_UID",
                                      "Sheet",
                                      "Cfg",
                                      "DTMap",
                                      "IsDummyPart",
                                      "CatalogComp",
                                      "Date_Last_Modification",
                                      "Mapping_Inst_CATIA",
                                      "Material",
                                      "Calcul_Flag",
                                      "Update_Flag"};
const char* const kValues[] = {"",
                               "0",
                               "1",
                               "-1",
                               "2",
                               "TRUE",
                               "FALSE",
                               "COMP",
                               "FF",
                               "A",
                               "CatalogComp_x",
                               "ERROR",
                               "Unknown",
                               "UID-1",
                               "DST-1",
                               "NR-1",
                               "Sheet.1",
                               "a!!!b",
                               "/tmp/qel/x.CATPart",
                               "Working"};
const double kNumbers[] = {0, 1, -1, 0.5, 2.5, 1e300, -1e-300, 42};

std::string toUtf8(const std::string& latin1) {
    std::string utf8;
    for (unsigned char c : latin1) {
        if (c < 0x80) {
            utf8 += static_cast<char>(c);
        } else {
            utf8 += static_cast<char>(0xC0 | c >> 6);
            utf8 += static_cast<char>(0x80 | (c & 0x3F));
        }
    }
    return utf8;
}

class Composer {
public:
    Composer(ByteSource& bytes, bool raw, const ComposeLimits& limits)
        : _in(bytes), _raw(raw), _limits(limits) {}

    Json compose() {
        Json session = {{"format", "qel-session/1"}};
        session["settings"] = settings();
        items(session["items"]);
        documents(session["documents"]);
        documentRelations(session["documents"]);
        workspaces(session["workspaces"]);
        return session;
    }

private:
    // A word of the table, or in raw mode (when the byte says so) any bytes.
    std::string text(const char* const* words, size_t count) {
        const uint8_t choice = _in.byte();
        if (_raw && choice >= 0x80)
            return toUtf8(_in.bytes(12));
        return toUtf8(words[choice % count]);
    }
    std::string name(size_t index) {
        return text(kNames, countOf(kNames)) + "-" + std::to_string(index);
    }
    std::string value() { return text(kValues, countOf(kValues)); }
    // A value where the loader wants a name: never empty.
    std::string label() {
        std::string text = value();
        return text.empty() ? "L" : text;
    }
    double number() {
        const uint8_t choice = _in.byte();
        return choice < 0xC0 ? choice % 64 - 16 : kNumbers[choice % countOf(kNumbers)];
    }
    // Small numbers mostly, and the ends of the range.
    int integer() {
        const uint8_t choice = _in.byte();
        if (choice == 0xFF)
            return 2147483647;
        if (choice == 0xFE)
            return -2147483647 - 1;
        return choice % 64 - 16;
    }
    Json matrix() {
        Json numbers = Json::array();
        for (int i = 0; i < 16; ++i)
            numbers.push_back(i % 5 == 0 && _in.bit() ? 1.0 : number());
        return numbers;
    }

    // Typed properties of every kind but the string list: the model keeps
    // each string-list value until the process ends (QELKeeper), so a long
    // run would grow by every one it made and look for a leak after every
    // input. Session files with lists reach the loader through the session
    // harness's seeds. `scalarsOnly` for links.
    Json properties(bool scalarsOnly = false) {
        Json object = Json::object();
        for (size_t count = _in.pick(5); count > 0; --count) {
            const std::string key = text(kPropertyNames, countOf(kPropertyNames));
            switch (_in.pick(scalarsOnly ? 4 : 9)) {
            case 0:
                object[key] = value();
                break;
            case 1:
                object[key] = integer();
                break;
            case 2:
                object[key] = _in.bit();
                break;
            case 3:
                object[key] = {{"matrix", matrix()}};
                break;
            case 4:
                object[key] = {{"pairs", Json::array({Json::array({value(), value()})})}};
                break;
            case 5:
                object[key] = {{"strings", Json::array({value(), value()})}};
                break;
            case 6:
                object[key] = {{"integers", Json::array({integer()})}};
                break;
            case 7:
                object[key] = {{"booleans", Json::array({_in.bit(), _in.bit()})}};
                break;
            default:
                object[key] = 1;
                break;
            }
        }
        return object;
    }

    // One bit of the input per switch, eight to a byte; a set bit turns it on.
    template <size_t N> Json switches(const char* const (&names)[N]) {
        Json object = Json::object();
        unsigned bits = 0;
        for (size_t i = 0; i < N; ++i) {
            if (i % 8 == 0)
                bits = _in.byte();
            if (bits >> i % 8 & 1)
                object[names[i]] = true;
        }
        return object;
    }

    // A count from 0 to `limit`, `zero` for a zero byte, so that a short
    // input still makes a session with something in it.
    size_t count(size_t limit, size_t zero) { return (_in.pick(limit + 1) + zero) % (limit + 1); }

    Json settings() {
        const size_t choice = _in.byte();
        Json settings = {
            {"command", kCommands[choice % countOf(kCommands)]},
            {"process", kProcesses[choice / countOf(kCommands) % countOf(kProcesses)]},
            {"phase",
             kPhases[choice / (countOf(kCommands) * countOf(kProcesses)) % countOf(kPhases)]},
            {"manage", switches(kManage)}};
        Json environment = switches(kEnvironmentSwitches);
        environment["tempDirectory"] = "/tmp/qel/";
        environment["filesDirectory"] = "/tmp/qel/files/";
        environment["catalogPath"] = "/tmp/qel/catalogs/";
        environment["oemPrefix"] = text(kNames, countOf(kNames));
        settings["environment"] = environment;
        const uint8_t host = _in.byte();
        settings["host"] = Json::object();
        for (size_t i = 0; i < countOf(kHostSwitches); ++i)
            if (host >> i & 1)
                settings["host"][kHostSwitches[i]] = true;
        if (host & 0x10)
            settings["host"]["stagingPath"] = "/stage";
        settings["properties"] = Json::object();
        for (size_t i = 0; i < countOf(kSessionProperties); ++i)
            if (host >> (4 + i) & 1)
                settings["properties"][kSessionProperties[i]] = true;
        return settings;
    }

    void items(Json& items) {
        items = Json::array();
        for (size_t i = 0, itemCount = 1 + count(_limits.items - 1, 1); i < itemCount; ++i) {
            Json item = {{"name", name(i)}, {"properties", properties()}};
            const uint8_t shape = _in.byte();
            if (shape & 1)
                item["catalogComponent"] = true;
            if (shape & 2)
                item["maskStatus"] = -1;
            if (shape & 4)
                item["forms"] = {{{"type", "vt_item_master"}, {"properties", properties()}}};
            _items.push_back(item["name"]);
            items.push_back(item);
        }
    }

    void documents(Json& documents) {
        documents = Json::array();
        for (size_t i = 0, documentCount = 1 + count(_limits.documents - 1, 2); i < documentCount;
             ++i) {
            // A zero byte makes a product first, then parts.
            const size_t type =
                (_in.pick(countOf(kDocumentTypes)) + (i == 0 ? 0 : 1)) % countOf(kDocumentTypes);
            const std::string name = text(kNames, countOf(kNames)) + "_" + std::to_string(i) +
                                     kDocumentTypes[type].extension;
            Json document = {{"name", name}, {"type", kDocumentTypes[type].name}};
            const uint8_t shape = _in.byte();
            if (!(shape & 1))
                document["item"] = _items[(i + _in.pick(_items.size())) % _items.size()];
            document["files"] = Json::array({name});
            if (shape & 2)
                document["files"].push_back({{"name", name + ".txt"}, {"reference", "notes"}});
            document["properties"] = properties();
            if (shape & 4) {
                document["host"] = false;
                document["registered"] = (shape & 8) != 0;
            } else {
                hostAnswers(document, type);
            }
            _documents.push_back(name);
            _documentTypes.push_back(type);
            _hostDocuments.push_back(!(shape & 4));
            documents.push_back(document);
        }
    }

    void hostAnswers(Json& document, size_t type) {
        const uint8_t answers = _in.byte();
        if (answers & 1)
            document["documentUID"] = value();
        if (answers & 2)
            document["namedRefUID"] = value();
        if (answers & 4)
            document["primary"] = true;
        if (answers & 8)
            document["brokenIcon"] = true;
        if (answers & 16)
            document["catalogComponent"] = true;
        if (answers & 32)
            document["maskStatus"] = -1;
        if (type == kDesignTable)
            document["designTableVisible"] = (answers & 128) != 0;
        if (kDocumentTypes[type].name == std::string("drawing"))
            document["sheets"] = Json::array({"Sheet.1", value()}),
            document["activeSheet"] = "Sheet.1";
        if (answers & 64)
            document["scenes"] = Json::array({"Exploded"});
    }

    // What documents refer to, once every document has its name.
    void documentRelations(Json& documents) {
        for (size_t i = 0; i < documents.size(); ++i) {
            Json& document = documents[i];
            const uint8_t relations = _in.byte();
            if (relations & 1) {
                const size_t table = _in.pick(_documents.size());
                if (_documentTypes[table] == kDesignTable && table != i)
                    document["designTables"] = {{{"document", _documents[table]},
                                                 {"name", value()},
                                                 {"properties", properties(true)}}};
            }
            if (relations & 2)
                document["alternateShapes"] = {{{"name", label()}, {"document", otherDocument()}}};
            if (relations & 4)
                document["secondaries"] = {
                    {{"document", otherDocument()}, {"properties", properties(true)}}};
            // Only a document of the host answers these.
            if ((relations & 8) && _hostDocuments[i])
                document["externalFiles"] = Json::array({otherDocument()});
            if ((relations & 16) && _hostDocuments[i])
                document["stackings"] = stackings();
            if (relations & 32)
                document["links"] = links();
            if (relations & 64) {
                document["publications"] = Json::array({label()});
                document["bodies"] = Json::array({"PartBody"});
            }
            if (relations & 128)
                document["linkedDocuments"] = {
                    {{"reference", "catpart"}, {"document", otherDocument()}}};
        }
    }

    const std::string& otherDocument() { return _documents[_in.pick(_documents.size())]; }

    // The names the composites answers use, so that their blocks find the
    // host's plies.
    Json stackings() {
        static const char* const stacking[] = {"Stacking.1", "Stacking.2"};
        static const char* const group[] = {"Plies Group.1", "Group.1"};
        static const char* const sequence[] = {"Sequence.1"};
        static const char* const plies[] = {"Ply.1", "Ply.2", "Ply.9"};
        Json ply = {{"name", text(plies, countOf(plies))},
                    {"status", _in.pick(4) == 0 ? -1 : 0},
                    {"material", value()},
                    {"representation3D", value()},
                    {"representation2D", value()},
                    {"cogX", value()},
                    {"direction", value()},
                    {"mass", value()}};
        Json sequences = {{"name", text(sequence, countOf(sequence))},
                          {"plies", Json::array({ply})}};
        Json groups = {{"name", text(group, countOf(group))},
                       {"sequences", Json::array({sequences})}};
        return Json::array({{{"name", text(stacking, countOf(stacking))},
                             {"pliesGroups", Json::array({groups})}}});
    }

    Json links() {
        Json link = {{"name", text(kPropertyNames, countOf(kPropertyNames))}};
        if (_in.bit())
            link["item"] = _items[_in.pick(_items.size())];
        else
            link["document"] = otherDocument();
        link["properties"] = properties(true);
        return Json::array({link});
    }

    void workspaces(Json& workspaces) {
        workspaces = Json::array();
        const size_t workspaceCount = count(_limits.workspaces, 1);
        const size_t active = _in.pick(workspaceCount + 1);
        for (size_t i = 0; i < workspaceCount; ++i) {
            const size_t root = _in.pick(_documents.size());
            Json workspace = {{"name", "W" + std::to_string(i) + "_" + _documents[root]},
                              {"document", _documents[root]}};
            const std::string rootItem = _items[_in.pick(_items.size())];
            workspace["item"] = rootItem;
            const uint8_t shape = _in.byte();
            if (shape & 1)
                workspace["type"] = "catalog";
            if (i == active)
                workspace["active"] = true;
            if (shape & 2)
                workspace["visible"] = false;
            if (shape & 4)
                workspace["configuration"] = Json::array({"RevisionRule=Latest Working"});
            workspace["properties"] = properties();
            _occurrenceBudget = _limits.occurrences;
            std::vector<std::string> contexts{rootItem};
            workspace["occurrences"] = occurrences(contexts, 0);
            workspaces.push_back(workspace);
        }
    }

    // A small tree: three levels deep at most.
    Json occurrences(std::vector<std::string>& contexts, int depth) {
        Json list = Json::array();
        for (size_t siblings = depth < 3 ? count(2, 2) : 0; siblings > 0 && _occurrenceBudget > 0;
             --siblings) {
            --_occurrenceBudget;
            const std::string item =
                _items[(_occurrences + _in.pick(_items.size())) % _items.size()];
            const std::string serial = std::to_string(++_occurrences);
            Json occurrence = {{"instance", text(kNames, countOf(kNames)) + "." + serial},
                               {"uid", "u-" + serial},
                               {"item", item}};
            const uint8_t shape = _in.byte();
            // The writer describes an occurrence through its relative
            // occurrence, and a modified one fully: both unless asked not to.
            if (!(shape & 1)) {
                occurrence["relative"] = "R-" + serial;
                if (shape & 2)
                    occurrence["matrix"] = matrix();
            }
            occurrence["properties"] = properties();
            if (!occurrence["properties"].contains("Modified_Flag"))
                occurrence["properties"]["Modified_Flag"] = 1;
            if (shape & 4) {
                occurrence["views"] = {{{"context", contexts[_in.pick(contexts.size())]},
                                        {"visible", (shape & 128) == 0},
                                        {"hide", (shape & 128) != 0},
                                        {"matrix", matrix()}}};
            }
            if (shape & 8)
                occurrence["componentShapes"] = {
                    {{"name", label()}, {"document", otherDocument()}}};
            if (shape & 16) {
                occurrence["sceneContexts"] = {{{"name", "Exploded"},
                                                {"hide", shape & 2 ? "TRUE" : "FALSE"},
                                                {"matrix", "1 0 0 0 1 0 0 0 1 0 0 0"}}};
            }
            if (shape & 32)
                occurrence["links"] = links();
            if (shape & 64)
                occurrence["maskStatus"] = -1;
            contexts.push_back(item);
            occurrence["children"] = occurrences(contexts, depth + 1);
            contexts.pop_back();
            list.push_back(occurrence);
        }
        return list;
    }

    ByteSource& _in;
    bool _raw;
    ComposeLimits _limits;
    std::vector<std::string> _items;
    std::vector<std::string> _documents;
    std::vector<size_t> _documentTypes;
    std::vector<bool> _hostDocuments;
    size_t _occurrenceBudget = 0;
    int _occurrences = 0;
};

} // namespace

ComposedSession composeSession(ByteSource& bytes, bool allowRaw, const ComposeLimits& limits) {
    ComposedSession composed;
    composed.raw = allowRaw && bytes.bit();
    composed.text = Composer(bytes, composed.raw, limits).compose().dump();
    return composed;
}

void applyProcessChoice(int selector) {
    constexpr size_t commands = countOf(kCommands);
    constexpr size_t processes = countOf(kProcesses);
    static_assert(kProcessChoices == commands * processes * 2, "every choice once");
    const size_t choice = static_cast<size_t>(selector) % kProcessChoices;
    std::string error;
    if (!qelApplyCommand(kCommands[choice % commands], kProcesses[choice / commands % processes],
                         choice / (commands * processes) ? "2" : "1", error)) {
        std::fprintf(stderr, "qel fuzz: %s\n", error.c_str());
        std::abort();
    }
}

} // namespace qelfuzz
