#ifndef CV5CAAQELStacking_H
#define CV5CAAQELStacking_H

#include "QELPliesGroup.h"
#include "QELPly.h"
#include "QELSequence.h"
#include "QELStacking.h"
#include "TYPVector.h"

class CV5CAAQELPliesGroup;
class CV5CAAQELSequence;
class CV5CAAQELPly;

// The composites tree of a part as the CAD host answers it: stacking, plies
// groups, sequences, plies. Every question answers a status (negative when
// the host fails, settable with setStatus) and fills its output. The objects
// of a filled vector are owned by whoever added them, valid until freed
// there; the vector is the caller's own.
class CV5CAAQELStacking : public QELStacking {
public:
    CV5CAAQELStacking();
    explicit CV5CAAQELStacking(const CATUnicodeString& name);

    long getStackingName(CATUnicodeString& name) const;
    long getAllPliesGroups(TYPVector<CV5CAAQELPliesGroup*>& groups) const;
    void addPliesGroup(CV5CAAQELPliesGroup* group) { _groups.push_back(group); }
    void setStatus(long status) { _status = status; }

private:
    CATUnicodeString _hostName;
    TYPVector<CV5CAAQELPliesGroup*> _groups;
    long _status = 0;
};

class CV5CAAQELPliesGroup : public QELPliesGroup {
public:
    CV5CAAQELPliesGroup();
    explicit CV5CAAQELPliesGroup(const CATUnicodeString& name);

    long getPliesGroupName(CATUnicodeString& name) const;
    long getAllSequences(TYPVector<CV5CAAQELSequence*>& sequences) const;
    void addSequence(CV5CAAQELSequence* sequence) { _sequences.push_back(sequence); }
    void setStatus(long status) { _status = status; }

private:
    CATUnicodeString _hostName;
    TYPVector<CV5CAAQELSequence*> _sequences;
    long _status = 0;
};

class CV5CAAQELSequence : public QELSequence {
public:
    CV5CAAQELSequence();
    explicit CV5CAAQELSequence(const CATUnicodeString& name);

    long getSequenceName(CATUnicodeString& name) const;
    long getAllPlies(TYPVector<CV5CAAQELPly*>& plies) const;
    void addPly(CV5CAAQELPly* ply) { _plies.push_back(ply); }
    void setStatus(long status) { _status = status; }

private:
    CATUnicodeString _hostName;
    TYPVector<CV5CAAQELPly*> _plies;
    long _status = 0;
};

// A ply and its values, numbers already formatted as text by the host.
class CV5CAAQELPly : public QELPly {
public:
    enum Value {
        PlyName, RepresentationFilePath3D, RepresentationFilePath2D, MaterialName, COGX, COGY, COGZ,
        InertiaXX, InertiaYY, InertiaZZ, InertiaXY, InertiaZX, InertiaZY, Direction, SurfacicMass, Mass,
        WetArea, ValueCount
    };

    CV5CAAQELPly();
    explicit CV5CAAQELPly(const CATUnicodeString& name);

    void setValue(Value which, const CATUnicodeString& text) { _values[which] = text; }
    // The representation files renamed by the PDM side.
    void set3DRepresentationNewFileName(const CATUnicodeString& name) { _new3D = name; }
    void set2DRepresentationNewFileName(const CATUnicodeString& name) { _new2D = name; }
    CATUnicodeString get3DRepresentationNewFileName() const { return _new3D; }
    CATUnicodeString get2DRepresentationNewFileName() const { return _new2D; }
    void setStatus(long status) { _status = status; }

    long getPlyName(CATUnicodeString& v) const { return get(PlyName, v); }
    long get3DRepresentationFilePath(CATUnicodeString& v) const { return get(RepresentationFilePath3D, v); }
    long get2DRepresentationFilePath(CATUnicodeString& v) const { return get(RepresentationFilePath2D, v); }
    long getMaterialName(CATUnicodeString& v) const { return get(MaterialName, v); }
    long getCOGX(CATUnicodeString& v) const { return get(COGX, v); }
    long getCOGY(CATUnicodeString& v) const { return get(COGY, v); }
    long getCOGZ(CATUnicodeString& v) const { return get(COGZ, v); }
    long getInertiaXX(CATUnicodeString& v) const { return get(InertiaXX, v); }
    long getInertiaYY(CATUnicodeString& v) const { return get(InertiaYY, v); }
    long getInertiaZZ(CATUnicodeString& v) const { return get(InertiaZZ, v); }
    long getInertiaXY(CATUnicodeString& v) const { return get(InertiaXY, v); }
    long getInertiaZX(CATUnicodeString& v) const { return get(InertiaZX, v); }
    long getInertiaZY(CATUnicodeString& v) const { return get(InertiaZY, v); }
    long getDirection(CATUnicodeString& v) const { return get(Direction, v); }
    long getSurfacicMass(CATUnicodeString& v) const { return get(SurfacicMass, v); }
    long getMass(CATUnicodeString& v) const { return get(Mass, v); }
    long getWetArea(CATUnicodeString& v) const { return get(WetArea, v); }

private:
    long get(Value which, CATUnicodeString& v) const {
        v = _values[which];
        return _status;
    }
    CATUnicodeString _values[ValueCount];
    CATUnicodeString _new3D;
    CATUnicodeString _new2D;
    long _status = 0;
};

typedef TYPVector<CV5CAAQELStacking*> TYPVectorPCV5CAAQELStacking;
typedef TYPVector<CV5CAAQELPliesGroup*> TYPVectorPCV5CAAQELPliesGroup;
typedef TYPVector<CV5CAAQELSequence*> TYPVectorPCV5CAAQELSequence;
typedef TYPVector<CV5CAAQELPly*> TYPVectorPCV5CAAQELPly;

#endif
