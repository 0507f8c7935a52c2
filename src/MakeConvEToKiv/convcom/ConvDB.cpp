// The table object base: running a statement under the continue rule, the reports
// of a failed statement, key texts, SQL script files, and the cutting and renaming
// of values that would not fit.
#include "MakeConvEToKiv/convcom/ConvDB.h"

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <vector>

#include "MakeConvEToKiv/convcom/ConvApp.h"
#include "MakeConvLib/cxiocom/CXioLCString.h"
#include "base/NUNVList.h"
#include "base/comStr.h"
#include "database/CdDBConnection.h"

namespace {

// Reported messages hold at most this many characters.
constexpr std::size_t kMessageMax = 7999;
// Statement lines of a script file.
constexpr std::size_t kScriptLineMax = 8191;
// The failure text of a script statement.
constexpr std::size_t kScriptErrorMax = 1023;
// The cut warning.
constexpr std::size_t kCutWarningMax = 254;

// A continuable failure whatever the phase of the run: by code or by status.
constexpr int32_t kContinuableCodes[] = {kDbNoRowTouched, kDbUniqueKey,  kDbTooLong,          kDbForeignKey,
                                         kDbNotNull,      kDbOutOfRange, kDbInvalidCharacter, 1722};

const char* LabelOf(int32_t code) {
    switch (code) {
        case kConvDuplicateColumn: return "列の重複エラー";
        case kDbNoRowTouched: return "該当レコードなしエラー";
        case -1109: return "値不正エラー";
        case kDbOutOfRange: return "桁数オーバーエラー";
        case kDbNotNull: return "必須エラー";
        case kDbInvalidCharacter: return "文字コード不正エラー";
        case kDbTooLong: return "バッファサイズオーバーエラー";
        case kDbNoRow: return "該当フィールドなしエラー";
        case kDbUniqueKey: return "重複エラー";
        case kDbCancelled: return "ビジーエラー";
        case kDbForeignKey: return "整合性制約エラー";
        default: return nullptr;
    }
}

struct FileCloser {
    void operator()(FILE* f) const { std::fclose(f); }
};

// Characters of text as the length-limited texts count them; bytes for broken text.
int CharCount(const std::string& text) {
    const int count = CountChars(text.c_str(), INT_MAX);
    return count < 0 ? static_cast<int>(text.size()) : count;
}

}  // namespace

ConvDB::ConvDB(ConvApp* appIn, CdDBConnection* connectionIn) : app(appIn), connection(connectionIn) {}

ConvDB::~ConvDB() = default;

int32_t ConvDB::Exec(const char* sql, const char* const* paramArray, int paramCount) {
    if (!sql || !*sql || !connection) {
        app->ReportError(kDbBadArgument, CONV_HERE, false, nullptr, nullptr);
        return kDbBadArgument;
    }
    const int32_t code = connection->Exec(sql, nullptr, nullptr, paramArray, paramCount);
    if (code == 0) return 0;
    if (IsDuplicateColumnError()) {
        ReportDbError(kConvDuplicateColumn, CONV_HERE, sql);
        return kConvDuplicateColumn;
    }
    ReportDbError(code, CONV_HERE, sql);
    if (!IsContinuable(code)) return code;
    if (!connection->IsTransactional()) return kConvRowSkipped;
    // Within a transaction the failed statement has spoilt it: only before the main
    // conversions may the row be stepped over.
    return app->IsAbortInTransaction() ? code : kConvRowSkipped;
}

bool ConvDB::IsContinuable(int32_t code) {
    if (noContinue) return false;
    const int status = connection ? connection->GetStatus() : 0;
    for (int32_t c : kContinuableCodes)
        if (code == c || status == c) return true;
    if (app->IsAbortInTransaction()) return false;
    // An undefined column is forgiven only in the preparation steps.
    return status == kDbStatusUndefinedColumn;
}

bool ConvDB::IsDuplicateColumnError() { return false; }

