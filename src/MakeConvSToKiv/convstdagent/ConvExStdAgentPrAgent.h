// Each user's notification plan (agent/schedule under data/user/index): the
// TMPR_AGENT row and one TM_SCHEDULER row per valid send time, committed per
// user as one unit, so a user's plan arrives whole or not at all.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "MakeConvSToKiv/convstdcom/ConvExStdStackIndex.h"

class ConvExStdAgentPrAgent : public ConvExStdStackIndex {
public:
    // The send-time list is cut off once the joined text reaches this length.
    static constexpr std::size_t kJoinedMax = 2052;

    // Always transactional.
    explicit ConvExStdAgentPrAgent(ConvAppStd* app);

    std::unique_ptr<ConvDBEntryStd> NewWriter() override;
    // The send times first, then the TMPR_AGENT row carrying their list.
    int32_t ConvertRecord(ConvDBEntryStd* writer, ConvRow& record) override;

    // Writes the record's `sendtimes` list into TM_SCHEDULER and puts the valid
    // times, joined, into the record as SENDTIMES.
    virtual int32_t InsertSendTimes(ConvRow& record);
    // The owner as the fixed ID, sid_scheduler and stime mapped to themselves.
    virtual int32_t SetUpSchedulerWriter(ConvDBEntryStd* writer);
    // One row per valid entry of list (null: none), in order; entries that are
    // empty, too long or not a time of day (hour up to 24, minutes under 60)
    // are passed over silently. joined gets the times as numbers ("900,930").
    virtual int32_t InsertSendTimeList(ConvDBEntryStd* writer, const std::vector<std::string>* list,
                                       std::string& joined);
};
