// Localised texts: the language of the run, its message files, lookups by key,
// date formatting with the language's week names, and numbered messages.
#pragma once

#include <ctime>

#include "MakeConvLib/iofcom/CMSioObjMsg.h"

// A calendar record or pattern that can't be formatted.
inline constexpr int CMS_ERR_CALENDAR = -70013;

// Holds the files "com", "com_locale" and "sch" of a language.
class CMSioObjLocalize : public CMSioObjMsg {
public:
    using CMSioObjMsg::CMSioObjMsg;
};

// The text of key in the loaded files, or null.
const char* GetLocalText(const char* key);
// day 0 (Sunday) to 6; null beyond or without a text.
const char* GetShortWeekName(int day);
const char* GetLongWeekName(int day);
// The language's separator between a label and its value ("：" in "ja_JP").
const char* GetLabelSeparator();

// Formats a fourteen-digit stamp (FormatDateLocal: its first eight digits) by
// a strftime pattern and puts the language's week name in place of the first
// English one. An empty date empties out, a null format copies the date; a
// date out of range is copied as it stands, cut to fit.
void FormatDateTimeLocal(const char* format, const char* date, char* out, int outSize);
void FormatDateLocal(const char* format, const char* date, char* out, int outSize);
// The same with the pattern of a message key; a key without text empties out.
void FormatDateTimeByKey(const char* key, const char* date, char* out, int outSize);
void FormatDateByKey(const char* key, const char* date, char* out, int outSize);

// strftime of record into out (size bytes with the terminator): 0, or -70013
// with out emptied for a null format or a field out of range.
int FormatCalendar(char* out, int size, const char* format, const struct tm& record);
// Replaces the first English week name in text (a buffer of size bytes) by the
// language's: the full name by the long form, three letters by the short form.
// Nothing changes when there is no replacement or it would not fit.
void ReplaceWeekNames(char* text, int size);

// The numbered message of code; a text "X:..." gives its letter to severity and
// the rest as the text. A code without text is added with its number as text.
// Null without settings.
const char* MessageTextByCode(int code, char* severity);
// lastError of the settings becomes the message of code (none for 0) and text.
void SetLastErrorByCode(int code, const char* text);
