// The process-wide settings of the target installation (its file data/app), the
// free functions that read them, and the trace buffer of the base library.
#pragma once

#include <cstring>

#include <cstddef>
#include <memory>

#include "MakeConvLib/cmsbase/CMSioObj.h"
#include "base/NUNVList.h"
#include "base/NUString.h"

class Zi18nLang;
class Zi18nLangList;

// Result of LoadSettings when the file exists and can't be read.
inline constexpr int CMS_ERR_SETTINGS_READ = -11008;
// No settings object.
inline constexpr int CMS_ERR_NO_SETTINGS = -99;

// At most one per process, reached by the free functions below. Every key acts
// while the file is read (see AddValue); the last of a repeated key wins.
class CMSioObjApp : public CMSioObj {
public:
    CMSioObjApp();
    ~CMSioObjApp() override;

    // Stores the entry, then applies the key to its field.
    int AddValue(const char* name, const char* value, const char* section) override;

    // The current data directory.
    virtual const char* GetDir() const;
    // Deletes the process-wide settings object.
    virtual void ReleaseObject();
    // The text of key in the numbered-message file fileName ("message" when
    // null): 0 and the text, or 0 and null when there is none; -99 without a
    // language.
    virtual int GetMessageList(const char* key, const char** out, const char* fileName);
    // The current language; selects "ja_JP" on first use. Null on failure.
    virtual Zi18nLang* GetLanguage();
    virtual int CreateLangList();
    virtual void DeleteLangList();

    // Sets the directories under root and reads <root>/data/app.
    int Load(const char* root);

    // Language selection (SetLanguage of the localisation functions).
    Zi18nLangList* GetLangList() { return languages.get(); }
    void SetCurrentLanguage(Zi18nLang* lang) { currentLanguage = lang; }

    // The trace buffer that comTrace fills and the application flushes.
    // Text beyond what the trace log writes of it (8,190 bytes) is never kept.
    int AppendErrorDetail(const char* text) {
        if (std::strlen(errorDetail.GetStr()) >= kErrorDetailKeep) return 0;
        return errorDetail.Append(text);
    }
    static constexpr std::size_t kErrorDetailKeep = 8191;
    const char* GetErrorDetail() const { return errorDetail.GetStr(); }
    void ClearErrorDetail() { errorDetail.Clear(); }

    int SetLastError(const char* text) { return lastError.SetStr(text); }

    const NUString& LastError() const { return lastError; }
    const NUString& ErrorLogName() const { return errorLogName; }
    const NUString& TraceName() const { return traceName; }
    const NUString& LockLogName() const { return lockLogName; }
    const NUString& TimeLogName() const { return timeLogName; }
    NUNVList& TimeMarks() { return timeMarks; }
    const NUString& DbHost() const { return dbHost; }
    const NUString& DbName() const { return dbName; }
    const NUString& DbPort() const { return dbPort; }
    const NUString& DataDir() const { return dataDir; }
    const NUString& FileDir() const { return fileDir; }
    const NUString& DbUser() const { return dbUser; }
    const NUString& DbPassword() const { return dbPassword; }
    bool SqlTrace() const { return sqlTrace; }
    bool DbPooled() const { return dbPooled; }
    int DbTimeout() const { return dbTimeout; }
    int TempDelDay() const { return tempDelDay; }
    int RetryCount() const { return retryCount; }
    int RetryTime() const { return retryTime; }
    int CorporateId() const { return corporateId; }
    int DirUnit() const { return dirUnit; }
    int MaxDispCount() const { return maxDispCount; }
    int DelUser() const { return delUser; }
    int MaxFetchCount() const { return maxFetchCount; }
    const NUString& MailDataDir() const { return mailDataDir; }
    const NUString& PageDir() const { return pageDir; }
    const NUString& RootDir() const { return rootDir; }
    int Sequence() const { return sequence; }
    const NUString& DocRoot() const { return docRoot; }
    const NUString& SpDocRoot() const { return spDocRoot; }
    const NUString& ImageRoot() const { return imageRoot; }

private:
    // Applies one key of the file to its field.
    void ApplyKey(const char* name, const char* value);

    NUString lastError;
    NUString errorLogName;
    NUString traceName;
    NUString lockLogName;
    NUString timeLogName;
    NUNVList timeMarks;
    NUString dbHost{"localhost"};
    NUString dbName{"qkivdb"};
    NUString dbPort;
    NUString dataDir;
    NUString fileDir;
    NUString dbUser{"qkiv"};
    NUString dbPassword{"zuvo"};
    bool sqlTrace = false;
    bool dbPooled = false;
    int dbTimeout = 30;
    int tempDelDay = 3;
    int retryCount = 5;
    int retryTime = 10;
    int corporateId = 1;
    int dirUnit = 1000;
    int maxDispCount = 500;
    int delUser = 100;
    int maxFetchCount = 5000;
    NUString mailDataDir;
    NUString pageDir;
    NUString rootDir;
    int sequence = 1;
    NUString docRoot{"/qkivres/"};
    NUString spDocRoot{"/qkivspres/"};
    NUString imageRoot{"/qkivres/images/"};
    NUString errorDetail;
    Zi18nLang* currentLanguage = nullptr;  // owned by languages
    std::unique_ptr<Zi18nLangList> languages;
};

// The process-wide object, or null.
CMSioObjApp* GetSettingsObject();

// Creates the object unless it exists; 0, or -2 when memory runs out.
int CreateSettings();
void ReleaseSettings();
// Reads <root>/data/app: 0 (also when the file is missing), -99 without an
// object, -11008 when the file can't be read.
int LoadSettings(const char* root);

// Plain accessors: "" or 0 (or false) without an object.
const char* GetRootDir();
const char* GetDataDir();
const char* GetFileDir();
const char* GetPageDir();
const char* GetMailDataDir();
int GetCorporateId();
int GetDirUnit();
const char* GetErrorLogName();
const char* GetTraceName();
const char* GetLockLogName();
const char* GetTimeLogName();
const char* GetDbHost();
const char* GetDbName();
const char* GetDbPort();
const char* GetDbUser();
const char* GetDbPassword();
bool GetSqlTrace();
bool GetDbPooled();
int GetDbTimeout();
int GetTempDelDay();
int GetRetryCount();
int GetRetryTime();
int GetMaxDispCount();
int GetDelUser();
int GetMaxFetchCount();
int GetSequence();
const char* GetDocRoot();
const char* GetSpDocRoot();
const char* GetImageRoot();
const char* GetLastErrorText();

// The directory bucket of a numeric id: id / unit + 1 as "%d/" (withSlash) or
// "%d". With a unit of 0, or without an object, out is left empty.
void GetDirBucket(int id, NUString& out, bool withSlash);
void GetDirBucket(int id, char* out, std::size_t outSize, bool withSlash);

// The trace text gathered by comTrace ("" without an object), and its reset.
const char* GetErrorDetail();
void ClearErrorDetail();
