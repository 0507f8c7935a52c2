// Writers of the minutes' settings.
#include "MakeConvSToKiv/convstdagenda/kiv_std_agendasetting.h"

#include <cstring>

namespace {
bool IsMngrow(const char* name) { return name && std::strcmp(name, "mngrow") == 0; }
}  // namespace

kiv_std_agendasetting::kiv_std_agendasetting(ConvAppStd* appIn, CdDBConnection* connectionIn)
    : ConvDBEntryStdGen(appIn, connectionIn) {
    MapKey("mngrow", "mngrow");
}

bool kiv_std_agendasetting::IsNumberField(const char* name) {
    return IsMngrow(name) || ConvDBEntryStdGen::IsNumberField(name);
}

kiv_std_agendaprisetting::kiv_std_agendaprisetting(ConvAppStd* appIn, CdDBConnection* connectionIn)
    : ConvDBEntryStdGen(appIn, connectionIn) {
    MapKey("mngrow", "mngrow");
    // The personal table has no place for `save`.
    keyMap.erase("save");
    AddKey("SID_USER", "");
}

bool kiv_std_agendaprisetting::IsNumberField(const char* name) {
    return IsMngrow(name) || ConvDBEntryStdGen::IsNumberField(name);
}
