// The status file, progress messages, and the reporting into the trace log
// (hexadecimal) and the user log (plain text with INFO/WARN/ERR).
#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "MakeConvEToKiv/convcom/ConvApp.h"
#include "MakeConvLib/cmsbase/CMSioObjApp.h"
#include "MakeConvLib/cmsbase/comTrace.h"
#include "base/comClock.h"
#include "base/comFile.h"
#include "base/comLog.h"
#include "base/comStr.h"
#include "base/comTime.h"

namespace {

// Texts of PutMessage by code (index 0 unused; 13 is built at run time).
const char* const kMessages[] = {
    "",
    "移行の前準備を開始します。",
    "移行の前準備が終了しました。",
    "移行を開始します。",
    "%d件中%d件が移行済みです。",
    "移行が終了しました。",
    "%d件移行が終了しました。(成功：%d 失敗：%d)",
    "準備に失敗しました。",
    "移行に失敗しました。",
    "移行を中断しました。",
    "機能の移行の前準備を開始します。",
    "機能の移行の前準備が終了しました。",
    "機能の移行を開始します。",
    "",
};
const char kSummaryFormat[] = "%s機能の移行を終了しました。%sは%d件移行しました。(成功：%d 失敗：%d)";
const char kEndFormat[] = "%s機能の移行を終了しました。";

constexpr std::size_t kTextMax = 8000;     // formatted message, terminator included
constexpr std::size_t kBodyMax = 8016;     // " [msg=...]"
constexpr std::size_t kTraceMax = 8192;    // one trace line
constexpr std::size_t kMessageMax = 1024;  // one status message
constexpr std::size_t kPathMax = 1024;
constexpr std::size_t kWorkPathMax = 8192;  // a path before its limit is checked

std::string Format(std::size_t bound, const char* format, ...) __attribute__((format(printf, 2, 3)));
std::string Format(std::size_t bound, const char* format, ...) {
    // A buffer on the stack: messages are formed for every row.
    char buf[kWorkPathMax];
    bound = std::min(bound, sizeof buf);
    va_list args;
    va_start(args, format);
    const int n = vsnprintf(buf, bound, format, args);
    va_end(args);
    return n < 0 ? std::string() : std::string(buf);
}

// A path of a log file, or empty when it doesn't fit the 1,023 bytes of a log
// path: a cut path would name another file, so such a log stays off.
std::string LogFilePath(const char* format, const char* root, const char* module, const char* suffix) {
    std::string path = Format(kWorkPathMax, format, root, module, suffix);
    return path.size() < kPathMax ? path : std::string();
}

// Switches the debug log to path and gives back the one set until now.
std::string SwitchLog(const std::string& path) {
    char previous[kPathMax] = {};
    comLogSetPath(path.c_str(), previous);
    return previous;
}

void RestoreLog(const std::string& previous) { comLogSetPath(previous.c_str(), nullptr); }

}  // namespace

void ConvApp::SetupLogFiles() {
    if (!argv_) return;
    const bool create = IsCreateMode();
    const char* suffix = create ? "" : "_clean";
    const char* root = rootPath_.c_str();
    const char* module = moduleName_.c_str();
    if (create) {
        logPath_ = LogFilePath("%sconv/log/%s%s.log", root, module, suffix);
    } else {
        logPath_.clear();
    }
    tracePath_ = LogFilePath("%sconv/log/%s%s_trace.log", root, module, suffix);
    std::string traceBack = LogFilePath("%sconv/log/%s%s_trace_back.log", root, module, suffix);
    // One generation back; a log whose names don't fit is left where it is.
    auto rotate = [](const std::string& current, const std::string& back) {
        if (current.empty() || back.empty()) return;
        comDirDelete(back.c_str(), nullptr, false);
        comFileRename(current.c_str(), back.c_str());
    };
    if (create) rotate(logPath_, LogFilePath("%sconv/log/%s%s_back.log", root, module, suffix));
    rotate(tracePath_, traceBack);
    // Between reports the trace log is the current log in both modes, so that the
    // notes of the base library and the database layer (a failed copy, a time
    // that doesn't convert, a server's error block) land there, encoded as the
    // reports are.
    comLogSetPath(tracePath_.c_str(), nullptr);
    comLogSetNotesEncoded(true);
}

