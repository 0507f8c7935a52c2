// The driver frame: the order of the create run and the clean run, the removal
// of migrated file trees and the line-by-line clean scripts.
#include "MakeConvEToKiv/convbatcom/ConvBat.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>

#include "MakeConvEToKiv/convcom/ConvApp.h"
#include "MakeConvEToKiv/convcom/ConvDBRead.h"
#include "MakeConvEToKiv/convcom/ConvExEnt.h"
#include "MakeConvSToKiv/convstdcom/ConvExStd.h"
#include "base/comFile.h"
#include "database/CdDBConnection.h"

ConvBat::ConvBat(ConvApp* app)
    : app_(app), entConnection_(app->EntConnection()), kivConnection_(app->KivConnection()) {}

ConvBat::~ConvBat() = default;

int32_t ConvBat::Run() {
    if (hasPrepareStage_) {
        app_->PutMessage("", 10, 0, 0);
        int32_t ret = RunPrepare();
        if (ret != 0) {
            app_->ReportError(ret, CONV_HERE, false, nullptr, nullptr);
            return ret;
        }
        app_->PutMessage("", 11, 0, 0);
    }
    BeginMain();
    app_->SetAbortInTransaction(true);
    int32_t ret = RunMain();
    if (ret != 0) {
        app_->ReportError(ret, CONV_HERE, false, nullptr, nullptr);
        return ret;
    }
    return 0;
}

int32_t ConvBat::Clean() {
    int32_t ret = CleanFiles();
    if (ret != 0) {
        app_->ReportError(ret, CONV_HERE, false, nullptr, nullptr);
        return ret;
    }
    if (hasPrepareStage_) {
        ret = RunCleanScript(false, false);
        if (ret != 0) {
            app_->ReportError(ret, CONV_HERE, false, nullptr, nullptr);
            return ret;
        }
    }
    ret = RunCleanScript(true, false);
    if (ret != 0) {
        app_->ReportError(ret, CONV_HERE, false, nullptr, nullptr);
        return ret;
    }
    return 0;
}

int32_t ConvBat::Hook() { return 0; }

int32_t ConvBat::CleanFiles() {
    if (!moduleDir_.empty()) {
        int32_t ret = CleanDir(moduleDir_.c_str(), nullptr);
        if (ret != 0) {
            app_->ReportError(ret, CONV_HERE, false, nullptr, nullptr);
            return ret;
        }
    }
    if (!userDir_.empty()) {
        int32_t ret = CleanUserDirs(userDir_.c_str());
        if (ret != 0) {
            app_->ReportError(ret, CONV_HERE, false, nullptr, nullptr);
            return ret;
        }
    }
    return 0;
}

int32_t ConvBat::GetCleanRoot(std::string& path, const char* userId) {
    app_->GetTargetFileRoot(path);
    if (userId) {
        path += "user/";
        app_->AppendNumberedDir(path, userId, true);
    }
    return 0;
}

int32_t ConvBat::CleanDir(const char* name, const comDirFilter& filter) {
    std::string path;
    GetCleanRoot(path, nullptr);
    path += name ? name : "";
    int32_t ret = RemoveDir(path.c_str(), filter);
    if (ret != 0) {
        app_->ReportError(ret, CONV_HERE, false, nullptr, nullptr);
        return ret;
    }
    return 0;
}

int32_t ConvBat::CleanUserDir(const char* name, const char* userId) {
    std::string path;
    GetCleanRoot(path, userId);
    path += name ? name : "";
    int32_t ret = RemoveDir(path.c_str(), nullptr);
    if (ret != 0) {
        app_->ReportError(ret, CONV_HERE, false, nullptr, nullptr);
        return ret;
    }
    return 0;
}

int32_t ConvBat::CleanUserDirs(const char* name) {
    if (!kivConnection_) return 0;
    kivConnection_->SetTransactional(false);
    ConvDBRead reader(app_, kivConnection_);
    int32_t ret = reader.OpenQuery("SELECT ID FROM TM_USER WHERE SID_CORPORATE=1 ORDER BY ID");
    if (ret != 0) {
        app_->ReportError(ret, CONV_HERE, true, nullptr,
                          "添付ファイルの削除時のユーザーデータの読み込みに失敗しました。");
        return ret;
    }
    while ((ret = reader.Fetch()) == 1) {
        const char* id = FindColumn(reader.Row(), "ID");
        if (!id) continue;
        ret = CleanUserDir(name, id);
        if (ret != 0) {
            app_->ReportError(ret, CONV_HERE, false, nullptr, nullptr);
            return ret;
        }
    }
    if (ret < 0) {
        app_->ReportError(ret, CONV_HERE, true, nullptr,
                          "添付ファイルの削除時のユーザーデータの読み込みに失敗しました。");
        return ret;
    }
    return 0;
}

