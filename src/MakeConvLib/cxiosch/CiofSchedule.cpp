// The schedule entry: zone shift by kind of repeat, folding for display, and
// the icon block of its tag.
#include "MakeConvLib/cxiosch/CiofSchedule.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "MakeConvLib/cmsbase/comTrace.h"
#include "MakeConvLib/iofcom/CMSioObjLocalize.h"
#include "MakeConvLib/sch/XSchCom.h"
#include "base/comHtml.h"
#include "base/comSource.h"
#include "base/comStr.h"
#include "base/comTime.h"

namespace {

// The fixed zone of the old data, as a signed HHMM number to add for UTC.
constexpr int kUtcDelta = -900;
// The icon block is built in a buffer of this many bytes, terminator included.
constexpr std::size_t kIconHtmlSize = 1021;

bool IsSet(const char* text) { return text && *text != '\0'; }

// date moved by days; -10007 for an empty date.
int MoveDate(CS3DateStr& date, int days) {
    if (days == 0) return 0;
    if (date.IsEmpty()) return CS3_ERR_INVALID;
    char moved[16] = {};
    comDateAddDays(date.GetStr(), days, moved);
    return date.SetStr(moved);
}

// A YYYYMMDD number moved by days; 0 stays 0.
int32_t MoveDateNumber(int32_t date, int days) {
    if (date == 0 || days == 0) return date;
    char text[16], moved[16] = {};
    std::snprintf(text, sizeof text, "%08d", static_cast<int>(date));
    comDateAddDays(text, days, moved);
    return static_cast<int32_t>(std::strtol(moved, nullptr, 10));
}

// One date and one time from "+0900" to UTC: date takes the UTC date, time
// the first four characters of the UTC time.
int UtcField(CS3DateStr& date, CLCSchTimeStr& time) {
    char utcDate[16] = {}, utcTime[16] = {};
    int ret = LocalToUtc(date.GetStr(), time.GetStr(), utcDate, utcTime);
    if (ret != 0) {
        comTrace("[%s][%d]ret=[%d]date=[%s]time=[%s]", CONV_HERE, ret, date.GetStr(), time.GetStr());
        return ret;
    }
    ret = date.SetStr(utcDate);
    if (ret != 0) {
        comTrace("[%s][%d]ret=[%d]date=[%s]", CONV_HERE, ret, utcDate);
        return ret;
    }
    return time.SetStrLen(utcTime, 4);
}

// Folds a time outside 0000-2399 into its day and moves date with it; the
// number of days moved.
int FoldTime(CS3DateStr& date, CLCSchTimeStr& time) {
    if (time.IsEmpty()) return 0;
    const int value = time.GetSigned();
    if (value >= 0 && value <= 2399) return 0;
    int days = value / 2400;
    if (value < 0) --days;
    int ret = MoveDate(date, days);
    if (ret == 0) ret = time.SetInt(value);
    if (ret == 0) ret = time.AddTime(-days * 2400);
    if (ret != 0) {
        comTrace("[%s:%d]ret[%d]", CONV_HERE, ret);
        return ret < -3 ? ret : -4;
    }
    return days;
}

}  // namespace

// ---- zone shift ----

