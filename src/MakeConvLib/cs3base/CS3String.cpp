// The owning text of the field values: capacity rule, checked store, append,
// comparisons, and the limit message that refusals of over-long text record.
#include "MakeConvLib/cs3base/CS3String.h"

#include <algorithm>
#include <climits>
#include <cstdio>
#include <cstring>
#include <new>

#include "MakeConvLib/cmsbase/CMSioObjApp.h"
#include "MakeConvLib/cmsbase/comTrace.h"
#include "MakeConvLib/iofcom/CMSioObjLocalize.h"
#include "base/NUTemplateToOutput.h"
#include "base/comSource.h"
#include "base/comStr.h"

namespace {

const char* OrEmpty(const char* text) { return text ? text : ""; }

int LengthOf(const char* text) {
    return static_cast<int>(std::min<std::size_t>(std::strlen(OrEmpty(text)), INT_MAX));
}

std::unique_ptr<char[]> Allocate(std::size_t size) {
    std::unique_ptr<char[]> p(new (std::nothrow) char[size]);
    if (p) std::memset(p.get(), 0, size);
    return p;
}

// The bytes of value that a store of len bytes takes: never past its end.
std::size_t TakenBytes(const char* value, int len) {
    if (!value || len <= 0) return 0;
    return strnlen(value, static_cast<std::size_t>(len));
}

// The limit messages are at most this long, terminator included.
constexpr std::size_t kLimitMessageSize = 1024;

}  // namespace

void comMsgLimit(const char* key, int limit) {
    CMSioObjApp* settings = GetSettingsObject();
    if (!settings) return;
    char number[16];
    std::snprintf(number, sizeof number, "%d", limit);
    const char* pattern = GetLocalText(key);
    char message[kLimitMessageSize] = {};
    if (pattern && *pattern) {
        NUTemplateToOutput engine;
        if (engine.SetTemplateText(pattern, true) == 0 && engine.AddParam("limit", number, 0) == 0 &&
            engine.ExpandTemplate() == 0) {
            std::snprintf(message, sizeof message, "%s", engine.GetResult());
            comUtf8CutBytes(message, static_cast<int>(sizeof message - 1), true);
        }
    }
    settings->SetLastError(message);
}

// ---- copying ----

CS3String::CS3String(const CS3String& other) : valueSize(other.valueSize) {
    if (!other.buf) return;
    const std::size_t len = std::strlen(other.buf.get());
    const std::size_t size = std::max(len + 1, static_cast<std::size_t>(valueSize));
    buf = Allocate(size);
    if (!buf) return;  // out of memory: the copy stays empty
    capacity = size;
    std::memcpy(buf.get(), other.buf.get(), len);
}

CS3String::CS3String(CS3String&& other) noexcept
    : buf(std::move(other.buf)), capacity(other.capacity), valueSize(other.valueSize) {
    other.capacity = 0;
}

CS3String& CS3String::operator=(const CS3String& other) {
    if (this == &other) return *this;
    CS3String copy(other);
    return *this = std::move(copy);
}

CS3String& CS3String::operator=(CS3String&& other) noexcept {
    if (this == &other) return *this;
    buf = std::move(other.buf);
    capacity = buf ? other.capacity : 0;
    valueSize = other.valueSize;
    other.capacity = 0;
    return *this;
}

bool CS3String::SetValueSize(int size) {
    if (buf) return false;
    valueSize = size < 0 ? 0 : size;
    return true;
}

// ---- the virtual operations ----

const char* CS3String::GetStr() const {
    return buf ? buf.get() : reinterpret_cast<const char*>(&emptyWord);
}

int CS3String::SetStr(const char* value) { return SetStrLen(value, LengthOf(value)); }

int CS3String::SetStrLen(const char* value, int len) {
    int ret = CheckLen(value, len);
    if (ret == 0) ret = Store(value, len);
    if (ret != 0) comTrace("[%s:%d]ret[%d]", CONV_HERE, ret);
    return ret;
}

