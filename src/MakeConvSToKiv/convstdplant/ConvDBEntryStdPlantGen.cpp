#include "MakeConvSToKiv/convstdplant/ConvDBEntryStdPlantGen.h"

#include <cstring>

ConvDBEntryStdPlantGen::ConvDBEntryStdPlantGen(ConvAppStd* appIn, CdDBConnection* connectionIn, bool commonIn)
    : ConvDBEntryStdGen(appIn, connectionIn), common(commonIn) {
    if (common) {
        MapKey("infomation", "infomation");
        MapKey("start", "stime");
        MapKey("unit", "unit");
        MapKey("openperm", "openperm");
        MapKey("reservlimit", "reservlimit");
        MapKey("datadel", "datadel");
    }
    MapKey("rowother", "rowother");
    MapKey("sunday", "Sunday");
    MapKey("holiday", "holiday");
    MapKey("disptotime", "disptotime");
    MapKey("Group", "defgroup");
    MapKey("title", "title");
    if (!common) {
        keyMap.erase("save");
        AddKey("SID_USER", "");
    }
}

bool ConvDBEntryStdPlantGen::IsNumberField(const char* name) {
    if (!name) return false;
    for (const char* key : {"rowother", "unit", "start", "defgroup"})
        if (std::strcmp(name, key) == 0) return true;
    return ConvDBEntryStdGen::IsNumberField(name);
}
