// The sticky tag of a user's schedule: its body is the schedule rendered by
// the template "tag/schedule.html" of the installation.
#pragma once

#include "MakeConvLib/cxiosch/CXioTag.h"

class CiofSchedule;

// The template of the tag body failed.
inline constexpr int ZIO_ERR_TAG_TEMPLATE = -6100600;

class ZioTagSchUser : public CXioTag {
public:
    // Renders schedule (its times folded for display first) into title and
    // body; url goes into the url field. 0, -99 for a null schedule,
    // -6100600 when the template fails, or the code of a failing field.
    virtual int BuildBody(CiofSchedule* schedule, const char* url, const char* iconFile, const char* iconName,
                          const char* updateTime);
};
