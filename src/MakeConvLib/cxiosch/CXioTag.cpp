// The sticky tag: field setters with cutting, reset, and the default position.
#include "MakeConvLib/cxiosch/CXioTag.h"

#include <cstring>

#include "MakeConvLib/cmsbase/comTrace.h"
#include "base/comSource.h"
#include "base/comStr.h"

CXioTag::CXioTag() { Clear(); }

void CXioTag::Clear() {
    mid.Clear();
    tagColor.Clear();
    title.SetLimit(kTitleLimit);
    body.SetLimit(kBodyLimit);
    url.Clear();
    x.Clear();
    y.Clear();
    width.SetInt(kDefaultWidth);
    height.SetInt(kDefaultHeight);
    extra1.Clear();
    extra2.Clear();
}

int CXioTag::SetField(const char* name, const char* value) {
    int ret = 0;
    if (comStrCaseCmp(name, "mid") == 0) {
        ret = mid.SetStr(value);
    } else if (comStrCaseCmp(name, "tagcolor") == 0) {
        ret = tagColor.SetStr(value);
    } else if (comStrCaseCmp(name, "title") == 0) {
        ret = title.SetCut(value, kTitleLimit, "..", false);
    } else if (comStrCaseCmp(name, "body") == 0) {
        ret = body.SetCut(value, kBodyLimit, "..", false);
        // A cut inside a tag or an entity would leave broken markup behind.
        if (ret == 0 && std::strlen(body.GetStr()) != std::strlen(value ? value : "")) {
            if (body.DropOpenTail('<', '>')) body.Append("..");
            if (body.DropOpenTail('&', ';')) body.Append("..");
        }
    } else if (comStrCaseCmp(name, "x") == 0) {
        ret = x.SetStr(value);
    } else if (comStrCaseCmp(name, "y") == 0) {
        ret = y.SetStr(value);
    } else if (comStrCaseCmp(name, "width") == 0) {
        ret = width.SetStr(value);
    } else if (comStrCaseCmp(name, "height") == 0) {
        ret = height.SetStr(value);
    } else {
        ret = CXIO_ERR_TAG_FIELD;
    }
    if (ret != 0) comTrace("[%s:%d]ret[%d]fld[%s]", CONV_HERE, ret, name ? name : "");
    return ret;
}

int CXioTag::TagLeft(int seed) const {
    const int w = width.GetInt();
    if (x.IsEmpty() && w < 900) return static_cast<int>((static_cast<long long>(seed) * 32) % (900 - w));
    return x.GetInt();
}

int CXioTag::TagTop(int seed) const {
    const int h = height.GetInt();
    if (y.IsEmpty() && h < 650) return static_cast<int>((static_cast<long long>(seed) * 32) % (650 - h));
    return y.GetInt();
}
