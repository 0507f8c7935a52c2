// The stage-B driver of the schedule module: working database to target, and
// the clean-up of the schedule file tree.
#pragma once

#include "MakeConvEToKiv/convbatcom/ConvBat.h"

class ConvBatSch : public ConvBat {
public:
    explicit ConvBatSch(ConvApp* app);
    int32_t CleanFiles() override;
    int32_t RunMain() override;
    int32_t BeginMain() override;

    // The clean-up filters: the first spares "icon", the second the built-in icons.
    static bool KeepIconDir(const char* name, int isFile, const struct stat& st);
    static bool KeepBuiltinIcons(const char* name, int isFile, const struct stat& st);
};
