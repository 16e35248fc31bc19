#ifndef SampleModel_H
#define SampleModel_H

#include "QELAbsoluteOccurrence.h"
#include "QELAbsoluteView.h"
#include "QELDocument.h"
#include "QELForm.h"
#include "QELItem.h"
#include "QELSession.h"
#include "QELWorkSpace.h"

// A realistic session shared by the tests of the domain, the writer and the
// reader. Everything is created in the model heap: QELSession::freeModel()
// frees it all.
//
// Active workspace "Gearbox.CATProduct" (root item Gearbox), tree given with
// its "IndiceOfAbsolute" out of order:
//   Shaft.1     (index 0)  Shaft.CATPart, two design tables, a shape rep
//   Panel.1     (index 1)  Panel.CATPart, composites stacking
//   Housing.1   (index 2)  Housing.CATProduct
//     Bolt.2    (index 0)  Bolt.CATPart (shared)
//     Bolt.1    (index 1)  Bolt.CATPart
//     Clamp.1   (index 2)  Clamp.CATProduct
//       Bolt.3  (index 0)  Bolt.CATPart, views in three contexts
//       Shaft.2 (index 1)  Shaft.CATPart (shared)
//     Cover.1   (index 3)  Couvercle_élément.CATPart: alternate shapes,
//                          secondaries, a scene; Latin-1 names
// Passive workspaces: "Gearbox.CATDrawing" (WorkspaceIndex 2, a drawing
// linked to the Gearbox item) and "Fixture.CATProduct" (WorkspaceIndex 1).
// Also an analysis document of the Shaft item, forms and publications.
struct SampleModel {
    QELSession* session = nullptr;
    QELWorkSpace* active = nullptr;
    QELWorkSpace* drawingWorkSpace = nullptr;
    QELWorkSpace* fixtureWorkSpace = nullptr;

    QELItem *gearboxItem = nullptr, *housingItem = nullptr, *clampItem = nullptr, *boltItem = nullptr,
            *shaftItem = nullptr, *coverItem = nullptr, *panelItem = nullptr, *drawingItem = nullptr,
            *analysisItem = nullptr, *fixtureItem = nullptr;
    QELDocument *gearbox = nullptr, *housing = nullptr, *clamp = nullptr, *bolt = nullptr, *shaft = nullptr,
                *cover = nullptr, *panel = nullptr, *drawing = nullptr, *analysis = nullptr, *fixture = nullptr;
    QELDocument *shaftSizes = nullptr, *shaftOptions = nullptr, *coverEnvelope = nullptr, *coverMesh = nullptr;
    QELAbsoluteOccurrence *shaft1 = nullptr, *panel1 = nullptr, *housing1 = nullptr, *bolt2 = nullptr,
                          *bolt1 = nullptr, *clamp1 = nullptr, *bolt3 = nullptr, *shaft2 = nullptr,
                          *cover1 = nullptr;

    // Builds the model into the current session.
    static SampleModel build();
};

#endif
