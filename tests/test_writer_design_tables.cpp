#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "CV5CAAQELDocument.h"
#include "QELDMToXMLAssemblyAccess.h"
#include "QELDocument.h"
#include "QELElementNames.h"
#include "QELLink.h"
#include "QELLinkType.h"

using namespace assembly_test;
typedef QELDMToXMLAssemblyAccess Access;

class DesignTableWriterTest : public AssemblyWriterTest {};

namespace {

// An owner with one design table that has every property a block can show,
// so that which elements appear depends on the process alone.
struct DesignTableModel {
    QELDocument* owner = nullptr;
    CV5CAAQELDocument* table = nullptr;
    CV5CAAQELDocument* hostOwner = nullptr; // the owner as the host sees it

    explicit DesignTableModel(EnumDocumentType ownerType = EnumDocumentType_Part) {
        owner = QELLookups::firstDocument(itemWithFile("Shaft", "Shaft.CATPart", ownerType));
        table = addTable("Sizes.xls", "!Sheet 1!!!A1!");
        auto* item = QELModelHeap::adopt(new QELItem("Sizes"));
        item->addStringProperty("Part_Number", "DT-001");
        item->addStringProperty("ItemRev_UID", "IRU-1");
        table->linkItem(QELLinkType::LINKNAME_PARENT, item);
        for (const char* p : {"DST_UID", "DST_Version", "Date_Last_Modification", "NamedRef_UID"}) {
            table->addStringProperty(p, std::string(p) + "-1");
        }
        table->addStringProperty("Dat_File_Version", "3");
        table->addStringProperty("Type", "Cgr");
        table->addIntegerProperty("MAJ", 0);
        table->addIntegerProperty("Modified_Flag", 1);
        setStrings(table, QELDocument::kMappingAttributes, {"PartNumber", "DT-001"});
        setStrings(table, QELDocument::kOEMMappingAttributes, {"PartNumber", "DT-001"});
        for (const char* array : {"Sheet", "Cfg", "CheckSum"}) table->addStringArrayProperty(array, "x");
        auto* external = QELModelHeap::adopt(new QELDocument("notes.txt"));
        external->addStringProperty("Doc_Old_File_Name", "notes.txt");
        table->addExternalFileDocument(QELModelHeap::adopt(new QELLink(19, "external_file", table, external)));

        hostOwner = QELModelHeap::adopt(new CV5CAAQELDocument("Shaft.CATPart", ownerType));
        auto* ownerItem = QELModelHeap::adopt(new QELItem("Shaft"));
        ownerItem->addStringProperty("Part_Number", "SHF-010");
        hostOwner->setDefaultItem(ownerItem);
        hostOwner->setDefaultFile(QELLookups::firstFile(owner));
    }

    // A design table of the owner, joined to it both ways.
    CV5CAAQELDocument* addTable(const char* fileName, const char* map) {
        auto* dt = QELModelHeap::adopt(new CV5CAAQELDocument(fileName, EnumDocumentType_DesignTable));
        QELFile* file = dt->createFile("catdesigntable", fileName);
        file->addStringProperty("File_Name", fileName);
        file->addStringProperty("fullPathName", fileName); // the state-details factory's name
        owner->addDesignTable(dt);
        QELLink* link = owner->addGRMDocumentLink("catdesigntable", dt);
        link->addIntegerProperty("Sheet", 2);
        link->addIntegerProperty("Cfg", 0);
        link->addStringProperty("DTMap", map);
        return dt;
    }

    Lines describe(unsigned char flag = 0) {
        return written([&](QELDMToXML& w) { Access::designTable(w, table, hostOwner, flag); });
    }
};

} // namespace

