// The account of a create run: one line per step with its counts and time,
// and every row the run reported as left out (or kept with a change), with
// its keys and reason. Built from the run's status file and logs only.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "MakeConvEToKiv/convreport/ConvRunFiles.h"

// How a warned row ended, read from the wording of its report.
enum class ConvRowFate {
    LeftOut,      // not written
    KeptChanged,  // written with a value cut, a name changed or a column dropped
    FileMissing,  // the row was written, its attached file wasn't copied
    Failure,      // an ERR report: the step or run failed here
};

struct ConvStepNote {
    std::string tag;  // "WARN" or "ERR"
    std::string stamp;
    std::string text;                   // the report as the user log has it
    std::optional<ConvRowReport> row;   // table, keys, reason when it has the form
    std::optional<int64_t> ret;         // the code from the trace log, when matched
    std::string detail;                 // technical detail from the trace log
    std::string cause;                  // the server's answer to the failed statement
    ConvRowFate fate = ConvRowFate::LeftOut;
};

enum class ConvStepState { Running, Done, Failed, Unfinished };

struct ConvStep {
    char stage = 'A';  // 'A' flat store to working database, 'B' working to target
    int number = 0;    // its place within the stage, from 1
    std::string label;
    ConvStepState state = ConvStepState::Running;
    int64_t startMillis = 0;
    std::optional<int64_t> endMillis;
    // From "N件移行が終了しました。(成功：S 失敗：F)"; absent when the step
    // has no count or ended short of it.
    std::optional<int64_t> read, written, leftOut;
    std::string progress;  // the status file's latest message for a running step
    std::vector<ConvStepNote> notes;
};

struct ConvRunAccount {
    ConvRunStatus status;
    bool logPresent = false;
    bool traceRead = false;
    bool lockHeld = false;
    bool aborted = false;  // "移行を中断しました。"
    std::vector<ConvStep> steps;
    std::vector<ConvStepNote> outsideNotes;  // reports between steps
    std::string firstStamp, lastStamp;
};

namespace convrun {

// Builds the account from the texts of the three files (a missing file is
// nullopt) and whether the run's lock is held now.
ConvRunAccount BuildAccount(const std::optional<std::string>& statusText, const std::optional<std::string>& logText,
                            const std::optional<std::string>& traceText, bool lockHeld);

// Reads "<root>conv/sch.sts", "<root>conv/log/sch.log" and
// "<root>conv/log/sch_trace.log" and builds the account.
ConvRunAccount ReadAccount(const std::string& root);

// The account as the operator reads it.
std::string FormatAccount(const ConvRunAccount& account);

// How a report's wording says the row ended.
ConvRowFate FateOf(const std::string& tag, const std::string& text);

// Columns in a terminal: two for a character beyond ASCII, one otherwise.
std::size_t DisplayWidth(const std::string& text);
// The text padded with blanks to width columns, on its right or its left.
std::string Pad(const std::string& text, std::size_t width);
std::string PadLeft(const std::string& text, std::size_t width);
// A count, or "-" where there is none.
std::string CountText(const std::optional<int64_t>& value);

}  // namespace convrun
