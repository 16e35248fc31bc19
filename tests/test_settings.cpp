#include <gtest/gtest.h>

#include "CleanSessionTest.h"

#include <string>
#include <vector>

#include "ENVManager.h"
#include "PROCManager.h"

namespace {

struct Flag {
    const char* name;
    bool (*get)();
    void (*set)(bool);
};

struct Text {
    const char* name;
    CATUnicodeString (*get)();
    void (*set)(const CATUnicodeString&);
};

#define QEL_FLAG(cls, getter, setter)                                                              \
    Flag { #cls "::" #getter, &cls::getter, &cls::setter }
#define QEL_TEXT(cls, getter, setter)                                                              \
    Text { #cls "::" #getter, &cls::getter, &cls::setter }

const std::vector<Flag>& allFlags() {
    static const std::vector<Flag> flags = {
        QEL_FLAG(PROCManager, isCommandSave, setIsCommandSave),
        QEL_FLAG(PROCManager, isCommandSaveAs, setIsCommandSaveAs),
        QEL_FLAG(PROCManager, isCommandSaveSelected, setIsCommandSaveSelected),
        QEL_FLAG(PROCManager, isCommandImport, setIsCommandImport),
        QEL_FLAG(PROCManager, isCommandCreateSpreadsheet, setIsCommandCreateSpreadsheet),
        QEL_FLAG(PROCManager, isCommandSynchronizeActiveShapes,
                 setIsCommandSynchronizeActiveShapes),
        QEL_FLAG(PROCManager, isCommandUpdateStatus, setIsCommandUpdateStatus),
        QEL_FLAG(PROCManager, isCommandStateDetailsUpdate, setIsCommandStateDetailsUpdate),
        QEL_FLAG(PROCManager, isProcessStateDetails, setIsProcessStateDetails),
        QEL_FLAG(PROCManager, isProcessStateDetailsFactory, setIsProcessStateDetailsFactory),
        QEL_FLAG(PROCManager, isProcessStateDetailsUpdate, setIsProcessStateDetailsUpdate),
        QEL_FLAG(PROCManager, isProcessLifeCycleFactory, setIsProcessLifeCycleFactory),
        QEL_FLAG(PROCManager, isProcessBRRSave, setIsProcessBRRSave),
        QEL_FLAG(PROCManager, isProcessCheckout, setIsProcessCheckout),
        QEL_FLAG(PROCManager, isPhasePhase1, setIsPhasePhase1),
        QEL_FLAG(PROCManager, isPhasePhase2, setIsPhasePhase2),
        QEL_FLAG(PROCManager, manageDescForEmptyQEL, setManageDescForEmptyQEL),
        QEL_FLAG(PROCManager, manageSavableStatusForNonSave, setManageSavableStatusForNonSave),
        QEL_FLAG(PROCManager, manageCATIAIcons, setManageCATIAIcons),
        QEL_FLAG(PROCManager, manageFlexibility, setManageFlexibility),
        QEL_FLAG(PROCManager, manageHideShow, setManageHideShow),
        QEL_FLAG(PROCManager, manageScenes, setManageScenes),
        QEL_FLAG(PROCManager, manageCatalog, setManageCatalog),
        QEL_FLAG(PROCManager, manageExternalFiles, setManageExternalFiles),
        QEL_FLAG(PROCManager, manageInvisibleBrokenIcon, setManageInvisibleBrokenIcon),
        QEL_FLAG(PROCManager, isCatalogStagingManaged, setIsCatalogStagingManaged),
        QEL_FLAG(ENVManager, isSaveHideShowManagedOnImport, setIsSaveHideShowManagedOnImport),
        QEL_FLAG(ENVManager, isSaveScenesManagedOnSave, setIsSaveScenesManagedOnSave),
        QEL_FLAG(ENVManager, isManageCatiaStatusInCatiaTree, setIsManageCatiaStatusInCatiaTree),
        QEL_FLAG(ENVManager, isCompositeManaged, setIsCompositeManaged),
        QEL_FLAG(ENVManager, manageOccmappVtproperties, setManageOccmappVtproperties),
        QEL_FLAG(ENVManager, manageForeignFilesOnSave, setManageForeignFilesOnSave),
    };
    return flags;
}

const std::vector<Text>& allTexts() {
    static const std::vector<Text> texts = {
        QEL_TEXT(ENVManager, getCatiaEnvironmentName, setCatiaEnvironmentName),
        QEL_TEXT(ENVManager, getCatiaFullVersion, setCatiaFullVersion),
        QEL_TEXT(ENVManager, catiaVectorialExtensions, setCatiaVectorialExtensions),
        QEL_TEXT(ENVManager, getTempDirectory, setTempDirectory),
        QEL_TEXT(ENVManager, getFilesDirectory, setFilesDirectory),
        QEL_TEXT(ENVManager, getCatalogPath, setCatalogPath),
        QEL_TEXT(ENVManager, getOemPrefix, setOemPrefix),
    };
    return texts;
}

#undef QEL_FLAG
#undef QEL_TEXT

using SettingsTest = qeltest::CleanSessionTest;

} // namespace

TEST_F(SettingsTest, EverythingStartsOffAndEmpty) {
    for (const Flag& flag : allFlags())
        EXPECT_FALSE(flag.get()) << flag.name;
    for (const Text& text : allTexts())
        EXPECT_TRUE(text.get().IsNull()) << text.name;
}

// Each setter must reach its own answer and no other: a setter wired to the
// wrong field would silently switch another part of a description.
TEST_F(SettingsTest, EachSetterChangesOnlyItsOwnAnswer) {
    for (const Flag& flag : allFlags()) {
        flag.set(true);
        for (const Flag& other : allFlags()) {
            EXPECT_EQ(other.get(), &other == &flag)
                << "after setting " << flag.name << ", " << other.name;
        }
        for (const Text& text : allTexts())
            EXPECT_TRUE(text.get().IsNull()) << text.name;
        flag.set(false);
        EXPECT_FALSE(flag.get()) << flag.name;
    }
    for (const Text& text : allTexts()) {
        text.set(text.name);
        for (const Text& other : allTexts()) {
            EXPECT_EQ(other.get(),
                      &other == &text ? CATUnicodeString(text.name) : CATUnicodeString())
                << "after setting " << text.name << ", " << other.name;
        }
        for (const Flag& flag : allFlags())
            EXPECT_FALSE(flag.get()) << flag.name;
        text.set("");
    }
}

TEST_F(SettingsTest, ResetRestoresEveryDefault) {
    for (const Flag& flag : allFlags())
        flag.set(true);
    for (const Text& text : allTexts())
        text.set("value");
    ENVManager::setOemPrefix("X");
    EXPECT_EQ(ENVManager::getOemPrefix(), CATUnicodeString("X"));
    EXPECT_TRUE(PROCManager::isCommandSave());

    PROCManager::reset();
    for (const Flag& flag : allFlags()) {
        bool isEnvironment = std::string(flag.name).rfind("ENVManager::", 0) == 0;
        EXPECT_EQ(flag.get(), isEnvironment) << flag.name << " after PROCManager::reset";
    }
    EXPECT_EQ(ENVManager::getTempDirectory(), CATUnicodeString("value"));

    ENVManager::reset();
    for (const Flag& flag : allFlags())
        EXPECT_FALSE(flag.get()) << flag.name;
    for (const Text& text : allTexts())
        EXPECT_TRUE(text.get().IsNull()) << text.name;
}
