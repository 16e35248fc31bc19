#ifndef CV5CAAQELSession_H
#define CV5CAAQELSession_H

#include "CATUnicodeString.h"
#include "EnumDocumentType.h"

class CV5CAAQELWorkSpace;
class ENVManager;
class QELDocument;

// The CAD host's session: settings that the description depends on and the
// services the answer reader asks of it. One per process; reset() puts every
// answer back to its default (all off, no staging path).
class CV5CAAQELSession {
public:
    // The model document of a file of the session, by name (negative when
    // none); owned by its maker (the model heap for the library's factories),
    // valid until freed there.
    long getSessionDocument(const CATUnicodeString& fileName, QELDocument*& document) const;
    // Makes a host workspace for an empty session, registered in the model
    // session under a + "+++" + b + "+++" + c; owned by the model heap, valid
    // until QELModelHeap::freeAll.
    long createEmptyWorkSpace(EnumDocumentType type, const CATUnicodeString& a, const CATUnicodeString& b,
                              const CATUnicodeString& c, CV5CAAQELWorkSpace*& workspace);
    void setStagingPath(const CATUnicodeString& path) { _stagingPath = path; }
    CATUnicodeString getStagingPath() const { return _stagingPath; }
    // Always null: the settings are ENVManager's static members.
    long get_EnvManager(ENVManager*& env) const {
        env = nullptr;
        return 0;
    }

    // The process-wide host session: owned by this class, valid until the
    // process ends (reset() only clears it).
    static CV5CAAQELSession* getCATIASessionInstance();
    static void reset();

    unsigned char getSaveAllSheetsInOneFileValue() const { return _saveAllSheetsInOneFile; }
    void setSaveAllSheetsInOneFileValue(unsigned char on) { _saveAllSheetsInOneFile = on; }
    unsigned char get_is_there_drawing() const { return _thereIsADrawing; }
    void set_is_there_drawing(unsigned char on) { _thereIsADrawing = on; }
    unsigned char getAsManageFlexibility() const { return _manageFlexibility; }
    void setAsManageFlexibility(unsigned char on) { _manageFlexibility = on; }
    unsigned char getAsManageHideShow() const { return _manageHideShow; }
    void setAsManageHideShow(unsigned char on) { _manageHideShow = on; }

private:
    CATUnicodeString _stagingPath;
    unsigned char _saveAllSheetsInOneFile = 0;
    unsigned char _thereIsADrawing = 0;
    unsigned char _manageFlexibility = 0;
    unsigned char _manageHideShow = 0;
};

#endif
