// The message files of one language, read into one list under
// <root>local/<language>/, each file at most once.
#pragma once

#include "MakeConvLib/cmsbase/CMSioObj.h"
#include "base/NUNVList.h"

// Result of a message file that exists and can't be read.
inline constexpr int CMS_ERR_MESSAGE_READ = -30000;
// No language object can be had.
inline constexpr int CMS_ERR_NO_LANGUAGE = -70011;

class CMSioObjMsg : public CMSioObj {
public:
    explicit CMSioObjMsg(const char* languageName);

    // 0 when the file name was read before; 1 when it wasn't: the object then
    // names that file and counts it as read. -99 without a name, -10 when it
    // can't be noted.
    virtual int IsLoaded(const char* name);

    // Reads the file now named, without a lock: 0 (also for a missing file), or
    // -30000 after a trace line.
    int ReadNamedFile();

protected:
    NUNVList loadedFiles;
};

// Selects the language of the run: 0, -99 without settings, -70011 when the
// language can't be had. The first lookup selects "ja_JP" by itself.
int SetLanguage(const char* name);
// Reads <root>local/<language>/<name> once: 0 (also for a missing file), -99,
// -70011, -10, or -30000 for a file that exists and can't be read.
int LoadMessageFile(const char* name);
// The current language's name; "ja_JP" without settings.
const char* GetLanguageName();
