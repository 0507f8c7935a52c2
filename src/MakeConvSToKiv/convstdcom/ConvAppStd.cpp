// The flat-store application object: every row is a commit and progress point.
#include "MakeConvSToKiv/convstdcom/ConvAppStd.h"

int32_t ConvAppStd::GetCommitInterval() { return 1; }
