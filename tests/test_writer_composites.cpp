#include <gtest/gtest.h>

#include <string>

#include "CV5CAAQELDocument.h"
#include "CV5CAAQELStacking.h"
#include "QELDMToXMLAssemblyAccess.h"
#include "QELLink.h"

using namespace assembly_test;
typedef QELDMToXMLAssemblyAccess Access;

class CompositesWriterTest : public AssemblyWriterTest {};

namespace {

// A host part with one stacking > plies group > sequence, and a modified
// component, whose composites are therefore wanted.
struct CompositesModel {
    CV5CAAQELDocument* part = QELModelHeap::adopt(new CV5CAAQELDocument("Wing.CATPart", EnumDocumentType_Part));
    QELDocument* component = QELModelHeap::adopt(new QELDocument("Wing"));
    CV5CAAQELStacking* stacking = QELModelHeap::adopt(new CV5CAAQELStacking("Stacking.1"));
    CV5CAAQELPliesGroup* group = QELModelHeap::adopt(new CV5CAAQELPliesGroup("Group.1"));
    CV5CAAQELSequence* sequence = QELModelHeap::adopt(new CV5CAAQELSequence("Sequence.1"));

    CompositesModel() {
        component->addIntegerProperty("Modified_Flag", 1);
        part->addStacking(stacking);
        stacking->addPliesGroup(group);
        group->addSequence(sequence);
    }

    // Value i of the ply is "v<i>", the material as given.
    void addPly(const char* name, const char* material) {
        auto* ply = QELModelHeap::adopt(new CV5CAAQELPly(name));
        for (int v = CV5CAAQELPly::RepresentationFilePath3D; v < CV5CAAQELPly::ValueCount; ++v) {
            ply->setValue(static_cast<CV5CAAQELPly::Value>(v), "v" + std::to_string(v));
        }
        ply->setValue(CV5CAAQELPly::MaterialName, material);
        sequence->addPly(ply);
    }

    Lines write(long& status) {
        return written([&](QELDMToXML& w) { status = Access::composites(w, part, component); });
    }
};

// The inertia comes XX, YY, ZZ, XY, ZX, ZY: values 7 to 12.
std::string plyLines(const std::string& name, const std::string& material) {
    return "<Ply>|" + name + "|v1|v2|<Material>|" + material +
           "|</Material>|<COGPosition>|v4|v5|v6|</COGPosition>|<Inertia>|v7|v8|v9|v10|v11|v12|</Inertia>"
           "|<Direction>|v13|</Direction>|<SurfacicMass>|v14|</SurfacicMass>|<Mass>|v15|</Mass>|<WetArea>|v16"
           "|</WetArea>|</Ply>";
}

const std::string kOpen = "<PartComposites>|<Stacking>|Stacking.1|<PliesGroup>|Group.1|<Sequence>|Sequence.1";
const std::string kClose = "</Sequence>|</PliesGroup>|</Stacking>|</PartComposites>";

} // namespace

TEST_F(CompositesWriterTest, TreeNestsLevelsKeepsAnEmptyMaterialAndAnEmptySequence) {
    CompositesModel m;
    long status = -1;
    EXPECT_EQ(L(kOpen + "|" + kClose), m.write(status)) << "a sequence without plies keeps its name line";
    m.addPly("Ply.1", "Carbon");
    m.addPly("Ply.2", "");
    EXPECT_EQ(L(kOpen + "|" + plyLines("Ply.1", "Carbon") + "|" + plyLines("Ply.2", "") + "|" + kClose),
              m.write(status));
    EXPECT_EQ(0, status);
}

TEST_F(CompositesWriterTest, NothingForAnUnmodifiedComponentOrWithoutHostAnswers) {
    CompositesModel m;
    m.addPly("Ply.1", "Carbon");
    auto* unmodified = QELModelHeap::adopt(new QELDocument("Unmodified"));
    unmodified->addIntegerProperty("Modified_Flag", -1);
    auto* plain = QELModelHeap::adopt(new QELDocument("Plain.CATPart"));
    const std::pair<QELDocument*, QELComponent*> cases[] = {
        {m.part, unmodified}, {m.part, nullptr}, {nullptr, m.component}, {plain, m.component}};
    for (const auto& c : cases) {
        long status = -7;
        EXPECT_EQ(Lines(), written([&](QELDMToXML& w) { status = Access::composites(w, c.first, c.second); }));
        EXPECT_EQ(0, status);
    }
}

