// The leaf and list writers of a document block: broken-icon and null rules,
// the type word, mapping attributes with their renaming and cut, secondaries,
// linked documents and sheets.

#include <functional>
#include <string>
#include <vector>

#include "QELDMToXMLDocumentsAccess.h"
#include "QELDocument.h"
#include "QELElementNames.h"

using namespace documents_test;
using Access = QELDMToXMLDocumentsAccess;

namespace {

class FieldsTest : public DocumentsTest {
protected:
    void SetUp() override {
        DocumentsTest::SetUp();
        item = makeItem("Bolt", "BLT-8");
        document = makeDocument(item, "Bolt.CATPart", EnumDocumentType_Part);
        file = document->getDefaultFile();
        component = QELModelHeap::adopt(new QELAbsoluteOccurrence());
        component->set_Name("Bolt.1");
        component->addIntegerProperty("Modified_Flag", 1);
    }
    // Writes `call` with the component broken or not.
    Lines run(bool broken, const std::function<void(QELDMToXML&)>& call) {
        component->addBooleanProperty("IsBrokenIcon", broken);
        return written(call);
    }

    CV5CAAQELItem* item = nullptr;
    CV5CAAQELDocument* document = nullptr;
    QELFile* file = nullptr;
    QELAbsoluteOccurrence* component = nullptr;
};

TEST_F(FieldsTest, BrokenIconReadsError) {
    struct Case {
        const char* element;
        std::function<void(QELDMToXML&)> call;
        const char* value;
    };
    const std::vector<Case> cases = {
        {QELElement::Item_ID, [&](QELDMToXML& w) { Access::writeItemID(w, item, component); }, "Bolt"},
        {QELElement::ItemRev_UID, [&](QELDMToXML& w) { Access::writeItemRevUID(w, item, component); }, "REV-BLT-8"},
        {QELElement::Part_Number, [&](QELDMToXML& w) { Access::writePartNumber(w, item, component); }, "BLT-8"},
        {QELElement::File_Name, [&](QELDMToXML& w) { Access::writeFileName(w, file, component); }, "Bolt.CATPart"},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(run(false, c.call), leafLines(c.element, c.value));
        EXPECT_EQ(run(true, c.call), leafLines(c.element, "ERROR"));
    }

    // The dataset a broken icon is known under stays; "ERROR" only stands in
    // for one the model does not know.
    auto dataset = [&](QELDMToXML& w) { Access::writeDatasetUID(w, document, component); };
    EXPECT_EQ(run(true, dataset), leafLines(QELElement::DST_UID, "DST-Bolt.CATPart"));
    document->addStringProperty("DST_UID", "");
    EXPECT_EQ(run(true, dataset), leafLines(QELElement::DST_UID, "ERROR"));
    EXPECT_TRUE(run(false, dataset).empty());

    auto namedRef = [&](QELDMToXML& w) { Access::writeNamedRefUID(w, document, component); };
    EXPECT_EQ(run(false, namedRef), leafLines(QELElement::NamedRef_UID, "NR-Bolt.CATPart"));
    EXPECT_TRUE(run(true, namedRef).empty());
    EXPECT_TRUE(JNLManager::contains("QELDMToXML::writeNamedRefUID : ip_component is a broken icon"));
}

TEST_F(FieldsTest, NullArgumentsAreJournalled) {
    const std::vector<std::pair<std::function<void(QELDMToXML&)>, const char*>> cases = {
        {[](QELDMToXML& w) { Access::writeItemID(w, nullptr, nullptr); }, "QELDMToXML::writeItemID: ip_item is NULL"},
        {[](QELDMToXML& w) { Access::writeDocUUID(w, nullptr); }, "QELDMToXML::writewriteDocUUID: ip_document is NULL"},
        {[](QELDMToXML& w) { Access::writeParentDatasetUID(w, nullptr, 1); },
         "QELDMToXML::writeParentDatasetUID: ip_parent_document is NULL"},
        {[](QELDMToXML& w) { Access::writeParentDocName(w, nullptr, 1); },
         "QELDMToXML::writeParentDocName: ip_parent_file is NULL"},
        {[](QELDMToXML& w) { Access::writeParentInstanceName(w, nullptr, 1); },
         "QELDMToXML::writeParentInstanceName: ip_parent is NULL"},
    };
    for (const auto& c : cases) {
        JNLManager::clear();
        EXPECT_TRUE(written(c.first).empty()) << c.second;
        EXPECT_EQ(JNLManager::entries(), std::vector<std::string>{c.second});
    }
}

TEST_F(FieldsTest, WorkspaceHasNoParent) {
    auto* ws = QELModelHeap::adopt(new QELWorkSpace());
    ws->addIntegerProperty("FileType", EnumDocumentType_Product);
    const Lines lines = written([&](QELDMToXML& w) {
        Access::writeParentItemID(w, nullptr, 0);
        Access::writeParentItemRevID(w, item, 0);
        Access::writeParentComp(w, ws, 0);
        Access::writeParentInstanceName(w, nullptr, 0);
        Access::writeParentDatasetUID(w, nullptr, 0);
    });
    EXPECT_EQ(lines, (Lines{"<Parent_Item_ID>", "ERROR", "</Parent_Item_ID>", "<Parent_ItemRev_ID>", "ERROR",
                            "</Parent_ItemRev_ID>", "<Parent_Comp>", "NO", "</Parent_Comp>"}));
    EXPECT_TRUE(JNLManager::entries().empty());

    // A catalog's workspace is no instance and has no Parent_Comp.
    ws->addIntegerProperty("FileType", EnumDocumentType_Catalog);
    ws->addStringProperty("InstanceName", "Root");
    EXPECT_TRUE(written([&](QELDMToXML& w) {
                    Access::writeParentComp(w, ws, 0);
                    Access::writeInstanceName(w, ws);
                }).empty());

    // An occurrence's Parent_Comp is always written, "NO" when it has none.
    EXPECT_EQ(written([&](QELDMToXML& w) { Access::writeParentComp(w, component, 1); }),
              leafLines(QELElement::Parent_Comp, "NO"));
}

TEST_F(FieldsTest, TypeJoinsCatalogKindAndComponentType) {
    struct Case {
        bool catalog;
        const char* type;
        bool dummy;
        const char* expected; // nullptr: no element
        const char* journal;
    };
    const char* invalid = "value from CteQELABS_PROPERTY_COMP_TYPE propertie is invalid";
    const char* inconsistent =
        "value from CteQELABS_PROPERTY_COMP_TYPE propertie is inconsistent with dummy part document";
    const std::vector<Case> cases = {
        {false, "", false, nullptr, nullptr},
        {false, "COMP", false, "COMP", nullptr},
        {true, "Cgr", false, "CatalogComp Cgr", nullptr},
        {true, "", false, "CatalogComp", nullptr},
        {false, "Other", false, nullptr, invalid},
        {true, "Other", false, "CatalogComp", invalid},
        {false, "", true, "DummyPart", nullptr},
        {false, "COMP", true, "COMPDummyPart", nullptr},
        {false, "Cgr", true, nullptr, inconsistent},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string(c.type) + (c.catalog ? " catalog" : "") + (c.dummy ? " dummy" : ""));
        JNLManager::clear();
        item->setIsCatalogComp(c.catalog);
        document->addBooleanProperty("IsDummyPart", c.dummy);
        component->addStringProperty("Type", c.type);
        const Lines lines = written([&](QELDMToXML& w) { Access::writeType(w, component, document); });
        EXPECT_EQ(lines, c.expected ? leafLines(QELElement::Type, c.expected) : Lines{});
        EXPECT_EQ(JNLManager::contains(c.journal ? c.journal : "propertie"), c.journal != nullptr);
    }

