#include <gtest/gtest.h>

#include <algorithm>
#include <clocale>
#include <regex>

#include "CATIProduct.h"
#include "JNLManager.h"
#include "QELComponent.h"
#include "QELProperty.h"
#include "TYPSharedText.h"
#include "QELPropertySet.h"

namespace {
const double kIdentity[16] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0.5, -2.25, 1e21, 1};
}

TEST(QELPropertySet, ReplaceChangesKindAndMovesThePropertyToTheEnd) {
    QELPropertySet set;
    set.addIntegerArrayProperty("a", 1);
    set.addStringProperty("b", "x");
    set.addStringProperty("a", "text");
    EXPECT_EQ(set.getPropertiesCount(), 2);
    EXPECT_EQ(set.getIntegerArrayProperty("a"), nullptr);
    EXPECT_EQ(set.getStringPropertyValue("a"), CATUnicodeString("text"));
    EXPECT_EQ(set.getPropertyNameByIndex(0), CATUnicodeString("b"));
    EXPECT_EQ(set.getPropertyNameByIndex(1), CATUnicodeString("a"));
    EXPECT_EQ(set.getPropertyTypeByIndex(1), QELPROPERTY_STRING);
}

TEST(QELPropertySet, ReplaceOfTheSameKindWritesInPlaceAndStillMovesToTheEnd) {
    QELPropertySet set;
    set.addStringProperty("s", "old");
    set.addIntegerProperty("i", 1);
    set.addMatrixProperty("m", kIdentity);
    set.addBooleanProperty("b", false);
    QELProperty* s = set.getProperty("s");
    double* m = set.getMatrixPropertyValue("m");

    set.addStringProperty("s", "new");
    set.addMatrixProperty("m", m); // its own value
    set.addIntegerProperty("i", 7);
    set.addBooleanProperty("b", true);
    EXPECT_EQ(set.getProperty("s"), s);
    EXPECT_EQ(set.getMatrixPropertyValue("m"), m);
    EXPECT_EQ(m[13], -2.25);
    EXPECT_EQ(set.getStringPropertyValue("s"), CATUnicodeString("new"));
    EXPECT_EQ(set.getIntegerPropertyValue("i"), 7);
    EXPECT_TRUE(set.getBooleanPropertyValue("b"));
    const char* order[] = {"s", "m", "i", "b"};
    ASSERT_EQ(set.getPropertiesCount(), 4);
    for (int i = 0; i < 4; ++i) EXPECT_EQ(set.getPropertyNameByIndex(i), CATUnicodeString(order[i])) << i;

    set.addMatrixProperty("m", nullptr);
    EXPECT_EQ(set.getMatrixPropertyValue("m")[0], 0.0);
    // A name taken from the replaced property itself survives a change of kind.
    set.addIntegerProperty(set.getProperty("s")->get_Name(), 3);
    EXPECT_EQ(set.getIntegerPropertyValue("s"), 3);
    EXPECT_EQ(set.getPropertyNameByIndex(3), CATUnicodeString("s"));
}

TEST(QELPropertySet, ManyReplacementsKeepNamesUniqueAndFindable) {
    // Past a few properties the set indexes its names; replacements of both
    // kinds leave gaps that later compactions must not lose.
    QELPropertySet set;
    for (int i = 0; i < 100; ++i) set.addIntegerProperty(CATUnicodeString("p" + std::to_string(i)), i);
    for (int round = 0; round < 5; ++round) {
        for (int i = round; i < 100; i += 3) {
            const CATUnicodeString name("p" + std::to_string(i));
            if (round % 2) set.addStringProperty(name, "s");
            else set.addIntegerProperty(name, -i);
        }
        ASSERT_EQ(set.getPropertiesCount(), 100) << round;
    }
    std::vector<std::string> names;
    for (int i = 0; i < 100; ++i) names.push_back(set.getPropertyNameByIndex(i).ToLatin1());
    std::sort(names.begin(), names.end());
    EXPECT_EQ(std::unique(names.begin(), names.end()), names.end());
    for (int i = 0; i < 100; ++i) {
        const std::string name = "p" + std::to_string(i);
        EXPECT_NE(set.getProperty(name.c_str()), nullptr) << name;
        EXPECT_NE(set.getProperty(CATUnicodeString(name)), nullptr) << name;
    }
    // A wide name is found by its own text only, never by its Latin-1 bytes.
    CATUnicodeString wide;
    wide.BuildFromUTF8("p\xE2\x82\xAC");
    set.addIntegerProperty(wide, 1);
    EXPECT_EQ(set.getIntegerPropertyValue(wide), 1);
    EXPECT_EQ(set.getProperty(wide.ToLatin1().c_str()), nullptr);
}

