#include "MakeConvEToKiv/convplant/ShiftTimeOfDay.h"

#include "base/comTime.h"

int32_t ShiftTimeOfDay(const char* hhmm, std::string& out) {
    // A short or long time makes a stamp of the wrong length, which the shift
    // refuses: a time is never padded here.
    std::string stamp = "20000101";
    if (hhmm) stamp += hhmm;
    stamp += "00";
    char utc[16] = {};
    if (LocalStampToUtc(stamp.c_str(), utc) != 0) return 1;
    out.assign(utc + 8, 4);
    return 0;
}
