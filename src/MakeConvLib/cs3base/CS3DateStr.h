// Date fields: YYYYMMDD (also read from "Y/M/D" and "Y-M-D"), its required
// form, and the fourteen-digit date and time.
#pragma once

#include <string>

#include "MakeConvLib/cs3base/CS3FixedInt.h"

class CS3DateStr : public CS3FixedInt {
public:
    CS3DateStr() : CS3FixedInt(9) {}
    // Null or empty clears (0). A date that is no calendar date: -13002 when
    // numeric, -13004 otherwise; the field is then cleared.
    int SetStr(const char* value) override;
    // Three digit texts of at most 4, 2, 2 bytes; all empty changes nothing,
    // a missing part gives -13002.
    virtual int SetYMD(const char* year, const char* month, const char* day);
    // SetStr, then the date must lie strictly between 19700102 and 21000101
    // (else cleared, -70001).
    virtual int SetInRange(const char* value);

    // Parts of the value; -1 when empty.
    int GetYear() const;
    int GetMonth() const;
    int GetDay() const;
    // On an empty value from dflt, or from today's local date when dflt is
    // null or empty.
    int GetYear(const char* dflt) const;
    int GetMonth(const char* dflt) const;
    int GetDay(const char* dflt) const;
    int GetShortYear() const;
    // One day on or back; -10007 when empty. A date and time keeps its time.
    int NextDay();
    int PrevDay();

    // The date by the localised pattern ("comxtimesymd2" short, "comtimeymd2"
    // long; "comtimemd2" for month and day); -99 for a null out.
    int FormatDate(char* out, int outSize, bool shortForm) const;
    int FormatMonthDay(char* out, int outSize) const;
    // "MM/DD(weekday)" with the language's short week name.
    int FormatWeekdayDate(char* out, int outSize) const;

protected:
    explicit CS3DateStr(int valueSizeIn) : CS3FixedInt(valueSizeIn) {}

private:
    int AddDays(int days);
    // The date to read parts from: the value, else dflt, else today (9+ bytes in today).
    const char* DateOrDefault(const char* dflt, char* today) const;
};

class CS3DateStrH : public CS3Required<CS3DateStr> {
public:
    // An empty value gives -10006 and changes nothing.
    int SetInRange(const char* value) override;
    // All three empty gives -10006.
    int SetYMD(const char* year, const char* month, const char* day) override;
};

// YYYYMMDDHHMMSS; hour 24 passes, seconds at most 59.
class CS3DateTimeStr : public CS3DateStr {
public:
    CS3DateTimeStr() : CS3DateStr(15) {}
    // Anything that is not a valid fourteen-digit stamp clears the field (-10007).
    int SetStr(const char* value) override;

    std::string GetDatePart() const;
    // The text behind the first eight characters ("" when shorter).
    const char* GetTimePart() const;
    // By the patterns "comxtimesymdhm" (short) or "comxtimeymdhm".
    int FormatDateTime(char* out, int outSize, bool shortForm) const;
};