int32_t ConvBat::RemoveDir(const char* path, const comDirFilter& filter) {
    if (!path || !*path) {
        app_->ReportError(-1099, CONV_HERE, false, nullptr, "引数エラー");
        return -1099;
    }
    if (!comIsDir(path)) return 0;  // a tree that isn't there is clean
    errno = 0;
    if (comDirDelete(path, filter, false) != 0) {
        const char* reason = errno != 0 ? std::strerror(errno) : nullptr;
        if (reason && *reason)
            app_->ReportError(-8000002, CONV_HERE, true, nullptr,
                              "ディレクトリの削除に失敗しました。Path=[%s] エラー詳細[%s]", path, reason);
        else
            app_->ReportError(-8000002, CONV_HERE, true, nullptr, "ディレクトリの削除に失敗しました。Path=[%s]",
                              path);
        return -8000002;
    }
    return 0;
}

const char* ConvBat::GetCleanScriptPath(bool isTarget, bool isIndex) {
    const char* name = isIndex ? "clean_fts" : (isTarget ? "clean_kiv" : "clean_ent");
    scriptPath_ = app_->GetSqlScriptPath(name);
    return scriptPath_.c_str();
}

int32_t ConvBat::RunCleanScript(bool isTarget, bool isIndex) {
    CdDBConnection* conn = (isIndex || !isTarget) ? entConnection_ : kivConnection_;
    if (!conn) return 0;
    conn->SetTransactional(false);
    const char* path = GetCleanScriptPath(isTarget, isIndex);
    std::unique_ptr<FILE, int (*)(FILE*)> file(std::fopen(path, "r"), std::fclose);
    if (!file) {
        app_->ReportError(-1021, CONV_HERE, false, path, nullptr);
        return -1021;
    }
    char line[8192];
    while (std::fgets(line, 8191, file.get())) {
        if (line[0] == '\0' || line[0] == '\r' || line[0] == '\n') continue;
        if (line[0] == '-' && line[1] == '-') continue;
        int32_t ret = conn->Exec(line);
        if (ret == 0 || ret == -1110) continue;

        char message[1024];
        std::snprintf(message, sizeof message, "%s", conn->GetErrorMessage());
        char reason[2048];
        std::snprintf(reason, sizeof reason, "(err[%d] status[%d] msg[%s])", ret, conn->GetStatus(), message);
        const char* format = isIndex    ? "Quillmere KIVの索引情報のデータベースの初期化に失敗しました。 sql[%s] %s"
                             : isTarget ? "Quillmere KIVのデータベースの初期化に失敗しました。 sql[%s] %s"
                                        : "Quillmere KIVの前準備用データベースの初期化に失敗しました。 sql[%s] %s";
        app_->ReportError(ret, CONV_HERE, true, nullptr, format, line, reason);
        return ret;
    }
    return 0;
}

int32_t ConvBat::RunPrepare() {
    app_->ReportError(-1, CONV_HERE, false, nullptr, nullptr);
    return -1;
}

int32_t ConvBat::BeginMain() {
    app_->PutMessage("", 12, 0, 0);
    return 0;
}

int32_t ConvBat::RunPrepareStep(ConvExStd* conv, const char* label) {
    int32_t ret = app_->PutMessage(label, 1, 0, 0);
    if (ret < 0) {
        app_->ReportError(ret, CONV_HERE, true, nullptr, "ステータスファイルの書き込みに失敗しました。");
        return ret;
    }
    ret = conv->OpenSource();
    if (ret != 0) {
        app_->PutMessage(label, 7, 0, 0);
        return ret;
    }
    ret = conv->Convert();
    if (ret != 0) {
        app_->PutMessage(label, 7, 0, 0);
        return ret;
    }
    ret = app_->PutMessage(label, 2, 0, 0);
    if (ret < 0) {
        app_->ReportError(ret, CONV_HERE, true, nullptr, "ステータスファイルの書き込みに失敗しました。");
        return ret;
    }
    return 0;
}

int32_t ConvBat::RunStep(ConvExEnt* conv, const char* label) {
    int32_t ret = app_->PutMessage(label, 3, 0, 0);
    if (ret < 0) {
        app_->ReportError(ret, CONV_HERE, true, nullptr, "ステータスファイルの書き込みに失敗しました。");
        return ret;
    }
    ret = conv->Run();
    if (ret != 0) {
        app_->PutMessage(label, 8, 0, 0);
        return ret;
    }
    ret = app_->PutMessage(label, 5, 0, 0);
    if (ret < 0) {
        app_->ReportError(ret, CONV_HERE, true, nullptr, "ステータスファイルの書き込みに失敗しました。");
        return ret;
    }
    return 0;
}