int32_t ConvDB::ReportDbError(int32_t code, const char* file, int line, const char* detail) {
    const int status = connection ? connection->GetStatus() : 0;
    const char* serverText = connection ? connection->GetErrorMessage() : "";

    const char* label = LabelOf(code);
    std::string extra;
    if (!label) {
        label = "データベースエラー";
        char buf[512];
        std::snprintf(buf, sizeof buf, "(err[%d] status[%d] msg[%s])", code, status, serverText);
        extra = buf;
    }

    app->ReportError(kConvDbAbort, file, line, false, detail, "%d:%s", status, serverText);

    std::string keyText;
    AppendKeys(keyText);

    const bool mustAbort = connection && connection->IsTransactional() && app->IsAbortInTransaction();
    const char* tail;
    int32_t result;
    if (IsContinuable(code) && !mustAbort) {
        if (code == kConvDuplicateColumn) {
            tail = "が発生しましたが重複列を削除して再登録しました。";
            result = kConvDuplicateColumn;
        } else {
            tail = "が発生しましたが処理を続行しました。";
            result = kConvRowSkipped;
        }
    } else {
        tail = "が発生したため処理を中断しました。";
        result = kConvDbAbort;
    }
    app->ReportError(result, file, line, true, nullptr, "%s%s %s%s%s", title.c_str(), keyText.c_str(), label, tail,
                     extra.c_str());
    return result;
}

int32_t ConvDB::ReportFormatted(int32_t code, const char* file, int line, bool toUser, const std::string& keyText,
                                const char* format, va_list args) {
    std::vector<char> message(kMessageMax + 1);
    if (format) std::vsnprintf(message.data(), message.size(), format, args);
    app->ReportError(code, file, line, toUser, nullptr, "%s%s %s", title.c_str(), keyText.c_str(), message.data());
    return code;
}

int32_t ConvDB::ReportMessage(int32_t code, const char* file, int line, bool toUser, const char* format, ...) {
    std::string keyText;
    AppendKeys(keyText);
    va_list args;
    va_start(args, format);
    ReportFormatted(code, file, line, toUser, keyText, format, args);
    va_end(args);
    return code;
}

int32_t ConvDB::ReportRowMessage(const ConvRow& row, int32_t code, const char* file, int line, bool toUser,
                                 const char* format, ...) {
    std::string keyText;
    AppendRowKeys(row, keyText);
    va_list args;
    va_start(args, format);
    ReportFormatted(code, file, line, toUser, keyText, format, args);
    va_end(args);
    return code;
}

void ConvDB::AppendKeys(std::string& text) const {
    for (const auto& [name, value] : keys) text += " [" + name + "=" + value + "]";
}

void ConvDB::AppendRowKeys(const ConvRow& row, std::string& text) const {
    for (const auto& entry : keys) {
        const char* value = FindColumn(row, entry.first.c_str());
        text += " [" + entry.first + "=" + (value ? value : "") + "]";
    }
}

int32_t ConvDB::ExecScriptFile(const char* name) {
    const std::string path = app->GetSqlScriptPath(name);
    std::unique_ptr<FILE, FileCloser> file(std::fopen(path.c_str(), "r"));
    if (!file) {
        const int err = errno;
        app->ReportError(-1021, CONV_HERE, true, path.c_str(), "SQLファイルの読み込みに失敗しました。[errno=%d]", err);
        return -1021;
    }
    std::vector<char> line(kScriptLineMax + 1);
    while (std::fgets(line.data(), static_cast<int>(line.size()), file.get())) {
        char* text = line.data();
        if (text[0] == '\0' || text[0] == '\r' || text[0] == '\n' || std::strncmp(text, "--", 2) == 0) continue;
        std::size_t len = std::strlen(text);
        while (len > 0 && (text[len - 1] == '\n' || text[len - 1] == '\r')) text[--len] = '\0';
        const int32_t ret = Exec(text);
        if (ret == 0 || ret == 1) continue;
        char failure[512];
        std::snprintf(failure, sizeof failure, "(err[%d] status[%d] msg[%s])", ret,
                      connection ? connection->GetStatus() : 0, connection ? connection->GetErrorMessage() : "");
        // The whole message is cut, without splitting a character: a long line
        // would otherwise fill the user log.
        std::vector<char> message(kScriptErrorMax + 1);
        std::snprintf(message.data(), message.size(), "ファイルからのSQL発行に失敗しました。 sql[%s] %s", text, failure);
        comUtf8CutBytes(message.data(), static_cast<int>(kScriptErrorMax), true);
        app->ReportError(ret, CONV_HERE, true, nullptr, "%s", message.data());
        return ret;
    }
    return 0;
}

