// Typed field values: an owning text with a capacity whose setters check what
// they are given, refuse it with a status code and leave a trace line.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

// Status codes of the field values.
inline constexpr int CS3_ERR_MEMORY = -10;        // allocation failed
inline constexpr int CS3_ERR_LENGTH = -62;        // text over capacity, or a date part too long
inline constexpr int CS3_ERR_DIGITS = -63;        // number with too many digits
inline constexpr int CS3_ERR_ARGUMENT = -99;      // null out pointer, negative length
inline constexpr int CS3_ERR_REQUIRED = -10006;   // required value empty
inline constexpr int CS3_ERR_INVALID = -10007;    // invalid value
inline constexpr int CS3_ERR_NODATE = -13002;     // numeric date that is no calendar date; missing part
inline constexpr int CS3_ERR_DATETEXT = -13004;   // date text not numeric or not storable
inline constexpr int CS3_ERR_TIMETEXT = -13005;   // time text not numeric
inline constexpr int CS3_ERR_NOTNUMBER = -13006;  // not a number
inline constexpr int CS3_ERR_TIMERANGE = -13007;  // numeric time out of range, hour above the maximum
inline constexpr int CS3_ERR_FRACTION = -13009;   // number with a fraction
inline constexpr int CS3_ERR_DATERANGE = -70001;  // date outside the range of SetInRange

// Records the limit message of key ("comzlength" or "comzlengthbyte") with its
// "$limit$" parameter filled in as the current message of the settings.
void comMsgLimit(const char* key, int limit);

// Unbounded (valueSize 0) or bounded: the value then holds at most valueSize - 1
// bytes and its buffer, allocated at the first store, is kept by Clear.
// Copies take the other's capacity rule and text as they are.
class CS3String {
public:
    CS3String() = default;
    CS3String(const CS3String& other);
    CS3String(CS3String&& other) noexcept;
    CS3String& operator=(const CS3String& other);
    CS3String& operator=(CS3String&& other) noexcept;
    virtual ~CS3String() = default;

    // Never null: the empty text while nothing is stored.
    virtual const char* GetStr() const;
    // The checked setter of each type; here: any text (null counts as empty).
    virtual int SetStr(const char* value);
    // CheckLen, then Store; a refused value leaves the old one in place.
    virtual int SetStrLen(const char* value, int len);
    virtual bool IsEmpty() const;
    // Bounded: zero-fills the buffer; unbounded: frees it.
    virtual void Clear();
    // -99 for a negative len, -62 (with the byte limit message) when the first
    // len bytes of value don't fit the capacity.
    virtual int CheckLen(const char* value, int len);
    // Copies the first len bytes of value (fewer when it is shorter): 0, -62, -10.
    virtual int Store(const char* value, int len);

    // Appends without the type's check (the first text goes through SetStr).
    int Append(const char* text);
    void RTrim();
    // strcmp / strncmp with null counted as the empty text.
    int Compare(const char* text) const;
    int CompareN(const char* text, std::size_t n) const;
    // The value cut to dstSize - 1 bytes without splitting a character; -99
    // for a null dst or a size below 1.
    int CopyTo(char* dst, int dstSize) const;

    int GetValueSize() const { return valueSize; }

protected:
    explicit CS3String(int valueSizeIn) : valueSize(valueSizeIn < 0 ? 0 : valueSizeIn) {}
    // Changes the capacity rule; only while no buffer exists (false otherwise).
    bool SetValueSize(int size);
    bool HasBuffer() const { return buf != nullptr; }
    // The stored text for in-place edits that only shorten it; null while none.
    char* GetBuffer() { return buf.get(); }

private:
    std::unique_ptr<char[]> buf;  // none until the first store
    std::size_t capacity = 0;     // bytes allocated in buf
    int valueSize = 0;            // 0: unbounded; else capacity rule, terminator included
    uint32_t emptyWord = 0;       // what GetStr shows while buf is none
};

// Required form of any field: a null or empty value gives -10006 and changes nothing.
template <class Base>
class CS3Required : public Base {
public:
    using Base::Base;
    int SetStr(const char* value) override {
        if (!value || *value == '\0') return CS3_ERR_REQUIRED;
        return Base::SetStr(value);
    }
};

class CS3StringH : public CS3Required<CS3String> {};
