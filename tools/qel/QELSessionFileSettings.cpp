// The "settings" of a session file: which command, process and phase run,
// the process switches, the environment, the CAD host session's answers and
// the session's own properties. Also the names the command line shares with
// the file (qelApplyCommand).

#include <vector>

#include "CV5CAAQELSession.h"
#include "ENVManager.h"
#include "PROCManager.h"
#include "QELSession.h"
#include "QELSessionFile.h"
#include "QELSessionFileBuilder.h"

namespace {

using Setter = void (*)(bool);

// One name of the command line and of the file, and the flags it sets. A
// category (commands, processes, phases) is cleared as a whole before its
// new names are set, so that one run never answers two commands.
struct NamedFlags {
    const char* name;
    std::vector<Setter> setters;
};

const std::vector<NamedFlags>& commands() {
    static const std::vector<NamedFlags> table = {
        {"save", {&PROCManager::setIsCommandSave}},
        {"save-as", {&PROCManager::setIsCommandSaveAs}},
        {"save-selected", {&PROCManager::setIsCommandSaveSelected}},
        {"import", {&PROCManager::setIsCommandImport}},
        {"create-spreadsheet", {&PROCManager::setIsCommandCreateSpreadsheet}},
        {"synchronize-active-shapes", {&PROCManager::setIsCommandSynchronizeActiveShapes}},
        {"update-status", {&PROCManager::setIsCommandUpdateStatus}},
        {"state-details-update", {&PROCManager::setIsCommandStateDetailsUpdate}},
    };
    return table;
}

const std::vector<NamedFlags>& processes() {
    static const std::vector<NamedFlags> table = {
        {"state-details", {&PROCManager::setIsProcessStateDetails}},
        {"state-details-factory", {&PROCManager::setIsProcessStateDetailsFactory}},
        {"state-details-update", {&PROCManager::setIsProcessStateDetailsUpdate}},
        {"life-cycle-factory", {&PROCManager::setIsProcessLifeCycleFactory}},
        {"brr-save", {&PROCManager::setIsProcessBRRSave}},
        {"checkout", {&PROCManager::setIsProcessCheckout}},
    };
    return table;
}

const std::vector<NamedFlags>& phases() {
    static const std::vector<NamedFlags> table = {
        {"1", {&PROCManager::setIsPhasePhase1}},
        {"2", {&PROCManager::setIsPhasePhase2}},
    };
    return table;
}

void clearAll(const std::vector<NamedFlags>& table) {
    for (const NamedFlags& entry : table)
        for (Setter set : entry.setters) set(false);
}

// "none" clears the category; several processes may run at once (a
// state-details factory run that also counts as a state-details run), given
// as names joined by commas.
bool resolveNames(const std::string& names, const std::vector<NamedFlags>& table, const char* category,
                  bool several, std::vector<const NamedFlags*>& out, std::string& error) {
    out.clear();
    if (names == "none") return true;
    size_t start = 0;
    while (true) {
        const size_t comma = several ? names.find(',', start) : std::string::npos;
        const std::string name = names.substr(start, comma == std::string::npos ? std::string::npos : comma - start);
        const NamedFlags* found = nullptr;
        for (const NamedFlags& entry : table) {
            if (name == entry.name) found = &entry;
        }
        if (!found) {
            error = std::string("unknown ") + category + " \"" + name + "\"; expected none";
            for (const NamedFlags& entry : table) error += std::string(", ") + entry.name;
            if (several) error += " (several joined by commas)";
            return false;
        }
        out.push_back(found);
        if (comma == std::string::npos) return true;
        start = comma + 1;
    }
}

void setNames(const std::vector<NamedFlags>& table, const std::vector<const NamedFlags*>& chosen) {
    clearAll(table);
    for (const NamedFlags* entry : chosen)
        for (Setter set : entry->setters) set(true);
}

// ---- switches and texts, named in the file as the services ask them ----------------

struct Switch {
    const char* key;
    Setter set;
};

struct Text {
    const char* key;
    void (*set)(const CATUnicodeString&);
};

const Switch kProcessSwitches[] = {
    {"manageDescForEmptyQEL", &PROCManager::setManageDescForEmptyQEL},
    {"manageSavableStatusForNonSave", &PROCManager::setManageSavableStatusForNonSave},
    {"manageCATIAIcons", &PROCManager::setManageCATIAIcons},
    {"manageFlexibility", &PROCManager::setManageFlexibility},
    {"manageHideShow", &PROCManager::setManageHideShow},
    {"manageScenes", &PROCManager::setManageScenes},
    {"manageCatalog", &PROCManager::setManageCatalog},
    {"manageExternalFiles", &PROCManager::setManageExternalFiles},
    {"manageInvisibleBrokenIcon", &PROCManager::setManageInvisibleBrokenIcon},
    {"isCatalogStagingManaged", &PROCManager::setIsCatalogStagingManaged},
};

const Switch kEnvironmentSwitches[] = {
    {"isSaveHideShowManagedOnImport", &ENVManager::setIsSaveHideShowManagedOnImport},
    {"isSaveScenesManagedOnSave", &ENVManager::setIsSaveScenesManagedOnSave},
    {"isManageCatiaStatusInCatiaTree", &ENVManager::setIsManageCatiaStatusInCatiaTree},
    {"isCompositeManaged", &ENVManager::setIsCompositeManaged},
    {"manageOccmappVtproperties", &ENVManager::setManageOccmappVtproperties},
    {"manageForeignFilesOnSave", &ENVManager::setManageForeignFilesOnSave},
};

const Text kEnvironmentTexts[] = {
    {"catiaEnvironmentName", &ENVManager::setCatiaEnvironmentName},
    {"catiaFullVersion", &ENVManager::setCatiaFullVersion},
    {"catiaVectorialExtensions", &ENVManager::setCatiaVectorialExtensions},
    {"tempDirectory", &ENVManager::setTempDirectory},
    {"filesDirectory", &ENVManager::setFilesDirectory},
    {"catalogPath", &ENVManager::setCatalogPath},
    {"oemPrefix", &ENVManager::setOemPrefix},
};

template <size_t N>
bool isSwitch(const std::string& key, const Switch (&table)[N], Setter& set) {
    for (const Switch& entry : table) {
        if (key == entry.key) {
            set = entry.set;
            return true;
        }
    }
    return false;
}

template <size_t N>
std::string keyList(const Switch (&table)[N]) {
    std::string out;
    for (const Switch& entry : table) out += (out.empty() ? "" : ", ") + std::string(entry.key);
    return out;
}

bool boolValue(const QELJson& value, const QELJsonPath& path) {
    if (!value.is_boolean()) qelSessionFault(path, "expected a boolean (true or false)");
    return value.get<bool>();
}

void applyProcessSwitches(const QELJson& manage, const QELJsonPath& path) {
    qelExpectObject(manage, path, "an object of process switches");
    for (const auto& entry : manage.items()) {
        Setter set = nullptr;
        if (!isSwitch(entry.key(), kProcessSwitches, set))
            qelSessionFault(path / entry.key(), "unknown process switch; expected one of " + keyList(kProcessSwitches));
        set(boolValue(entry.value(), path / entry.key()));
    }
}

void applyEnvironment(const QELJson& environment, const QELJsonPath& path) {
    qelExpectObject(environment, path, "an object of environment settings");
    for (const auto& entry : environment.items()) {
        const QELJsonPath at = path / entry.key();
        Setter set = nullptr;
        if (isSwitch(entry.key(), kEnvironmentSwitches, set)) {
            set(boolValue(entry.value(), at));
            continue;
        }
        bool found = false;
        for (const Text& text : kEnvironmentTexts) {
            if (entry.key() != text.key) continue;
            text.set(qelText(qelExpectString(entry.value(), at)));
            found = true;
        }
        if (found) continue;
        std::string expected = keyList(kEnvironmentSwitches);
        for (const Text& text : kEnvironmentTexts) expected += std::string(", ") + text.key;
        qelSessionFault(at, "unknown environment setting; expected one of " + expected);
    }
}

void applyHostSession(const QELJson& host, const QELJsonPath& path) {
    qelExpectObject(host, path, "an object of CAD session answers");
    qelCheckKeys(host, path,
                 {"stagingPath", "saveAllSheetsInOneFile", "isThereDrawing", "manageFlexibility", "manageHideShow"});
    CV5CAAQELSession* session = CV5CAAQELSession::getCATIASessionInstance();
    session->setStagingPath(qelText(qelString(host, path, "stagingPath")));
    session->setSaveAllSheetsInOneFileValue(qelBool(host, path, "saveAllSheetsInOneFile", false));
    session->set_is_there_drawing(qelBool(host, path, "isThereDrawing", false));
    session->setAsManageFlexibility(qelBool(host, path, "manageFlexibility", false));
    session->setAsManageHideShow(qelBool(host, path, "manageHideShow", false));
}

// One of command, process, phase: the file's names are the command line's.
void applyNamed(const QELJson& settings, const QELJsonPath& path, const char* key) {
    const QELJson* value = qelMember(settings, key);
    if (!value) return;
    const std::string name = qelExpectString(*value, path / key);
    if (name.empty()) return;
    const std::string command = key == std::string("command") ? name : "";
    const std::string process = key == std::string("process") ? name : "";
    const std::string phase = key == std::string("phase") ? name : "";
    std::string error;
    if (!qelApplyCommand(command, process, phase, error)) qelSessionFault(path / key, error);
}

} // namespace

