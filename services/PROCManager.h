#ifndef PROCManager_H
#define PROCManager_H

// Stand-in for the in-house process service: which command, process and phase
// of the integration is running, and which optional behaviours that run asks
// of the data model. In production the command module's context answers; here
// a test or the command-line program sets each answer before building or
// reading a description.
//
// Every answer is a process-wide flag of its own, false until set; the flags
// do not imply one another (a state-details factory run that should also count
// as a state-details run sets both). reset() puts every flag back to false.
class PROCManager {
public:
    // Which command is running.
    static bool isCommandSave();
    static void setIsCommandSave(bool value);
    static bool isCommandSaveAs();
    static void setIsCommandSaveAs(bool value);
    static bool isCommandSaveSelected();
    static void setIsCommandSaveSelected(bool value);
    static bool isCommandImport();
    static void setIsCommandImport(bool value);
    static bool isCommandCreateSpreadsheet();
    static void setIsCommandCreateSpreadsheet(bool value);
    static bool isCommandSynchronizeActiveShapes();
    static void setIsCommandSynchronizeActiveShapes(bool value);
    static bool isCommandUpdateStatus();
    static void setIsCommandUpdateStatus(bool value);
    static bool isCommandStateDetailsUpdate();
    static void setIsCommandStateDetailsUpdate(bool value);

    // Which process is running.
    static bool isProcessStateDetails();
    static void setIsProcessStateDetails(bool value);
    // State-details factory: the block is built from the active CAD document, without a
    // current workspace.
    static bool isProcessStateDetailsFactory();
    static void setIsProcessStateDetailsFactory(bool value);
    static bool isProcessStateDetailsUpdate();
    static void setIsProcessStateDetailsUpdate(bool value);
    static bool isProcessLifeCycleFactory();
    static void setIsProcessLifeCycleFactory(bool value);
    static bool isProcessBRRSave();
    static void setIsProcessBRRSave(bool value);
    static bool isProcessCheckout();
    static void setIsProcessCheckout(bool value);

    // Which phase of a save is running: phase 1 describes the session, phase 2 completes it.
    static bool isPhasePhase1();
    static void setIsPhasePhase1(bool value);
    static bool isPhasePhase2();
    static void setIsPhasePhase2(bool value);

    // What the running process asks the model to take care of.
    // The model is being built from an empty session (only workspaces and drawings are read).
    static bool manageDescForEmptyQEL();
    static void setManageDescForEmptyQEL(bool value);
    // The active document is determined, and masks updated, outside a save.
    static bool manageSavableStatusForNonSave();
    static void setManageSavableStatusForNonSave(bool value);
    // Masks (the host's status icons) are updated from the answer.
    static bool manageCATIAIcons();
    static void setManageCATIAIcons(bool value);
    // Absolute matrices of flexible sub-assemblies are described.
    static bool manageFlexibility();
    static void setManageFlexibility(bool value);
    static bool manageHideShow();
    static void setManageHideShow(bool value);
    static bool manageScenes();
    static void setManageScenes(bool value);
    // Catalog processes: a catalog document stands in for a workspace's parent.
    static bool manageCatalog();
    static void setManageCatalog(bool value);
    static bool manageExternalFiles();
    static void setManageExternalFiles(bool value);
    // Broken-icon occurrences and their subtrees are left out of a description.
    static bool manageInvisibleBrokenIcon();
    static void setManageInvisibleBrokenIcon(bool value);
    // The active workspace's staging path follows its item (catalog or files directory).
    static bool isCatalogStagingManaged();
    static void setIsCatalogStagingManaged(bool value);

    // Every flag back to false: no command, no process, no phase, nothing managed.
    static void reset();

    PROCManager() = delete;
};

#endif