TEST_F(CompositesWriterTest, HostFailureShortensTheLevelBelowAndNullEntriesKeepTheirClosingLine) {
    CompositesModel m;
    auto* failing = QELModelHeap::adopt(new CV5CAAQELPliesGroup("Failing"));
    failing->addSequence(m.sequence);
    failing->setStatus(-2);
    m.stacking->addPliesGroup(failing);
    m.sequence->addPly(nullptr);
    m.part->addStacking(nullptr);
    long status = 0;
    EXPECT_EQ(L(kOpen + "|</Ply>|</Sequence>|</PliesGroup>|<PliesGroup>|Failing|</PliesGroup>|</Stacking>|</Stacking>"
                        "|</PartComposites>"),
              m.write(status));
    EXPECT_EQ(-2, status) << "the status of the last host call";

    m.part->setStackingsStatus(-1);
    EXPECT_EQ(Lines(), m.write(status));
    EXPECT_EQ(-1, status);
}

TEST_F(CompositesWriterTest, AnalysisFilesCountListsAndPairs) {
    struct {
        bool hasResults;
        std::initializer_list<const char*> results;
        bool hasComputations;
        std::initializer_list<const char*> computations;
        const char* expected;
    } cases[] = {
        {true, {"C:\\run\\a.res", "x", "/run/b.res", "y"}, false, {},
         "<AnalysisFiles>|<NBElements>|1|</NBElements>|<AnalysisResultsFiles>|<NBElements>|2|</NBElements>"
         "|<Attribut>|a.res|</Attribut>|<Attribut>|b.res|</Attribut>|</AnalysisResultsFiles>|</AnalysisFiles>"},
        {true, {}, true, {"/run/c.cmp", "z", "/run/odd.cmp"}, // the trailing path is listed, not counted
         "<AnalysisFiles>|<NBElements>|1|</NBElements>|<AnalysisComputeFiles>|<NBElements>|1|</NBElements>"
         "|<Attribut>|c.cmp|</Attribut>|<Attribut>|odd.cmp|</Attribut>|</AnalysisComputeFiles>|</AnalysisFiles>"},
        {true, {"r.res", "x"}, true, {"c.cmp", "z"},
         "<AnalysisFiles>|<NBElements>|2|</NBElements>|<AnalysisResultsFiles>|<NBElements>|1|</NBElements>"
         "|<Attribut>|r.res|</Attribut>|</AnalysisResultsFiles>|<AnalysisComputeFiles>|<NBElements>|1"
         "|</NBElements>|<Attribut>|c.cmp|</Attribut>|</AnalysisComputeFiles>|</AnalysisFiles>"},
        {true, {}, true, {}, ""},
        {false, {}, false, {}, ""},
    };
    for (const auto& c : cases) {
        auto* analysis = QELModelHeap::adopt(new QELDocument("Shaft.CATAnalysis", EnumDocumentType_Analysis));
        if (c.hasResults) setStrings(analysis, "AnalysisResult", c.results);
        if (c.hasComputations) setStrings(analysis, "AnalysisComputation", c.computations);
        EXPECT_EQ(L(c.expected), written([&](QELDMToXML& w) { Access::analysisFiles(w, analysis); }));
    }
}

TEST_F(CompositesWriterTest, ExternalFilesAreFourLinesEachWithAnEmptyThird) {
    auto* document = QELModelHeap::adopt(new CV5CAAQELDocument("Shaft.CATPart", EnumDocumentType_Part));
    auto externals = [&](QELDocument* d) { return written([&](QELDMToXML& w) { Access::externalFiles(w, d); }); };
    EXPECT_EQ(Lines(), externals(nullptr));
    EXPECT_TRUE(JNLManager::contains("writeExternalFiles : The primary document is NULL."));
    EXPECT_EQ(Lines(), externals(document));
    EXPECT_TRUE(
        JNLManager::contains("writeExternalFiles : There is no External Files attached at this primary document."));

    for (const char* name : {"notes.txt", "loads.csv"}) {
        auto* external = QELModelHeap::adopt(new QELDocument(name));
        external->addStringProperty("Doc_Old_File_Name", name);
        document->addExternalFileDocument(QELModelHeap::adopt(new QELLink(19, "external_file", document, external)));
    }
    EXPECT_EQ(L("<Externals>|<NBElements>|2|</NBElements>|<Attribut>|notes.txt||</Attribut>|<Attribut>|loads.csv||"
                "</Attribut>|</Externals>"),
              externals(document));
    EXPECT_TRUE(JNLManager::contains("END QELDMToXML::writeExternalFiles (-1)"));
}
