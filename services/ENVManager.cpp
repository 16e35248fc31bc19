#include "ENVManager.h"

namespace {

// All settings in one place, so that reset() is a single assignment.
struct EnvironmentSettings {
    CATUnicodeString catiaEnvironmentName;
    CATUnicodeString catiaFullVersion;
    CATUnicodeString catiaVectorialExtensions;
    CATUnicodeString tempDirectory;
    CATUnicodeString filesDirectory;
    CATUnicodeString catalogPath;
    CATUnicodeString oemPrefix;
    bool isSaveHideShowManagedOnImport = false;
    bool isSaveScenesManagedOnSave = false;
    bool isManageCatiaStatusInCatiaTree = false;
    bool isCompositeManaged = false;
    bool manageOccmappVtproperties = false;
    bool manageForeignFilesOnSave = false;
};

// Never destroyed: the texts may be asked for during static destruction, after
// an ordinary static would be gone. Reachable, so not counted as a leak.
EnvironmentSettings& settings() {
    static EnvironmentSettings* s = new EnvironmentSettings;
    return *s;
}

} // namespace

CATUnicodeString ENVManager::getCatiaEnvironmentName() { return settings().catiaEnvironmentName; }
void ENVManager::setCatiaEnvironmentName(const CATUnicodeString& value) {
    settings().catiaEnvironmentName = value;
}
CATUnicodeString ENVManager::getCatiaFullVersion() { return settings().catiaFullVersion; }
void ENVManager::setCatiaFullVersion(const CATUnicodeString& value) {
    settings().catiaFullVersion = value;
}
CATUnicodeString ENVManager::catiaVectorialExtensions() {
    return settings().catiaVectorialExtensions;
}
void ENVManager::setCatiaVectorialExtensions(const CATUnicodeString& value) {
    settings().catiaVectorialExtensions = value;
}
CATUnicodeString ENVManager::getTempDirectory() { return settings().tempDirectory; }
void ENVManager::setTempDirectory(const CATUnicodeString& value) {
    settings().tempDirectory = value;
}
CATUnicodeString ENVManager::getFilesDirectory() { return settings().filesDirectory; }
void ENVManager::setFilesDirectory(const CATUnicodeString& value) {
    settings().filesDirectory = value;
}
CATUnicodeString ENVManager::getCatalogPath() { return settings().catalogPath; }
void ENVManager::setCatalogPath(const CATUnicodeString& value) { settings().catalogPath = value; }
CATUnicodeString ENVManager::getOemPrefix() { return settings().oemPrefix; }
void ENVManager::setOemPrefix(const CATUnicodeString& value) { settings().oemPrefix = value; }

bool ENVManager::isSaveHideShowManagedOnImport() {
    return settings().isSaveHideShowManagedOnImport;
}
void ENVManager::setIsSaveHideShowManagedOnImport(bool value) {
    settings().isSaveHideShowManagedOnImport = value;
}
bool ENVManager::isSaveScenesManagedOnSave() { return settings().isSaveScenesManagedOnSave; }
void ENVManager::setIsSaveScenesManagedOnSave(bool value) {
    settings().isSaveScenesManagedOnSave = value;
}
bool ENVManager::isManageCatiaStatusInCatiaTree() {
    return settings().isManageCatiaStatusInCatiaTree;
}
void ENVManager::setIsManageCatiaStatusInCatiaTree(bool value) {
    settings().isManageCatiaStatusInCatiaTree = value;
}
bool ENVManager::isCompositeManaged() { return settings().isCompositeManaged; }
void ENVManager::setIsCompositeManaged(bool value) { settings().isCompositeManaged = value; }
bool ENVManager::manageOccmappVtproperties() { return settings().manageOccmappVtproperties; }
void ENVManager::setManageOccmappVtproperties(bool value) {
    settings().manageOccmappVtproperties = value;
}
bool ENVManager::manageForeignFilesOnSave() { return settings().manageForeignFilesOnSave; }
void ENVManager::setManageForeignFilesOnSave(bool value) {
    settings().manageForeignFilesOnSave = value;
}

void ENVManager::reset() { settings() = EnvironmentSettings(); }
