// A language of the target installation: its message files, the date and time
// patterns and week names looked up from them, and the list of languages.
#pragma once

#include <array>
#include <memory>
#include <vector>

#include "base/NUNVList.h"
#include "base/NUString.h"

class CMSioObjLocalize;
class CMSioObjMsg;

class Zi18nLang {
public:
    explicit Zi18nLang(const char* name);
    virtual ~Zi18nLang();
    Zi18nLang(const Zi18nLang&) = delete;
    Zi18nLang& operator=(const Zi18nLang&) = delete;

    // The object that holds the files "com", "com_locale", "sch"; created on
    // first use, null (after a trace line) when that fails.
    virtual CMSioObjLocalize* GetLocalize();
    virtual int CreateLocalize();
    virtual void DeleteLocalize();

    // strftime patterns by their message keys; null when the key has no text.
    virtual const char* GetDateFormatShort();
    virtual const char* GetDateFormat();
    virtual const char* GetMonthDayFormat();
    virtual const char* GetTimeFormat();
    virtual const char* GetMonthDayTimeFormat();
    virtual const char* GetDateWeekFormat();
    virtual const char* GetDateWeekTimeFormat();
    // Seven names from Sunday; an entry is null when its key has no text.
    virtual const std::array<const char*, 7>& GetLongWeekNames();
    virtual const std::array<const char*, 7>& GetShortWeekNames();

    // Loads each file of a list ending in null; stops at the first failure.
    virtual int LoadFiles(const char* const* names);
    // The numbered-message object, with the file fileName ("message" when null)
    // read into it; null only when it can't be created.
    virtual CMSioObjMsg* GetMessages(const char* fileName);
    virtual int CreateMessages();
    virtual void DeleteMessages();
    virtual const char* GetName() const;
    // The label separator: full-width "：" in "ja_JP", ": " elsewhere.
    virtual const char* GetSeparator();

    // Reads the message file name into the localize object once: 0 (also for a
    // missing file), -99 without a name, -10, -30000 for a file that can't be
    // read, or the failure of CreateLocalize.
    int LoadMessageFile(const char* name);

private:
    // A text of the localize object, kept in cache once found.
    const char* LookUp(const char*& cache, const char* key);
    // Cached texts point into the localize list; a read may change it.
    void ForgetCachedTexts();

    NUString name;
    std::unique_ptr<CMSioObjLocalize> localize;
    std::unique_ptr<CMSioObjMsg> messages;
    std::array<const char*, 7> formats{};
    std::array<const char*, 7> shortWeekNames{};
    std::array<const char*, 7> longWeekNames{};
    NUString separator;
};

// Language name to language object. The entries hold the object's address;
// the objects themselves belong to the list and live as long as it does.
class Zi18nLangList : public NUNVList {
public:
    Zi18nLangList() = default;
    ~Zi18nLangList() override;

    // The language of that name, created and added when missing; null (after a
    // trace line) when it can't be added.
    virtual Zi18nLang* GetLanguage(const char* name);

private:
    std::vector<std::unique_ptr<Zi18nLang>> owned;
};
