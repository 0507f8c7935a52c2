// A sticky tag: title and body limited in characters, colour, position and size.
#pragma once

#include "MakeConvLib/cs3base/CS3Int.h"
#include "MakeConvLib/cxiocom/CS3FlgStr.h"
#include "MakeConvLib/cxiocom/CXioLCString.h"

// An unknown field name of SetField.
inline constexpr int CXIO_ERR_TAG_FIELD = -70;

class CXioTag {
public:
    static constexpr int kTitleLimit = 127;
    static constexpr int kBodyLimit = 4000;
    static constexpr int kDefaultWidth = 320;
    static constexpr int kDefaultHeight = 240;

    CXioTag();
    virtual ~CXioTag() = default;

    // By name, in any case: "mid", "tagcolor", "title" and "body" (cut with
    // ".." to their limits; a body cut inside "<...>" or "&...;" loses that
    // tail), "x", "y", "width", "height". -70 for any other name.
    virtual int SetField(const char* name, const char* value);
    // Empties every field; the limits stay, width and height take 320 and 240.
    virtual void Clear();

    // The position to show the tag at: x and y when set, otherwise spread by
    // seed over a 900 by 650 area.
    int TagLeft(int seed) const;
    int TagTop(int seed) const;

    CS3Int mid;
    CXioTagColorFlg tagColor;
    CXioLCString title;
    CXioLCString body;
    CS3String url;
    CS3Int x;
    CS3Int y;
    CS3Int width;
    CS3Int height;
    CS3String extra1;
    CS3String extra2;
};