TEST(QELPropertySet, OrderFollowsReplacementsAcrossTheShortAndHashedLists) {
    // Replacements against a plain vector of names: short lists shift in
    // place, hashed ones leave gaps and compact back, sometimes below the
    // size at which they hash.
    for (int names : {3, 8, 9, 12, 40}) {
        QELPropertySet set;
        std::vector<std::string> order;
        unsigned long state = 7;
        for (int step = 0; step < 400; ++step) {
            state = state * 6364136223846793005UL + 1442695040888963407UL;
            const std::string name = "n" + std::to_string((state >> 33) % static_cast<unsigned long>(names));
            auto at = std::find(order.begin(), order.end(), name);
            if (at != order.end()) order.erase(at);
            order.push_back(name);
            if ((state >> 20) % 3 == 0) {
                set.addStringProperty(name, "s");
            } else {
                set.addIntegerProperty(name, step);
            }
            if ((state >> 40) % 5) continue;
            ASSERT_EQ(set.getPropertiesCount(), static_cast<int>(order.size())) << names << " " << step;
            for (size_t i = 0; i < order.size(); ++i) {
                ASSERT_EQ(set.getPropertyNameByIndex(static_cast<int>(i)).ToLatin1(), order[i]) << names << " " << step;
                ASSERT_NE(set.getProperty(order[i].c_str()), nullptr) << order[i];
            }
        }
    }
}

TEST(TYPSharedText, OneCopyPerPropertyNameGoneWithItsLastProperty) {
    const size_t before = TYPSharedText::count();
    const char* name = "Name_Brought_By_An_Answer_File_Only";
    {
        QELPropertySet first;
        QELPropertySet second;
        first.addStringProperty(name, "1");
        second.addIntegerProperty(name, 2);
        EXPECT_EQ(&first.getProperty(name)->get_Name(), &second.getProperty(name)->get_Name());
        EXPECT_EQ(TYPSharedText::count(), before + 1);
        first.addBooleanProperty(name, true); // another kind: a new property, same copy
        EXPECT_EQ(TYPSharedText::count(), before + 1);

        QELProperty* p = second.getProperty(name);
        p->set_Name(p->get_Name()); // its own name
        EXPECT_EQ(p->get_Name(), CATUnicodeString(name));
        p->set_Name("Renamed_Once_And_For_All_Here");
        EXPECT_EQ(TYPSharedText::count(), before + 2);
    }
    EXPECT_EQ(TYPSharedText::count(), before);
}

TEST(QELPropertySet, TypedGettersAnswerNeutrallyForMissingOrOtherKinds) {
    QELPropertySet set;
    EXPECT_EQ(set.getIntegerPropertyValue("none"), -1); // no map yet
    set.addStringProperty("s", "v");
    set.addBooleanProperty("b", true);
    set.addMatrixProperty("m", kIdentity);
    EXPECT_EQ(set.getIntegerPropertyValue("none"), -1);
    EXPECT_EQ(set.getStringPropertyValue("b"), CATUnicodeString(""));
    EXPECT_FALSE(set.getBooleanPropertyValue("s"));
    EXPECT_EQ(set.getMatrixPropertyValue("s"), nullptr);
    EXPECT_EQ(set.getStringArrayProperty("m"), nullptr);
    EXPECT_EQ(set.getMatrixPropertyValue("m")[13], -2.25);
    // The integer getter does not check the kind.
    EXPECT_EQ(set.getIntegerPropertyValue("b"), 1);
    EXPECT_EQ(set.getIntegerPropertyByIndex(1), 1);
    EXPECT_TRUE(set.isPropertyExist("m"));
    EXPECT_EQ(set.getProperty(7), nullptr);
    EXPECT_EQ(set.getPropertyNameByIndex(7), CATUnicodeString(""));
}

// A holder that never got a property answers every getter as an empty set
// does: the writer reads flags of components that were never given them.
TEST(QELPropertySet, HolderWithoutPropertiesAnswersAsAnEmptySet) {
    const QELComponent holder;
    ASSERT_EQ(holder.getPropertySet(), nullptr);
    const QELPropertySet empty;
    EXPECT_EQ(holder.getBooleanProperty("b"), empty.getBooleanPropertyValue("b"));
    EXPECT_EQ(holder.getBooleanProperty(CATUnicodeString("b")), empty.getBooleanPropertyValue("b"));
    EXPECT_EQ(holder.getBooleanPropertyByIndex(0), empty.getBooleanPropertyByIndex(0));
    EXPECT_EQ(holder.getIntegerProperty("i"), empty.getIntegerPropertyValue("i"));
    EXPECT_EQ(holder.getIntegerProperty(CATUnicodeString("i")), empty.getIntegerPropertyValue("i"));
    EXPECT_EQ(holder.getIntegerPropertyByIndex(0), empty.getIntegerPropertyByIndex(0));
    EXPECT_EQ(holder.getPropertyTypeByIndex(0), empty.getPropertyTypeByIndex(0));
    EXPECT_EQ(holder.getStringProperty("s"), empty.getStringPropertyValue("s"));
    EXPECT_EQ(holder.getStringPropertyByIndex(0), empty.getStringPropertyByIndex(0));
    EXPECT_EQ(holder.getMatrixProperty("m"), nullptr);
    EXPECT_EQ(holder.getMatrixPropertyByIndex(0), nullptr);
}

