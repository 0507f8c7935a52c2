// The driver that runs: stage A (flat store to working database) before stage B.
#pragma once

#include <cstddef>
#include <memory>
#include <span>

#include "MakeConvEToKiv/mainconvsch/ConvBatSch.h"

class ConvAppStd;
class ConvExStd;

// One step of stage A: its progress label and the conversion it runs, made just
// before the step and gone after it.
struct ConvPrepareStep {
    const char* label;
    std::unique_ptr<ConvExStd> (*make)(ConvAppStd* app);
};

// The maker of a step whose conversion takes only the application.
template <class T>
std::unique_ptr<ConvExStd> MakePrepareStep(ConvAppStd* app) {
    return std::make_unique<T>(app);
}

// The module lists of stage A, one file each, in the run's order.
std::span<const ConvPrepareStep> SchPrepareSteps();
std::span<const ConvPrepareStep> PlantPrepareSteps();
std::span<const ConvPrepareStep> AgendaPrepareSteps();
std::span<const ConvPrepareStep> AgentPrepareSteps();

class ConvBatSchStd : public ConvBatSch {
public:
    using ConvBatSch::ConvBatSch;
    // Schedule, facilities, minutes, alarms; the first failing step ends the stage.
    int32_t RunPrepare() override;

protected:
    int32_t RunPrepareList(std::span<const ConvPrepareStep> steps);
};
