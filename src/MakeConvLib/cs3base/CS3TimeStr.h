// Time of day fields: HHMM, also read from "H:MM" and "HMM", with an upper
// bound on the hour that subclasses may raise.
#pragma once

#include "MakeConvLib/cs3base/CS3FixedInt.h"

class CS3TimeStr : public CS3FixedInt {
public:
    CS3TimeStr() : CS3FixedInt(5), maxHour(23) {}
    // A rewritten form ("9:30", "930") must pass the time check (else cleared,
    // -13007 numeric, -13005 not). A stored hour above maxHour gives -13007
    // and stays stored.
    int SetStr(const char* value) override;
    // The first and next two characters as numbers; -1 when empty.
    virtual int GetHour() const;
    virtual int GetMinute() const;
    // The time by format (null: the pattern of "comtimehm2"); -99 for a null out.
    virtual int FormatTime(char* out, int outSize, const char* format) const;

    // Two digit texts; both empty changes nothing, an empty minute is "00".
    int SetHM(const char* hour, const char* minute);
    // base (HHMM as a number) plus delta minutes, with one carry or borrow;
    // below zero hours gives 0000, above maxHour wraps to the next day's hour.
    int AddMinutes(int base, int delta);

    int GetMaxHour() const { return maxHour; }

protected:
    CS3TimeStr(int valueSizeIn, int maxHourIn) : CS3FixedInt(valueSizeIn), maxHour(maxHourIn) {}

    int maxHour;
};