int CiofSchedule::ToUtc() {
    if (startTime.IsEmpty() && endTime.IsEmpty()) return 0;
    if (startDate.IsEmpty() || endDate.IsEmpty()) {
        comTrace("[%s:%d]", CONV_HERE);
        return CS3_ERR_REQUIRED;
    }

    if (repeat.IsEmpty()) {
        // A missing time borrows the other one, as it came, and stays empty.
        const CLCSchTimeStr localStart = startTime;
        int ret = 0;
        if (!startTime.IsEmpty()) {
            ret = UtcField(startDate, startTime);
        } else {
            CLCSchTimeStr borrowed = endTime;
            ret = UtcField(startDate, borrowed);
        }
        if (ret == 0) {
            if (!endTime.IsEmpty()) {
                ret = UtcField(endDate, endTime);
            } else {
                CLCSchTimeStr borrowed = localStart;
                ret = UtcField(endDate, borrowed);
            }
        }
        if (ret != 0) comTrace("[%s][%d]ret=[%d]", CONV_HERE, ret);
        return ret;
    }

    if (repeat.IsMonthly() || repeat.IsYearly()) return ShiftTimesOnly();

    int dayShift = 0;
    int ret = 0;
    if (!startTime.IsEmpty()) {
        const CS3DateStr before = startDate;
        ret = UtcField(startDate, startTime);
        if (ret != 0) return ret;
        const int order = before.Compare(startDate.GetStr());
        dayShift = order > 0 ? -1 : (order < 0 ? 1 : 0);
    }
    if (!endTime.IsEmpty()) {
        CS3DateStr newEnd = endDate;
        const CS3DateStr before = endDate;
        CLCSchTimeStr t = endTime;
        ret = UtcField(newEnd, t);
        if (ret != 0) return ret;
        if (startTime.IsEmpty()) {
            // Only an end time: the start date follows the end's day shift.
            const int order = before.Compare(newEnd.GetStr());
            if (order > 0) {
                ret = MoveDate(startDate, -1);
                dayShift = -1;
            } else if (order < 0) {
                ret = MoveDate(startDate, 1);
                dayShift = 1;
            }
            if (ret == 0) ret = endTime.SetStr(t.GetStr());
        } else if (t.Compare(startTime.GetStr()) < 0) {
            // The end fell before the start in UTC: it lies on the next day.
            char later[16];
            std::snprintf(later, sizeof later, "%02d%02d", t.GetHour() + 24, t.GetMinute());
            ret = endTime.SetStr(later);
        } else {
            ret = endTime.SetStr(t.GetStr());
        }
        if (ret != 0) {
            comTrace("[%s:%d]ret[%d]", CONV_HERE, ret);
            return ret;
        }
    }
    // The end date of a repeat moves with the start, not with its own time.
    ret = MoveDate(endDate, dayShift);
    if (ret != 0) {
        comTrace("[%s:%d]ret[%d]", CONV_HERE, ret);
        return ret;
    }
    if (repeat.IsWeekly()) RotateWeekdays(dayShift);
    if (repeat.IsDateList())
        for (int32_t& date : listDates) date = MoveDateNumber(date, dayShift > 0 ? 1 : (dayShift < 0 ? -1 : 0));
    for (int32_t& date : exceptDates) date = MoveDateNumber(date, dayShift > 0 ? 1 : (dayShift < 0 ? -1 : 0));
    return 0;
}

int CiofSchedule::ShiftTimesOnly() {
    int ret = 0;
    if (!startTime.IsEmpty() && !endTime.IsEmpty() && startTime.GetSigned() > endTime.GetSigned()) {
        ret = endTime.SetInt(endTime.GetSigned() + 2400);
        if (ret != 0) return ret;
    }
    if (!startTime.IsEmpty()) {
        const std::string before = startTime.GetStr();
        ret = startTime.AddTime(kUtcDelta);
        if (ret != 0) {
            comTrace("[%s:%d] ret[%d] stime[%s]offset[%d]", CONV_HERE, ret, before.c_str(), kUtcDelta);
            return ret;
        }
    }
    if (!endTime.IsEmpty()) {
        const std::string before = endTime.GetStr();
        ret = endTime.AddTime(kUtcDelta);
        if (ret != 0) {
            comTrace("[%s:%d] ret[%d] etime[%s]offset[%d]", CONV_HERE, ret, before.c_str(), kUtcDelta);
            return ret;
        }
    }
    return 0;
}

void CiofSchedule::RotateWeekdays(int shift) {
    if (shift == 0 || shift >= 8 || shift <= -8) return;
    const char* days = everyWeekday.GetStr();
    const std::size_t len = std::strlen(days);
    if (len < 7) return;
    char copy[32] = {};
    std::snprintf(copy, sizeof copy, "%s", days);
    char rotated[8] = {};
    for (int i = 0; i < 7; ++i) rotated[((i + shift) % 7 + 7) % 7] = copy[i];
    std::memcpy(copy, rotated, 7);
    everyWeekday.SetStr(copy);
}

int CiofSchedule::NormalizeTimes(int* outDayShift) {
    int dayShift = 0;
    if (outDayShift) *outDayShift = 0;
    if (!repeat.IsMonthly() && !repeat.IsYearly()) return 0;

    int shift = FoldTime(startDate, startTime);
    if (shift < -3) {
        comTrace("[%s:%d]ret[%d]", CONV_HERE, shift);
        return shift;
    }
    dayShift = shift;
    if (!endTime.IsEmpty()) {
        CS3DateStr foldedDate = endDate;
        CLCSchTimeStr folded = endTime;
        const int endShift = FoldTime(foldedDate, folded);
        if (endShift < -3) {
            comTrace("[%s:%d]ret[%d]", CONV_HERE, endShift);
            return endShift;
        }
        int ret = 0;
        if (startTime.IsEmpty()) {
            ret = MoveDate(startDate, endShift);
            dayShift = endShift;
        }
        if (ret == 0) ret = endTime.SetStr(folded.GetStr());
        if (ret == 0 && startTime.GetHour() != 0 && endTime.GetHour() == 0)
            ret = endTime.SetInt(endTime.GetSigned() + 2400);
        if (ret != 0) {
            comTrace("[%s:%d]ret[%d]", CONV_HERE, ret);
            return ret;
        }
    }
    const int ret = MoveDate(endDate, dayShift);
    if (ret != 0) {
        comTrace("[%s:%d]ret[%d]", CONV_HERE, ret);
        return ret;
    }
    RotateWeekdays(dayShift);
    if (outDayShift) *outDayShift = dayShift;
    return 0;
}

