#include "PROCManager.h"

namespace {

// All answers in one place, so that reset() is a single assignment.
struct ProcessSettings {
    bool isCommandSave = false;
    bool isCommandSaveAs = false;
    bool isCommandSaveSelected = false;
    bool isCommandImport = false;
    bool isCommandCreateSpreadsheet = false;
    bool isCommandSynchronizeActiveShapes = false;
    bool isCommandUpdateStatus = false;
    bool isCommandStateDetailsUpdate = false;
    bool isProcessStateDetails = false;
    bool isProcessStateDetailsFactory = false;
    bool isProcessStateDetailsUpdate = false;
    bool isProcessLifeCycleFactory = false;
    bool isProcessBRRSave = false;
    bool isProcessCheckout = false;
    bool isPhasePhase1 = false;
    bool isPhasePhase2 = false;
    bool manageDescForEmptyQEL = false;
    bool manageSavableStatusForNonSave = false;
    bool manageCATIAIcons = false;
    bool manageFlexibility = false;
    bool manageHideShow = false;
    bool manageScenes = false;
    bool manageCatalog = false;
    bool manageExternalFiles = false;
    bool manageInvisibleBrokenIcon = false;
    bool isCatalogStagingManaged = false;
};

// Plain flags: nothing to destroy, so it is safe to ask during static destruction.
ProcessSettings g_settings;

} // namespace

bool PROCManager::isCommandSave() { return g_settings.isCommandSave; }
void PROCManager::setIsCommandSave(bool value) { g_settings.isCommandSave = value; }
bool PROCManager::isCommandSaveAs() { return g_settings.isCommandSaveAs; }
void PROCManager::setIsCommandSaveAs(bool value) { g_settings.isCommandSaveAs = value; }
bool PROCManager::isCommandSaveSelected() { return g_settings.isCommandSaveSelected; }
void PROCManager::setIsCommandSaveSelected(bool value) { g_settings.isCommandSaveSelected = value; }
bool PROCManager::isCommandImport() { return g_settings.isCommandImport; }
void PROCManager::setIsCommandImport(bool value) { g_settings.isCommandImport = value; }
bool PROCManager::isCommandCreateSpreadsheet() { return g_settings.isCommandCreateSpreadsheet; }
void PROCManager::setIsCommandCreateSpreadsheet(bool value) {
    g_settings.isCommandCreateSpreadsheet = value;
}
bool PROCManager::isCommandSynchronizeActiveShapes() {
    return g_settings.isCommandSynchronizeActiveShapes;
}
void PROCManager::setIsCommandSynchronizeActiveShapes(bool value) {
    g_settings.isCommandSynchronizeActiveShapes = value;
}
bool PROCManager::isCommandUpdateStatus() { return g_settings.isCommandUpdateStatus; }
void PROCManager::setIsCommandUpdateStatus(bool value) { g_settings.isCommandUpdateStatus = value; }
bool PROCManager::isCommandStateDetailsUpdate() { return g_settings.isCommandStateDetailsUpdate; }
void PROCManager::setIsCommandStateDetailsUpdate(bool value) {
    g_settings.isCommandStateDetailsUpdate = value;
}

bool PROCManager::isProcessStateDetails() { return g_settings.isProcessStateDetails; }
void PROCManager::setIsProcessStateDetails(bool value) { g_settings.isProcessStateDetails = value; }
bool PROCManager::isProcessStateDetailsFactory() { return g_settings.isProcessStateDetailsFactory; }
void PROCManager::setIsProcessStateDetailsFactory(bool value) {
    g_settings.isProcessStateDetailsFactory = value;
}
bool PROCManager::isProcessStateDetailsUpdate() { return g_settings.isProcessStateDetailsUpdate; }
void PROCManager::setIsProcessStateDetailsUpdate(bool value) {
    g_settings.isProcessStateDetailsUpdate = value;
}
bool PROCManager::isProcessLifeCycleFactory() { return g_settings.isProcessLifeCycleFactory; }
void PROCManager::setIsProcessLifeCycleFactory(bool value) {
    g_settings.isProcessLifeCycleFactory = value;
}
bool PROCManager::isProcessBRRSave() { return g_settings.isProcessBRRSave; }
void PROCManager::setIsProcessBRRSave(bool value) { g_settings.isProcessBRRSave = value; }
bool PROCManager::isProcessCheckout() { return g_settings.isProcessCheckout; }
void PROCManager::setIsProcessCheckout(bool value) { g_settings.isProcessCheckout = value; }

bool PROCManager::isPhasePhase1() { return g_settings.isPhasePhase1; }
void PROCManager::setIsPhasePhase1(bool value) { g_settings.isPhasePhase1 = value; }
bool PROCManager::isPhasePhase2() { return g_settings.isPhasePhase2; }
void PROCManager::setIsPhasePhase2(bool value) { g_settings.isPhasePhase2 = value; }

bool PROCManager::manageDescForEmptyQEL() { return g_settings.manageDescForEmptyQEL; }
void PROCManager::setManageDescForEmptyQEL(bool value) { g_settings.manageDescForEmptyQEL = value; }
bool PROCManager::manageSavableStatusForNonSave() {
    return g_settings.manageSavableStatusForNonSave;
}
void PROCManager::setManageSavableStatusForNonSave(bool value) {
    g_settings.manageSavableStatusForNonSave = value;
}
bool PROCManager::manageCATIAIcons() { return g_settings.manageCATIAIcons; }
void PROCManager::setManageCATIAIcons(bool value) { g_settings.manageCATIAIcons = value; }
bool PROCManager::manageFlexibility() { return g_settings.manageFlexibility; }
void PROCManager::setManageFlexibility(bool value) { g_settings.manageFlexibility = value; }
bool PROCManager::manageHideShow() { return g_settings.manageHideShow; }
void PROCManager::setManageHideShow(bool value) { g_settings.manageHideShow = value; }
bool PROCManager::manageScenes() { return g_settings.manageScenes; }
void PROCManager::setManageScenes(bool value) { g_settings.manageScenes = value; }
bool PROCManager::manageCatalog() { return g_settings.manageCatalog; }
void PROCManager::setManageCatalog(bool value) { g_settings.manageCatalog = value; }
bool PROCManager::manageExternalFiles() { return g_settings.manageExternalFiles; }
void PROCManager::setManageExternalFiles(bool value) { g_settings.manageExternalFiles = value; }
bool PROCManager::manageInvisibleBrokenIcon() { return g_settings.manageInvisibleBrokenIcon; }
void PROCManager::setManageInvisibleBrokenIcon(bool value) {
    g_settings.manageInvisibleBrokenIcon = value;
}
bool PROCManager::isCatalogStagingManaged() { return g_settings.isCatalogStagingManaged; }
void PROCManager::setIsCatalogStagingManaged(bool value) {
    g_settings.isCatalogStagingManaged = value;
}

void PROCManager::reset() { g_settings = ProcessSettings(); }
