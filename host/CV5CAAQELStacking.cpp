#include "CV5CAAQELStacking.h"

CV5CAAQELStacking::CV5CAAQELStacking() { set_ClassName("CV5CAAQELSTACKING_CLASSNAME"); }
CV5CAAQELStacking::CV5CAAQELStacking(const CATUnicodeString& name) : _hostName(name) {
    set_ClassName("CV5CAAQELSTACKING_CLASSNAME");
    set_Name(name);
}
long CV5CAAQELStacking::getStackingName(CATUnicodeString& name) const {
    name = _hostName;
    return _status;
}
long CV5CAAQELStacking::getAllPliesGroups(TYPVector<CV5CAAQELPliesGroup*>& groups) const {
    groups = _groups;
    return _status;
}

CV5CAAQELPliesGroup::CV5CAAQELPliesGroup() { set_ClassName("CV5CAAQELPLIES_GROUP_CLASSNAME"); }
CV5CAAQELPliesGroup::CV5CAAQELPliesGroup(const CATUnicodeString& name) : _hostName(name) {
    set_ClassName("CV5CAAQELPLIES_GROUP_CLASSNAME");
    set_Name(name);
}
long CV5CAAQELPliesGroup::getPliesGroupName(CATUnicodeString& name) const {
    name = _hostName;
    return _status;
}
long CV5CAAQELPliesGroup::getAllSequences(TYPVector<CV5CAAQELSequence*>& sequences) const {
    sequences = _sequences;
    return _status;
}

CV5CAAQELSequence::CV5CAAQELSequence() { set_ClassName("CV5CAAQELSEQUENCE_CLASSNAME"); }
CV5CAAQELSequence::CV5CAAQELSequence(const CATUnicodeString& name) : _hostName(name) {
    set_ClassName("CV5CAAQELSEQUENCE_CLASSNAME");
    set_Name(name);
}
long CV5CAAQELSequence::getSequenceName(CATUnicodeString& name) const {
    name = _hostName;
    return _status;
}
long CV5CAAQELSequence::getAllPlies(TYPVector<CV5CAAQELPly*>& plies) const {
    plies = _plies;
    return _status;
}

CV5CAAQELPly::CV5CAAQELPly() { set_ClassName("CV5CAAQELPLY_CLASSNAME"); }
CV5CAAQELPly::CV5CAAQELPly(const CATUnicodeString& name) {
    set_ClassName("CV5CAAQELPLY_CLASSNAME");
    set_Name(name);
    _values[PlyName] = name;
}