// ---- filling from a row ----

int CiofSchedule::SetByColumn(const char* column, const char* value) {
    const char* v = value ? value : "";
    if (comStrCaseCmp(column, "startdate") == 0) return startDate.SetStr(v);
    if (comStrCaseCmp(column, "enddate") == 0) return endDate.SetStr(v);
    if (comStrCaseCmp(column, "starttime") == 0) return startTime.SetStr(v);
    if (comStrCaseCmp(column, "endtime") == 0) return endTime.SetStr(v);
    if (comStrCaseCmp(column, "event") == 0) return event.SetStr(v);
    if (comStrCaseCmp(column, "detail") == 0) return detail.SetStr(v);
    if (comStrCaseCmp(column, "memo") == 0) return memo.SetStr(v);
    if (comStrCaseCmp(column, "iconno") == 0) return iconNo.SetStr(v);
    if (comStrCaseCmp(column, "rankflg") == 0) return rank.SetStr(v);
    if (comStrCaseCmp(column, "reserve") == 0) return reserve.SetStr(v);
    if (comStrCaseCmp(column, "openlevel") == 0) return openLevel.SetStr(v);
    if (comStrCaseCmp(column, "repeat") == 0) return repeat.SetStr(v);
    if (comStrCaseCmp(column, "everyweek") == 0) return everyWeek.SetStr(v);
    if (comStrCaseCmp(column, "everyweekday") == 0) return everyWeekday.SetStr(v);
    if (comStrCaseCmp(column, "flag") == 0) return flag.SetStr(v);
    if (comStrCaseCmp(column, "place") == 0) return place.SetStr(v);
    if (comStrCaseCmp(column, "other") == 0) return other.SetStr(v);
    // Anything but "0" is a visitor; an empty value is none.
    if (comStrCaseCmp(column, "visitor") == 0) return visitor.SetStr(!IsSet(v) || std::strcmp(v, "0") == 0 ? "0" : "1");
    if (comStrCaseCmp(column, "outflg") == 0) return outFlag.SetStr(v);
    return 1;
}

// ---- icons ----

void CiofSchedule::AddIcon(const char* cssName, const char* label, std::string& out) const {
    out += "<span class=\"sch-ictype1-";
    out += cssName ? cssName : "";
    out += "\">";
    out += label ? label : "";
    out += "</span>";
}

std::string CiofSchedule::GetIconHtml(const char* iconFile, const char* iconName, const char* updateTime) const {
    struct Mark {
        bool on;
        const char* key;
        const char* css;
    };
    const Mark marks[] = {
        {outFlag.Is("2"), "schziconout", "out"},  {reserve.Is("2"), "schzicontmp", "tmp"},
        {rank.Is("2"), "schziconimp", "imp"},     {flag.IsOn(), "schziconflg", "flg"},
        {openLevel.Is("1"), "schziconscr", "scr"}, {visitor.Is("1"), "schziconvisit", "visit"},
    };
    std::string labels, spans;
    for (const Mark& mark : marks) {
        if (!mark.on) continue;
        const char* label = GetLocalText(mark.key);
        labels += "[";
        labels += label ? label : "";
        labels += "]";
        AddIcon(mark.css, label, spans);
    }
    std::string image;
    GetIconImage(image, nullptr, iconFile, iconName, updateTime);
    spans += image;
    if (spans.empty()) return {};
    if (iconNo.GetInt() != 0 && IsSet(iconName)) {
        labels += "[";
        labels += iconName;
        labels += "]";
    }
    std::string html = "<div title=\"" + labels + "\">" + spans + "</div>";
    if (html.size() >= kIconHtmlSize) {
        html.resize(kIconHtmlSize - 1);
        comUtf8CutBytes(html.data(), static_cast<int>(html.size()), true);
        html.resize(std::strlen(html.c_str()));
    }
    return html;
}

void CiofSchedule::GetIconImage(std::string& outImage, std::string* outName, const char* iconFile,
                                const char* iconName, const char* updateTime) const {
    outImage.clear();
    const int number = iconNo.GetInt();
    if (number == 0) return;
    const std::string url = XSchIconDownloadUrl(number, iconFile);
    outImage = "<img src=\"" + url + "&updtime=" + (updateTime ? updateTime : "") + "\"";
    if (outName) {
        *outName = iconName ? iconName : "";
    } else if (IsSet(iconName)) {
        const std::string escaped = comHtmlEscapeString(iconName, false);
        if (!escaped.empty()) outImage += " alt=\"" + escaped + "\" title=\"" + escaped + "\"";
    }
    outImage += " width=\"16\" height=\"16\" border=\"0\" />";
}