TEST_F(DesignTableWriterTest, BlockFollowsTheProcessRowByRow) {
    const std::string head =
        "Part_Number|DST_UID|Type|NamedRef_UID|ItemRev_UID|File_Name|File_Version|Check_Action|MAJ";
    const std::string info = "|DT_Sheets|DT_Cfgs|DT_CfgCksums";
    struct {
        std::function<void()> setUp;
        std::string children;
    } cases[] = {
        {[] {
             PROCManager::setIsCommandSave(true);
             PROCManager::setIsPhasePhase1(true);
         },
         "POINTER_ADDRESS|" + head + "|Modified_Flag|Mapping_Attribut" + info}, // parents only on Save As
        {[] {
             PROCManager::setIsCommandSaveAs(true);
             PROCManager::setIsPhasePhase1(true);
         },
         "POINTER_ADDRESS|Parent_Part_Number|Parent_Doc_Name|" + head + "|Modified_Flag|Mapping_Attribut" + info},
        {[] {
             PROCManager::setIsCommandSaveSelected(true);
             PROCManager::setIsPhasePhase2(true);
         },
         QELElement::Externals},
        {[] { PROCManager::setIsCommandCreateSpreadsheet(true); },
         "Parent_Part_Number|Parent_Doc_Name|" + head + "|Modified_Flag|Mapping_Attribut" + info},
        {[] { PROCManager::setIsCommandImport(true); }, "POINTER_ADDRESS|Parent_Part_Number|Parent_Doc_Name|" + head +
                                                            "|Modified_Flag|Mapping_Attribut|Externals" + info},
        {[] { PROCManager::setIsProcessStateDetailsFactory(true); }, head + "|Modified_Flag|Mapping_Attribut"},
        {[] {
             PROCManager::setIsProcessStateDetailsFactory(true);
             PROCManager::setIsProcessStateDetails(true);
             ENVManager::setIsManageCatiaStatusInCatiaTree(true);
         },
         "POINTER_ADDRESS|" + head + "|Modified_Flag|IsDocSelected|Mapping_Attribut"},
        {[] { PROCManager::setIsProcessLifeCycleFactory(true); },
         "Part_Number|DST_UID|NamedRef_UID|ItemRev_UID|File_Name|File_Version|Check_Action|MAJ"},
        {[] { PROCManager::setIsProcessBRRSave(true); },
         "POINTER_ADDRESS|Part_Number|DST_UID|NamedRef_UID|ItemRev_UID|File_Name|File_Version|Check_Action|MAJ"
         "|Modified_Flag|Mapping_Attribut" +
             info},
    };
    DesignTableModel m;
    EXPECT_EQ(Lines(), m.describe()) << "no process";
    for (const auto& c : cases) {
        resetAll();
        c.setUp();
        const Lines lines = m.describe();
        ASSERT_GT(lines.size(), 2u) << c.children;
        EXPECT_EQ("<DesignTable>", lines.front());
        EXPECT_EQ("</DesignTable>", lines.back());
        EXPECT_EQ(L(c.children), childElements(lines, QELElement::Item_Info));
        EXPECT_EQ(c.children != QELElement::Externals, has(lines, "<File_Version>|DesignTable|</File_Version>"));
    }
    resetAll();
    PROCManager::setIsProcessStateDetailsFactory(true);
    EXPECT_TRUE(has(m.describe(), "<MAJ>|2|</MAJ>")) << "state details announce MAJ 2 whatever the property";
}

TEST_F(DesignTableWriterTest, VersionBranchOnlyForExactlyZero) {
    struct {
        const char* version;
        bool lifeCycle;
        const char* expected;
    } cases[] = {{"0", false, "DST_Version|Date_Last_Modification"},
                 {"0", true, QELElement::DST_Version},
                 {"00", false, "NamedRef_UID|ItemRev_UID"},
                 {"", false, "NamedRef_UID|ItemRev_UID"}};
    DesignTableModel m;
    for (const auto& c : cases) {
        resetAll();
        (c.lifeCycle ? PROCManager::setIsProcessLifeCycleFactory : PROCManager::setIsProcessBRRSave)(true);
        m.table->addStringProperty("Dat_File_Version", c.version);
        Lines branch;
        for (const std::string& e : childElements(m.describe(), QELElement::Item_Info)) {
            if (e == QELElement::DST_Version || e == QELElement::Date_Last_Modification ||
                e == QELElement::NamedRef_UID || e == QELElement::ItemRev_UID) {
                branch.push_back(e);
            }
        }
        EXPECT_EQ(L(c.expected), branch) << '"' << c.version << '"';
    }
}

TEST_F(DesignTableWriterTest, SharedTableIsDescribedInFullOnceWhenTheFlagIsSet) {
    PROCManager::setIsCommandSave(true);
    PROCManager::setIsPhasePhase1(true);
    for (unsigned char flag : {1, 0}) {
        DesignTableModel m;
        const Lines first = m.describe(flag), second = m.describe(flag);
        EXPECT_TRUE(has(first, "<Modified_Flag>|1|</Modified_Flag>") && has(first, "<Mapping_Attribut>"));
        EXPECT_EQ(flag == 0, has(second, "<Modified_Flag>|1|</Modified_Flag>") && has(second, "<Mapping_Attribut>"));
        EXPECT_EQ(flag == 1, has(second, "<Modified_Flag>|-1|</Modified_Flag>"));
        EXPECT_EQ(flag == 1, m.table->isPropertyExist("IsAlreadyWritten"));
        QELSession::freeModel();
    }
}

