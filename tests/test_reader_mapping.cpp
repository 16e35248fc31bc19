// Mapping attributes, instance mapping, secondaries, item identifiers and the
// mask update of the current document.

#include <gtest/gtest.h>

#include "QELDocument.h"
#include "QELElementNames.h"
#include "QELStatus.h"

#include <string>
#include <vector>

#include "QELLink.h"
#include "QELXMLToDMUpdateAccess.h"

using Access = QELXMLToDMUpdateAccess;
using namespace reader_test;

namespace {

std::string attributs(const std::vector<std::string>& values) {
    std::string out;
    for (const auto& v : values) out += leaf(QELElement::Attribut, v);
    return out;
}

class ReaderMapping : public ReaderTest {
protected:
    void SetUp() override { m = SmallModel::build(); }
    void restart() {
        TearDown();
        SetUp();
    }
    CV5CAAQELDocument* secondary(const char* name, const char* shortFileName) {
        auto* doc = QELModelHeap::adopt(new CV5CAAQELDocument(name, EnumDocumentType_Model));
        doc->addStringProperty("ShortFileName", shortFileName);
        links.push_back(m.partDocument->addGRMDocumentLink("CATIA_secondary_Link_type", doc));
        return doc;
    }
    // The seven lines of a secondary: path, new name, -, part number, -, modified, mask.
    static std::string group(const std::string& path, const std::string& name, const std::string& partNumber,
                             const std::string& modified, const std::string& mask) {
        return path + "\n" + name + "\nx\n" + partNumber + "\nx\n" + modified + "\n" + mask + "\n";
    }
    void readSecondaries(const std::string& block) {
        LoadedEntry entry("secondaries.xml", element(QELElement::secondaries, block));
        Access::readSecondariesAttributes(entry.reader(), m.partDocument, entry.map());
    }

