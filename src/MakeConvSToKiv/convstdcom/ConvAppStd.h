// The application object of the two-stage run: adds what the flat store needs.
#pragma once

#include "MakeConvEToKiv/convcom/ConvApp.h"

class ConvAppStd : public ConvApp {
public:
    using ConvApp::ConvApp;
    int32_t GetCommitInterval() override;
};
