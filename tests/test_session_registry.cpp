#include <gtest/gtest.h>

#include "CleanSessionTest.h"

#include <regex>

#include "QELComponent.h"
#include "QELHandleTable.h"
#include "QELModelHeap.h"
#include "QELSession.h"

namespace {

class Node : public QELComponent {
public:
    Node(const char* className, const char* name) {
        set_ClassName(className);
        set_Name(name);
    }
};

// Opens the protected registry to the tests.
class OpenSession : public QELSession {
public:
    using QELSession::addComponent;
    using QELSession::getComponent;
    using QELSession::getComponents;
    using QELSession::hasComponent;
    using QELSession::hasComponents;
    using QELSession::hashCode;
    using QELSession::removeAllComponents;
    using QELSession::removeComponent;
    using QELSession::removeComponents;
    static OpenSession* get() { return static_cast<OpenSession*>(QELSession::getInstance()); }
};

using SessionTest = qeltest::CleanSessionTest;

} // namespace

TEST_F(SessionTest, RegistryFindsByClassAndByNameInClassOrder) {
    OpenSession* s = OpenSession::get();
    Node doc("QELDOCUMENT_CLASSNAME", "shared"), item("QELITEM_CLASSNAME", "shared"), other("QELITEM_CLASSNAME", "x");
    EXPECT_EQ(s->getComponents("QELITEM_CLASSNAME"), nullptr);
    s->addComponent(&item, "QELITEM_CLASSNAME");
    s->addComponent(&doc, "QELDOCUMENT_CLASSNAME");
    s->addComponent(&other, "QELITEM_CLASSNAME");
    EXPECT_EQ(s->getComponent("QELDOCUMENT_CLASSNAME", "shared"), &doc);
    EXPECT_EQ(s->getComponent("shared"), &item); // items were registered first
    EXPECT_TRUE(s->hasComponent("x"));
    EXPECT_TRUE(s->hasComponents("QELDOCUMENT_CLASSNAME"));
    s->removeComponent("shared");
    EXPECT_EQ(s->getComponent("shared"), &doc);
    EXPECT_EQ(s->getComponents("QELITEM_CLASSNAME")->size(), 1);
    s->removeComponents("QELITEM_CLASSNAME");
    EXPECT_FALSE(s->hasComponents("QELITEM_CLASSNAME"));
    s->removeAllComponents();
    EXPECT_FALSE(s->hasComponent("shared"));
    s->addComponent(&doc, "QELDOCUMENT_CLASSNAME");
    EXPECT_TRUE(s->hasComponent("QELDOCUMENT_CLASSNAME", "shared"));
}

TEST_F(SessionTest, SessionValuesAndDynamicPropertiesKeepExistingKeys) {
    QELSession* s = QELSession::getInstance();
    bool status = true;
    EXPECT_EQ(s->getCalculGeometricStatus(status), 0);
    EXPECT_FALSE(status);
    s->setCalculGeometricStatus(true);
    s->getCalculGeometricStatus(status);
    EXPECT_TRUE(status);
    EXPECT_EQ(s->getGeoDescDocuments(), nullptr);
    s->setGeoDescDocuments("a.CATPart");
    s->setGeoDescDocuments("b.CATPart");
    EXPECT_EQ(s->getGeoDescDocuments()->size(), 2);
    s->addDynamicProperty("d", "k", "first");
    s->addDynamicProperty("d", "k", "second");
    EXPECT_EQ((*s->getDynamicProperty("d"))[1], CATUnicodeString("first"));
}

TEST_F(SessionTest, HandlesResolveLiveComponentsOnly) {
    uint64_t handle;
    {
        Node doc("QELDOCUMENT_CLASSNAME", "d");
        handle = doc.get_Handle();
        std::string token = QELHandleTable::format(handle);
        ASSERT_EQ(token.size(), 16u);
        EXPECT_EQ(QELHandleTable::resolve(token), &doc);
        EXPECT_EQ(QELHandleTable::resolve(" 0x" + token + "\r"), &doc);
        EXPECT_EQ(QELHandleTable::resolve("0X" + token), &doc);
        // Only "0x" is a prefix: two other characters make a token too long.
        EXPECT_EQ(QELHandleTable::resolve("1x" + token), nullptr);
        EXPECT_EQ(QELHandleTable::resolve("0y" + token), nullptr);
        std::string lower = token;
        for (auto& c : lower) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
        EXPECT_EQ(QELHandleTable::resolve(lower), &doc);
        for (const char* bad : {"", "12", "ZZZZZZZZZZZZZZZZ", "00000000000000001", "-000000000000001"}) {
            EXPECT_EQ(QELHandleTable::resolve(std::string(bad)), nullptr) << bad;
        }
        Node next("QELITEM_CLASSNAME", "i");
        EXPECT_EQ(next.get_Handle(), handle + 1);
    }
    // Stale: the component is gone and its handle is never given again.
    EXPECT_EQ(QELHandleTable::resolve(handle), nullptr);
    Node later("QELITEM_CLASSNAME", "later");
    EXPECT_GT(later.get_Handle(), handle + 1);
    EXPECT_EQ(QELHandleTable::format(0xABCull), "0000000000000ABC");
}

TEST_F(SessionTest, NumberingRestartsOnlyWithoutLiveComponents) {
    QELSession::freeModel();
    {
        Node alive("QELITEM_CLASSNAME", "a");
        EXPECT_FALSE(QELHandleTable::restartNumbering());
    }
    if (QELHandleTable::liveCount() != 0) GTEST_SKIP() << "components of other tests are alive";
    EXPECT_TRUE(QELHandleTable::restartNumbering());
    Node first("QELITEM_CLASSNAME", "f");
    EXPECT_EQ(first.get_Handle(), 1u);
}

TEST_F(SessionTest, ModelHeapFreesAdoptedComponentsInOneCall) {
    auto* adopted = QELModelHeap::adopt(new Node("QELDOCUMENT_CLASSNAME", "heap"));
    adopted->addStringProperty("k", "v");
    uint64_t handle = adopted->get_Handle();
    EXPECT_EQ(QELHandleTable::resolve(handle), adopted);
    QELSession::freeModel();
    EXPECT_EQ(QELHandleTable::resolve(handle), nullptr);
    EXPECT_EQ(QELModelHeap::size(), 0u);
}