TEST_F(DesignTableWriterTest, MappingKeepsOnlyTheKnownNamesAndCountsStrings) {
    ENVManager::setOemPrefix("VT");
    struct {
        std::initializer_list<const char*> pairs;
        const char* expected;
    } cases[] = {
        {{"PartNumber", "P1", "Colour", "red"},
         "<Mapping_Attribut>|<NBElements>|2|</NBElements>|<Attribut>|partNumber|</Attribut>|<Attribut>|P1|</Attribut>"
         "|</Mapping_Attribut>"},
        {{"VT_filePath", "/data", "filename", "", "VT_Other", "x", "partNumber", "p", "Name"}, // trailing name ignored
         "<Mapping_Attribut>|<NBElements>|4|</NBElements>|<Attribut>|VT_filePath|</Attribut>|<Attribut>|/data"
         "|</Attribut>|<Attribut>|filename|</Attribut>|<Attribut>||</Attribut>|</Mapping_Attribut>"},
        {{"Colour", "red"}, ""},
    };
    DesignTableModel m;
    for (const auto& c : cases) {
        setStrings(m.table, QELDocument::kOEMMappingAttributes, c.pairs);
        EXPECT_EQ(L(c.expected), written([&](QELDMToXML& w) {
                      Access::designTableMapping(w, QELDocument::kOEMMappingAttributes, m.table);
                  }));
    }
}

TEST_F(DesignTableWriterTest, InfoListsEachExistingArray) {
    auto* dt = QELModelHeap::adopt(new QELDocument("Bare.xls", EnumDocumentType_DesignTable));
    for (const char* sheet : {"S1", "", "S3"}) dt->addStringArrayProperty("Sheet", sheet);
    dt->addStringArrayProperty("CheckSum", "x");
    dt->clearStringArrayProperty("CheckSum");
    EXPECT_EQ(L("<DT_Sheets>|<NBElements>|3|</NBElements>|<Attribut>|S1|</Attribut>|<Attribut>|S3|</Attribut>"
                "|</DT_Sheets>|<DT_CfgCksums>|<NBElements>|0|</NBElements>|</DT_CfgCksums>"),
              written([&](QELDMToXML& w) { Access::designTableInfo(w, dt); }));
}

TEST_F(DesignTableWriterTest, OwnerSummariesGiveMapsToProductsOnly) {
    for (EnumDocumentType type : {EnumDocumentType_Part, EnumDocumentType_Product}) {
        DesignTableModel m(type);
        QELLookups::firstFile(m.addTable("Options.xls", ""))->addStringProperty("File_Name", "");
        m.addTable("Third.xls", "a!!!b!!!c");
        std::string expected =
            "<DT_Files>|<NBElements>|3|</NBElements>|<Attribut>|Sizes.xls|</Attribut>|<Attribut>|Third.xls"
            "|</Attribut>|</DT_Files>|<DT_Sheets>|<NBElements>|3|</NBElements>|<Attribut>|2|</Attribut>|<Attribut>|2"
            "|</Attribut>|<Attribut>|2|</Attribut>|</DT_Sheets>|<DT_Cfgs>|<NBElements>|3|</NBElements>|<Attribut>|0"
            "|</Attribut>|<Attribut>|0|</Attribut>|<Attribut>|0|</Attribut>|</DT_Cfgs>";
        if (type == EnumDocumentType_Product) {
            expected += "|<DT_Maps>|<NBElements>|3|</NBElements>|<DT_Map>|<NBElements>|2|</NBElements>|<Attribut>"
                        "|Sheet 1|</Attribut>|<Attribut>|A1|</Attribut>|</DT_Map>|<DT_Map>|<NBElements>|0"
                        "|</NBElements>|</DT_Map>|<DT_Map>|<NBElements>|3|</NBElements>|<Attribut>|a|</Attribut>"
                        "|<Attribut>|b|</Attribut>|<Attribut>|c|</Attribut>|</DT_Map>|</DT_Maps>";
        }
        EXPECT_EQ(L(expected), written([&](QELDMToXML& w) { Access::ownerSummaries(w, m.owner); })) << type;
        EXPECT_EQ(Lines(), written([&](QELDMToXML& w) { Access::ownerSummaries(w, m.hostOwner); })) << "no links";
        QELSession::freeModel();
    }
}

TEST_F(DesignTableWriterTest, TableWithoutItemOrFileIsNotDescribed) {
    PROCManager::setIsProcessBRRSave(true);
    auto* noItem = QELModelHeap::adopt(new QELDocument("NoItem.xls", EnumDocumentType_DesignTable));
    noItem->createFile("catdesigntable", "NoItem.xls");
    auto* noFile = QELModelHeap::adopt(new QELDocument("NoFile.xls", EnumDocumentType_DesignTable));
    noFile->linkItem(QELLinkType::LINKNAME_PARENT, QELModelHeap::adopt(new QELItem("NoFile")));
    EXPECT_EQ(Lines(), written([&](QELDMToXML& w) {
                  Access::designTable(w, noItem, nullptr, 0);
                  Access::designTable(w, noFile, nullptr, 0);
                  Access::designTable(w, nullptr, nullptr, 0);
              }));
}
