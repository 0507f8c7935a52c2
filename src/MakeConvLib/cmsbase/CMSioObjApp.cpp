// The settings object of the target installation: defaults, the keys of data/app
// and the free functions through which the rest of the program reads them.
#include "MakeConvLib/cmsbase/CMSioObjApp.h"

#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>
#include <string>

#include "MakeConvLib/cmsbase/comTrace.h"
#include "MakeConvLib/iofcom/CMSioObjLocalize.h"
#include "MakeConvLib/iofcom/CMSioObjMsg.h"
#include "MakeConvLib/iofcom/Zi18nLang.h"
#include "base/NUFileIO.h"
#include "base/comLog.h"
#include "base/comSource.h"
#include "base/comTime.h"

namespace {

std::unique_ptr<CMSioObjApp> g_settings;

// A decimal integer as atoi reads it, kept within the range of int.
int ReadInt(const char* text) {
    if (!text) return 0;
    long long v = std::strtoll(text, nullptr, 10);
    if (v > INT_MAX) return INT_MAX;
    if (v < INT_MIN) return INT_MIN;
    return static_cast<int>(v);
}

bool HoldsToday(const char* value) {
    char today[16] = {};
    comTimeNowDate(today, true);
    return today[0] != '\0' && std::strstr(value, today) != nullptr;
}

// "<value without .txt and what follows>.<pid>.txt"
void StoreWithPid(NUString& field, const char* value) {
    std::string stem = value;
    if (auto pos = stem.find(".txt"); pos != std::string::npos) stem.resize(pos);
    field.Printf("%s.%d.txt", stem.c_str(), static_cast<int>(getpid()));
}

// Directory keys end in a slash unless empty.
void StoreDir(NUString& field, const char* value) {
    field.SetStr(value);
    std::size_t len = std::strlen(value);
    if (len > 0 && value[len - 1] != '/' && value[len - 1] != '\\') field.Append("/");
}

const char* TextOf(const NUString& (CMSioObjApp::*field)() const) {
    return g_settings ? (g_settings.get()->*field)().GetStr() : "";
}

int IntOf(int (CMSioObjApp::*field)() const) { return g_settings ? (g_settings.get()->*field)() : 0; }

}  // namespace

CMSioObjApp::CMSioObjApp() : CMSioObj("app", false) {}

CMSioObjApp::~CMSioObjApp() {
    currentLanguage = nullptr;
    languages.reset();
}

int CMSioObjApp::AddValue(const char* name, const char* value, const char* section) {
    int ret = NUioObjList::AddValue(name, value, section);
    if (ret != 0) {
        comTrace("[%s:%d] ret=[%d] errno=[%d]", CONV_HERE, ret, errno);
        return -10;
    }
    ApplyKey(name, value ? value : "");
    return 0;
}

void CMSioObjApp::ApplyKey(const char* name, const char* value) {
    const std::string key = name;
    if (key == "errlogfname") {
        errorLogName.SetStr(value);
        if (*value == '\0') return;
        if (HoldsToday(value))
            comLogSetPath(value, nullptr);
        else
            errorLogName.Clear();
    } else if (key == "tracefname") {
        if (*value != '\0' && HoldsToday(value)) StoreWithPid(traceName, value);
    } else if (key == "locklog") {
        lockLogName.SetStr(value);
    } else if (key == "timelog") {
        // An empty name stays empty rather than becoming ".<pid>.txt".
        if (*value == '\0')
            timeLogName.Clear();
        else
            StoreWithPid(timeLogName, value);
    } else if (key == "docroot") {
        docRoot.SetStr(value);
        imageRoot.Printf("%simages/", value);
    } else if (key == "dbs") {
        dbHost.SetStr(value);
    } else if (key == "dbuser") {
        dbUser.SetStr(value);
    } else if (key == "dbpwd") {
        dbPassword.SetStr(value);
    } else if (key == "dbname") {
        dbName.SetStr(value);
    } else if (key == "dbport") {
        dbPort.SetStr(value);
    } else if (key == "dbdirdata") {
        StoreDir(dataDir, value);
    } else if (key == "dbdirfile") {
        StoreDir(fileDir, value);
    } else if (key == "dbdirmaildata") {
        StoreDir(mailDataDir, value);
    } else if (key == "sqltrace") {
        sqlTrace = ReadInt(value) == 1;
    } else if (key == "dbpooled") {
        dbPooled = std::strcmp(value, "true") == 0;
    } else if (key == "tempdelday") {
        tempDelDay = ReadInt(value);
    } else if (key == "retrycnt") {
        retryCount = ReadInt(value);
    } else if (key == "retrytim") {
        retryTime = ReadInt(value);
    } else if (key == "dbtimeout") {
        dbTimeout = ReadInt(value);
    } else if (key == "cid") {
        corporateId = ReadInt(value);
    } else if (key == "maxdir") {
        dirUnit = ReadInt(value);
    } else if (key == "maxdispcount") {
        maxDispCount = ReadInt(value);
    } else if (key == "deluser") {
        delUser = ReadInt(value);
    } else if (key == "maxfetchcount") {
        maxFetchCount = ReadInt(value);
    }
}

const char* CMSioObjApp::GetDir() const { return dataDir.GetStr(); }

void CMSioObjApp::ReleaseObject() { g_settings.reset(); }

int CMSioObjApp::GetMessageList(const char* key, const char** out, const char* fileName) {
    if (out) *out = nullptr;
    Zi18nLang* lang = GetLanguage();
    if (!lang) return CMS_ERR_NO_SETTINGS;
    CMSioObjMsg* msg = lang->GetMessages(fileName);
    if (msg && out && key) *out = msg->GetValue(key);
    return 0;
}

