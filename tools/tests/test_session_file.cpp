#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include "CV5CAAQELAbsoluteOccurrence.h"
#include "CV5CAAQELSession.h"
#include "CV5CAAQELWorkSpace.h"
#include "QELItem.h"
#include "ENVManager.h"
#include "PROCManager.h"
#include "QELHandleTable.h"
#include "QELSession.h"
#include "QELSessionFile.h"
#include "QELWorkSpace.h"

namespace {

const std::string kExample = std::string(QEL_SOURCE_DIR) + "/examples/session.json";

// Every test starts from an empty model and default settings, and frees what
// it built: the handle table tells whether the loader left anything outside
// the model heap.
class SessionFileTest : public ::testing::Test {
protected:
    void SetUp() override {
        QELSession::freeModel();
        PROCManager::reset();
        ENVManager::reset();
        CV5CAAQELSession::reset();
    }
    void TearDown() override {
        QELSession::freeModel();
        EXPECT_EQ(QELHandleTable::liveCount(), 0u) << "a component outlived the model heap";
    }

    QELSessionFileError load(const std::string& text) {
        QELSessionFileError error;
        loaded = qelLoadSessionText(text, error);
        return error;
    }
    // The message of a file that must be refused.
    std::string refusal(const std::string& text) {
        QELSessionFileError error = load(text);
        EXPECT_FALSE(loaded) << text;
        return error.message;
    }

