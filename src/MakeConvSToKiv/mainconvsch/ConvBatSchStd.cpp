// Stage A of the schedule module: the flat-store families in their fixed order.
#include "MakeConvSToKiv/mainconvsch/ConvBatSchStd.h"

#include "MakeConvSToKiv/convstdcom/ConvAppStd.h"
#include "MakeConvSToKiv/convstdcom/ConvExStd.h"
#include "database/CdDBConnection.h"

int32_t ConvBatSchStd::RunPrepareList(std::span<const ConvPrepareStep> steps) {
    auto* app = dynamic_cast<ConvAppStd*>(app_);
    if (!app) {
        app_->ReportError(kDbBadArgument, CONV_HERE, false, nullptr, nullptr);
        return kDbBadArgument;
    }
    for (const ConvPrepareStep& step : steps) {
        std::unique_ptr<ConvExStd> conv = step.make(app);
        int32_t ret = conv ? RunPrepareStep(conv.get(), step.label) : kDbNoMemory;
        if (ret != 0) {
            app_->ReportError(ret, CONV_HERE, false, step.label, nullptr);
            return ret;
        }
    }
    return 0;
}

int32_t ConvBatSchStd::RunPrepare() {
    for (auto steps : {SchPrepareSteps(), PlantPrepareSteps(), AgendaPrepareSteps(), AgentPrepareSteps()}) {
        const int32_t ret = RunPrepareList(steps);
        if (ret != 0) {
            app_->ReportError(ret, CONV_HERE, false, nullptr, nullptr);
            return ret;
        }
    }
    return 0;
}
