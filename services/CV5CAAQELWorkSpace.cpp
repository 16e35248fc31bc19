#include "CV5CAAQELWorkSpace.h"

CV5CAAQELWorkSpace::CV5CAAQELWorkSpace() { set_ClassName("CV5CAAQELWORKSPACE_CLASSNAME"); }
