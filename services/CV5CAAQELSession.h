#ifndef CV5CAAQELSession_H
#define CV5CAAQELSession_H

// The CAD host's session settings that the description depends on. One per
// process; reset() puts every answer back to its default (all off).
class CV5CAAQELSession {
public:
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
    unsigned char _saveAllSheetsInOneFile = 0;
    unsigned char _thereIsADrawing = 0;
    unsigned char _manageFlexibility = 0;
    unsigned char _manageHideShow = 0;
};

#endif
