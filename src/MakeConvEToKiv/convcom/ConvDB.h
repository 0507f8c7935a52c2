// Base of every object that runs SQL for one table: which failures of a row may be
// stepped over, the two reports of a failed statement, and the key columns that
// name a row in every message.
#pragma once

#include <cstdarg>
#include <cstdint>
#include <map>
#include <string>

#include "MakeConvEToKiv/convcom/ConvRow.h"
#include "base/comSource.h"

class ConvApp;
class CdDBConnection;
class NUNVList;

// A failed statement, reported and ending the table; also the code of an abort.
inline constexpr int32_t kConvDbAbort = -1000006;
// The row's statement failed on a column named twice; the writer retries without it.
inline constexpr int32_t kConvDuplicateColumn = 3;
// A row failed, was reported, and the table goes on.
inline constexpr int32_t kConvRowSkipped = 1;

class ConvDB {
public:
    // Key columns and their values, ordered by the bytes of the name.
    using KeyMap = std::map<std::string, std::string>;

    ConvDB(ConvApp* app, CdDBConnection* connection);
    virtual ~ConvDB();
    ConvDB(const ConvDB&) = delete;
    ConvDB& operator=(const ConvDB&) = delete;

    // Runs one statement: 0 done, 1 the row failed and the table goes on, 3 the row
    // is to be retried, anything else stops the table. Failures are reported here.
    virtual int32_t Exec(const char* sql, const char* const* paramArray = nullptr, int paramCount = 0);
    virtual bool IsContinuable(int32_t code);
    virtual bool IsDuplicateColumnError();
    // The technical and the operator's report of a failed statement (detail: the
    // SQL). Gives the code the operator's line was written with: 1, 3 or -1000006.
    virtual int32_t ReportDbError(int32_t code, const char* file, int line, const char* detail);
    // Reports "<title><keys> <message>"; gives code back.
    virtual int32_t ReportMessage(int32_t code, const char* file, int line, bool toUser, const char* format, ...)
        __attribute__((format(printf, 6, 7)));
    // As ReportMessage with the key values taken from row.
    virtual int32_t ReportRowMessage(const ConvRow& row, int32_t code, const char* file, int line, bool toUser,
                                     const char* format, ...) __attribute__((format(printf, 7, 8)));
    // Appends " [key=value]" for each key, in key order.
    virtual void AppendKeys(std::string& text) const;
    // The same, each value looked up in row (empty when the column is missing).
    virtual void AppendRowKeys(const ConvRow& row, std::string& text) const;

    // Runs the application's SQL file of that name, a statement per line; lines
    // that are empty or begin with "--" are skipped.
    int32_t ExecScriptFile(const char* name);
    // 1 when the key wasn't there.
    int32_t RemoveKey(const char* name);
    void AddKey(const char* name, const char* value);
    // Replaces the keys by other's, unless other is empty.
    void CopyKeys(const KeyMap& other);
    void SetNoContinue(bool flag) { noContinue = flag; }
    // Cuts value to maxLength characters on a character boundary into outValue and
    // warns when that changed it; extra (may be null) is appended to the warning.
    // 0 (the row is kept), or -1102.
    int32_t CutToLength(const char* columnName, const char* value, int maxLength, std::string& outValue,
                        const char* extra = nullptr);
    // Keeps the attached file names of one record apart: a name met again becomes
    // "stem(n).ext" with n past every name in usedNames, cut to maxLength characters.
    // seenNames counts the meetings per name. 0 or -1102.
    int32_t MakeUniqueFileName(const char* fileName, int maxLength, std::string& outName, NUNVList& usedNames,
                               NUNVList& seenNames);

    const KeyMap& GetKeys() const { return keys; }
    void SetTitle(const char* text) { title = text ? text : ""; }
    const std::string& GetTitle() const { return title; }
    bool IsNoContinue() const { return noContinue; }
    ConvApp* GetApp() const { return app; }
    CdDBConnection* GetConnection() const { return connection; }
    void SetConnection(CdDBConnection* value) { connection = value; }

protected:
    // Formats into at most 7999 characters and reports "<title><keyText> <message>".
    int32_t ReportFormatted(int32_t code, const char* file, int line, bool toUser, const std::string& keyText,
                            const char* format, va_list args);

    ConvApp* app;
    CdDBConnection* connection;
    bool noContinue = false;
    std::string title;
    KeyMap keys;
};