    // Without a component, the type of one of the default item's occurrences.
    component->addStringProperty("Type", "COMP");
    document->addBooleanProperty("IsDummyPart", false);
    item->setIsCatalogComp(true);
    item->setOneAbsoluteOccurrence(component);
    EXPECT_EQ(written([&](QELDMToXML& w) { Access::writeType(w, nullptr, document); }),
              leafLines(QELElement::Type, "CatalogComp COMP"));
}

TEST_F(FieldsTest, MappingCountsStringsAndRenamesForThePdmSide) {
    const Lines lines = written([&](QELDMToXML& w) { Access::writeMappingAttributes(w, component, document); });
    EXPECT_EQ(lines, (Lines{"<Mapping_Attribut>", "<NBElements>", "4", "</NBElements>", "<Attribut>", "partNumber",
                            "</Attribut>", "<Attribut>", "P", "</Attribut>", "<Attribut>", "Colour", "</Attribut>",
                            "<Attribut>", "red", "</Attribut>", "</Mapping_Attribut>"}));

    TYPVectorCATUnicodeString pairs;
    for (const char* s : {"Revision", "A", "Definition", "", "Nomenclature", "n", "DescriptionRef", "d", "Lone"})
        pairs.push_back(s);
    const Lines renamed = written([&](QELDMToXML& w) { Access::writeDynamicAttributes(w, &pairs, component); });
    EXPECT_EQ(valueOf(renamed, QELElement::NBElements), "9");
    // Every string is written, an empty value too; the odd one out ends the list.
    EXPECT_EQ(valuesOf(renamed, QELElement::Attribut),
              (Lines{"revision", "A", "definition", "", "nomenclature", "n", "description", "d", "Lone"}));
}

