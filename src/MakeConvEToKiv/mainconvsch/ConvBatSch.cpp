// Stage B of the schedule module in its fixed order, and its file clean-up.
#include "MakeConvEToKiv/mainconvsch/ConvBatSch.h"

#include <cstdlib>
#include <cstring>

#include "MakeConvEToKiv/convcom/ConvApp.h"

ConvBatSch::ConvBatSch(ConvApp* app) : ConvBat(app) { moduleDir_ = "schedule"; }

bool ConvBatSch::KeepIconDir(const char* name, int, const struct stat&) {
    return std::strcmp(name, "icon") != 0;
}

bool ConvBatSch::KeepBuiltinIcons(const char* name, int, const struct stat&) {
    // The built-in icons are exactly "1" to "22" and "26" to "47".
    if (!name || name[0] < '1' || name[0] > '9') return true;
    char* end = nullptr;
    long number = std::strtol(name, &end, 10);
    if (*end != '\0' || end - name > 2) return true;
    const bool builtin = (number >= 1 && number <= 22) || (number >= 26 && number <= 47);
    return !builtin;
}

int32_t ConvBatSch::CleanFiles() {
    int32_t ret = CleanDir("schedule", KeepIconDir);
    if (ret != 0) {
        app_->ReportError(ret, CONV_HERE, false, nullptr, nullptr);
        return ret;
    }
    ret = CleanDir("schedule/icon", KeepBuiltinIcons);
    if (ret != 0) {
        app_->ReportError(ret, CONV_HERE, false, nullptr, nullptr);
        return ret;
    }
    return 0;
}

int32_t ConvBatSch::BeginMain() {
    app_->SetFunction("スケジュール、設備予約", false);
    return ConvBat::BeginMain();
}
