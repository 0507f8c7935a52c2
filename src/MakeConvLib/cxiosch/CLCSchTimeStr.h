// Schedule times: HHMM or a signed -HHMM with hours up to 71, the form that
// repeating schedules keep in UTC (a monthly 0800 becomes "-0100", an end
// past midnight "2500").
#pragma once

#include "MakeConvLib/cs3base/CS3TimeStr.h"

class CLCSchTimeStr : public CS3TimeStr {
public:
    CLCSchTimeStr() : CS3TimeStr(6, 71) {}

    // The unsigned part must pass the time field's check (an hour above 23 up
    // to 71 with minutes below 60 is let through); the value is then stored
    // with its sign. -13007 for an hour or minute out of range.
    int SetStr(const char* value) override;
    // The base store, then trailing white space removed.
    int SetStrLen(const char* value, int len) override;
    // "%05d" for a negative number, "%04d" otherwise.
    int SetInt(int number) override;
    // Four or five bytes (with the sign): 0, else -10007.
    int CheckFixedLen() override;
    // A negative value gives the negated parts behind the sign; -1 when empty.
    int GetHour() const override;
    int GetMinute() const override;

    // Adds a signed HHMM number as a duration: "0830" less 900 is "-0030".
    int AddTime(int delta);
    // days * 2400 + base.
    int SetDayOffset(int base, int days);
    // The value as a signed HHMM number; 0 when empty.
    int GetSigned() const;
};