int32_t ConvDB::RemoveKey(const char* name) {
    if (!name) return 1;
    return keys.erase(name) == 0 ? 1 : 0;
}

void ConvDB::AddKey(const char* name, const char* value) {
    if (!name) return;
    keys[name] = value ? value : "";
}

void ConvDB::CopyKeys(const KeyMap& other) {
    if (!other.empty()) keys = other;
}

int32_t ConvDB::CutToLength(const char* columnName, const char* value, int maxLength, std::string& outValue,
                            const char* extra) {
    CXioLCString text;
    const int ret = text.SetCut(value ? value : "", maxLength, "", false);
    if (ret != 0) {
        app->ReportError(kDbNoMemory, CONV_HERE, false, nullptr, "[ret=%d]", ret);
        return kDbNoMemory;
    }
    outValue = text.GetStr();
    if (outValue == (value ? value : "")) return 0;

    char warning[kCutWarningMax + 1];
    std::snprintf(warning, sizeof warning, "[%s]の値が桁数オーバーとなるため、[%d]文字でカットして登録しました。",
                  columnName ? columnName : "", maxLength);
    ReportMessage(kConvRowSkipped, CONV_HERE, true, "%s%s", warning, extra ? extra : "");
    return 0;
}

int32_t ConvDB::MakeUniqueFileName(const char* fileName, int maxLength, std::string& outName, NUNVList& usedNames,
                                   NUNVList& seenNames) {
    const std::string name = fileName ? fileName : "";
    const char* seenCount = nullptr;
    if (seenNames.FindExact(name.c_str(), &seenCount) != 1) {
        if (seenNames.AddText(name.c_str(), "0") != 0) {
            app->ReportError(kDbNoMemory, CONV_HERE, false, nullptr, "[errno=%d]", errno);
            return kDbNoMemory;
        }
        outName = name;
        return 0;
    }

    const std::size_t dot = name.rfind('.');
    const std::string stem = dot == std::string::npos ? name : name.substr(0, dot);
    const std::string extension = dot == std::string::npos ? "" : name.substr(dot);
    int n = (seenCount ? std::atoi(seenCount) : 0) + 1;
    for (;; ++n) {
        const std::string candidate = stem + "(" + std::to_string(n) + ")" + extension;
        const char* ignored = nullptr;
        if (usedNames.FindExact(candidate.c_str(), &ignored) != 1) break;
    }
    const std::string count = std::to_string(n);
    if (seenNames.SetByName(name.c_str(), count.c_str(), static_cast<int>(count.size()) + 1) < 0) {
        app->ReportError(kDbNoMemory, CONV_HERE, false, nullptr, "[errno=%d]", errno);
        return kDbNoMemory;
    }

    // Stem and number give way to the extension when the name is too long.
    const int limit = maxLength - CharCount(extension);
    auto cut = [limit](const std::string& text, std::string& out) -> int {
        out.clear();
        if (limit <= 0) return 0;
        CXioLCString fitted;
        const int ret = fitted.SetCut(text.c_str(), limit, "", false);
        if (ret == 0) out = fitted.GetStr();
        return ret;
    };
    const std::string numbered = "(" + count + ")";
    std::string base;
    int ret = cut(stem + numbered, base);
    if (ret == 0 && base.empty()) ret = cut("   " + numbered, base);
    if (ret != 0) {
        app->ReportError(kDbNoMemory, CONV_HERE, false, nullptr, "[ret=%d]", ret);
        return kDbNoMemory;
    }
    outName = base + extension;
    ReportMessage(kConvRowSkipped, CONV_HERE, true, "%s [%s]->[%s]", "ファイル名が重複するため、変更して登録しました。",
                  name.c_str(), outName.c_str());
    return 0;
}
