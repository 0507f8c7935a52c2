// Schedule times: signed values, hours past 23, and duration arithmetic.
#include "MakeConvLib/cxiosch/CLCSchTimeStr.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "MakeConvLib/cmsbase/comTrace.h"
#include "base/comSource.h"

namespace {

// Signed HHMM number to signed minutes and back.
long long ToMinutes(long long hhmm) {
    const long long a = hhmm < 0 ? -hhmm : hhmm;
    const long long minutes = a / 100 * 60 + a % 100;
    return hhmm < 0 ? -minutes : minutes;
}

long long FromMinutes(long long minutes) {
    const long long a = minutes < 0 ? -minutes : minutes;
    const long long hhmm = a / 60 * 100 + a % 60;
    return minutes < 0 ? -hhmm : hhmm;
}

// The first two digits of text as the hour, the next two as the minute.
int TwoDigits(const char* text, std::size_t start) {
    char part[3] = {};
    if (std::strlen(text) > start) std::strncpy(part, text + start, 2);
    return static_cast<int>(std::strtol(part, nullptr, 10));
}

}  // namespace

int CLCSchTimeStr::SetStr(const char* value) {
    const char* text = value ? value : "";
    const bool negative = text[0] == '-';
    const char* bare = negative ? text + 1 : text;
    const int ret = CS3TimeStr::SetStr(bare);
    if (ret == 0) {
        if (!negative) return 0;
        const int stored = CS3FixedInt::SetStr(text);
        if (stored != 0) comTrace("[%s:%d] ret[%d] val[%s]", CONV_HERE, stored, text);
        return stored;
    }
    if (ret == CS3_ERR_TIMERANGE) {
        const int hour = TwoDigits(bare, 0);
        if (hour > maxHour || hour < 0 || TwoDigits(bare, 2) >= 60) {
            comTrace("[%s][%d]time=[%s]", CONV_HERE, text);
            Clear();
            return CS3_ERR_TIMERANGE;
        }
        const int stored = CS3FixedInt::SetStr(text);
        if (stored != 0) comTrace("[%s:%d] ret[%d] val[%s]", CONV_HERE, stored, text);
        return stored;
    }
    comTrace("[%s][%d]ret=[%d]val[%s]", CONV_HERE, ret, text);
    return ret;
}

int CLCSchTimeStr::SetStrLen(const char* value, int len) {
    const int ret = CS3String::SetStrLen(value, len);
    if (ret != 0) {
        comTrace("[%s:%d] ret[%d]", CONV_HERE, ret);
        return ret;
    }
    RTrim();
    return 0;
}

int CLCSchTimeStr::SetInt(int number) {
    char text[16];
    std::snprintf(text, sizeof text, number < 0 ? "%05d" : "%04d", number);
    const int ret = SetStr(text);
    if (ret != 0) comTrace("[%s:%d] ret[%d]", CONV_HERE, ret);
    return ret;
}

int CLCSchTimeStr::CheckFixedLen() {
    const int len = static_cast<int>(std::strlen(GetStr()));
    if (len != GetValueSize() - 1 && len != GetValueSize() - 2) {
        comTrace("[%s:%d] size[%d]val[%d]", CONV_HERE, GetValueSize(), len);
        return CS3_ERR_INVALID;
    }
    return 0;
}

int CLCSchTimeStr::GetHour() const {
    if (IsEmpty()) return -1;
    const char* text = GetStr();
    return text[0] == '-' ? -TwoDigits(text + 1, 0) : TwoDigits(text, 0);
}

int CLCSchTimeStr::GetMinute() const {
    if (IsEmpty()) return -1;
    const char* text = GetStr();
    return text[0] == '-' ? -TwoDigits(text + 1, 2) : TwoDigits(text, 2);
}

int CLCSchTimeStr::GetSigned() const {
    if (IsEmpty()) return 0;
    return static_cast<int>(std::strtol(GetStr(), nullptr, 10));
}

int CLCSchTimeStr::AddTime(int delta) {
    const int time = GetSigned();
    const long long sum = FromMinutes(ToMinutes(time) + ToMinutes(delta));
    const int ret = (sum > 9999 || sum < -9999) ? CS3_ERR_TIMERANGE : SetInt(static_cast<int>(sum));
    if (ret != 0) comTrace("[%s:%d] ret[%d]timd[%d]offset[%d]", CONV_HERE, ret, time, delta);
    return ret;
}

int CLCSchTimeStr::SetDayOffset(int base, int days) {
    const long long value = static_cast<long long>(days) * 2400 + base;
    const int ret = (value > 9999 || value < -9999) ? CS3_ERR_TIMERANGE : SetInt(static_cast<int>(value));
    if (ret != 0) comTrace("[%s:%d] ret[%d]time[%d]base[%d]dif[%d]", CONV_HERE, ret, GetSigned(), base, days);
    return ret;
}
