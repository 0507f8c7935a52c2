// One schedule entry as typed fields: the move of its local dates and times
// to the UTC form the target keeps, the way back for display, and the icon
// labels of its sticky tag.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "MakeConvLib/cs3base/CS3DateStr.h"
#include "MakeConvLib/cs3base/CS3Int.h"
#include "MakeConvLib/cxiocom/CS3FlgStr.h"
#include "MakeConvLib/cxiocom/CS3LongStr.h"
#include "MakeConvLib/cxiocom/ZString.h"
#include "MakeConvLib/cxiosch/CLCSchTimeStr.h"

class CiofSchedule {
public:
    // No visitor until a row says so.
    CiofSchedule() { visitor.SetStr("0"); }
    virtual ~CiofSchedule() = default;

    // The icon labels and image as a "<div title=...>" block; empty when the
    // entry has none.
    virtual std::string GetIconHtml(const char* iconFile, const char* iconName, const char* updateTime) const;
    // Appends "<span class=\"sch-ictype1-<cssName>\"><label></span>" to out.
    virtual void AddIcon(const char* cssName, const char* label, std::string& out) const;
    // The image tag of iconNo (nothing for 0). With outName the raw icon name
    // goes there and no alt text is written.
    virtual void GetIconImage(std::string& outImage, std::string* outName, const char* iconFile,
                              const char* iconName, const char* updateTime) const;

    // Local "+0900" dates and times to UTC by the kind of repeat: 0, -10006
    // when a date is missing while a time is set, or the code of the failing
    // field. Never depends on the host's zone.
    int ToUtc();
    // For monthly and yearly entries: folds times outside 0000-2399 back into
    // the day and moves the dates and week days with it; dayShift receives the
    // shift (0 for other kinds). Used before display.
    int NormalizeTimes(int* outDayShift);
    // Moves the seven week-day characters of everyWeekday: right for a
    // positive shift, left for a negative one, wrapping round.
    void RotateWeekdays(int shift);

    // Sets a field by its row column name ("startdate", "starttime", "repeat",
    // ...); 1 for a column that is no field of the entry.
    int SetByColumn(const char* column, const char* value);

    CS3DateStrH startDate;
    CS3DateStrH endDate;
    CLCSchTimeStr startTime;
    CLCSchTimeStr endTime;
    CS3LongStr event;
    CS3LongStr detail;
    ZString2047 memo;
    CS3Int iconNo;
    CS3SchRankFlg rank;
    CS3ReserveFlg reserve;
    CiofSchLevelFlg openLevel;
    CS3RepeatFlg repeat;
    CS3Int everyWeek;
    CS3String everyWeekday;
    std::vector<int32_t> listDates;    // YYYYMMDD numbers of a date-list repeat
    std::vector<int32_t> exceptDates;  // YYYYMMDD numbers left out of the repeat
    CXioMarkFlg flag;
    CS3LongStr place;
    CS3LongStr other;
    CiofUseFlg visitor;
    CiofSchOutFlg outFlag;

private:
    // Monthly and yearly entries keep their dates and carry the shift in the times.
    int ShiftTimesOnly();
};
