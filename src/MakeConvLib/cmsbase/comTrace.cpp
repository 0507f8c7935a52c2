// comTrace: the base library's way to leave trace text for the application's log.
#include "MakeConvLib/cmsbase/comTrace.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>

#include "MakeConvLib/cmsbase/CMSioObjApp.h"

int comTrace(const char* format, ...) {
    CMSioObjApp* settings = GetSettingsObject();
    if (!settings) return CMS_ERR_NO_SETTINGS;
    char text[COM_TRACE_TEXT_MAX + 1] = {};
    if (format) {
        va_list args;
        va_start(args, format);
        std::vsnprintf(text, sizeof text, format, args);
        va_end(args);
    }
    std::string line = comTraceEncode(text, COM_TRACE_CODE_MAX);
    line.push_back('\n');
    return settings->AppendErrorDetail(line.c_str());
}
