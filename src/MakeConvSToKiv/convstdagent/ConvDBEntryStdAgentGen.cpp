#include "MakeConvSToKiv/convstdagent/ConvDBEntryStdAgentGen.h"

#include <cstring>

ConvDBEntryStdAgentGen::ConvDBEntryStdAgentGen(ConvAppStd* appIn, CdDBConnection* connectionIn, bool common)
    : ConvDBEntryStdGen(appIn, connectionIn) {
    MapKey("alarmuse", "alarmuse");
    if (!common) {
        keyMap.erase("save");
        AddKey("SID_USER", "");
    }
}

tmpr_agent::tmpr_agent(ConvAppStd* appIn, CdDBConnection* connectionIn) : ConvDBEntryStd(appIn, connectionIn) {
    for (const char* key : {"sendkind", "sendsize", "dispendtime", "dispevent", "dispplace", "dispmemo", "sendweek",
                            "senddate2", "sendholiday", "SENDTIMES"})
        MapKey(key, key);
    AddKey("SID_USER", "");
}

bool tmpr_agent::IsNumberField(const char* name) {
    return name && (std::strcmp(name, "senddate2") == 0 || std::strcmp(name, "sendsize") == 0);
}