    SmallModel m;
    std::vector<QELLink*> links;
};

TEST_F(ReaderMapping, NameValueBlocksAreReadInPairs) {
    const struct {
        const char* what;
        std::string block;
        std::vector<std::string> expected;
        const char* error;   // detail of a 2102, if any
        const char* journal; // a short block's journal line, if any
    } cases[] = {
        {"count in strings", count(4) + attributs({"colour", "red", "finish", "matt"}),
         {"colour", "red", "finish", "matt"}, nullptr, nullptr},
        {"count 3 reads one pair", count(3) + attributs({"colour", "red", "finish"}), {"colour", "red"}, nullptr,
         nullptr},
        {"a value missing", count(2) + attributs({"colour"}), {}, "getTagValueByName (value)", nullptr},
        {"a count of a million", count(1000000) + attributs({"a", "1"}), {"a", "1"}, "getTagValueByName (name)",
         "Mapping_Attribut announces 1000000 elements but holds 2"},
        // The value runs into the stop line: taken as read so far, then the block ends.
        {"a value cut by the stop line", count(6) + attributs({"a", "1", "b"}) + "<Attribut>\n2\n", {"a", "1", "b", "2"},
         nullptr, "Mapping_Attribut announces 6 elements but holds 4"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        restart();
        LoadedEntry entry("mapping.xml", element(QELElement::Mapping_Attribut, c.block));
        const long status = Access::updateMappingAttributs(entry.reader(), entry.map(), m.partDocument);
        EXPECT_EQ(c.expected, strings(m.partDocument->getDynamicProperty(QELDocument::kMappingAttributes)));
        EXPECT_EQ(c.error ? QEL_E_FAIL : 0, status);
        ASSERT_EQ(c.error ? 1u : 0u, EMHManager::entries().size());
        if (c.error) {
            EXPECT_EQ(2102, EMHManager::entries()[0].code);
            EXPECT_EQ(c.error, EMHManager::entries()[0].detail);
        }
        if (c.journal) {
            EXPECT_TRUE(JNLManager::contains(c.journal));
        }
    }

    // The block without its closing line ends at the end of the entry.
    LoadedEntry entry("inst.xml", "<Mapping_Inst>\n" + count(4) + attributs({"position", "front"}), true);
    Access::updateMappingInst(entry.reader(), entry.map(), m.relative);
    EXPECT_EQ((std::vector<std::string>{"position", "front"}), strings(m.relative->getDynamicProperty("Mapping_Inst_Vt")));
}

TEST_F(ReaderMapping, MissingArgumentsAreReportedWithTheirNames) {
    LoadedEntry entry("args.xml", leaf(QELElement::File_Name, "x"));
    EXPECT_EQ(QEL_E_FAIL, Access::updateMappingAttributs(entry.reader(), nullptr, m.partDocument));
    EXPECT_EQ(QEL_E_FAIL, Access::updateMappingAttributs(entry.reader(), entry.map(), nullptr));
    EXPECT_EQ(QEL_E_FAIL, Access::updateMappingInst(entry.reader(), entry.map(), nullptr));
    const char* const details[] = {"ip_liste", "ip_document", "ip_rel_occ"};
    ASSERT_EQ(3u, EMHManager::entries().size());
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(2103, EMHManager::entries()[i].code);
        EXPECT_EQ(details[i], EMHManager::entries()[i].detail);
    }
    EXPECT_EQ("QELXMLToDM::updateMappingInst", EMHManager::entries()[2].function);
}

TEST_F(ReaderMapping, SecondaryIsUpdatedOnceByTheFirstGroupNamingIt) {
    CV5CAAQELDocument* mesh = secondary("mesh", "Part.model");
    CV5CAAQELDocument* other = secondary("other", "Other.model");
    readSecondaries(count(2) +
                    element(QELElement::secondary, group("C:\\work\\Part.model", "P-9.model", "PN-9", "1", "12")) +
                    element(QELElement::secondary, group("/tmp/Part.model", "late.model", "late", "0", "1")));
    EXPECT_EQ("P-9.model", text(mesh->getStringProperty("New_File_name")));
    EXPECT_EQ("PN-9", text(mesh->getStringProperty("Part_Number")));
    EXPECT_TRUE(mesh->getBooleanProperty("Modified_Flag"));
    EXPECT_EQ(12, mesh->getIntegerProperty("Mask"));
    EXPECT_TRUE(links[0]->getBooleanProperty("LinkAlreadyTreated"));
    EXPECT_FALSE(other->isPropertyExist("New_File_name"));
    EXPECT_TRUE(JNLManager::contains("updating data with new file name late.model"));
}

TEST_F(ReaderMapping, SecondaryGroupsOfSevenOverlap) {
    // Fourteen lines make two groups, lines 0-6 and 1-7 (not 7-13): the
    // second group's path is the first group's new file name.
    CV5CAAQELDocument* renamed = secondary("renamed", "B.model");
    readSecondaries(count(1000000) + element(QELElement::secondary, group("A.model", "B.model", "PN-A", "0", "3") +
                                                                        "7\n" + group("C.model", "", "", "", "")));
    EXPECT_EQ("x", text(renamed->getStringProperty("New_File_name")));
    EXPECT_EQ("x", text(renamed->getStringProperty("Part_Number")));
    EXPECT_FALSE(renamed->getBooleanProperty("Modified_Flag"));
    EXPECT_EQ(7, renamed->getIntegerProperty("Mask"));
    EXPECT_TRUE(JNLManager::contains("secondaries announces 1000000 elements but holds 1"));
}

TEST_F(ReaderMapping, ItemIdentifiersFollowTheModifiedFlag) {
    const struct {
        int modifiedFlag;
        std::string children;
        long status;
        const char* itemId;
        const char* itemRevId;
    } cases[] = {
        {0, leaf(QELElement::Item_ID, "I-2") + leaf(QELElement::ItemRev_ID, "B"), 0, "I-2", "B"},
        {-1, leaf(QELElement::Item_ID, "I-2") + leaf(QELElement::ItemRev_ID, "B"), 0, "I-1", "A"},
        {1, leaf(QELElement::ItemRev_ID, "B"), QEL_E_FAIL, "I-1", "A"},
        {1, leaf(QELElement::Item_ID, "I-2"), QEL_E_FAIL, "I-2", "A"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.children);
        m.partItem->addStringProperty("Item_ID", "I-1");
        m.partItem->addStringProperty("ItemRev_ID", "A");
        m.occurrence->addIntegerProperty("Modified_Flag", c.modifiedFlag);
        LoadedEntry entry("ids.xml", c.children);
        EXPECT_EQ(c.status, Access::readAndUpdateItemIdItemRevId(entry.reader(), m.occurrence, m.partItem, entry.map()));
        EXPECT_EQ(c.itemId, text(m.partItem->getStringProperty("Item_ID")));
        EXPECT_EQ(c.itemRevId, text(m.partItem->getStringProperty("ItemRev_ID")));
    }
    EXPECT_TRUE(JNLManager::contains("p_item_id is NULL"));
    EXPECT_TRUE(JNLManager::contains("p_itemrev_id is NULL"));
}

TEST_F(ReaderMapping, MaskGoesToWhatTheEntryDesignates) {
    long status = 0;
    auto update = [&](const QELComponent* designated, const char* mask, const std::string& more = "") {
        LoadedEntry entry("mask.xml", leaf(QELElement::POINTER_ADDRESS, pointerOf(designated)) +
                                          leaf(QELElement::Mask, mask) + more);
        status = Access::updateDocumentForMaskManagement(entry.reader(), m.workspace, m.rootDocument, entry.map());
    };
    // A workspace, then the secondaries of its default document.
    CV5CAAQELDocument* mesh = QELModelHeap::adopt(new CV5CAAQELDocument("mesh", EnumDocumentType_Model));
    mesh->addStringProperty("ShortFileName", "Root.model");
    m.rootDocument->addGRMDocumentLink("CATIA_secondary_Link_type", mesh);
    update(m.workspace, "9",
           element(QELElement::secondaries,
                   count(1) + element(QELElement::secondary, group("Root.model", "R.model", "PN", "1", "5"))));
    EXPECT_EQ(9, m.workspace->getIntegerProperty("Mask"));
    EXPECT_EQ("R.model", text(mesh->getStringProperty("New_File_name")));
    // A document through its item; a secondary document itself; anything
    // else stands for the current document.
    update(m.partDocument, "4");
    EXPECT_EQ(4, m.partItem->getIntegerProperty("Mask"));
    m.partDocument->addBooleanProperty("IsSecondary", true);
    update(m.partDocument, "6");
    EXPECT_EQ(6, m.partDocument->getIntegerProperty("Mask"));
    update(m.occurrence, "8");
    EXPECT_EQ(8, m.rootItem->getIntegerProperty("Mask"));
    EXPECT_TRUE(EMHManager::entries().empty());

    // Failures: no default item, a refused mask, no pointer at all.
    m.partDocument->addBooleanProperty("IsSecondary", false);
    m.partDocument->setDefaultItem(nullptr);
    update(m.partDocument, "1");
    m.partDocument->setDefaultItem(m.partItem);
    m.partItem->setMaskStatus(-1);
    update(m.partDocument, "2");
    EXPECT_EQ(QEL_E_FAIL, status);
    EXPECT_EQ(4, m.partItem->getIntegerProperty("Mask"));
    ASSERT_EQ(2u, EMHManager::entries().size());
    EXPECT_EQ("getDefaultItem", EMHManager::entries()[0].detail);
    EXPECT_EQ("computeAndUpdateMaskProperty", EMHManager::entries()[1].detail);
    EXPECT_EQ("QELXMLToDM::updateDocumentForMaskManagement", EMHManager::entries()[1].function);

    LoadedEntry entry("nopointer.xml", leaf(QELElement::Mask, "1"));
    EXPECT_EQ(QEL_E_FAIL, Access::updateDocumentForMaskManagement(entry.reader(), m.workspace, m.rootDocument, entry.map()));
    EXPECT_TRUE(JNLManager::contains("Cannot find balise POINTER_ADDRESS"));
}

} // namespace
