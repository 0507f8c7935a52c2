// The download link of a schedule icon image. The tag body only shows it; the
// image behind it isn't read by the batch.
#include "MakeConvLib/sch/XSchCom.h"

#include <cstdio>

#include "base/comHtml.h"

std::string XSchIconDownloadUrl(int iconNo, const char* iconFile) {
    char number[16];
    std::snprintf(number, sizeof number, "%d", iconNo);
    char path[64];
    std::snprintf(path, sizeof path, "%s/%s/%d", "schedule", "icon", iconNo);
    const std::string file = std::string(iconFile && *iconFile ? iconFile : number) + ".gif";
    const struct {
        const char* name;
        std::string value;
    } params[] = {
        {"item1", "schedule"},
        {"item2", "icon"},
        {"id1", number},
        {"id2", ""},
        {"filename", comUrlEncode(file, 2)},
        {"mimetype", "image/gif"},
        {"realname", comUrlEncode(path, 2)},
    };
    std::string url = "zrefer.cgi?cmd=referdownload";
    for (const auto& p : params) url += std::string("&") + p.name + "=" + p.value;
    return url;
}