void ConvApp::ReportError(int32_t code, const char* source, int line, bool show, const char* detail,
                          const char* format, ...) {
    const int32_t effective = (code == 2 || code == 3) ? 1 : code;
    if (code != 0) {
        statusWord_ = effective;
        FlushErrorDetail();
    }
    std::string text;
    if (format) {
        char buf[kTextMax];
        va_list args;
        va_start(args, format);
        const int n = vsnprintf(buf, sizeof buf, format, args);
        va_end(args);
        // A cut text ends between characters.
        if (n >= static_cast<int>(sizeof buf)) comUtf8CutBytes(buf, static_cast<int>(sizeof buf - 1), true);
        text = n < 0 ? std::string() : std::string(buf);
    }
    std::string body;
    if (!text.empty()) body = Format(kBodyMax, " [msg=%s]", text.c_str());

    const std::string previous = SwitchLog(tracePath_);
    const char* src = source ? source : "";
    std::string traceLine;
    if (effective != 0 && detail && *detail)
        traceLine = Format(kTraceMax, "[%s:%d] [ret=%d] %s [detail=%s]\n", src, line, effective, body.c_str(),
                           detail);
    else if (effective != 0)
        traceLine = Format(kTraceMax, "[%s:%d] [ret=%d] %s\n", src, line, effective, body.c_str());
    else
        traceLine = Format(kTraceMax, "%s\n", text.c_str());
    // The log writes at most 8191 bytes a line: cut the encoding between two
    // bytes' digits, and keep the line feed, so that every line decodes.
    std::string encoded = comTraceEncode(traceLine, kTraceMax - 2);
    if (encoded.empty() || encoded.back() != '\n') encoded += '\n';
    comDebugLog("%s", encoded.c_str());

    if (logPath_.empty()) return;  // clean mode: the trace log stays the current log
    comLogSetPath(logPath_.c_str(), nullptr);
    if (!text.empty() && show) {
        const char* tag = effective == 0 ? "INFO" : (effective > 0 ? "WARN" : "ERR");
        comDebugLog("[%s] %s\n", tag, text.c_str());
    }
    RestoreLog(previous);
}

void ConvApp::FlushErrorDetail() {
    const char* detail = GetErrorDetail();
    if (!detail || !*detail) return;
    // The gathered text can outgrow the 8191 bytes that the log writes a line:
    // cut it where no digit pair is split, and end it in a line feed, so that the
    // next report starts a line of its own and every line decodes.
    std::string text = detail;
    if (text.size() > kTraceMax - 1) {
        std::size_t cut = kTraceMax - 2;
        const std::size_t feed = text.rfind('\n', cut - 1);
        const std::size_t lineStart = feed == std::string::npos ? 0 : feed + 1;
        if ((cut - lineStart) % 2 != 0) --cut;
        text.resize(cut);
    }
    if (text.back() != '\n') text += '\n';
    const std::string previous = SwitchLog(tracePath_);
    comDebugLog("%s", text.c_str());
    ClearErrorDetail();
    RestoreLog(previous);
}

int32_t ConvApp::WriteStatusWithRetry() {
    int32_t ret = statusIO_.WriteFile(&statusList_, true);
    for (int retry = 0; retry < 3 && (ret == -17 || ret == -18); ++retry) {
        comSleep(1);
        ret = statusIO_.WriteFile(&statusList_, true);
    }
    if (ret != 0) ReportError(ret, CONV_HERE, false, statusPath_.c_str(), "errno[%d]", errno);
    return ret;
}

int32_t ConvApp::InitStatusFile() {
    const bool create = IsCreateMode();
    const char* ownSuffix = create ? "" : "_clean";
    const char* otherSuffix = create ? "_clean" : "";
    // Formatted whole: a path too long for the status list is refused there.
    statusPath_ = Format(kWorkPathMax, "%sconv/%s%s.sts", rootPath_.c_str(), moduleName_.c_str(), ownSuffix);
    // The other mode's name keeps the historical argument order: suffix before module.
    const std::string otherPath =
        Format(kWorkPathMax, "%sconv/%s%s.sts", rootPath_.c_str(), otherSuffix, moduleName_.c_str());

    int32_t ret = statusList_.SetPath(statusPath_.c_str(), nullptr);
    if (ret != 0) {
        ReportError(ret, CONV_HERE, false, statusPath_.c_str(), nullptr);
        return ret;
    }
    char now[16] = {};
    comTimeNowStamp(now, true);
    const char* const entries[][2] = {{"status", "1"}, {"sdate", now}, {"edate", ""}};
    for (const auto& entry : entries) {
        ret = statusList_.AddValue(entry[0], entry[1], nullptr);
        if (ret != 0) {
            ReportError(ret, CONV_HERE, false, nullptr, nullptr);
            return ret;
        }
    }
    ret = WriteStatusWithRetry();
    if (ret != 0) return ret;

    NUioObjList other;
    NUFileIO otherIO;
    if (other.SetPath(otherPath.c_str(), nullptr) == 0 && otherIO.ReadFile(&other, false) == -19) {
        ReportError(-19, CONV_HERE, true, nullptr, "%s",
                    create ? "現在、他のプロセスが\"clean\"モードで処理中です。しばらくお待ちください。"
                           : "現在、他のプロセスが\"create\"モードで処理中です。しばらくお待ちください。");
        return -19;
    }
    SetFunction(nullptr, true);
    return 0;
}

