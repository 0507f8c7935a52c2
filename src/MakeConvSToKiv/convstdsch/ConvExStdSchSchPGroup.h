// The schedules of users' personal groups: data/user/<u>/group/<g>/schedule.
// The outer conversion walks the users; for each, an inner one walks that
// user's personal groups like any other owners.
#pragma once

#include <memory>
#include <string>

#include "MakeConvSToKiv/convstdsch/ConvExStdSchSch.h"

// The personal groups of one user, read from data/user/<u>/group/index; a
// group whose own record (`<g>/info`) can't be read is passed over.
class ConvExStdSchSchPGroupOfUser : public ConvExStdSchSch {
public:
    ConvExStdSchSchPGroupOfUser(ConvAppStd* app, const char* userId);

    // Reads the user's own group index, fully loaded; a user without personal
    // groups has none, which reads as empty.
    int32_t OpenSource() override;
    std::unique_ptr<ConvDBEntryStd> NewWriter() override;
    // SID_PRGROUP (the group) and SID_USER (the user): fixed fields and keys.
    int32_t SetUpWriter(ConvDBEntryStd* writer) override;
    int32_t SetUpDetailWriter(ConvDBEntryStd* writer, const ConvRowItem& idItem) override;

    const std::string& UserId() const { return userId; }

protected:
    // Both owner columns into writer.
    void AddOwners(ConvDBEntryStd* writer);

    std::string userId;
};

class ConvExStdSchSchPGroup : public ConvExStdStackIndex {
public:
    explicit ConvExStdSchSchPGroup(ConvAppStd* app);

    // Every user of the user index in index order, each through its own
    // inner conversion; a failure of one ends the whole.
    int32_t Convert() override;
};
