// Integer fields: decimal text of a bounded number of digits, and the wider
// form that holds larger whole numbers.
#pragma once

#include "MakeConvLib/cs3base/CS3String.h"

// A number with an optional fraction: digits (optionally signed) before a last
// ".", digits behind it; the part before may be empty and is at most 511 bytes.
bool comIsDecimal(const char* text);

// Up to nine digits, or "-" and up to nine: a positive ten-digit number is refused.
class CS3Int : public CS3String {
public:
    CS3Int() : CS3String(11) {}
    // Empty is stored; otherwise -13006 (not a number), -13009 (fraction) or
    // -63 (too many digits), each leaving the field cleared.
    int SetStr(const char* value) override;
    virtual int SetInt(int number);
    // strtol of the value; 0 when empty, clamped to the range of int.
    int GetInt() const;

protected:
    explicit CS3Int(int valueSizeIn) : CS3String(valueSizeIn) {}
};

// Whole numbers of up to twelve digits, or "-" and twelve.
class CS3Double : public CS3Int {
public:
    CS3Double() : CS3Int(14) {}
    double GetDouble() const;
    // Formats "%0.0f" and sets the result.
    int SetDouble(double number);
};
