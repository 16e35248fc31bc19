#ifndef ENVManager_H
#define ENVManager_H

#include "CATUnicodeString.h"

// Stand-in for the in-house environment service: the site and installation
// settings that the data model asks for (directories, the OEM prefix, the
// host's name and version, and the switches that turn optional parts of a
// description on). In production they come from the integration's
// environment; here a test or the command-line program sets them.
//
// Every setting is process-wide; texts start empty and switches false, and
// reset() puts them all back there.
class ENVManager {
public:
    // Name of the host environment the session runs in.
    static CATUnicodeString getCatiaEnvironmentName();
    static void setCatiaEnvironmentName(const CATUnicodeString& value);
    // The host's full version text.
    static CATUnicodeString getCatiaFullVersion();
    static void setCatiaFullVersion(const CATUnicodeString& value);
    // Vector-format extensions of drawings saved sheet by sheet, as one text.
    static CATUnicodeString catiaVectorialExtensions();
    static void setCatiaVectorialExtensions(const CATUnicodeString& value);
    // Temporary directory. Empty until a caller sets it; callers append file names
    // directly, so set it with its trailing separator ("/tmp/qel/").
    static CATUnicodeString getTempDirectory();
    static void setTempDirectory(const CATUnicodeString& value);
    // Directory of the PDM-side files; the staging path of ordinary items.
    static CATUnicodeString getFilesDirectory();
    static void setFilesDirectory(const CATUnicodeString& value);
    // Staging path of catalog components.
    static CATUnicodeString getCatalogPath();
    static void setCatalogPath(const CATUnicodeString& value);
    // Prefix of the OEM's own attribute names ("<prefix>_description").
    static CATUnicodeString getOemPrefix();
    static void setOemPrefix(const CATUnicodeString& value);

    // Whether hide/show overrides are described on import.
    static bool isSaveHideShowManagedOnImport();
    static void setIsSaveHideShowManagedOnImport(bool value);
    // Whether scenes are described on save.
    static bool isSaveScenesManagedOnSave();
    static void setIsSaveScenesManagedOnSave(bool value);
    // Whether statuses are shown in the host's tree (design tables then carry POINTER_ADDRESS).
    static bool isManageCatiaStatusInCatiaTree();
    static void setIsManageCatiaStatusInCatiaTree(bool value);
    // Whether composites are described and updated.
    static bool isCompositeManaged();
    static void setIsCompositeManaged(bool value);
    // Whether instance mapping attributes are described.
    static bool manageOccmappVtproperties();
    static void setManageOccmappVtproperties(bool value);
    // Whether foreign files are fully described and updated on save.
    static bool manageForeignFilesOnSave();
    static void setManageForeignFilesOnSave(bool value);

    // Every text back to empty and every switch back to false.
    static void reset();

    ENVManager() = delete;
};

#endif
