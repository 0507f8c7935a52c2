// Stage A, facilities: A11 to A19, in this order.
#include "MakeConvSToKiv/convstdplant/ConvExStdPlantManage.h"
#include "MakeConvSToKiv/mainconvsch/ConvBatSchStd.h"

namespace {

constexpr ConvPrepareStep kSteps[] = {
    {"設備予約機能管理者", MakePrepareStep<ConvExStdPlantManageAll>},      // A15
    {"設備予約所属管理者", MakePrepareStep<ConvExStdPlantManageGroup>},    // A16
};

}  // namespace

std::span<const ConvPrepareStep> PlantPrepareSteps() { return kSteps; }