TEST_F(FieldsTest, MappingIsHeldBackForBrokenAndUnmodifiedComponents) {
    TYPVectorCATUnicodeString* pairs = document->getDynamicProperty(QELDocument::kMappingAttributes);
    auto write = [&](QELDMToXML& w) { Access::writeDynamicAttributes(w, pairs, component); };

    EXPECT_TRUE(run(true, write).empty());
    EXPECT_TRUE(JNLManager::contains(
        "QELDMToXML::writeDynamicAttributes: does not manage dynamic attributes on broken icon"));

    component->addIntegerProperty("Modified_Flag", -1);
    EXPECT_TRUE(run(false, write).empty());
    PROCManager::setIsProcessLifeCycleFactory(true);
    EXPECT_FALSE(run(false, write).empty());

    TYPVectorCATUnicodeString none;
    EXPECT_TRUE(written([&](QELDMToXML& w) { Access::writeDynamicAttributes(w, &none, nullptr); }).empty());
    EXPECT_TRUE(JNLManager::contains("QELDMToXML::writeDynamicAttributes: no dynamic attribute"));
}

TEST_F(FieldsTest, LongOemDescriptionIsCutAndKeptCut) {
    ENVManager::setOemPrefix("ACME");
    const std::string body(300, 'x');
    struct Case {
        const char* name;
        std::string value;
        size_t expectedLength;
    };
    const std::vector<Case> cases = {
        {"no separator", body, 255},
        {"@=@ at 254", body.substr(0, 254) + "@=@" + body, 254},
        {"@=@ at 255 is past the limit", body.substr(0, 255) + "@=@" + body, 255},
        {"@=@ before the window", body.substr(0, 100) + "@=@" + body, 255},
        {"#=# at 253", body.substr(0, 253) + "#=#" + body, 253},
        {"#=# at 255", body.substr(0, 255) + "#=#" + body, 255},
        {"#=# beyond 255", body.substr(0, 256) + "#=#" + body, 255},
        {"exactly 255", body.substr(0, 255), 255},
        {"short", "a@=@b", 5},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        TYPVectorCATUnicodeString pairs;
        pairs.push_back("ACME_description");
        pairs.push_back(c.value.c_str());
        pairs.push_back("Comment");
        pairs.push_back(body.c_str());
        const Lines lines = written([&](QELDMToXML& w) { Access::writeDynamicAttributes(w, &pairs, nullptr); });
        const Lines values = valuesOf(lines, QELElement::Attribut);
        ASSERT_EQ(values.size(), 4u);
        EXPECT_EQ(values[1], c.value.substr(0, c.expectedLength));
        EXPECT_EQ(pairs[1].ToLatin1(), values[1]); // the model keeps what was sent
        EXPECT_EQ(values[3], body);                // only the OEM description is cut
    }
}

TEST_F(FieldsTest, DrawingOnImportMergesTheOemList) {
    setPairs(document, QELDocument::kOEMMappingAttributes, {"Colour", "blue", "ACME_dlname", "bolt"});
    const Lines lines = written([&](QELDMToXML& w) {
        Access::writeMappingAttributesForDrawingOnImport(w, component, document);
    });
    EXPECT_EQ(valueOf(lines, QELElement::NBElements), "6");
    EXPECT_EQ(valuesOf(lines, QELElement::Attribut),
              (Lines{"partNumber", "P", "Colour", "red", "ACME_dlname", "bolt"}));

    // A catalog component's attributes go out whatever its modified state.
    component->addIntegerProperty("Modified_Flag", -1);
    EXPECT_EQ(countOf(written([&](QELDMToXML& w) {
                          Access::writeDynamicAttributesForImportCompCatalog(w, component, document);
                      }),
                      "<Mapping_Attribut>"),
              1);
    EXPECT_TRUE(run(true, [&](QELDMToXML& w) {
                    Access::writeDynamicAttributesForImportCompCatalog(w, component, document);
                }).empty());
}