TEST(QELPropertySet, ArraysAppendAndRefuseAnotherStorage) {
    QELPropertySet set;
    set.addStringArrayProperty("s", "a");
    set.addStringArrayProperty("s", "b");
    set.addBooleanArrayProperty("flags", true);
    set.addBooleanArrayProperty("flags", false);
    ASSERT_EQ(set.getStringArrayProperty("s")->size(), 2);
    EXPECT_EQ((*set.getBooleanArrayProperty("flags"))[0], 1);
    EXPECT_EQ((*set.getBooleanArrayProperty("flags"))[1], 0);

    JNLManager::clear();
    set.addStringProperty("text", "keep");
    set.addIntegerArrayProperty("text", 5);
    EXPECT_EQ(set.getStringPropertyValue("text"), CATUnicodeString("keep"));
    EXPECT_TRUE(JNLManager::contains("addIntegerArrayProperty"));

    EXPECT_FALSE(set.clearStringArrayProperty("flags"));
    EXPECT_EQ(set.getBooleanArrayProperty("flags")->size(), 2);
    EXPECT_TRUE(set.clearStringArrayProperty("s"));
    ASSERT_NE(set.getStringArrayProperty("s"), nullptr);
    EXPECT_EQ(set.getStringArrayProperty("s")->size(), 0);
    JNLManager::clear();
}

TEST(QELPropertySet, DynamicMergeOverwritesEveryPairOnlyWhenAsked) {
    QELPropertySet set;
    set.addDynamicProperty("d", "k", "v1", false);
    set.addDynamicProperty("d", "other", "o", false);
    set.addDynamicProperty("d", "k", "v2", false);
    TYPVectorCATUnicodeString* pairs = set.getDynamicPropertyValue("d");
    ASSERT_EQ(pairs->size(), 4);
    EXPECT_EQ((*pairs)[1], CATUnicodeString("v1"));
    // A second pair with the same key, appended as a plain string element.
    set.addStringArrayProperty("d", "k");
    set.addStringArrayProperty("d", "v3");
    set.addDynamicProperty("d", "k", "new", true);
    EXPECT_EQ((*pairs)[1], CATUnicodeString("new"));
    EXPECT_EQ((*pairs)[5], CATUnicodeString("new"));
    EXPECT_EQ(pairs->size(), 6);
}

TEST(QELPropertySet, MatricesPrintWithAPointInADecimalCommaLocale) {
    const char* chosen = nullptr;
    for (const char* name : {"de_DE.UTF-8", "fr_FR.UTF-8", "de_DE", "fr_FR"}) {
        if ((chosen = std::setlocale(LC_NUMERIC, name))) break;
    }
    if (!chosen) GTEST_SKIP() << "no decimal-comma locale installed";
    QELPropertySet set;
    set.addMatrixProperty("m", kIdentity);
    std::string out = set.print(0).ConvertToChar();
    std::setlocale(LC_NUMERIC, "C");
    EXPECT_NE(out.find("[12] 0.5 "), std::string::npos);
}

TEST(QELPropertySet, ProductReferenceIsHeldAndReleased) {
    auto* product = new CATIProduct("P");
    {
        QELPropertySet set;
        set.addCATIProductProperty("p", product);
        EXPECT_EQ(product->RefCount(), 2u);
        EXPECT_EQ(set.getCATIProductPropertyValue("p"), product);
        set.addCATIProductProperty("null", nullptr);
        EXPECT_EQ(set.getCATIProductPropertyValue("null"), nullptr);
    }
    EXPECT_EQ(product->RefCount(), 1u);
    product->Release();
}

TEST(QELPropertySet, StringListOutlivesItsPropertyAndClearKeepsTheMap) {
    CATListValCATUnicodeString* kept = nullptr;
    {
        QELPropertySet set;
        CATListValCATUnicodeString list;
        list.Append("survivor");
        set.addStringListProperty("l", list);
        kept = set.getStringListProperty("l");
        set.addStringProperty("l", "replaced");
        set.addIntegerProperty("i", 1);
        set.clear();
        EXPECT_EQ(set.getPropertiesCount(), 0);
        set.addIntegerProperty("i", 2); // the old "i" is unreachable, not replaced
        EXPECT_EQ(set.getIntegerPropertyValue("i"), 2);
        set.release();
        set.release();
        EXPECT_EQ(set.getPropertiesCount(), 0);
        set.addIntegerProperty("again", 3);
        EXPECT_EQ(set.getIntegerPropertyValue("again"), 3);
    }
    ASSERT_NE(kept, nullptr);
    EXPECT_EQ((*kept)[1], CATUnicodeString("survivor"));
}

