// Key map of the schedule settings records.
#include "MakeConvSToKiv/convstdsch/ConvDBEntryStdSchGen.h"

#include <cstring>

ConvDBEntryStdSchGen::ConvDBEntryStdSchGen(ConvAppStd* appIn, CdDBConnection* connectionIn, bool commonIn)
    : ConvDBEntryStdGen(appIn, connectionIn), common(commonIn) {
    if (common) {
        MapKey("infomation", "infomation");
        MapKey("start", "stime");
        MapKey("unit", "unit");
        MapKey("openperm", "openperm");
    }
    MapKey("rowother", "rowother");
    MapKey("sunday", "Sunday");
    MapKey("holiday", "holiday");
    MapKey("disptotime", "disptotime");
    MapKey("Group", "dispgroup");
    MapKey("toppage", "toppage");
    MapKey("dupperm", "dupperm");
    MapKey("othercolor", "othercolor");
    MapKey("todo", "todo");
    if (!common) {
        // A user's record may hold `save`; the personal table has no place for it.
        keyMap.erase("save");
        AddKey("SID_USER", "");
    }
}

bool ConvDBEntryStdSchGen::IsNumberField(const char* name) {
    if (!name) return false;
    for (const char* key : {"rowother", "unit", "start"})
        if (std::strcmp(key, name) == 0) return true;
    return ConvDBEntryStdGen::IsNumberField(name);
}