TEST_F(FieldsTest, SecondariesInCompactForm) {
    EXPECT_TRUE(written([&](QELDMToXML& w) { Access::writeSecondariesAttributes(w, document); }).empty());
    EXPECT_TRUE(JNLManager::contains("QELDMToXML::writeSecondariesAttributes : getLinkedSecondaries returns NULL"));

    auto* secondary = QELModelHeap::adopt(new QELDocument("Bolt.model", EnumDocumentType_Model));
    secondary->addStringProperty("spfilenametodisplay", "C:\\parts\\Bolt.model");
    secondary->addStringProperty("Part_Number", "BLT-8-M");
    secondary->addStringProperty("DST_UID", "DST-M");
    secondary->addBooleanProperty("Modified_Flag", true);
    secondary->addIntegerProperty("Mask", 6);
    document->addGRMDocumentLink("CATIA_secondary_Link_type", secondary);
    document->addGRMLink(QELModelHeap::adopt(new QELLink(19, "CATIA_secondary_Link_type", document, nullptr)));

    PROCManager::setIsCommandImport(true);
    const Lines lines = written([&](QELDMToXML& w) { Access::writeSecondariesAttributes(w, document); });
    EXPECT_EQ(lines, (Lines{"<secondaries>", "<NBElements>", "2", "</NBElements>", "<secondary>",
                            "C:/parts/Bolt.model", "", "BLT-8-M", "DST-M", "", "true", "6", "</secondary>",
                            "</secondaries>"}));
    EXPECT_TRUE(JNLManager::contains("QELDMToXML::writeSecondariesAttributes : Linked secondaries document is NULL"));
}

// A drawing pointing to three items; `activeIndex` is the link whose item's
// document the active sheet shows.
struct DrawingLinks {
    CV5CAAQELDocument* drawing;
    std::vector<CV5CAAQELItem*> items;

    static DrawingLinks build(int activeIndex) {
        DrawingLinks d;
        CV5CAAQELItem* owner = makeItem("Plan", "PLN-1");
        d.drawing = makeDocument(owner, "Plan.CATDrawing", EnumDocumentType_Drawing);
        const char* names[] = {"Housing", "Cover", "Shaft"};
        for (int i = 0; i < 3; ++i) {
            CV5CAAQELItem* item = makeItem(names[i], names[i]);
            CV5CAAQELDocument* doc = makeDocument(item, (std::string(names[i]) + ".CATPart").c_str(),
                                                  EnumDocumentType_Part);
            doc->setIsPointedDocOfActiveSheet(i == activeIndex);
            d.drawing->addGRMItemLink("VT_CATIAV5_DWGLINK", item);
            d.items.push_back(item);
        }
        return d;
    }
};

TEST_F(FieldsTest, LinkedDocsPutTheActiveSheetsDocumentFirst) {
    DrawingLinks d = DrawingLinks::build(2);
    component->addStringProperty("resolvedcontextid", "ctx-9");
    Lines lines = written([&](QELDMToXML& w) { Access::writeLinkedDocuments(w, component, d.drawing, 1); });
    EXPECT_EQ(valueOf(lines, QELElement::NBElements), "4");
    EXPECT_EQ(valuesOf(lines, QELElement::Attribut),
              (Lines{"Shaft", "uuid-Shaft.CATPart", "Housing", "uuid-Housing.CATPart", "Cover", "uuid-Cover.CATPart",
                     "ctx-9"}));
    EXPECT_TRUE(JNLManager::contains("-->resolved context [ctx-9]\n"));

    // The spreadsheet's list names the items only.
    lines = written([&](QELDMToXML& w) { Access::writeLinkedDocumentsForSpreadSheet(w, component, d.drawing); });
    EXPECT_EQ(valuesOf(lines, QELElement::Attribut), (Lines{"Shaft", "Housing", "Cover", "ctx-9"}));
}

