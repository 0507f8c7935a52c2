// Turns the user log's step messages into steps, hangs every WARN and ERR
// report on the step it came from, and prints the whole.
#include "MakeConvEToKiv/convreport/ConvRunAccount.h"

#include <algorithm>
#include <cinttypes>
#include <cstdio>
#include <deque>
#include <string_view>
#include <unordered_map>

namespace convrun {
namespace {

// The step messages, each after "<label> ".
constexpr std::string_view kPrepareStart = " 移行の前準備を開始します。";
constexpr std::string_view kPrepareEnd = " 移行の前準備が終了しました。";
constexpr std::string_view kPrepareFail = " 準備に失敗しました。";
constexpr std::string_view kMainStart = " 移行を開始します。";
constexpr std::string_view kMainEnd = " 移行が終了しました。";
constexpr std::string_view kMainFail = " 移行に失敗しました。";
constexpr std::string_view kAbort = "移行を中断しました。";
// "<label> N件移行が終了しました。(成功：S 失敗：F)"
constexpr std::string_view kCountMid = "件移行が終了しました。(成功：";
constexpr std::string_view kCountFail = " 失敗：";
constexpr std::string_view kCountEnd = ")";
// The code of the technical report of a failed statement.
constexpr int64_t kStatementFailure = -1000006;

// A text of several lines as one, the line feeds as blanks.
std::string OneLine(const std::string& text) {
    std::string out;
    for (char c : text) out += (c == '\n' || c == '\r') ? ' ' : c;
    while (!out.empty() && out.back() == ' ') out.pop_back();
    return out;
}

bool EndsWith(std::string_view text, std::string_view tail) {
    return text.size() >= tail.size() && text.substr(text.size() - tail.size()) == tail;
}

// The label in front of a step message; nullopt when text isn't that message.
std::optional<std::string> LabelOf(std::string_view text, std::string_view message) {
    if (!EndsWith(text, message) || text.size() == message.size()) return std::nullopt;
    return std::string(text.substr(0, text.size() - message.size()));
}

std::optional<int64_t> Number(std::string_view text) {
    if (text.empty() || text.size() > 18) return std::nullopt;
    int64_t value = 0;
    for (char c : text) {
        if (c < '0' || c > '9') return std::nullopt;
        value = value * 10 + (c - '0');
    }
    return value;
}

struct CountLine {
    std::string label;
    int64_t total, written, failed;
};

// Parses the closing count of a counted step.
std::optional<CountLine> ParseCount(std::string_view text) {
    if (!EndsWith(text, kCountEnd)) return std::nullopt;
    const std::size_t mid = text.rfind(kCountMid);
    if (mid == std::string_view::npos) return std::nullopt;
    const std::size_t blank = text.rfind(' ', mid);
    if (blank == std::string_view::npos || blank == 0) return std::nullopt;
    const std::size_t failAt = text.find(kCountFail, mid + kCountMid.size());
    if (failAt == std::string_view::npos) return std::nullopt;
    const auto total = Number(text.substr(blank + 1, mid - blank - 1));
    const auto written = Number(text.substr(mid + kCountMid.size(), failAt - mid - kCountMid.size()));
    const std::size_t failFrom = failAt + kCountFail.size();
    const auto failed = Number(text.substr(failFrom, text.size() - kCountEnd.size() - failFrom));
    if (!total || !written || !failed) return std::nullopt;
    return CountLine{std::string(text.substr(0, blank)), *total, *written, *failed};
}

std::string Duration(int64_t millis) {
    char buffer[64];
    if (millis < 0) millis = 0;
    const int64_t seconds = millis / 1000, ms = millis % 1000;
    if (seconds < 60)
        std::snprintf(buffer, sizeof buffer, "%" PRId64 ".%03" PRId64 "s", seconds, ms);
    else if (seconds < 3600)
        std::snprintf(buffer, sizeof buffer, "%" PRId64 "m%02" PRId64 ".%03" PRId64 "s", seconds / 60, seconds % 60,
                      ms);
    else
        std::snprintf(buffer, sizeof buffer, "%" PRId64 "h%02" PRId64 "m%02" PRId64 ".%03" PRId64 "s", seconds / 3600,
                      seconds / 60 % 60, seconds % 60, ms);
    return buffer;
}

// "20261123140502" as "2026/11/23 14:05:02"; other texts as they stand.
std::string StatusDate(const std::string& date) {
    if (date.size() != 14 || !Number(date)) return date;
    return date.substr(0, 4) + "/" + date.substr(4, 2) + "/" + date.substr(6, 2) + " " + date.substr(8, 2) + ":" +
           date.substr(10, 2) + ":" + date.substr(12, 2);
}

const char* StateText(ConvStepState state) {
    switch (state) {
        case ConvStepState::Running: return "running";
        case ConvStepState::Done: return "done";
        case ConvStepState::Failed: return "FAILED";
        case ConvStepState::Unfinished: return "unfinished";
    }
    return "";
}

const char* FateText(ConvRowFate fate) {
    switch (fate) {
        case ConvRowFate::LeftOut: return "left out";
        case ConvRowFate::KeptChanged: return "kept, changed";
        case ConvRowFate::FileMissing: return "file not copied";
        case ConvRowFate::Failure: return "error";
    }
    return "";
}

std::string StatusMeaning(const ConvRunAccount& account) {
    const std::string& s = account.status.status;
    if (s == "1")
        return account.lockHeld ? "running"
                                : "not closed: the run ended without its final write (killed or crashed)";
    if (s == "0") return "ended, nothing left out";
    if (s == "2") return "ended with warnings: rows or files were left out";
    if (s == "3") return "failed or stopped";
    return "unknown status";
}

void AppendNote(std::string& out, const ConvStepNote& note) {
    out += "    " + Pad(FateText(note.fate), 16);
    if (note.row) {
        out += note.row->table;
        for (const auto& [name, value] : note.row->keys) out += " [" + name + "=" + value + "]";
        out += "  " + note.row->reason;
    } else {
        out += note.text;
    }
    if (note.ret) out += "  (ret=" + std::to_string(*note.ret) + ")";
    out += '\n';
    if (!note.cause.empty()) out += "                    cause: " + note.cause + '\n';
    if (!note.detail.empty()) out += "                    detail: " + note.detail + '\n';
}

}  // namespace

std::size_t DisplayWidth(const std::string& text) {
    std::size_t width = 0;
    for (std::size_t i = 0; i < text.size();) {
        const unsigned char c = static_cast<unsigned char>(text[i]);
        if (c < 0x80) {
            ++width;
            ++i;
            continue;
        }
        const std::size_t length = c >= 0xF0 ? 4 : c >= 0xE0 ? 3 : c >= 0xC0 ? 2 : 1;
        // Half-width katakana (U+FF61..U+FF9F, EF BD A1..EF BE 9F) take one column.
        const bool halfWidth = length == 3 && c == 0xEF && i + 2 < text.size() &&
                               ((static_cast<unsigned char>(text[i + 1]) == 0xBD &&
                                 static_cast<unsigned char>(text[i + 2]) >= 0xA1) ||
                                static_cast<unsigned char>(text[i + 1]) == 0xBE);
        width += (length == 2 || halfWidth) ? 1 : 2;
        i += length;
    }
    return width;
}

ConvRowFate FateOf(const std::string& tag, const std::string& text) {
    // The number check reports with a negative code, but only leaves its row out.
    if (text.find("登録を行いませんでした。") != std::string::npos) return ConvRowFate::LeftOut;
    if (tag == "ERR") return ConvRowFate::Failure;
    // The writers that keep the row say that they registered it.
    if (text.find("カットして登録しました。") != std::string::npos ||
        text.find("変更して登録しました。") != std::string::npos ||
        text.find("重複列を削除して再登録しました。") != std::string::npos)
        return ConvRowFate::KeptChanged;
    if (text.find("添付ファイルの複写に失敗しました。") != std::string::npos) return ConvRowFate::FileMissing;
    return ConvRowFate::LeftOut;
}

ConvRunAccount BuildAccount(const std::optional<std::string>& statusText, const std::optional<std::string>& logText,
                            const std::optional<std::string>& traceText, bool lockHeld) {
    ConvRunAccount account;
    account.lockHeld = lockHeld;
    if (statusText) account.status = ParseStatus(*statusText);
    account.logPresent = logText.has_value();
    const std::vector<ConvLogEntry> log = logText ? ParseUserLog(*logText) : std::vector<ConvLogEntry>{};

    // Trace reports with a text, by text, in order: each note takes the first
    // one after the last taken, so that equal texts pair up one by one.
    std::vector<ConvTraceEntry> trace;
    // Keys view the messages held by trace, which isn't changed after this.
    std::unordered_map<std::string_view, std::deque<std::pair<std::size_t, std::size_t>>> traceByText;
    if (traceText) {
        account.traceRead = true;
        trace = ParseTraceLog(*traceText);
        for (std::size_t i = 0; i < trace.size(); ++i)
            for (std::size_t k = 0; k < trace[i].splits.size(); ++k)
                if (!trace[i].splits[k].first.empty()) traceByText[trace[i].splits[k].first].emplace_back(i, k);
    }
    std::size_t traceCursor = 0;

    ConvStep* open = nullptr;
    int numbers[2] = {0, 0};
    auto startStep = [&](char stage, std::string label, int64_t millis) {
        if (open) open->state = ConvStepState::Unfinished;
        ConvStep step;
        step.stage = stage;
        step.number = ++numbers[stage == 'A' ? 0 : 1];
        step.label = std::move(label);
        step.startMillis = millis;
        account.steps.push_back(std::move(step));
        open = &account.steps.back();
    };
    auto endStep = [&](char stage, const std::string& label, ConvStepState state, int64_t millis) {
        if (!open || open->stage != stage || open->label != label) return;
        open->state = state;
        open->endMillis = millis;
        open = nullptr;
    };

    for (const ConvLogEntry& entry : log) {
        if (!entry.stamp.empty()) {
            if (account.firstStamp.empty()) account.firstStamp = entry.stamp;
            account.lastStamp = entry.stamp;
        }
        if (entry.tag == "WARN" || entry.tag == "ERR") {
            ConvStepNote note;
            note.tag = entry.tag;
            note.stamp = entry.stamp;
            note.text = entry.text;
            note.row = ParseRowReport(entry.text);
            note.fate = FateOf(entry.tag, entry.text);
            auto found = traceByText.find(entry.text);
            if (found != traceByText.end()) {
                auto& queue = found->second;
                while (!queue.empty() && queue.front().first < traceCursor) queue.pop_front();
                if (!queue.empty()) {
                    const auto [index, split] = queue.front();
                    queue.pop_front();
                    note.ret = trace[index].ret;
                    note.detail = trace[index].splits[split].second;
                    // The server's answer, when a failed statement led to this report.
                    for (std::size_t i = index; i > traceCursor; --i) {
                        const ConvTraceEntry& before = trace[i - 1];
                        if (before.hasCode && before.ret == kStatementFailure && !before.splits.empty()) {
                            note.cause = OneLine(before.splits.back().first);
                            break;
                        }
                    }
                    traceCursor = index + 1;
                }
            }
            (open ? open->notes : account.outsideNotes).push_back(std::move(note));
            continue;
        }
        if (entry.tag != "INFO") continue;
        const std::string& text = entry.text;
        if (text == kAbort) {
            account.aborted = true;
        } else if (auto label = LabelOf(text, kPrepareStart)) {
            startStep('A', std::move(*label), entry.millis);
        } else if (auto label = LabelOf(text, kPrepareEnd)) {
            endStep('A', *label, ConvStepState::Done, entry.millis);
        } else if (auto label = LabelOf(text, kPrepareFail)) {
            endStep('A', *label, ConvStepState::Failed, entry.millis);
        } else if (auto label = LabelOf(text, kMainStart)) {
            startStep('B', std::move(*label), entry.millis);
        } else if (auto label = LabelOf(text, kMainEnd)) {
            endStep('B', *label, ConvStepState::Done, entry.millis);
        } else if (auto label = LabelOf(text, kMainFail)) {
            endStep('B', *label, ConvStepState::Failed, entry.millis);
        } else if (auto count = ParseCount(text)) {
            if (open && open->stage == 'B' && open->label == count->label) {
                open->read = count->total;
                open->written = count->written;
                open->leftOut = count->failed;
            }
        }
    }

    // A step still open is running only while the run holds its lock.
    if (open) {
        const bool running = account.status.status == "1" && lockHeld;
        open->state = running ? ConvStepState::Running : ConvStepState::Unfinished;
        if (running && !account.status.messages.empty()) {
            const std::string& latest = account.status.messages.back();
            if (latest.rfind(open->label + " ", 0) == 0) open->progress = latest;
        }
    }
    return account;
}

ConvRunAccount ReadAccount(const std::string& root) {
    std::string base = root;
    if (!base.empty() && base.back() != '/') base += '/';
    const std::string statusPath = base + "conv/sch.sts";
    return BuildAccount(ReadWholeFile(statusPath), ReadWholeFile(base + "conv/log/sch.log"),
                        ReadWholeFile(base + "conv/log/sch_trace.log"), IsLockHeld(statusPath + ".lk"));
}

std::string FormatAccount(const ConvRunAccount& account) {
    std::string out;
    if (account.status.present) {
        out += "status   " + account.status.status + " (" + StatusMeaning(account) + ")\n";
        out += "started  " + StatusDate(account.status.sdate) + "\n";
        out += "ended    " + (account.status.edate.empty() ? std::string("-") : StatusDate(account.status.edate)) +
               "\n";
        if (account.status.status == "1" && account.lockHeld && !account.status.messages.empty())
            out += "now      " + account.status.messages.back() + "\n";
    } else {
        out += "status   - (no status file)\n";
    }
    if (!account.logPresent) out += "log      - (no user log)\n";
    if (account.aborted) out += "the run was stopped: 移行を中断しました。\n";

    std::size_t labelWidth = 20;
    for (const ConvStep& step : account.steps) labelWidth = std::max(labelWidth, DisplayWidth(step.label));
    out += '\n';
    out += Pad("step", 5) + Pad("label", labelWidth + 2) + PadLeft("read", 8) + PadLeft("written", 9) +
           PadLeft("left out", 10) + PadLeft("warnings", 10) + PadLeft("time", 12) + "  state\n";
    std::size_t noteCount = account.outsideNotes.size();
    for (const ConvStep& step : account.steps) {
        noteCount += step.notes.size();
        const std::string id = std::string(1, step.stage) + std::to_string(step.number);
        const std::string time = step.endMillis ? Duration(*step.endMillis - step.startMillis) : "-";
        out += Pad(id, 5) + Pad(step.label, labelWidth + 2) + PadLeft(CountText(step.read), 8) +
               PadLeft(CountText(step.written), 9) + PadLeft(CountText(step.leftOut), 10) +
               PadLeft(std::to_string(step.notes.size()), 10) + PadLeft(time, 12) + "  " + StateText(step.state) +
               "\n";
        if (!step.progress.empty()) out += Pad("", 5) + "  " + step.progress + "\n";
    }
    if (account.steps.empty()) out += "(no step has started)\n";

    out += "\nreported rows: " + std::to_string(noteCount) + "\n";
    for (const ConvStep& step : account.steps) {
        if (step.notes.empty()) continue;
        out += std::string(1, step.stage) + std::to_string(step.number) + " " + step.label + "\n";
        for (const ConvStepNote& note : step.notes) AppendNote(out, note);
    }
    if (!account.outsideNotes.empty()) {
        out += "outside any step\n";
        for (const ConvStepNote& note : account.outsideNotes) AppendNote(out, note);
    }
    return out;
}

std::string Pad(const std::string& text, std::size_t width) {
    const std::size_t used = DisplayWidth(text);
    return used >= width ? text : text + std::string(width - used, ' ');
}

std::string PadLeft(const std::string& text, std::size_t width) {
    const std::size_t used = DisplayWidth(text);
    return used >= width ? text : std::string(width - used, ' ') + text;
}

std::string CountText(const std::optional<int64_t>& value) { return value ? std::to_string(*value) : "-"; }

}  // namespace convrun
