// The flat-store application object: every row is a commit and progress point,
// and what the flat store keeps loaded is released before the base's end.
#include "MakeConvSToKiv/convstdcom/ConvAppStd.h"

#include "MakeConvSToKiv/convstdcom/ConvStdComIndex.h"

ConvAppStd::ConvAppStd(int argc, char** argv, const char* moduleWord) : ConvApp(argc, argv, moduleWord) {}

ConvAppStd::~ConvAppStd() = default;

int32_t ConvAppStd::GetCommitInterval() { return 1; }

int32_t ConvAppStd::End() {
    for (auto& [path, index] : indexCache) DeleteIndexObject(index.release());
    indexCache.clear();
    groupIds.clear();
    groupIds.shrink_to_fit();
    userIds.clear();
    userIds.shrink_to_fit();
    groupCount = -1;
    userCount = -1;
    return ConvApp::End();
}
