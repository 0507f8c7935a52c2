// The icon master: data/schedule/icon/index and one `<id>/info` per icon,
// after the TM_INDEX row (module 1, "001") with the index's last id.
#pragma once

#include "MakeConvSToKiv/convstdcom/ConvExStdIndex.h"

class ConvExStdSchIcon : public ConvExStdIndex {
public:
    explicit ConvExStdSchIcon(ConvAppStd* app);
    std::unique_ptr<ConvDBEntryStd> NewWriter() override;
};
