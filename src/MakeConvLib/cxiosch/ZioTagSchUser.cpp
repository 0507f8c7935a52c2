// The body of a schedule's sticky tag: date line, event, place, icons, memo.
#include "MakeConvLib/cxiosch/ZioTagSchUser.h"

#include <cerrno>
#include <cstring>
#include <string>

#include "MakeConvLib/cmsbase/CMSioObjApp.h"
#include "MakeConvLib/cmsbase/comTrace.h"
#include "MakeConvLib/cxiosch/CiofSchedule.h"
#include "MakeConvLib/iofcom/CMSioObjLocalize.h"
#include "base/NUTemplateToOutput.h"
#include "base/comSource.h"

namespace {

constexpr int kTextSize = 256;

std::string Text(const char* key) {
    const char* text = GetLocalText(key);
    return text ? text : "";
}

std::string LongDate(const CS3DateStr& date) {
    char out[kTextSize] = {};
    date.FormatDate(out, kTextSize, false);
    return out;
}

std::string MonthDay(const CS3DateStr& date) {
    char out[kTextSize] = {};
    date.FormatMonthDay(out, kTextSize);
    return out;
}

// A time of 24 hours or more is written as the 23 o'clock form with "24" put
// in, when the pattern shows hours of the day; otherwise as hour 00.
std::string TimeText(const CLCSchTimeStr& time) {
    char out[kTextSize] = {};
    if (time.GetHour() < 24) {
        time.FormatTime(out, kTextSize, nullptr);
        return out;
    }
    const char* pattern = GetLocalText("comtimehm2");
    const bool hourOfDay = pattern && (std::strstr(pattern, "%H") || std::strstr(pattern, "%k"));
    char patched[8];
    std::snprintf(patched, sizeof patched, "%s%02d", hourOfDay ? "23" : "00", time.GetMinute());
    CLCSchTimeStr shown;
    if (shown.SetStr(patched) != 0) return {};
    shown.FormatTime(out, kTextSize, nullptr);
    std::string text = out;
    if (hourOfDay) {
        const std::size_t at = text.find("23");
        if (at != std::string::npos) text.replace(at, 2, "24");
    }
    return text;
}

}  // namespace

int ZioTagSchUser::BuildBody(CiofSchedule* schedule, const char* url, const char* iconFile, const char* iconName,
                             const char* updateTime) {
    if (!schedule) {
        comTrace("[%s:%d]", CONV_HERE);
        return CS3_ERR_ARGUMENT;
    }
    CiofSchedule& s = *schedule;
    int ret = url ? this->url.SetStr(url) : 0;
    if (ret == 0) ret = s.NormalizeTimes(nullptr);
    if (ret != 0) {
        comTrace("[%s:%d]ret[%d]", CONV_HERE, ret);
        return ret;
    }

    const bool repeating = !s.repeat.IsEmpty();
    const bool sameDay = s.startDate.Compare(s.endDate.GetStr()) == 0;
    std::string date = LongDate(s.startDate);
    if (repeating) {
        date += Text("comfromto");
        if (!s.endDate.IsEmpty()) date += MonthDay(s.endDate);
        date += Text(s.repeat.IsDateList() ? "schxlrepcal" : "schxlrep");
    }
    if (!s.startTime.IsEmpty()) date.append(" ").append(TimeText(s.startTime));
    if (!repeating && !sameDay) date += Text("comfromto") + MonthDay(s.endDate);
    if (!s.endTime.IsEmpty()) {
        date += (repeating || sameDay) ? Text("comfromto") : " ";
        date += TimeText(s.endTime);
    }

    const char* separator = GetLabelSeparator();
    const std::string sep = separator ? separator : "";
    std::string eventLine;
    ret = SetField("title", "--");
    if (ret == 0 && s.event.Compare("--") != 0) {
        ret = SetField("title", s.event.GetStr());
        if (!s.detail.IsEmpty()) eventLine = Text("schxtlevent") + sep + s.detail.GetStr();
    } else if (ret == 0 && !s.detail.IsEmpty()) {
        ret = SetField("title", s.detail.GetStr());
    }
    if (ret != 0) {
        comTrace("[%s:%d]ret[%d]", CONV_HERE, ret);
        return ret;
    }

    // An empty place counts as none, like "--".
    const bool hasPlace = !s.place.IsEmpty() && s.place.Compare("--") != 0;
    std::string placeLine;
    if (hasPlace || !s.other.IsEmpty()) {
        placeLine = Text("schxtlplace") + sep;
        if (hasPlace) placeLine += s.place.GetStr();
        if (hasPlace && !s.other.IsEmpty()) placeLine += " / ";
        placeLine += s.other.GetStr();
    }

    const std::string icons = s.GetIconHtml(iconFile, iconName, updateTime);
    const std::string path = std::string(GetPageDir()) + "template/cgi/tag/schedule.html";
    NUTemplateToOutput engine;
    ret = engine.SetTemplate(path.c_str(), true);
    if (ret == 0) ret = engine.AddParam("date", date.c_str(), 1);
    if (ret == 0) ret = engine.AddParam("event", eventLine.c_str(), 1);
    if (ret == 0) ret = engine.AddParam("eventbr", eventLine.empty() ? "" : "<br />", 0);
    if (ret == 0) ret = engine.AddParam("place", placeLine.c_str(), 1);
    if (ret == 0) ret = engine.AddParam("placebr", placeLine.empty() ? "" : "<br />", 0);
    if (ret == 0) ret = engine.AddParam("iconno", icons.c_str(), 0);
    if (ret == 0) ret = engine.AddParam("memo", s.memo.GetStr(), 2);
    if (ret == 0) ret = engine.ExpandTemplate();
    if (ret != 0) {
        comTrace("[%s:%d]ret[%d]errno[%d]template[%s]", CONV_HERE, ret, errno, path.c_str());
        return ZIO_ERR_TAG_TEMPLATE;
    }
    ret = SetField("body", engine.GetResult());
    if (ret != 0) comTrace("[%s:%d]ret[%d]", CONV_HERE, ret);
    return ret;
}
