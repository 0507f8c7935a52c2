// The owning byte string of the base library (UTF-8 in memory, GetStr never null)
// and its validating forms for fixed digit strings, dates and date-times.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

// Status codes of the value strings.
inline constexpr int NUSTR_ERR_OUTPUT = -1;   // missing output pointer; "no value" of getters
inline constexpr int NUSTR_ERR_MEMORY = -2;   // allocation failed
inline constexpr int NUSTR_ERR_LENGTH = -30;  // longer than the capacity
inline constexpr int NUSTR_ERR_FIXED = -31;   // not a fixed digit string or date-time
inline constexpr int NUSTR_ERR_DATE = -32;    // date text not numeric or not storable
inline constexpr int NUSTR_ERR_NODATE = -33;  // numeric but not a date

// A NUL-terminated byte string. Unbounded (valueSize 0) or bounded: then the value
// holds at most valueSize - 1 bytes and the buffer, once allocated, is reused.
// Copying copies the value and the capacity rule; moving leaves the source empty.
class NUString {
public:
    NUString() = default;
    explicit NUString(const char* value) { SetStr(value); }
    NUString(const NUString& other);
    NUString(NUString&& other) noexcept;
    // Assignment keeps this object's capacity rule and takes the other's text as is.
    NUString& operator=(const NUString& other);
    NUString& operator=(NUString&& other) noexcept;
    virtual ~NUString() = default;

    virtual const char* GetStr() const;
    virtual int SetStr(const char* value);
    virtual int SetStrLen(const char* value, int len);
    // Stores value; when longer than limit bytes, cuts it on a character boundary so
    // that it fits limit together with suffix, and appends suffix.
    virtual int SetCutBytes(const char* value, int limit, const char* suffix);
    // The same in characters; a four-byte sequence counts 2 unless countWideAsOne.
    virtual int SetCutChars(const char* value, int limit, const char* suffix, bool countWideAsOne);
    virtual bool IsEmpty() const;
    virtual void Clear();

    // Formats into at most strlen(format) + 8191 bytes, terminator included.
    int Printf(const char* format, ...) __attribute__((format(printf, 2, 3)));
    int Append(const char* text);
    void ReplaceChar(char from, char to);
    void RTrim();
    // Copies into dst, cut to dstSize - 1 bytes without splitting a character.
    int CopyTo(char* dst, int dstSize) const;

    int Compare(const char* text) const;
    int CompareN(const char* text, std::size_t n) const;
    int CompareNoCase(const char* text) const;
    int CompareNoCaseN(const char* text, std::size_t n) const;

    int GetValueSize() const { return valueSize; }

protected:
    explicit NUString(int valueSizeIn) : valueSize(valueSizeIn < 0 ? 0 : valueSizeIn) {}

private:
    // Makes buf hold at least size bytes; a new buffer starts zeroed.
    bool Reserve(std::size_t size);
    void Adopt(std::unique_ptr<char[]> newBuf, std::size_t newCapacity);

    std::unique_ptr<char[]> buf;  // none until first set
    std::size_t capacity = 0;     // bytes allocated in buf
    std::size_t length = 0;       // bytes before the terminator, kept so appends need no scan
    int valueSize = 0;            // 0: unbounded; else capacity rule, terminator included
    uint32_t emptyWord = 0;       // what GetStr shows while buf is none
};

// Digits only, exactly valueSize - 1 of them (or empty).
class NUFixedInt : public NUString {
public:
    explicit NUFixedInt(int valueSize) : NUString(valueSize) {}
    int SetStr(const char* value) override;
};

// YYYYMMDD; also accepts "Y/M/D" and "Y-M-D" of at most 11 bytes.
class NUDateStr : public NUFixedInt {
public:
    NUDateStr() : NUFixedInt(9) {}
    int SetStr(const char* value) override;
    // Three digit strings (at most 4, 2, 2 bytes); all empty changes nothing.
    virtual int SetYMD(const char* year, const char* month, const char* day);

    // Parts of the value; on an empty value from dflt, or from today's local date
    // when dflt is null or empty. The forms without dflt give -1 on an empty value.
    int GetYear(const char* dflt) const;
    int GetMonth(const char* dflt) const;
    int GetDay(const char* dflt) const;
    int GetYear() const;
    int GetMonth() const;
    int GetDay() const;
    int GetShortYear() const;
    // One day on or back; -31 on an empty value. A date-time keeps its time part.
    int NextDay();
    int PrevDay();

protected:
    explicit NUDateStr(int valueSize) : NUFixedInt(valueSize) {}

private:
    int AddDays(int days);
};

// YYYYMMDDHHMMSS; hour 24 is allowed, seconds up to 59.
class NUDateTimeStr : public NUDateStr {
public:
    NUDateTimeStr() : NUDateStr(15) {}
    int SetStr(const char* value) override;

    // The text behind the first eight characters, and the hour and minute read from it.
    const char* GetTimePart() const;
    int GetHour() const;
    int GetMinute() const;
};