TEST_F(FieldsTest, LinkedDocsLeaveOutItemsWithoutAName) {
    DrawingLinks d = DrawingLinks::build(1);
    d.items[0]->set_Name("");
    Lines lines = written([&](QELDMToXML& w) { Access::writeLinkedDocuments(w, component, d.drawing, 0); });
    EXPECT_EQ(valueOf(lines, QELElement::NBElements), "2");
    // The active link's place counts the links: with Housing left out, the
    // entry at Cover's place is Shaft's, which comes first.
    EXPECT_EQ(valuesOf(lines, QELElement::Attribut), (Lines{"Shaft", "Cover"}));

    // With every item left out no entry stands at the active place.
    d.items[1]->set_Name("");
    d.items[2]->set_Name("");
    component->addStringProperty("resolvedcontextid", "ctx");
    lines = written([&](QELDMToXML& w) { Access::writeLinkedDocuments(w, component, d.drawing, 1); });
    EXPECT_EQ(lines, (Lines{"<LinkedDocs>", "<NBElements>", "1", "</NBElements>", "<Attribut>", "ctx",
                            "</Attribut>", "</LinkedDocs>"}));
}

TEST_F(FieldsTest, LinkedDocsFollowTheDocumentType) {
    // A part without links read from a DAT file has no link type.
    document->addGRMItemLink("VT_CATIAV5_MML", makeItem("Rack", "RCK"));
    EXPECT_TRUE(written([&](QELDMToXML& w) { Access::writeLinkedDocuments(w, component, document, 0); }).empty());

    // With them, the assembly links are added to its own, each item once
    // whatever its letter case.
    document->addBooleanProperty("LinkedDocsFromDATFile", true);
    document->addGRMItemLink("VT_CATIAV5_MMLASSY", makeItem("RACK", "RCK2"));
    document->addGRMItemLink("VT_CATIAV5_MMLASSY", makeItem("Frame", "FRM"));
    const Lines lines = written([&](QELDMToXML& w) { Access::writeLinkedDocuments(w, component, document, 0); });
    EXPECT_EQ(valuesOf(lines, QELElement::Attribut), (Lines{"Rack", "Frame"}));

    // A product without any flattening link: nothing to write.
    CV5CAAQELDocument* product = makeDocument(item, "Bolt.CATProduct", EnumDocumentType_Product);
    EXPECT_TRUE(written([&](QELDMToXML& w) { Access::writeLinkedDocuments(w, component, product, 1); }).empty());
    EXPECT_TRUE(JNLManager::contains("no linked doc to write"));

    // A resolved context gives a part without that flag a list all the same,
    // with the assemblies it is used in and no links of its own.
    document->addBooleanProperty("LinkedDocsFromDATFile", false);
    component->addStringProperty("resolvedcontextid", "CTX-1");
    const Lines inContext = written([&](QELDMToXML& w) { Access::writeLinkedDocuments(w, component, document, 0); });
    EXPECT_EQ(valuesOf(inContext, QELElement::NBElements), (Lines{"3"}));
    EXPECT_EQ(valuesOf(inContext, QELElement::Attribut), (Lines{"RACK", "Frame", "CTX-1"}));
}

TEST_F(FieldsTest, SheetsOfADrawing) {
    CV5CAAQELDocument* drawing = makeDocument(item, "Bolt.CATDrawing", EnumDocumentType_Drawing);
    EXPECT_TRUE(written([&](QELDMToXML& w) { Access::writeSheetsForDrawing(w, drawing); }).empty());
    for (const char* sheet : {"Front", "", "Detail"}) drawing->addSheetName(sheet);
    drawing->setDWActiveSheet("Detail");
    document->addSheetName("Wrongly on a part");
    const Lines lines = written([&](QELDMToXML& w) {
        Access::writeSheetsForDrawing(w, drawing);
        Access::writeSheetsForDrawing(w, document);
    });
    EXPECT_EQ(lines, (Lines{"<Sheets>", "<Active_Sheet>", "Detail", "</Active_Sheet>", "<NBElements>", "3",
                            "</NBElements>", "<Attribut>", "Front", "</Attribut>", "<Attribut>", "Detail",
                            "</Attribut>", "</Sheets>"}));
}

} // namespace
