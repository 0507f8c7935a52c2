// What the writers of the schedule tables share: the base-36 id of a schedule,
// the shift of its stamps to UTC, and the columns that only name a row in
// messages. Each failure is reported with the row's keys and gives 1, so that
// the row is left out and the table goes on.
#pragma once

#include <cstdint>
#include <string>

#include "MakeConvEToKiv/convcom/ConvDB.h"

// The 12-character base-36 id of a decimal schedule id into out.
int32_t SchMakeId(ConvDB& writer, const ConvRow* row, const char* value, std::string& out);
// A 14-digit local stamp as UTC into out.
int32_t SchUtcStamp(ConvDB& writer, const ConvRow* row, const char* value, std::string& out);
// Reports that the schedule's dates can't be moved to UTC (row left out).
int32_t SchReportDates(ConvDB& writer, const ConvRow& row, const char* message);
// "LOG_" columns (any case) say which old record a row came from; never written.
bool SchIsLogColumn(const char* name);
// name equals one of the null-terminated list, in any case.
bool SchNameIn(const char* name, const char* const* list);
// The conversion's start in UTC, the stamp of rows that have none.
std::string SchNowStamp();

// Message texts shared by the schedule writers.
inline constexpr const char* kSchDatesFailed =
    "開始日時、終了日時のタイムゾーン変換に失敗しましたが処理を続行しました。";
inline constexpr const char* kSchIdFailed = "スケジュールIDの作成に失敗しましたが処理を続行しました。";
inline constexpr const char* kSchStampFailed =
    "作成日時、更新日時のタイムゾーン変換に失敗しましたが処理を続行しました。";
