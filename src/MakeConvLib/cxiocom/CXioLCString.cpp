// Character counting of UTF-8 text and the limited text fields built on it,
// with the cutting setter that fits a value to a column.
#include "MakeConvLib/cxiocom/CXioLCString.h"

#include <climits>
#include <cstring>

#include "MakeConvLib/cmsbase/comTrace.h"
#include "base/NUString.h"
#include "base/comSource.h"

namespace {

// Largest limit whose buffer of four bytes per character still fits an int.
constexpr int kMaxLimit = (INT_MAX - 1) / 4;

// Continuation bytes that a lead byte announces.
int ContinuationsOf(unsigned char lead) {
    if (lead >= 0xC0 && lead <= 0xDF) return 1;
    if (lead >= 0xE0 && lead <= 0xEF) return 2;
    if (lead >= 0xF0 && lead <= 0xF7) return 3;
    return 0;
}

}  // namespace

int CountChars(const char* text, int limit) {
    if (!text) return 0;
    const auto* p = reinterpret_cast<const unsigned char*>(text);
    long long count = 0;
    std::size_t pos = 0;
    while (p[pos] != '\0') {
        const int follow = ContinuationsOf(p[pos]);
        for (int i = 1; i <= follow; ++i) {
            if (p[pos + i] < 0x80) {  // the terminator included: the walk ends here
                comTrace("[%s:%d]len[%d][%x]", CONV_HERE, static_cast<int>(count), p[pos + i]);
                return CXIO_ERR_BROKEN_UTF8;
            }
        }
        count += follow == 3 ? 2 : 1;
        pos += static_cast<std::size_t>(follow) + 1;
    }
    if (count <= limit) return static_cast<int>(count);
    comMsgLimit("comzlength", limit);
    comTrace("[%s:%d]len[%d]max[%d]", CONV_HERE, static_cast<int>(count > INT_MAX ? INT_MAX : count), limit);
    return CS3_ERR_LENGTH;
}

// ---- CXioLCString ----

int CXioLCString::SetStr(const char* value) {
    if (maxChars == 0) return CS3String::SetStr(value);
    if (value) {
        const int count = CountChars(value, maxChars);
        if (count < 0) {
            comTrace("[%s][%d]ret[%d]", CONV_HERE, count);
            return count;
        }
    }
    const int ret = CS3String::SetStr(value);
    if (ret != 0) comTrace("[%s][%d]ret[%d]", CONV_HERE, ret);
    return ret;
}

void CXioLCString::Clear() {
    if (maxChars != 0)
        SetLimit(maxChars);
    else
        CS3String::Clear();
}

void CXioLCString::SetLimit(int limit) {
    if (!HasBuffer() && limit > 0) {
        maxChars = limit > kMaxLimit ? kMaxLimit : limit;
        SetValueSize(maxChars * 4 + 1);
    }
    CS3String::Clear();
}

int CXioLCString::SetCut(const char* value, int limit, const char* suffix, bool byBytes) {
    SetLimit(limit);
    int ret = 0;
    NUString cut;
    if (maxChars == 0) {
        ret = CS3String::SetStr(value);  // nothing to fit to
    } else if (byBytes) {
        if (!value || std::strlen(value) <= static_cast<std::size_t>(maxChars)) {
            ret = CS3String::SetStr(value);
        } else {
            ret = cut.SetCutBytes(value, maxChars, suffix);
            if (ret == 0) ret = CS3String::SetStr(cut.GetStr());
        }
    } else if (SetStr(value) != 0) {
        // Refused as too long (or broken): keep what fits, suffix included.
        ret = cut.SetCutChars(value, maxChars, suffix, false);
        if (ret == 0) ret = CS3String::SetStr(cut.GetStr());
    }
    if (ret != 0) comTrace("[%s:%d]ret[%d]", CONV_HERE, ret);
    return ret;
}

bool CXioLCString::DropOpenTail(char open, char close) {
    char* text = GetBuffer();
    if (!text) return false;
    char* last = std::strrchr(text, open);
    if (!last || (close != '\0' && std::strchr(last + 1, close))) return false;
    *last = '\0';
    return true;
}

// ---- CXioLCStrLower ----

int CXioLCStrLower::SetStr(const char* value) {
    const int count = CountChars(value, maxChars == 0 ? INT_MAX : maxChars);
    if (count >= minChars) {
        const int ret = CS3String::SetStr(value);
        if (ret != 0) comTrace("[%s][%d]ret[%d]", CONV_HERE, ret);
        return ret;
    }
    const int ret = count < 0 ? count : CXIO_ERR_SHORT;
    comTrace("[%s][%d]ret[%d]lower[%d]", CONV_HERE, ret, minChars);
    return ret;
}

void CXioLCStrLower::SetLimits(int lower, int limit) {
    SetLimit(limit);
    minChars = lower;
}
