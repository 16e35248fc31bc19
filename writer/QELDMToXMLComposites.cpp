// Blocks a document's Item_Info may carry besides its ordinary fields: the
// composites tree of a part, read live from the host, the analysis files of
// an analysis document, and the external files attached to a document.

#include <utility>

#include "CV5CAAQELStacking.h"
#include "JNLManager.h"
#include "QELDMToXML.h"
#include "QELElementNames.h"
#include "QELLink.h"
#include "QELLookups.h"
#include "UTILFile.h"

using namespace QELLookups;

namespace {

bool hasEntries(const TYPVectorCATUnicodeString* list) { return list && !list->empty(); }

} // namespace

long QELDMToXML::writeComposites(QELDocument* doc, QELComponent* component) {
    CV5CAAQELDocument* host = hostDocument(doc);
    // A component with no modified state known (-1, or none at all) is not
    // being stored, so the PDM side has no composites to update for it.
    if (!host || !component || component->getIntegerProperty("Modified_Flag") == -1) return 0;

    TYPVectorPCV5CAAQELStacking stackings;
    long status = host->getAllStackings(stackings);
    if (status < 0 || stackings.empty()) return status;

    writeOpenBalise(QELElement::PartComposites);
    for (CV5CAAQELStacking* stacking : stackings) writeCompositeStacking(stacking, status);
    writeCloseBalise(QELElement::PartComposites);
    return status;
}

// Each level below writes its own element around its children. A failing
// host call drops only the level below it; a null entry keeps its closing
// line, which the PDM side's reader of this block relies on.
void QELDMToXML::writeCompositeStacking(CV5CAAQELStacking* stacking, long& status) {
    if (stacking) {
        CATUnicodeString name;
        TYPVectorPCV5CAAQELPliesGroup groups;
        writeOpenBalise(QELElement::Stacking);
        status = stacking->getStackingName(name);
        writeValue(name);
        status = stacking->getAllPliesGroups(groups);
        if (status >= 0) {
            for (CV5CAAQELPliesGroup* group : groups) writeCompositePliesGroup(group, status);
        }
    }
    writeCloseBalise(QELElement::Stacking);
}

void QELDMToXML::writeCompositePliesGroup(CV5CAAQELPliesGroup* group, long& status) {
    if (group) {
        CATUnicodeString name;
        TYPVectorPCV5CAAQELSequence sequences;
        writeOpenBalise(QELElement::PliesGroup);
        status = group->getPliesGroupName(name);
        writeValue(name);
        status = group->getAllSequences(sequences);
        if (status >= 0) {
            for (CV5CAAQELSequence* sequence : sequences) writeCompositeSequence(sequence, status);
        }
    }
    writeCloseBalise(QELElement::PliesGroup);
}

void QELDMToXML::writeCompositeSequence(CV5CAAQELSequence* sequence, long& status) {
    if (sequence) {
        CATUnicodeString name;
        TYPVectorPCV5CAAQELPly plies;
        writeOpenBalise(QELElement::Sequence);
        status = sequence->getSequenceName(name);
        writeValue(name);
        status = sequence->getAllPlies(plies);
        if (status >= 0) {
            for (CV5CAAQELPly* ply : plies) writeCompositePly(ply, status);
        }
    }
    writeCloseBalise(QELElement::Sequence);
}