void ConvApp::SetFunction(const char* label, bool startsNew) {
    if (startsNew) {
        if (functionOpen_ && static_cast<uint32_t>(statusWord_) <= 1) {
            if (IsCreateMode()) PutMessage("", 13, 0, 0);
            if (firstWarning_ == 0) firstWarning_ = statusWord_;
            statusWord_ = 0;
        }
        appendNext_ = true;
    }
    if (label && *label) {
        functionLabel_ = label;
        if (startsNew) {
            PutMessage("", 12, 0, 0);
            functionOpen_ = true;
            summaryText_.clear();
        }
    } else if (startsNew) {
        functionOpen_ = true;
        summaryText_.clear();
    }
}

int32_t ConvApp::PutMessage(const char* name, int32_t code, int32_t first, int32_t second) {
    std::string stepName;
    if (!name) {
        stepName = lastName_;
    } else if (*name) {
        stepName = name;
        lastName_ = stepName.substr(0, 255);
    }
    // "%s " and "%s%s" by concatenation, cut as the formats would cut them.
    auto cut = [](std::string text) {
        if (text.size() > kMessageMax - 1) text.resize(kMessageMax - 1);
        return text;
    };
    const std::string prefix = stepName.empty() ? "" : cut(stepName + " ");
    const char* table = (code >= 1 && code <= 12) ? kMessages[code] : "";

    std::string text;
    switch (code) {
        case 10:
        case 11:
        case 12:
            text = Format(kMessageMax, "%s%s", functionLabel_.c_str(), table);
            break;
        case 13:
            text = !summaryText_.empty() ? Format(kMessageMax, "%s", summaryText_.c_str())
                                         : Format(kMessageMax, kEndFormat, functionLabel_.c_str());
            break;
        case 4:
            text = cut(prefix + Format(kMessageMax, table, first, second));
            break;
        case 6:
            text = Format(kMessageMax, "%s%s", prefix.c_str(),
                          Format(kMessageMax, table, first, first - second, second).c_str());
            summaryText_ = Format(kMessageMax, kSummaryFormat, functionLabel_.c_str(), stepName.c_str(), first,
                                  first - second, second);
            break;
        default:
            text = Format(kMessageMax, "%s%s", prefix.c_str(), table);
            break;
    }

    if (!appendNext_) {
        int count = statusList_.GetCount();
        if (count > 0) statusList_.DeleteAt(count - 1);
    }
    appendNext_ = false;
    int32_t ret = statusList_.AddValue("dispmsg", text.c_str(), nullptr);
    if (ret != 0) {
        ReportError(ret, CONV_HERE, false, nullptr, nullptr);
        return ret;
    }
    ret = WriteStatusWithRetry();
    if (ret != 0) return ret;
    if (code != 4) ReportError(0, nullptr, 0, true, nullptr, "%s", text.c_str());
    return 0;
}

void ConvApp::WriteFinalStatus() {
    if (IsCreateMode()) {
        if (static_cast<uint32_t>(statusWord_) > 3)
            PutMessage("", 9, 0, 0);
        else
            PutMessage("", 13, 0, 0);
    }
    char now[16] = {};
    comTimeNowStamp(now, true);
    int32_t ret = statusList_.SetValue("edate", now);
    if (ret != 0) {
        ReportError(ret, CONV_HERE, false, nullptr, nullptr);
        return;
    }
    const char* status = "0";
    if (static_cast<uint32_t>(statusWord_) > 1)
        status = "3";
    else if (firstWarning_ == 1 || statusWord_ == 1)
        status = "2";
    ret = statusList_.SetValue("status", status);
    if (ret != 0) {
        ReportError(ret, CONV_HERE, false, nullptr, nullptr);
        return;
    }
    ret = statusIO_.WriteFile(&statusList_, false);
    if (ret != 0) ReportError(ret, CONV_HERE, false, statusPath_.c_str(), "errno[%d]", errno);
}