Zi18nLang* CMSioObjApp::GetLanguage() {
    if (currentLanguage) return currentLanguage;
    int ret = SetLanguage("ja_JP");
    if (ret != 0) {
        comTrace("[%s][%d]ret[%d]", CONV_HERE, ret);
        return nullptr;
    }
    return currentLanguage;
}

int CMSioObjApp::CreateLangList() {
    if (!languages) {
        languages.reset(new (std::nothrow) Zi18nLangList());
        if (!languages) return -2;
    }
    return 0;
}

void CMSioObjApp::DeleteLangList() {
    currentLanguage = nullptr;
    languages.reset();
}

int CMSioObjApp::Load(const char* root) {
    int ret = rootDir.Printf("%s/", root ? root : "");
    if (ret == 0) ret = dataDir.Printf("%sdata/", rootDir.GetStr());
    if (ret == 0) ret = fileDir.Printf("%sfile/", rootDir.GetStr());
    if (ret == 0) ret = pageDir.Printf("%spage/", rootDir.GetStr());
    if (ret == 0) ret = mailDataDir.Printf("%swmldata/", rootDir.GetStr());
    if (ret != 0) return ret;
    // A root too long for a path leaves none; the read below then fails.
    SetDirectory(dataDir.GetStr());

    NUFileIO io;
    io.SetNoLock(true);
    ret = io.ReadFile(this, false);
    if (ret == 0 || ret == -16) return 0;
    int err = errno;
    comTrace("[%s:%d] [%s] iret=[%d] errno[%d]", CONV_HERE, GetPath().c_str(), ret, err);
    return CMS_ERR_SETTINGS_READ;
}

CMSioObjApp* GetSettingsObject() { return g_settings.get(); }

int CreateSettings() {
    if (g_settings) return 0;
    g_settings.reset(new (std::nothrow) CMSioObjApp());
    return g_settings ? 0 : -2;
}

void ReleaseSettings() {
    if (g_settings) g_settings->ReleaseObject();
    g_settings.reset();
}

int LoadSettings(const char* root) {
    if (!g_settings) return CMS_ERR_NO_SETTINGS;
    return g_settings->Load(root);
}

const char* GetRootDir() { return TextOf(&CMSioObjApp::RootDir); }
const char* GetDataDir() { return TextOf(&CMSioObjApp::DataDir); }
const char* GetFileDir() { return TextOf(&CMSioObjApp::FileDir); }
const char* GetPageDir() { return TextOf(&CMSioObjApp::PageDir); }
const char* GetMailDataDir() { return TextOf(&CMSioObjApp::MailDataDir); }
int GetCorporateId() { return IntOf(&CMSioObjApp::CorporateId); }
int GetDirUnit() { return IntOf(&CMSioObjApp::DirUnit); }
const char* GetErrorLogName() { return TextOf(&CMSioObjApp::ErrorLogName); }
const char* GetTraceName() { return TextOf(&CMSioObjApp::TraceName); }
const char* GetLockLogName() { return TextOf(&CMSioObjApp::LockLogName); }
const char* GetTimeLogName() { return TextOf(&CMSioObjApp::TimeLogName); }
const char* GetDbHost() { return TextOf(&CMSioObjApp::DbHost); }
const char* GetDbName() { return TextOf(&CMSioObjApp::DbName); }
const char* GetDbPort() { return TextOf(&CMSioObjApp::DbPort); }
const char* GetDbUser() { return TextOf(&CMSioObjApp::DbUser); }
const char* GetDbPassword() { return TextOf(&CMSioObjApp::DbPassword); }
bool GetSqlTrace() { return g_settings && g_settings->SqlTrace(); }
bool GetDbPooled() { return g_settings && g_settings->DbPooled(); }
int GetDbTimeout() { return IntOf(&CMSioObjApp::DbTimeout); }
int GetTempDelDay() { return IntOf(&CMSioObjApp::TempDelDay); }
int GetRetryCount() { return IntOf(&CMSioObjApp::RetryCount); }
int GetRetryTime() { return IntOf(&CMSioObjApp::RetryTime); }
int GetMaxDispCount() { return IntOf(&CMSioObjApp::MaxDispCount); }
int GetDelUser() { return IntOf(&CMSioObjApp::DelUser); }
int GetMaxFetchCount() { return IntOf(&CMSioObjApp::MaxFetchCount); }
int GetSequence() { return IntOf(&CMSioObjApp::Sequence); }
const char* GetDocRoot() { return TextOf(&CMSioObjApp::DocRoot); }
const char* GetSpDocRoot() { return TextOf(&CMSioObjApp::SpDocRoot); }
const char* GetImageRoot() { return TextOf(&CMSioObjApp::ImageRoot); }
const char* GetLastErrorText() { return TextOf(&CMSioObjApp::LastError); }

void GetDirBucket(int id, char* out, std::size_t outSize, bool withSlash) {
    if (!out || outSize == 0) return;
    out[0] = '\0';
    int unit = GetDirUnit();
    if (unit == 0) return;
    // Wide arithmetic: INT_MIN / -1 would overflow an int.
    long long bucket = static_cast<long long>(id) / unit + 1;
    std::snprintf(out, outSize, withSlash ? "%lld/" : "%lld", bucket);
}

void GetDirBucket(int id, NUString& out, bool withSlash) {
    char text[32];
    GetDirBucket(id, text, sizeof text, withSlash);
    out.SetStr(text);
}

const char* GetErrorDetail() { return g_settings ? g_settings->GetErrorDetail() : ""; }

void ClearErrorDetail() {
    if (g_settings) g_settings->ClearErrorDetail();
}
