// The two-stage program object: builds the driver that runs stage A before stage B.
#include "MakeConvSToKiv/mainconvsch/ConvMainSchStd.h"

#include <new>

#include "MakeConvEToKiv/convcom/ConvApp.h"
#include "MakeConvSToKiv/mainconvsch/ConvBatSchStd.h"

int32_t ConvMainSchStd::CreateBat() {
    if (bat_) return 0;
    bat_.reset(new (std::nothrow) ConvBatSchStd(app_.get()));
    if (!bat_) {
        app_->ReportError(-1102, CONV_HERE, false, nullptr, nullptr);
        return ConvApp::kBatchFailed;
    }
    return 0;
}

void ConvMainSchStd::DeleteBat() { bat_.reset(); }