    bool loaded = false;
};

// A minimal valid file with `body` spliced in after the format.
std::string session(const std::string& body) { return "{\"format\": \"qel-session/1\"" + body + "}"; }

const std::string kOneItem = ", \"items\": [{\"name\": \"I\"}]";
const std::string kOneDocument =
    ", \"documents\": [{\"name\": \"D.CATProduct\", \"type\": \"product\", \"item\": \"I\", \"files\": "
    "[\"D.CATProduct\"]}]";

// A workspace on D with the occurrences given.
std::string withTree(const std::string& occurrences) {
    return session(kOneItem + kOneDocument +
                   ", \"workspaces\": [{\"name\": \"W\", \"document\": \"D.CATProduct\", \"item\": \"I\", "
                   "\"active\": true, \"occurrences\": " +
                   occurrences + "}]");
}

QELWorkSpace* workspaceNamed(const char* name) { return QELSession::getInstance()->getWorkSpace(name); }

int occurrenceCount(const QELWorkSpace* workspace) {
    TYPMapCATUnicodeStringPVoid* all = workspace ? workspace->getLinkedAbsoluteOccurrences() : nullptr;
    return all ? all->size() : 0;
}

// ---- syntax errors: where, and what was expected -------------------------------

TEST_F(SessionFileTest, SyntaxErrorsGiveLineColumnAndWhatWasExpected) {
    struct Case {
        const char* text;
        int line;
        int column;
        const char* expected;
    };
    const Case cases[] = {
        // The string after the key, where a colon belongs.
        {"{\n  \"format\" \"qel-session/1\"\n}", 2, 12, "expected ':'"},
        // A trailing comma: the closing brace is met where a key belongs.
        {"{\"format\": \"qel-session/1\",\n \"items\": [],\n}", 3, 1, "expected string literal"},
        // Cut short inside an array.
        {"{\"items\": [\n  {\"name\": \"A\"},\n", 3, 1, "unexpected end of input"},
        // A misspelt literal: the error is where it stops being one. Columns
        // count characters: "é" is two bytes but one column.
        {"{\"é\": tru}", 1, 10, "invalid literal"},
        // A whole value out of place is shown where it starts.
        {"{\"items\": [1 2]}", 1, 14, "unexpected number literal"},
        {"{\"items\": [\"a\" \"b\\\"c\"]}", 1, 16, "unexpected string literal"},
        // A number beyond a double is refused, not thrown past the loader.
        {"{\"items\": [\n  {\"name\": \"A\", \"index\": 1e400}]}", 2, 26, "number overflow parsing '1e400'"},
    };
    for (const Case& c : cases) {
        QELSessionFileError error = load(c.text);
        EXPECT_FALSE(loaded) << c.text;
        EXPECT_EQ(error.line, c.line) << c.text;
        EXPECT_EQ(error.column, c.column) << c.text;
        EXPECT_NE(error.message.find(c.expected), std::string::npos) << error.message;
        EXPECT_EQ(error.message.find("json.exception"), std::string::npos) << "the parser's prefix leaks: " << error.message;
    }
}

TEST_F(SessionFileTest, UnreadableFileSaysSo) {
    QELSessionFileError error;
    EXPECT_FALSE(qelLoadSessionFile("/nonexistent/session.json", error));
    EXPECT_NE(error.message.find("cannot open /nonexistent/session.json"), std::string::npos) << error.message;
    EXPECT_EQ(error.line, 0);
}

// ---- values that do not describe a session: the path and what was expected ------

TEST_F(SessionFileTest, SemanticErrorsNameThePathAndWhatWasExpected) {
    struct Case {
        std::string text;
        const char* message; // the start of the message: path and explanation
    };
    const std::string item = kOneItem;
    const std::vector<Case> cases = {
        {"[]", "expected an object (a session file), got an array"},
        {"{}", "missing \"format\""},
        {"{\"format\": \"qel-session/2\"}", "/format: expected \"qel-session/1\""},
        {session(", \"itmes\": []"), "/itmes: unknown key; expected one of format, settings, items, documents, workspaces"},
        {session(", \"items\": [{\"nmae\": \"I\"}]"), "/items/0/nmae: unknown key; expected one of name,"},
        {session(", \"items\": [{\"name\": \"\"}]"), "/items/0/name: expected a name, got an empty string"},
        {session(", \"items\": [{\"name\": \"I\"}, {\"name\": \"I\"}]"), "/items/1/name: a second item named \"I\""},
        {session(item + ", \"documents\": [{\"name\": \"D\", \"type\": \"prodcut\"}]"),
         "/documents/0/type: unknown document type \"prodcut\"; expected one of product, part,"},
        {session(item + ", \"documents\": [{\"name\": \"D\", \"type\": 1}]"),
         "/documents/0/type: expected a string, got an integer"},
        {session(item + ", \"documents\": [{\"name\": \"D\"}]"), "/documents/0: missing \"type\""},
        {session(item + ", \"documents\": [{\"name\": \"D\", \"type\": \"part\", \"item\": \"J\"}]"),
         "/documents/0/item: no item named \"J\" in \"items\""},
        {session(item + ", \"documents\": [{\"name\": \"D\", \"type\": \"part\", \"host\": false, \"documentUID\": \"x\"}]"),
         "/documents/0/documentUID: only a document of the CAD host has this answer"},
        {session(item + ", \"documents\": [{\"name\": \"D\", \"type\": \"part\", \"files\": [\"D\"], \"defaultFile\": \"E\"}]"),
         "/documents/0/defaultFile: no file named \"E\" in this document's \"files\""},
        {session(item + ", \"documents\": [{\"name\": \"D\", \"type\": \"part\", \"secondaries\": [\"Nope\"]}]"),
         "/documents/0/secondaries/0: no document named \"Nope\" in \"documents\""},
        {session(item + ", \"documents\": [{\"name\": \"D\", \"type\": \"part\", \"links\": [{\"name\": \"L\"}]}]"),
         "/documents/0/links/0: expected exactly one of \"document\", \"item\" or \"workspace\""},
        {session(item + ", \"documents\": [{\"name\": \"D\", \"type\": \"part\", \"designTables\": [{\"document\": \"D\"}]}]"),
         "/documents/0/designTables/0/document: a document cannot be its own design table"},
        {session(item + ", \"documents\": [{\"name\": \"D\", \"type\": \"part\", \"stackings\": [{\"name\": \"S\", "
                        "\"pliesGroups\": [{\"name\": \"G\", \"sequences\": [{\"name\": \"Q\", \"plies\": [{\"name\": "
                        "\"P\", \"mass\": 0.5}]}]}]}]}]"),
         "/documents/0/stackings/0/pliesGroups/0/sequences/0/plies/0/mass: expected a string, got a number with a fraction"},
        {session(", \"settings\": {\"command\": \"sav\"}"),
         "/settings/command: unknown command \"sav\"; expected none, save, save-as,"},
        {session(", \"settings\": {\"phase\": \"3\"}"), "/settings/phase: unknown phase \"3\"; expected none, 1, 2"},
        {session(", \"settings\": {\"manage\": {\"manageScene\": true}}"),
         "/settings/manage/manageScene: unknown process switch; expected one of manageDescForEmptyQEL,"},
        {session(", \"settings\": {\"environment\": {\"oemPrefix\": 3}}"),
         "/settings/environment/oemPrefix: expected a string, got an integer"},
        {session(", \"workspaces\": [{\"name\": \"A\", \"active\": true}, {\"name\": \"B\", \"active\": true}]"),
         "/workspaces/1/active: only one workspace can be active, and /workspaces/0 is"},
        {withTree("[{\"instance\": \"A.1\", \"item\": \"X\"}]"),
         "/workspaces/0/occurrences/0/item: no item named \"X\" in \"items\""},
        {withTree("[{\"item\": \"I\"}]"), "/workspaces/0/occurrences/0: expected an \"instance\" name or a \"uid\""},
        {withTree("[{\"instance\": \"A.1\"}, {\"instance\": \"A.1\"}]"),
         "/workspaces/0/occurrences/1: a second occurrence with the path \"A.1\" in this workspace"},
        {withTree("[{\"instance\": \"A.1\", \"relative\": \"R\"}]"),
         "/workspaces/0/occurrences/0/relative: a relative occurrence needs the occurrence's \"item\""},
        {withTree("[{\"instance\": \"A.1\", \"item\": \"I\", \"relative\": \"R\", \"matrix\": [1, 0, 0]}]"),
         "/workspaces/0/occurrences/0/matrix: expected 16 numbers, got 3"},
        {withTree("[{\"instance\": \"A.1\", \"index\": 4294967296}]"),
         "/workspaces/0/occurrences/0/index: expected an integer from"},
        {withTree("[{\"instance\": \"A.1\", \"item\": \"I\", \"children\": [{\"instance\": \"B.1\", \"views\": [{\"context\": \"I\"}, "
                  "{\"context\": \"I\", \"visible\": \"yes\"}]}]}]"),
         "/workspaces/0/occurrences/0/children/0/views/1/visible: expected a boolean (true or false), got a string"},
        {session(kOneItem + ", \"items2\": 1"), "/items2: unknown key"},
        {session(", \"items\": [{\"name\": \"A\"}, {\"name\": \"B\", \"properties\": {\"X\": 1, \"X\": 2}}]"),
         "/items/1/properties/X: the key is given twice in one object"},
        // J is an item of the file, but no ancestor of the occurrence shows it.
        {session(", \"items\": [{\"name\": \"I\"}, {\"name\": \"J\"}]" + kOneDocument +
                 ", \"workspaces\": [{\"name\": \"W\", \"document\": \"D.CATProduct\", \"item\": \"I\", \"occurrences\": "
                 "[{\"instance\": \"A.1\", \"item\": \"I\", \"views\": [{\"context\": \"J\"}]}]}]"),
         "/workspaces/0/occurrences/0/views/0/context: expected the item of an ancestor"},
    };
    for (const Case& c : cases) {
        SetUp();
        QELSessionFileError error = load(c.text);
        EXPECT_FALSE(loaded) << c.text;
        EXPECT_EQ(error.line, 0) << c.text;
        EXPECT_EQ(error.message.rfind(c.message, 0), 0u) << "got:      " << error.message << "\nexpected: " << c.message;
    }
}

TEST_F(SessionFileTest, PropertyValuesOfTheWrongShapeAreRefused) {
    struct Case {
        const char* value;
        const char* message;
    };
    const Case cases[] = {
        {"1.5", "/items/0/properties/P: expected a string, an integer, a boolean or an object of one member"},
        {"null", "/items/0/properties/P: expected a string, an integer, a boolean or an object of one member"},
        {"{\"strings\": [\"a\"], \"list\": []}", "/items/0/properties/P: expected a string, an integer"},
        {"{\"vector\": []}", "/items/0/properties/P/vector: unknown kind of property value"},
        {"{\"pairs\": [[\"k\", \"v\"], [\"k\", \"w\"]]}", "/items/0/properties/P/pairs/1: the key \"k\" is given twice"},
        {"{\"pairs\": [[\"k\"]]}", "/items/0/properties/P/pairs/0: expected a pair [key, value] of two strings"},
        {"{\"integers\": []}", "/items/0/properties/P/integers: expected at least one element"},
        {"{\"booleans\": [true, 1]}", "/items/0/properties/P/booleans/1: expected a boolean, got an integer"},
        {"{\"matrix\": [1, 2]}", "/items/0/properties/P/matrix: expected 16 numbers, got 2"},
        {"2147483648", "/items/0/properties/P: expected an integer from -2147483648 to 2147483647"},
    };
    for (const Case& c : cases) {
        SetUp();
        const std::string message =
            refusal(session(", \"items\": [{\"name\": \"I\", \"properties\": {\"P\": " + std::string(c.value) + "}}]"));
        EXPECT_EQ(message.rfind(c.message, 0), 0u) << "got:      " << message << "\nexpected: " << c.message;
    }
    // A link holds no collections.
    SetUp();
    const std::string message = refusal(session(
        kOneItem + kOneDocument.substr(0, kOneDocument.size() - 2) +
        ", \"links\": [{\"name\": \"L\", \"item\": \"I\", \"properties\": {\"P\": {\"strings\": []}}}]}]"));
    EXPECT_EQ(message, "/documents/0/links/0/properties/P/strings: a link holds strings, integers, booleans and matrices only");
}

// ---- typed properties land with their kind, value and order -------------------------

TEST_F(SessionFileTest, TypedPropertiesKeepKindValueAndOrder) {
    const std::string text = session(
        ", \"items\": [{\"name\": \"I\", \"properties\": {"
        "\"S\": \"Müller\", \"N\": -7, \"B\": true, "
        "\"M\": {\"matrix\": [1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13.5, 14, 15, 16]}, "
        "\"D\": {\"pairs\": [[\"PartNumber\", \"P1\"], [\"Colour\", \"red\"]]}, "
        "\"SA\": {\"strings\": [\"a\", \"\"]}, \"EA\": {\"strings\": []}, "
        "\"IA\": {\"integers\": [3, 1]}, \"BA\": {\"booleans\": [false, true]}, "
        "\"L\": {\"list\": [\"x\", \"y\", \"z\"]}}}]");
    load(text);
    ASSERT_TRUE(loaded);
    QELItem* item = QELSession::getInstance()->getItem("I");
    ASSERT_NE(item, nullptr);

    const std::vector<std::pair<const char*, int>> expected = {{"S", 1},  {"N", 2},  {"B", 3},  {"M", 4},  {"D", 5},
                                                               {"SA", 6}, {"EA", 6}, {"IA", 7}, {"BA", 8}, {"L", 10}};
    ASSERT_EQ(item->getPropertiesCount(), static_cast<int>(expected.size()));
    for (size_t i = 0; i < expected.size(); ++i) {
        EXPECT_EQ(item->getPropertyNameByIndex(static_cast<int>(i)), expected[i].first) << "file order is kept";
        EXPECT_EQ(item->getPropertyTypeByIndex(static_cast<int>(i)), expected[i].second) << expected[i].first;
    }
    EXPECT_EQ(item->getStringProperty("S"), "M\xFCller") << "UTF-8 in the file, ISO-8859-1 in the model";
    EXPECT_EQ(item->getIntegerProperty("N"), -7);
    EXPECT_TRUE(item->getBooleanProperty("B"));
    ASSERT_NE(item->getMatrixProperty("M"), nullptr);
    EXPECT_DOUBLE_EQ(item->getMatrixProperty("M")[12], 13.5);
    EXPECT_DOUBLE_EQ(item->getMatrixProperty("M")[15], 16);
    TYPVectorCATUnicodeString* pairs = item->getDynamicProperty("D");
    ASSERT_NE(pairs, nullptr);
    ASSERT_EQ(pairs->size(), 4);
    EXPECT_EQ((*pairs)[0], "PartNumber");
    EXPECT_EQ((*pairs)[3], "red");
    ASSERT_NE(item->getStringArrayProperty("SA"), nullptr);
    EXPECT_EQ(item->getStringArrayProperty("SA")->size(), 2);
    ASSERT_NE(item->getStringArrayProperty("EA"), nullptr) << "an empty array still exists";
    EXPECT_EQ(item->getStringArrayProperty("EA")->size(), 0);
    ASSERT_NE(item->getIntegerArrayProperty("IA"), nullptr);
    EXPECT_EQ((*item->getIntegerArrayProperty("IA"))[1], 1);
    ASSERT_NE(item->getBooleanArrayProperty("BA"), nullptr);
    EXPECT_EQ((*item->getBooleanArrayProperty("BA"))[1], 1);
    ASSERT_NE(item->getStringListProperty("L"), nullptr);
    EXPECT_EQ(item->getStringListProperty("L")->Size(), 3);
}

// ---- settings and command names -------------------------------------------------------

TEST_F(SessionFileTest, SettingsReachTheServices) {
    PROCManager::setIsCommandImport(true); // left over from an earlier run: the file replaces it
    ENVManager::setOemPrefix("OLD");
    load(session(", \"settings\": {\"command\": \"save-as\", \"process\": \"state-details,state-details-factory\", "
                 "\"phase\": \"2\", \"manage\": {\"manageScenes\": true}, "
                 "\"environment\": {\"tempDirectory\": \"/tmp/q/\", \"isCompositeManaged\": true}, "
                 "\"host\": {\"stagingPath\": \"/stage\", \"isThereDrawing\": true}, "
                 "\"properties\": {\"IsDesignTableManagedAsked\": true}}"));
    ASSERT_TRUE(loaded);
    EXPECT_TRUE(PROCManager::isCommandSaveAs());
    EXPECT_FALSE(PROCManager::isCommandImport());
    EXPECT_TRUE(PROCManager::isProcessStateDetails());
    EXPECT_TRUE(PROCManager::isProcessStateDetailsFactory());
    EXPECT_TRUE(PROCManager::isPhasePhase2());
    EXPECT_FALSE(PROCManager::isPhasePhase1());
    EXPECT_TRUE(PROCManager::manageScenes());
    EXPECT_EQ(ENVManager::getOemPrefix(), "");
    EXPECT_EQ(ENVManager::getTempDirectory(), "/tmp/q/");
    EXPECT_TRUE(ENVManager::isCompositeManaged());
    EXPECT_EQ(CV5CAAQELSession::getCATIASessionInstance()->getStagingPath(), "/stage");
    EXPECT_TRUE(CV5CAAQELSession::getCATIASessionInstance()->get_is_there_drawing());
    EXPECT_TRUE(QELSession::getInstance()->getBooleanProperty("IsDesignTableManagedAsked"));
}

TEST_F(SessionFileTest, CommandNamesReplaceTheirCategoryOnly) {
    std::string error;
    ASSERT_TRUE(qelApplyCommand("import", "brr-save", "1", error)) << error;
    ASSERT_TRUE(qelApplyCommand("save", "", "", error)) << error;
    EXPECT_TRUE(PROCManager::isCommandSave());
    EXPECT_FALSE(PROCManager::isCommandImport()) << "one command at a time";
    EXPECT_TRUE(PROCManager::isProcessBRRSave()) << "an empty name leaves the process";
    EXPECT_TRUE(PROCManager::isPhasePhase1());

    ASSERT_TRUE(qelApplyCommand("none", "none", "none", error)) << error;
    EXPECT_FALSE(PROCManager::isCommandSave());
    EXPECT_FALSE(PROCManager::isProcessBRRSave());
    EXPECT_FALSE(PROCManager::isPhasePhase1());

    // An unknown name changes nothing and lists the names.
    ASSERT_TRUE(qelApplyCommand("save", "checkout", "1", error));
    EXPECT_FALSE(qelApplyCommand("import", "checkout,brr", "2", error));
    EXPECT_EQ(error,
              "unknown process \"brr\"; expected none, state-details, state-details-factory, state-details-update, "
              "life-cycle-factory, brr-save, checkout (several joined by commas)");
    EXPECT_TRUE(PROCManager::isCommandSave()) << "a refused call leaves every category as it was";
    EXPECT_FALSE(PROCManager::isCommandImport());
    EXPECT_TRUE(PROCManager::isPhasePhase1());
    EXPECT_FALSE(qelApplyCommand("synchronise-active-shapes", "", "", error));
    EXPECT_NE(error.find("synchronize-active-shapes"), std::string::npos) << error;
}

// ---- the bundled example ---------------------------------------------------------------

class ExampleSessionTest : public SessionFileTest {
protected:
    void SetUp() override {
        SessionFileTest::SetUp();
        QELSessionFileError error;
        ASSERT_TRUE(qelLoadSessionFile(kExample, error)) << error.line << ":" << error.column << ": " << error.message;
        session = QELSession::getInstance();
        gearbox = workspaceNamed("Gearbox.CATProduct");
        ASSERT_NE(gearbox, nullptr);
    }
    QELAbsoluteOccurrence* occurrence(QELWorkSpace* workspace, const char* path) {
        return workspace->getAbsoluteOccurrence(path);
    }

