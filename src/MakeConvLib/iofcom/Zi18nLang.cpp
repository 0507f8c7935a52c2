// Language objects: lazy message objects, cached patterns and week names, and
// the list that maps language names to them.
#include "MakeConvLib/iofcom/Zi18nLang.h"

#include <cstring>
#include <new>

#include "MakeConvLib/cmsbase/comTrace.h"
#include "MakeConvLib/iofcom/CMSioObjLocalize.h"
#include "MakeConvLib/iofcom/CMSioObjMsg.h"
#include "base/comSource.h"

namespace {

enum FormatSlot { kDateShort, kDate, kMonthDay, kTime, kMonthDayTime, kDateWeek, kDateWeekTime };

constexpr const char* kFormatKeys[7] = {"comxtimesymd2", "comtimeymd2",   "comtimemd2",
                                        "comtimehm2",    "comztimemdhm",  "comxtimeymdw",
                                        "comztimeymdwhm"};
constexpr const char* kShortWeekKeys[7] = {"comweeksun", "comweekmon", "comweektue", "comweekwed",
                                           "comweekthu", "comweekfri", "comweeksat"};
constexpr const char* kLongWeekKeys[7] = {"comweeksunday",   "comweekmonday", "comweektuesday",
                                          "comweekwednesday", "comweekthursday", "comweekfriday",
                                          "comweeksaturday"};

}  // namespace

Zi18nLang::Zi18nLang(const char* nameIn) : name(nameIn) {}

Zi18nLang::~Zi18nLang() = default;

CMSioObjLocalize* Zi18nLang::GetLocalize() {
    if (!localize) {
        int ret = CreateLocalize();
        if (ret != 0) {
            comTrace("[%s:%d]ret[%d]", CONV_HERE, ret);
            return nullptr;
        }
    }
    return localize.get();
}

int Zi18nLang::CreateLocalize() {
    if (localize) return 0;
    localize.reset(new (std::nothrow) CMSioObjLocalize(name.GetStr()));
    return localize ? 0 : -2;
}

void Zi18nLang::DeleteLocalize() {
    ForgetCachedTexts();
    localize.reset();
}

const char* Zi18nLang::LookUp(const char*& cache, const char* key) {
    if (!cache) {
        CMSioObjLocalize* loc = GetLocalize();
        if (loc) cache = loc->GetValue(key);
    }
    return cache;
}

void Zi18nLang::ForgetCachedTexts() {
    formats.fill(nullptr);
    shortWeekNames.fill(nullptr);
    longWeekNames.fill(nullptr);
}

const char* Zi18nLang::GetDateFormatShort() { return LookUp(formats[kDateShort], kFormatKeys[kDateShort]); }
const char* Zi18nLang::GetDateFormat() { return LookUp(formats[kDate], kFormatKeys[kDate]); }
const char* Zi18nLang::GetMonthDayFormat() { return LookUp(formats[kMonthDay], kFormatKeys[kMonthDay]); }
const char* Zi18nLang::GetTimeFormat() { return LookUp(formats[kTime], kFormatKeys[kTime]); }
const char* Zi18nLang::GetMonthDayTimeFormat() {
    return LookUp(formats[kMonthDayTime], kFormatKeys[kMonthDayTime]);
}
const char* Zi18nLang::GetDateWeekFormat() { return LookUp(formats[kDateWeek], kFormatKeys[kDateWeek]); }
const char* Zi18nLang::GetDateWeekTimeFormat() {
    return LookUp(formats[kDateWeekTime], kFormatKeys[kDateWeekTime]);
}

const std::array<const char*, 7>& Zi18nLang::GetLongWeekNames() {
    for (int day = 0; day < 7; ++day) LookUp(longWeekNames[day], kLongWeekKeys[day]);
    return longWeekNames;
}

const std::array<const char*, 7>& Zi18nLang::GetShortWeekNames() {
    for (int day = 0; day < 7; ++day) LookUp(shortWeekNames[day], kShortWeekKeys[day]);
    return shortWeekNames;
}

int Zi18nLang::LoadFiles(const char* const* names) {
    if (!names) return 0;
    for (; *names; ++names) {
        int ret = LoadMessageFile(*names);
        if (ret != 0) return ret;
    }
    return 0;
}

int Zi18nLang::LoadMessageFile(const char* fileName) {
    if (!localize) {
        int ret = CreateLocalize();
        if (ret != 0) {
            comTrace("[%s:%d]ret[%d]", CONV_HERE, ret);
            return ret;
        }
    }
    int ret = localize->IsLoaded(fileName);
    if (ret <= 0) return ret;
    ForgetCachedTexts();
    return localize->ReadNamedFile();
}

CMSioObjMsg* Zi18nLang::GetMessages(const char* fileName) {
    if (!messages && CreateMessages() != 0) return nullptr;
    int ret = messages->IsLoaded(fileName ? fileName : "message");
    if (ret == 1 && messages->ReadNamedFile() != 0) comTrace("[%s:%d]", CONV_HERE);
    return messages.get();
}

int Zi18nLang::CreateMessages() {
    if (messages) return 0;
    messages.reset(new (std::nothrow) CMSioObjMsg(name.GetStr()));
    return messages ? 0 : -2;
}

void Zi18nLang::DeleteMessages() { messages.reset(); }

const char* Zi18nLang::GetName() const { return name.GetStr(); }

const char* Zi18nLang::GetSeparator() {
    if (separator.IsEmpty()) separator.SetStr(name.Compare("ja_JP") == 0 ? "：" : ": ");
    return separator.GetStr();
}

Zi18nLangList::~Zi18nLangList() {
    // Entries hold plain copies of the addresses; the objects go with `owned`.
    DeleteByName(nullptr);
}

Zi18nLang* Zi18nLangList::GetLanguage(const char* langName) {
    if (!langName || *langName == '\0') {
        comTrace("[%s:%d]", CONV_HERE);
        return nullptr;
    }
    const char* stored = nullptr;
    if (FindExact(langName, &stored) == 1 && stored) {
        Zi18nLang* found = nullptr;
        std::memcpy(&found, stored, sizeof found);
        return found;
    }
    std::unique_ptr<Zi18nLang> lang(new (std::nothrow) Zi18nLang(langName));
    if (!lang) {
        comTrace("[%s:%d]", CONV_HERE);
        return nullptr;
    }
    Zi18nLang* raw = lang.get();
    int ret = AddEntry(langName, reinterpret_cast<const char*>(&raw), sizeof raw);
    if (ret != 0) {
        comTrace("[%s:%d] ret[%d]", CONV_HERE, ret);
        return nullptr;
    }
    try {
        owned.push_back(std::move(lang));
    } catch (const std::bad_alloc&) {
        DeleteAt(count - 1);
        comTrace("[%s:%d]", CONV_HERE);
        return nullptr;
    }
    return raw;
}
