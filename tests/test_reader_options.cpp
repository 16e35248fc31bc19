// The answer's options: the Options block, and the light pass over the
// entry flags and item identifiers.

#include <gtest/gtest.h>

#include <iterator>
#include <string>

#include "QELElementNames.h"
#include "ScratchDir.h"
#include "QELXMLToDMScannerAccess.h"
#include "ReaderAnswerSupport.h"

using namespace reader_test;

namespace {

class ReaderOptions : public ReaderTest {
protected:
    void SetUp() override { model = SmallModel::build(); }

    void read(const std::string& text, bool light = true) {
        QELXMLToDM reader(writeAnswer("options.xml", text).c_str());
        light ? reader.readOptions(model.session) : reader.execute(model.session);
        EXPECT_FALSE(QELXMLToDMScannerAccess::isOpen(reader));
    }
    std::string flagged(const QELComponent* component, const std::string& flags) const {
        return entry(QELElement::CATPart, leaf(QELElement::POINTER_ADDRESS, pointerOf(component)) +
                                              leaf(QELElement::Item_ID, "ID") + leaf(QELElement::ItemRev_ID, "B") +
                                              flags);
    }

    SmallModel model;
};

TEST_F(ReaderOptions, AnOptionIsOnWhenItsValueReadsAsOne) {
    const std::pair<const char*, bool> cases[] = {{"1", true},    {"01", true},   {"1x", true},
                                                  {"2", false},   {"", false},    {"word", false},
                                                  {"0", false},   {"-1", false},  {"4294967297", false}};
    std::string options;
    for (size_t i = 0; i < std::size(cases); ++i) options += leaf("Option" + std::to_string(i), cases[i].first);
    // Both passes, with the options before and after the count.
    for (int run = 0; run < 4; ++run) {
        SCOPED_TRACE(run);
        model.session->release();
        model.partDocument->addIntegerProperty("Update_Flag", -1);
        read(answer(1, flagged(model.occurrence, leaf(QELElement::Update_Flag, "3")),
                    element(QELElement::Options, options), run & 1),
             run & 2);
        for (size_t i = 0; i < std::size(cases); ++i) {
            const CATUnicodeString name(("Option" + std::to_string(i)).c_str());
            EXPECT_TRUE(model.session->isPropertyExist(name)) << cases[i].first;
            EXPECT_EQ(cases[i].second, model.session->getBooleanProperty(name)) << cases[i].first;
        }
        if (run & 2) {
            EXPECT_EQ(3, model.partDocument->getIntegerProperty("Update_Flag")) << "the entries follow";
        }
    }
}

TEST_F(ReaderOptions, EntryFlagsGoToTheComponentTheDocumentAndTheSession) {
    const int workspaces = model.session->getWorkSpaceCount();
    read(answer(
        3, flagged(model.occurrence, leaf(QELElement::Read_ActiveShapes, "1") + leaf(QELElement::Update_Flag, "3") +
                                         leaf(QELElement::Calcul_Flag, "1") + leaf(QELElement::ComputeGeo, "1")) +
               flagged(model.workspace, leaf(QELElement::Read_ActiveShapes, "0") + leaf(QELElement::Update_Flag, "5") +
                                            leaf(QELElement::Calcul_Flag, "0") + leaf(QELElement::ComputeGeo, "1")) +
               entry(QELElement::CATProduct, leaf(QELElement::Parent_ItemRev_UID, "ERROR"))));

    EXPECT_TRUE(model.occurrence->getBooleanProperty("Read_ActiveShapes"));
    EXPECT_EQ(3, model.partDocument->getIntegerProperty("Update_Flag"));
    EXPECT_TRUE(model.partDocument->getBooleanProperty("Calcul_Flag"));
    EXPECT_TRUE(model.partDocument->getBooleanProperty("ComputeGeo"));
    EXPECT_EQ("ID", model.partItem->getStringProperty("Item_ID").ToLatin1());
    EXPECT_EQ("B", model.partItem->getStringProperty("ItemRev_ID").ToLatin1());

    EXPECT_TRUE(model.workspace->isPropertyExist("Read_ActiveShapes"));
    EXPECT_FALSE(model.workspace->getBooleanProperty("Read_ActiveShapes"));
    EXPECT_EQ(5, model.rootDocument->getIntegerProperty("Update_Flag"));
    EXPECT_TRUE(model.rootDocument->isPropertyExist("Calcul_Flag"));
    EXPECT_FALSE(model.rootDocument->isPropertyExist("ComputeGeo")) << "a product is no part";
    // The last entry that carries the flag decides the session's status.
    bool status = true;
    model.session->getCalculGeometricStatus(status);
    EXPECT_FALSE(status);
    EXPECT_EQ(workspaces, model.session->getWorkSpaceCount()) << "the light pass creates nothing";
    EXPECT_TRUE(EMHManager::entries().empty());
}

TEST_F(ReaderOptions, FailuresAreReportedAndStopOrSkipAsTheyShould) {
    auto* orphan = QELModelHeap::adopt(new CV5CAAQELAbsoluteOccurrence("OCC-2", "Orphan.1", model.workspace));
    auto* bare = QELModelHeap::adopt(new CV5CAAQELWorkSpace());
    bare->linkDocument(model.partDocument);
    const std::string good = flagged(model.occurrence, leaf(QELElement::Update_Flag, "3"));
    const std::string pointerOnly =
        leaf(QELElement::POINTER_ADDRESS, pointerOf(model.occurrence)) + leaf(QELElement::Update_Flag, "3");
    struct Case {
        const char* name;
        std::string text; // "-": no file
        const char* journal;
        const char* error; // detail of a 2103 error, if any
        bool flagged;      // the part document's Update_Flag was set
    } cases[] = {
        {"missing file", "-", "Error while opening desc.xml file", nullptr, false},
        {"second line", std::string(kDeclaration) + "<DESC>\n" + count(1) + good, "Cannot found balise <DESCFILE>",
         nullptr, false},
        {"entry without Item_Info", answer(2, element(QELElement::CATPart, leaf("Other", "x")) + good),
         "Error while reading file", nullptr, false},
        {"occurrence without item", answer(2, flagged(orphan, "") + good), nullptr, "p_item", true},
        {"workspace without item", answer(2, flagged(bare, "") + good), nullptr, "p_item", true},
        {"component typed COMP", answer(1, good), nullptr, nullptr, false},
        {"identifiers missing", answer(1, entry(QELElement::CATPart, pointerOnly)),
         "Impossible to read and update the Item/ItemRev", nullptr, true},
        {"forged pointer",
         answer(2, entry(QELElement::CATPart, leaf(QELElement::POINTER_ADDRESS, "FFFFFFFFFFFFFFFF")) + good),
         "designates no component", nullptr, true},
        {"count far larger", answer(1000000, good), "1000000 entries announced, 1 found", nullptr, true},
        {"truncated entry", answer(1, good).substr(0, answer(1, good).find("</Update_Flag>")), "Unexpected end of file",
         nullptr, false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        JNLManager::clear();
        EMHManager::clear();
        model.partDocument->addIntegerProperty("Update_Flag", -1);
        model.occurrence->addStringProperty("Type", std::string(c.name) == "component typed COMP" ? "COMP" : "");
        if (c.text == "-") {
            QELXMLToDM missing((qeltest::scratchDir() + "no_such_answer.xml").c_str());
            missing.readOptions(model.session);
        } else {
            read(c.text);
        }
        if (c.journal) {
            EXPECT_TRUE(JNLManager::contains(c.journal));
        }
        ASSERT_EQ(c.error ? 1u : 0u, EMHManager::entries().size());
        if (c.error) {
            EXPECT_EQ("QELXMLToDM::readOptions", EMHManager::entries()[0].function);
            EXPECT_EQ(2103, EMHManager::entries()[0].code);
            EXPECT_EQ(c.error, EMHManager::entries()[0].detail);
        }
        EXPECT_EQ(c.flagged ? 3 : -1, model.partDocument->getIntegerProperty("Update_Flag"));
    }
}

} // namespace