void QELDMToXML::writeCompositePly(CV5CAAQELPly* ply, long& status) {
    if (ply) {
        typedef long (CV5CAAQELPly::*Getter)(CATUnicodeString&) const;
        CATUnicodeString text;
        auto value = [&](Getter getter) {
            status = (ply->*getter)(text);
            writeValue(text);
        };
        auto element = [&](const char* name, Getter getter) {
            status = (ply->*getter)(text);
            writeBalise(name, text, "", 1);
        };
        writeOpenBalise(QELElement::Ply);
        value(&CV5CAAQELPly::getPlyName);
        value(&CV5CAAQELPly::get3DRepresentationFilePath);
        value(&CV5CAAQELPly::get2DRepresentationFilePath);
        element(QELElement::Material, &CV5CAAQELPly::getMaterialName);
        writeOpenBalise(QELElement::COGPosition);
        value(&CV5CAAQELPly::getCOGX);
        value(&CV5CAAQELPly::getCOGY);
        value(&CV5CAAQELPly::getCOGZ);
        writeCloseBalise(QELElement::COGPosition);
        // ZX before ZY: the PDM side reads the inertia lines in this order.
        writeOpenBalise(QELElement::Inertia);
        value(&CV5CAAQELPly::getInertiaXX);
        value(&CV5CAAQELPly::getInertiaYY);
        value(&CV5CAAQELPly::getInertiaZZ);
        value(&CV5CAAQELPly::getInertiaXY);
        value(&CV5CAAQELPly::getInertiaZX);
        value(&CV5CAAQELPly::getInertiaZY);
        writeCloseBalise(QELElement::Inertia);
        element(QELElement::Direction, &CV5CAAQELPly::getDirection);
        element(QELElement::SurfacicMass, &CV5CAAQELPly::getSurfacicMass);
        element(QELElement::Mass, &CV5CAAQELPly::getMass);
        element(QELElement::WetArea, &CV5CAAQELPly::getWetArea);
    }
    writeCloseBalise(QELElement::Ply);
}

void QELDMToXML::writeAnalysisFiles(QELComponent* component) {
    if (!component) return;
    const TYPVectorCATUnicodeString* results = component->getDynamicProperty("AnalysisResult");
    const TYPVectorCATUnicodeString* computations = component->getDynamicProperty("AnalysisComputation");
    const int lists = (hasEntries(results) ? 1 : 0) + (hasEntries(computations) ? 1 : 0);
    if (lists == 0) return;

    writeOpenBalise(QELElement::AnalysisFiles);
    writeBalise(QELElement::NBElements, lists);
    for (const auto& list : {std::make_pair(QELElement::AnalysisResultsFiles, results),
                             std::make_pair(QELElement::AnalysisComputeFiles, computations)}) {
        if (!hasEntries(list.second)) continue;
        const TYPVectorCATUnicodeString& entries = *list.second;
        writeOpenBalise(list.first);
        // Entries are (path, data) pairs: the count is the pairs', and each
        // path at an even place is listed, a trailing one without its data
        // included.
        writeBalise(QELElement::NBElements, entries.size() / 2);
        CATUnicodeString directory, fileName;
        for (int i = 0; i < entries.size(); i += 2) {
            UTILFile::splitPathAndFileName(entries[i], directory, fileName);
            writeBalise(QELElement::Attribut, fileName, "", 0);
        }
        writeCloseBalise(list.first);
    }
    writeCloseBalise(QELElement::AnalysisFiles);
}

void QELDMToXML::writeExternalFiles(QELDocument* doc) {
    const char* const function = "QELDMToXML::writeExternalFiles";
    JNLManager::beginFunction(function);
    TYPVectorPQELLink* links = nullptr; // the document's own vector
    if (!doc) {
        JNLManager::writeMsg("writeExternalFiles : The primary document is NULL.");
    } else if (CV5CAAQELDocument* host = hostDocument(doc)) {
        host->getExternalFileDocuments(links);
    }
    if (doc && (!links || links->empty())) {
        JNLManager::writeMsg("writeExternalFiles : There is no External Files attached at this primary document.");
    } else if (links) {
        writeOpenBalise(QELElement::Externals);
        writeBalise(QELElement::NBElements, links->size());
        for (const QELLink* link : *links) {
            const QELComponent* secondary = link ? link->get_Secondary() : nullptr;
            // The PDM side reads each entry as four lines, the third one
            // empty; a link without a document keeps its place with no name.
            writeOpenBalise(QELElement::Attribut);
            writeValue(secondary ? secondary->getStringProperty("Doc_Old_File_Name") : CATUnicodeString());
            writeValue(CATUnicodeString());
            writeCloseBalise(QELElement::Attribut);
        }
        writeCloseBalise(QELElement::Externals);
    }
    JNLManager::endFunction(function, -1);
}
