// Life cycle of the program object: Run, Initialize, Execute and Terminate.
#include "MakeConvEToKiv/convmainbase/ConvMainBase.h"

#include <cstdio>
#include <new>

#include "MakeConvEToKiv/convbatcom/ConvBat.h"
#include "MakeConvEToKiv/convcom/ConvApp.h"
#include "MakeConvLib/iofcom/CMSioObjMsg.h"
#include "MakeConvSToKiv/convstdcom/ConvAppStd.h"

ConvMainBase::ConvMainBase() = default;

ConvMainBase::~ConvMainBase() = default;

int32_t ConvMainBase::Run(int argc, char** argv) {
    int32_t code = Initialize(argc, argv);
    if (code == 0) code = Execute();
    Terminate(code);
    return code;
}

int32_t ConvMainBase::Initialize(int argc, char** argv) {
    int32_t ret = GetArguments(argc, argv);
    if (ret != 0) {
        std::printf("起動引数の取得に失敗しました。バッチプログラムに指定した引数を確認してください。\n");
        return ret;
    }
    ret = CreateApp(argc, argv);
    if (ret != 0) {
        std::printf("バッチ処理のメモリー確保に失敗しました。\n");
        return ret;
    }
    return 0;
}

int32_t ConvMainBase::GetArguments(int argc, char** argv) { return CheckArgumentCount(argc, argv); }

int32_t ConvMainBase::CheckArgumentCount(int argc, char** /*argv*/) {
    if (argc - 1 >= requiredArgCount_) return 0;
    std::printf("起動引数が不足しています。バッチプログラムに指定した引数を確認してください。\n");
    return ConvApp::kBatchFailed;
}

void ConvMainBase::Terminate(int32_t /*code*/) {
    DeleteBat();
    DeleteApp();
    std::fflush(stdout);
}

int32_t ConvMainBase::Execute() {
    if (!app_) return ConvApp::kBatchFailed;
    int32_t ret = StartBatch();
    if (ret != 0) {
        app_->ReportError(ret, CONV_HERE, true, nullptr, "バッチプログラムを開始することができませんでした。");
        return ConvApp::kBatchFailed;
    }
    ret = RunBatch();
    if (ret != 0) {
        app_->ReportError(ret, CONV_HERE, false, nullptr, nullptr);
        return ret;
    }
    ret = EndBatch();
    if (ret != 0) {
        app_->ReportError(ret, CONV_HERE, true, nullptr, "バッチプログラムを正常に終了することができませんでした。");
        return ConvApp::kBatchFailed;
    }
    return 0;
}

int32_t ConvMainBase::StartBatch() {
    int32_t ret = app_->Init(functionLabel_.c_str());
    if (ret != 0) {
        app_->ReportError(ret, CONV_HERE, false, nullptr, nullptr);
        return ret;
    }
    ret = CreateBat();
    if (ret != 0) {
        app_->ReportError(ret, CONV_HERE, false, nullptr, nullptr);
        return ret;
    }
    return 0;
}

int32_t ConvMainBase::RunBatch() {
    if (!bat_) {
        app_->ReportError(-1102, CONV_HERE, false, nullptr, nullptr);
        return ConvApp::kBatchFailed;
    }
    int32_t ret = 0;
    if (app_->IsCreateMode()) {
        ret = LoadCommonResources();
        if (ret != 0) {
            app_->ReportError(ret, CONV_HERE, false, nullptr, nullptr);
            return ret;
        }
        ret = bat_->Run();
        if (ret == 0 || ret == 1) return 0;  // 1: rows were left out, a warning
    } else {
        ret = bat_->Clean();
        if (ret == 0) return 0;
    }
    app_->ReportError(ret, CONV_HERE, false, nullptr, nullptr);
    return ConvApp::kBatchFailed;
}

int32_t ConvMainBase::LoadCommonResources() {
    for (const char* name : {"com", "com_locale"}) {
        int32_t ret = LoadMessageFile(name);
        if (ret != 0) {
            app_->ReportError(ret, CONV_HERE, false, nullptr, nullptr);
            return ret;
        }
    }
    return 0;
}

int32_t ConvMainBase::EndBatch() { return 0; }

int32_t ConvMainBase::CreateApp(int argc, char** argv) {
    if (app_) return 0;
    app_.reset(new (std::nothrow) ConvAppStd(argc, argv, moduleName_.c_str()));
    if (!app_) return ConvApp::kBatchFailed;
    return 0;
}

void ConvMainBase::DeleteApp() {
    if (!app_) return;
    app_->End();
    app_.reset();
}