bool CS3String::IsEmpty() const { return !buf || buf[0] == '\0'; }

void CS3String::Clear() {
    if (valueSize != 0) {
        if (buf) std::memset(buf.get(), 0, capacity);
    } else {
        buf.reset();
        capacity = 0;
    }
}

int CS3String::CheckLen(const char* value, int len) {
    if (len < 0) {
        comTrace("[%s:%d]len[%d]", CONV_HERE, len);
        return CS3_ERR_ARGUMENT;
    }
    if (valueSize != 0 && TakenBytes(value, len) >= static_cast<std::size_t>(valueSize)) {
        comMsgLimit("comzlengthbyte", valueSize - 1);
        comTrace("[%s:%d]len[%d]size[%d]", CONV_HERE, len, valueSize);
        return CS3_ERR_LENGTH;
    }
    return 0;
}

int CS3String::Store(const char* value, int len) {
    const std::size_t n = TakenBytes(value, len);
    if (valueSize != 0) {
        const auto limit = static_cast<std::size_t>(valueSize);
        if (n >= limit) {
            comTrace("[%s:%d]size[%d]len[%d]", CONV_HERE, valueSize, len);
            return CS3_ERR_LENGTH;
        }
        if (!buf) {
            buf = Allocate(limit);
            if (!buf) return CS3_ERR_MEMORY;
            capacity = limit;
        }
    } else if (!buf || capacity < n + 1) {
        // Built aside: value may be this object's own text.
        auto fresh = Allocate(n + 1);
        if (!fresh) return CS3_ERR_MEMORY;
        if (n > 0) std::memcpy(fresh.get(), value, n);  // value may be null when n is 0
        buf = std::move(fresh);
        capacity = n + 1;
        return 0;
    }
    if (n > 0) std::memmove(buf.get(), value, n);
    buf[n] = '\0';
    return 0;
}

// ---- plain operations ----

int CS3String::Append(const char* text) {
    if (!text || *text == '\0') return 0;
    if (!buf) {
        const int ret = SetStr(text);
        if (ret != 0) comTrace("[%s][%d]ret[%d]", CONV_HERE, ret);
        return ret;
    }
    const std::size_t cur = std::strlen(buf.get());
    const std::size_t add = std::strlen(text);
    if (valueSize != 0) {
        if (cur + add >= static_cast<std::size_t>(valueSize)) {
            comTrace("[%s][%d]size[%d]len[%d %d]", CONV_HERE, valueSize, LengthOf(buf.get()), LengthOf(text));
            return CS3_ERR_LENGTH;
        }
    } else if (capacity < cur + add + 1) {
        auto fresh = Allocate(cur + add + 1);
        if (!fresh) return CS3_ERR_MEMORY;
        std::memcpy(fresh.get(), buf.get(), cur);
        std::memcpy(fresh.get() + cur, text, add);  // text may be our old buffer, still alive
        buf = std::move(fresh);
        capacity = cur + add + 1;
        return 0;
    }
    std::memmove(buf.get() + cur, text, add);
    buf[cur + add] = '\0';
    return 0;
}

void CS3String::RTrim() {
    if (buf) comStrRTrim(buf.get());
}

int CS3String::Compare(const char* text) const { return std::strcmp(GetStr(), OrEmpty(text)); }

int CS3String::CompareN(const char* text, std::size_t n) const {
    return std::strncmp(GetStr(), OrEmpty(text), n);
}

int CS3String::CopyTo(char* dst, int dstSize) const {
    if (!dst || dstSize < 1) return CS3_ERR_ARGUMENT;
    const char* value = GetStr();
    const std::size_t len = std::strlen(value);
    const std::size_t n = std::min(len, static_cast<std::size_t>(dstSize - 1));
    std::memcpy(dst, value, n);
    dst[n] = '\0';
    if (n < len) comUtf8CutBytes(dst, static_cast<int>(n), true);  // drop a split last character
    return 0;
}