bool qelApplyCommand(const std::string& command, const std::string& process, const std::string& phase,
                     std::string& error) {
    // Every name is checked before any flag changes: a refused call leaves
    // the settings as they were.
    std::vector<const NamedFlags*> chosenCommand, chosenProcesses, chosenPhase;
    if (!command.empty() && !resolveNames(command, commands(), "command", false, chosenCommand, error)) return false;
    if (!process.empty() && !resolveNames(process, processes(), "process", true, chosenProcesses, error)) return false;
    if (!phase.empty() && !resolveNames(phase, phases(), "phase", false, chosenPhase, error)) return false;
    if (!command.empty()) setNames(commands(), chosenCommand);
    if (!process.empty()) setNames(processes(), chosenProcesses);
    if (!phase.empty()) setNames(phases(), chosenPhase);
    return true;
}

void qelBuildSettings(const QELJson& settings, const QELJsonPath& path) {
    // The file says everything: what it leaves out is the services' default.
    PROCManager::reset();
    ENVManager::reset();
    CV5CAAQELSession::reset();

    qelExpectObject(settings, path, "an object of settings");
    qelCheckKeys(settings, path, {"command", "process", "phase", "manage", "environment", "host", "properties"});
    applyNamed(settings, path, "command");
    applyNamed(settings, path, "process");
    applyNamed(settings, path, "phase");
    if (const QELJson* manage = qelMember(settings, "manage")) applyProcessSwitches(*manage, path / "manage");
    if (const QELJson* environment = qelMember(settings, "environment"))
        applyEnvironment(*environment, path / "environment");
    if (const QELJson* host = qelMember(settings, "host")) applyHostSession(*host, path / "host");
    qelApplyPropertiesOf(*QELSession::getInstance(), settings, path);
}
