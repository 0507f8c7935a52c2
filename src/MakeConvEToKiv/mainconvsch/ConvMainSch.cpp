// The schedule module's program object, with the stage-B driver.
#include "MakeConvEToKiv/mainconvsch/ConvMainSch.h"

#include <new>

#include "MakeConvEToKiv/convcom/ConvApp.h"
#include "MakeConvEToKiv/mainconvsch/ConvBatSch.h"

ConvMainSch::ConvMainSch() {
    moduleName_ = "sch";
    functionLabel_ = "スケジュール、設備予約、議事録、来訪者管理";
}

int32_t ConvMainSch::CreateBat() {
    if (bat_) return 0;
    bat_.reset(new (std::nothrow) ConvBatSch(app_.get()));
    if (!bat_) {
        app_->ReportError(-1102, CONV_HERE, false, nullptr, nullptr);
        return ConvApp::kBatchFailed;
    }
    return 0;
}

void ConvMainSch::DeleteBat() { bat_.reset(); }
