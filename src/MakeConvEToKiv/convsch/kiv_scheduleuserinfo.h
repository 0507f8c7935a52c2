// The writer of TT_SCHEDULE_USERINFO: what a schedule is to one user. Out of
// the same row it writes the user's sticky note (TTPR_TAG) and alarm
// (TTPR_ALARM) when the row carries them. A note or alarm that fails leaves
// the user information in place and counts the row as left out.
#pragma once

#include <cstdint>
#include <string>

#include "MakeConvEToKiv/convcom/ConvDBEntry.h"

class CiofSchedule;

class kiv_scheduleuserinfo : public ConvDBEntry {
public:
    kiv_scheduleuserinfo(ConvApp* app, CdDBConnection* connection);

    void AppendKeys(std::string& text) const override;
    int32_t Entry(const char* table, ConvRow& row) override;
    int32_t AddColumnValue(const char* name, const char* value, uint32_t type) override;
    int32_t AddNullColumn(const char* name, uint32_t type) override;

protected:
    // The link to the schedule did, with tail behind it.
    static std::string ScheduleLink(const std::string& did, const char* tail);
    // The sticky note of the row: 0, or 1 after a report.
    int32_t WriteTag(const ConvRow& row, CiofSchedule& schedule, const std::string& did);
    // The alarm of the row, when it has a send time: 0, or 1 after a report.
    int32_t WriteAlarm(const ConvRow& row, const std::string& did);

    std::string nowStamp;
    const ConvRow* currentRow = nullptr;
};