    QELSession* session = nullptr;
    QELWorkSpace* gearbox = nullptr;
};

TEST_F(ExampleSessionTest, BuildsTheExpectedComponents) {
    EXPECT_EQ(session->getItemCount(), 12);
    EXPECT_EQ(session->getDocumentCount(), 14) << "three documents are not registered in the session";
    EXPECT_EQ(session->getWorkSpaceCount(), 3);
    EXPECT_EQ(session->getActiveWorkSpace(), gearbox);
    EXPECT_EQ(occurrenceCount(gearbox), 10);
    EXPECT_EQ(occurrenceCount(workspaceNamed("Fixture.CATProduct")), 4);
    EXPECT_EQ(occurrenceCount(workspaceNamed("Gearbox.CATDrawing")), 0);
    EXPECT_TRUE(PROCManager::isCommandSave());
    EXPECT_TRUE(PROCManager::isPhasePhase1());
    EXPECT_EQ(ENVManager::getOemPrefix(), "VT");
}

// The format's page shows a complete example; it must stay a file the loader takes.
TEST_F(SessionFileTest, DocumentedExampleLoads) {
    std::ifstream in(std::string(QEL_SOURCE_DIR) + "/docs/session-format.md");
    const std::string page((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    const size_t section = page.find("## A complete example");
    ASSERT_NE(section, std::string::npos);
    const size_t start = page.find("```json\n", section);
    ASSERT_NE(start, std::string::npos);
    const size_t end = page.find("```", start + 8);
    ASSERT_NE(end, std::string::npos);
    const QELSessionFileError error = load(page.substr(start + 8, end - start - 8));
    ASSERT_TRUE(loaded) << error.line << ":" << error.column << ": " << error.message;
    EXPECT_EQ(QELSession::getInstance()->getItemCount(), 4);
    EXPECT_EQ(occurrenceCount(workspaceNamed("Pump.CATProduct")), 2);
}

TEST_F(SessionFileTest, SameFileGivesSameHandles) {
    // Describe and apply run in two processes: the handles printed by the
    // first must designate the same components in the second. A session
    // parsed once builds the same model every time.
    std::ifstream in(kExample, std::ios::binary);
    const std::string text((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    QELParsedSession parsed;
    QELSessionFileError error;
    ASSERT_TRUE(parsed.parse(text, error)) << error.message;
    EXPECT_FALSE(parsed.parse("{\"format\": ", error));
    EXPECT_EQ(error.line, 1); // a failed parse keeps the previous one

    std::vector<std::string> first, second, third, fourth;
    int runs = 0;
    for (std::vector<std::string>* run : {&first, &second, &third, &fourth}) {
        ASSERT_TRUE(QELHandleTable::restartNumbering());
        const bool built = runs++ < 2 ? qelLoadSessionFile(kExample, error) : parsed.build(error);
        ASSERT_TRUE(built) << error.message;
        // Forms are named by a fresh UUID each time, so their class stands in.
        for (QELComponent* component : QELHandleTable::liveComponents()) {
            const bool form = component->isAKindOf("QELFORM_CLASSNAME");
            run->push_back(QELHandleTable::format(component->get_Handle()) + " " +
                           (form ? std::string("form") : component->get_Name().ConvertToUTF8()));
        }
        QELSession::freeModel();
    }
    EXPECT_FALSE(first.empty());
    EXPECT_EQ(first, second);
    EXPECT_EQ(first, third);
    EXPECT_EQ(first, fourth);
}

// ---- generation ----------------------------------------------------------------------------

int depthOf(const QELAbsoluteOccurrence* occurrence) {
    int depth = 1;
    for (const QELAbsoluteOccurrence* up = occurrence->getLinkedParentAbsoluteOccurrence(); up;
         up = up->getLinkedParentAbsoluteOccurrence())
        ++depth;
    return depth;
}

TEST_F(SessionFileTest, GenerationIsDeterministicAndExact) {
    const std::string text = qelGenerateSession(3000, 5, 42);
    EXPECT_EQ(text, qelGenerateSession(3000, 5, 42));
    EXPECT_NE(text, qelGenerateSession(3000, 5, 43));

    load(text);
    ASSERT_TRUE(loaded);
    QELWorkSpace* root = QELSession::getInstance()->getActiveWorkSpace();
    ASSERT_NE(root, nullptr);
    EXPECT_EQ(occurrenceCount(root), 3000);

    // Several levels, none deeper than asked; parts and products shared;
    // deep occurrences seen from several contexts.
    int deepest = 0;
    long withSeveralViews = 0;
    for (const auto& entry : *root->getLinkedAbsoluteOccurrences()) {
        auto* occurrence = static_cast<QELAbsoluteOccurrence*>(entry.object);
        deepest = std::max(deepest, depthOf(occurrence));
        std::unique_ptr<TYPMapCATUnicodeStringPVoid> views(occurrence->getLinkedAbsoluteViews());
        if (views && views->size() >= 2) ++withSeveralViews;
    }
    EXPECT_EQ(deepest, 5);
    EXPECT_GT(withSeveralViews, 300);
    long sharedItems = 0;
    for (const auto& entry : *QELSession::getInstance()->getItems()) {
        TYPMapCATUnicodeStringPVoid* shown = static_cast<QELItem*>(entry.object)->getAllLinkedAbsOccs();
        if (shown && shown->size() > 1) ++sharedItems;
    }
    EXPECT_GT(sharedItems, 20);
    // A drawing and design tables come along.
    EXPECT_NE(workspaceNamed("ROOT-ASSEMBLY.CATDrawing"), nullptr);
    EXPECT_NE(text.find("\"type\": \"design-table\""), std::string::npos);
}

TEST_F(SessionFileTest, GenerationHonoursSmallAndFlatRequests) {
    for (long count : {0L, 1L, 7L}) {
        SetUp();
        load(qelGenerateSession(count, 4, 1));
        ASSERT_TRUE(loaded) << count;
        EXPECT_EQ(occurrenceCount(QELSession::getInstance()->getActiveWorkSpace()), count);
    }
    SetUp();
    load(qelGenerateSession(50, 1, 1));
    ASSERT_TRUE(loaded);
    for (const auto& entry : *QELSession::getInstance()->getActiveWorkSpace()->getLinkedAbsoluteOccurrences())
        EXPECT_EQ(depthOf(static_cast<QELAbsoluteOccurrence*>(entry.object)), 1);
}

} // namespace
