// The application object's start-up, paths, arguments and connections; its
// reporting and status file are in ConvApp_Status.cpp.
#include "MakeConvEToKiv/convcom/ConvApp.h"

#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "MakeConvLib/cmsbase/CMSioObjApp.h"
#include "base/comTime.h"
#include "database/CdDBConnection_PG.h"

namespace {

// Copies text into a field of fixed size, cut as a char buffer of that size would.
std::string Bounded(const char* text, std::size_t size) {
    std::string out = text ? text : "";
    if (out.size() > size - 1) out.resize(size - 1);
    return out;
}

}  // namespace

ConvApp::ConvApp(int argc, char** argv, const char* moduleWord)
    : argc_(argc), argv_(argv), moduleName_(Bounded(moduleWord, 128)) {}

ConvApp::~ConvApp() = default;

const char* ConvApp::GetArgument(int n) const {
    if (!argv_ || n < 0 || n >= argc_) return nullptr;
    return argv_[n];
}

bool ConvApp::IsCreateMode() const {
    const char* mode = GetArgument(3);
    return mode && std::strcmp(mode, "create") == 0;
}

void ConvApp::EnsureSlash(std::string& path) {
    if (path.empty()) return;
    char last = path.back();
    if (last == '/' || last == '\\') return;
    path += '/';
}

const char* ConvApp::GetSqlScriptPath(const char* name) {
    scratchPath_ = rootPath_ + "sql/" + moduleName_ + "/" + (name ? name : "") + ".sql";
    return scratchPath_.c_str();
}

int32_t ConvApp::GetCommitInterval() {
    const char* text = GetArgument(2);
    if (!text || !*text) return 0;
    return static_cast<int32_t>(std::strtol(text, nullptr, 10));
}

void ConvApp::ReadArguments() {
    if (!argv_) return;
    statusWord_ = 0;
    auto arg = [this](int n) { const char* a = GetArgument(n); return std::string(a ? a : ""); };
    rootPath_ = arg(1);
    sourceRoot_ = arg(4);
    targetRoot_ = arg(9);
    commitInterval_ = GetCommitInterval();
    kivHost_ = arg(10);
    kivPort_ = arg(11);
    kivUser_ = arg(12);
    kivPassword_ = arg(13);
    kivName_ = arg(15);
    entHost_ = arg(5);
    entPort_ = arg(6);
    entUser_ = arg(7);
    entPassword_ = arg(8);
    entName_ = arg(14);
    sqlLogDir_ = arg(16);
    EnsureSlash(rootPath_);
    EnsureSlash(sourceRoot_);
    EnsureSlash(targetRoot_);
}

int32_t ConvApp::SetupPaths() {
    sourceDataRoot_ = sourceRoot_ + "data/";
    sourceFileRoot_ = sourceRoot_ + "file/";
    return 0;
}

int32_t ConvApp::Init(const char* label) {
    ReadArguments();
    SetupLogFiles();
    std::string settingsRoot = targetRoot_;
    if (label) functionLabel_ = label;
    int32_t ret = InitStatusFile();
    if (ret != 0) {
        ReportError(ret, CONV_HERE, false, nullptr, nullptr);
        return ret;
    }
    if (!settingsRoot.empty()) settingsRoot.pop_back();
    CreateSettings();
    LoadSettings(settingsRoot.c_str());  // a missing file leaves the defaults
    ret = SetupPaths();
    if (ret != 0) {
        ReportError(ret, CONV_HERE, false, nullptr, nullptr);
        return ret;
    }
    ret = OpenDatabases();
    if (ret != 0) {
        ReportError(ret, CONV_HERE, false, nullptr, nullptr);
        return ret;
    }
    return 0;
}

int32_t ConvApp::End() {
    CloseDatabases();
    WriteFinalStatus();
    ReleaseSettings();
    return 0;
}

int32_t ConvApp::CreateConnections() {
    kivConnection_.reset();
    entConnection_.reset();
    kivConnection_.reset(new (std::nothrow) CdDBConnection_PG());
    entConnection_.reset(new (std::nothrow) CdDBConnection_PG());
    if (!kivConnection_ || !entConnection_) {
        ReportError(-1102, CONV_HERE, false, nullptr, "errno=[%d]", errno);
        return -1102;
    }
    return 0;
}

int32_t ConvApp::OpenDatabases() {
    int32_t ret = CreateConnections();
    if (ret != 0) {
        ReportError(ret, CONV_HERE, false, nullptr, nullptr);
        return ret;
    }
    struct Target {
        CdDBConnection* conn;
        const std::string *user, *password, *host, *name, *port;
    };
    const Target targets[] = {
        {entConnection_.get(), &entUser_, &entPassword_, &entHost_, &entName_, &entPort_},
        {kivConnection_.get(), &kivUser_, &kivPassword_, &kivHost_, &kivName_, &kivPort_},
    };
    for (const Target& t : targets) {
        ret = t.conn->Connect(t.user->c_str(), t.password->c_str(), t.host->c_str(), t.name->c_str(),
                              t.port->c_str(), -1);
        if (ret != 0) {
            ReportError(ret, CONV_HERE, false, nullptr, "データベースのオープンに失敗しました。[%d:%s]",
                        t.conn->GetStatus(), t.conn->GetErrorMessage());
            return ret;
        }
    }

    std::string dir;
    if (!GetSqlTraceDir(dir)) return 0;
    // "<dir><prefix><module><suffix>_<pid>.log", e.g. entDB_sch_clean_4711.log.
    const std::string tail =
        moduleName_ + (IsCreateMode() ? "" : "_clean") + "_" + std::to_string(getpid()) + ".log";
    entConnection_->SetTraceFile((dir + "entDB_" + tail).c_str());
    kivConnection_->SetTraceFile((dir + "kivDB_" + tail).c_str());
    return 0;
}

bool ConvApp::GetSqlTraceDir(std::string& dir) const {
    // SQL logs only in a directory whose path names today's date.
    dir.clear();
    if (sqlLogDir_.empty()) return false;
    char today[16] = {};
    comTimeNowDate(today, true);
    if (sqlLogDir_.find(std::string(today, 8)) == std::string::npos) return false;
    dir = sqlLogDir_;
    EnsureSlash(dir);
    return true;
}

int32_t ConvApp::ConnectWorkingCopy(CdDBConnection& connection, const char* traceName) {
    std::string dir;
    if (GetSqlTraceDir(dir)) {
        char path[2048];
        std::snprintf(path, sizeof path, "%s%s%s_%d.log", dir.c_str(), "entDB_", traceName ? traceName : "",
                      static_cast<int>(getpid()));
        connection.SetTraceFile(path);
    }
    const int32_t ret = connection.Connect(entUser_.c_str(), entPassword_.c_str(), entHost_.c_str(),
                                           entName_.c_str(), entPort_.c_str(), -1);
    if (ret != 0) {
        ReportError(ret, CONV_HERE, true, nullptr, "データベースのオープンに失敗しました。[%d:%s]",
                    connection.GetStatus(), connection.GetErrorMessage());
    }
    return ret;
}

void ConvApp::CloseDatabases() {
    if (entConnection_) entConnection_->Disconnect();
    if (kivConnection_) kivConnection_->Disconnect();
    entConnection_.reset();
    kivConnection_.reset();
}
