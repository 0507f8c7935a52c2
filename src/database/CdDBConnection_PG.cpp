// The database connection on libpq. Every non-select runs inside a transaction that
// the caller ends; failures come back as the layer's codes with the server's
// SQLSTATE mapped to a status number.
#include "database/CdDBConnection_PG.h"

#include <libpq-fe.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "base/comClock.h"
#include "base/comLog.h"
#include "base/comStr.h"
#include "base/comTime.h"

namespace {

constexpr long long kSlowStatementMillis = 100;
constexpr std::size_t kPortSuffixMax = 126;
constexpr std::size_t kConnectStringMax = 511;
constexpr std::size_t kAccessSqlLimit = 7001;  // from this length on the SQL is cut
constexpr int kAccessSqlCut = 6999;
constexpr Oid kOidBytea = 17;
constexpr Oid kOidText = 25;
constexpr Oid kOidNumeric = 1700;

struct SqlStateMapping {
    const char* sqlState;
    int status;
    bool errorBlock;
};

constexpr SqlStateMapping kSqlStates[] = {
    {"23505", kDbStatusUniqueKey, false},        {"23502", kDbStatusNotNull, false},
    {"22004", kDbStatusNotNull, false},          {"22003", kDbStatusOutOfRange, false},
    {"22026", kDbStatusTooLong, false},          {"22001", kDbStatusTooLong, false},
    {"23503", kDbStatusForeignKey, false},       {"42601", kDbStatusSyntax, true},
    {"42883", kDbStatusUndefinedColumn, true},   {"42703", kDbStatusUndefinedColumn, true},
    {"40P01", kDbStatusDeadlock, true},          {"22021", kDbStatusInvalidCharacter, true},
    {"57014", kDbStatusCancelled, true},         {"42701", kDbStatusDuplicateColumn, true},
};

// The code that Exec returns for a status after a failed statement.
int CodeForStatus(int status, bool plainSelect) {
    switch (status) {
        case kDbStatusUniqueKey: return kDbUniqueKey;
        case kDbStatusNotNull: return kDbNotNull;
        case kDbStatusOutOfRange: return kDbOutOfRange;
        case kDbStatusTooLong: return kDbTooLong;
        case kDbStatusForeignKey: return kDbForeignKey;
        case kDbStatusSyntax: return kDbSyntax;
        case kDbStatusUndefinedColumn: return kDbUndefinedColumn;
        case kDbStatusDeadlock: return kDbDeadlock;
        case kDbStatusInvalidCharacter: return kDbInvalidCharacter;
        case kDbStatusCancelled: return plainSelect ? kDbSelectCancelled : kDbCancelled;
        default: return kDbExecFailed;
    }
}

// The server's refusals that are worth another attempt.
constexpr const char* kBusyPhrases[] = {"orry, too many clients already",
                                        "connection limit exceeded"};
constexpr const char* kTimeoutPhrase = "timeout expired";

bool StartsWith(const char* text, const char* prefix) {
    return std::strncmp(text, prefix, std::strlen(prefix)) == 0;
}

// A connect-string value as it stands, or quoted when it would not parse bare.
std::string ConnValue(const char* value) {
    if (*value && !std::strpbrk(value, " \t\n\r'\\")) return value;
    std::string quoted = "'";
    for (const char* p = value; *p; ++p) {
        if (*p == '\'' || *p == '\\') quoted.push_back('\\');
        quoted.push_back(*p);
    }
    quoted.push_back('\'');
    return quoted;
}

void WriteErrorBlock(const char* errorLine, const char* messageLine) {
    comDebugNote("******************************\n");
    comDebugNote("%s", errorLine);
    comDebugNote("%s", messageLine);
    comDebugNote("******************************\n");
}

// libpq hands notices here; they are noted in the current log, not kept.
void NoticeProcessor(void* /*arg*/, const char* message) {
    comDebugNote("PQ Handler[%d]\n",
                static_cast<int>(reinterpret_cast<std::intptr_t>(message)));
}

// The bound values of a statement: the single parameter first, then the
// array; an empty value is sent as NULL.
std::vector<const char*> BoundValues(const char* param, const char* const* paramArray, int paramCount) {
    std::vector<const char*> values;
    if (param) values.push_back(param);
    for (int i = 0; paramArray && i < paramCount; ++i)
        values.push_back(paramArray[i] && *paramArray[i] ? paramArray[i] : nullptr);
    return values;
}

}  // namespace

CdDBConnection_PG::CdDBConnection_PG() = default;

CdDBConnection_PG::~CdDBConnection_PG() { Disconnect(); }

int CdDBConnection_PG::Connect(const char* user, const char* password, const char* host,
                               const char* dbname, const char* port, int timeoutSeconds) {
    if (!user || !password || !host || !dbname) return kDbBadArgument;
    if (conn) Disconnect();
    const long long start = IsTracing() ? comMillis() : 0;

    char portSuffix[kPortSuffixMax + 1] = {};
    if (port && comIsNumeric(port)) std::snprintf(portSuffix, sizeof portSuffix, " port=%s", port);

    std::string connectString = "host=" + ConnValue(host) + " dbname=" + ConnValue(dbname) +
                                " password=" + ConnValue(password) + " user=" + ConnValue(user) +
                                " connect_timeout=" + std::to_string(connectTimeout) + portSuffix;
    if (connectString.size() > kConnectStringMax) connectString.resize(kConnectStringMax);

    this->timeoutSeconds = timeoutSeconds;
    defaultTimeoutSeconds = timeoutSeconds;
    appliedTimeout = -1;
    status = CONNECTION_BAD;

    for (int attempt = 1; attempt <= retryCount; ++attempt) {
        ConnPtr attemptConn(PQconnectdb(connectString.c_str()));
        if (!attemptConn) return kDbConnectFailed;
        if (PQstatus(attemptConn.get()) != CONNECTION_BAD) {
            PQsetNoticeProcessor(attemptConn.get(), NoticeProcessor, nullptr);
            // Literals are quoted by doubling quotes only, which is safe only while
            // a backslash is an ordinary character: make sure of it whatever the
            // server's setting, and refuse a connection that can't have it.
            ResultPtr conforming(PQexec(attemptConn.get(), "SET standard_conforming_strings TO on"));
            const char* setting = PQparameterStatus(attemptConn.get(), "standard_conforming_strings");
            if (PQresultStatus(conforming.get()) != PGRES_COMMAND_OK || !setting || std::strcmp(setting, "on") != 0) {
                std::snprintf(errorMessage, sizeof errorMessage, "[]:standard_conforming_strings can't be on: %s",
                              PQerrorMessage(attemptConn.get()));
                comUtf8CutBytes(errorMessage, static_cast<int>(sizeof errorMessage - 1), true);
                status = CONNECTION_BAD;
                break;
            }
            conn = std::move(attemptConn);
            result.reset(PQexec(conn.get(), "SET client_encoding TO UTF8"));
            if (IsTracing()) Trace("%lld \"DB open\"\n", comMillis() - start);
            return 0;
        }
        FillConnectError(attemptConn.get());
        const char* text = PQerrorMessage(attemptConn.get());
        if (std::strstr(text, kTimeoutPhrase)) {
            status = kDbStatusConnectTimeout;
        } else if (std::strstr(text, kBusyPhrases[0]) || std::strstr(text, kBusyPhrases[1])) {
            status = kDbStatusTooManyClients;
        } else {
            break;  // refused for good: no point in trying again
        }
        if (attempt < retryCount) comSleep(connectTimeout > 0 ? static_cast<unsigned>(connectTimeout) : 0);
    }
    if (IsTracing()) Trace("%lld \"DB open error\"\n", comMillis() - start);
    return (status == kDbStatusConnectTimeout || status == kDbStatusTooManyClients)
               ? kDbConnectBusy
               : kDbConnectFailed;
}

int CdDBConnection_PG::Disconnect() {
    if (!conn) return 0;
    const long long start = IsTracing() ? comMillis() : 0;
    ClearResult();
    Rollback(0);
    conn.reset();
    inTransaction = false;
    appliedTimeout = -1;
    if (IsTracing()) Trace("%lld \"DB close\"\n", comMillis() - start);
    return 0;
}

bool CdDBConnection_PG::IsConnected() const { return conn != nullptr; }

bool CdDBConnection_PG::HasResult() const { return result != nullptr; }

void CdDBConnection_PG::FillConnectError(pg_conn* failed) {
    std::snprintf(errorMessage, sizeof errorMessage, "[]:%s", PQerrorMessage(failed));
    comUtf8CutBytes(errorMessage, static_cast<int>(sizeof errorMessage - 1), true);
}

void CdDBConnection_PG::FillError(pg_result* failed) {
    const char* sqlState = failed ? PQresultErrorField(failed, PG_DIAG_SQLSTATE) : nullptr;
    if (!sqlState) sqlState = "";
    const char* text = conn ? PQerrorMessage(conn.get()) : "";
    std::snprintf(errorMessage, sizeof errorMessage, "[%s]:%s", sqlState, text);
    comUtf8CutBytes(errorMessage, static_cast<int>(sizeof errorMessage - 1), true);

    status = PQresultStatus(failed);  // PGRES_FATAL_ERROR when there is no result
    bool errorBlock = true;
    for (const auto& mapping : kSqlStates) {
        if (std::strcmp(sqlState, mapping.sqlState) == 0) {
            status = mapping.status;
            errorBlock = mapping.errorBlock;
            break;
        }
    }
    if (!errorBlock) return;
    std::string errorLine = "Error      [" + std::string(sqlState) + "]\n";
    std::string messageLine = "ErrorMsg   [" + std::string(text) + "]\n";
    WriteErrorBlock(errorLine.c_str(), messageLine.c_str());
}

void CdDBConnection_PG::LogAccess(const char* sql) const {
    const int cut = std::strlen(sql) >= kAccessSqlLimit ? kAccessSqlCut : -1;
    if (cut >= 0)
        comDebugNote("DB access:sql[%.*s]sts[%d]err[%s]\n", cut, sql, status, errorMessage);
    else
        comDebugNote("DB access:sql[%s]sts[%d]err[%s]\n", sql, status, errorMessage);
}

void CdDBConnection_PG::TraceStatement(const char* sql, const char* param,
                                       long long startMillis) const {
    const bool tracing = IsTracing();
    if (!tracing && !warnOnly) return;
    const long long elapsed = comMillis() - startMillis;
    if (tracing) {
        std::vector<std::string> files;
        if (elapsed >= kSlowStatementMillis) files.push_back(traceFile + ".warn");
        files.push_back(traceFile);
        for (const auto& file : files) {
            WriteTo(file, "%lld \"%s\"\n", elapsed, sql);
            if (param && *param) WriteTo(file, "param=[%s]\n", param);
        }
    } else if (elapsed >= kSlowStatementMillis) {
        comDebugNote("[WARN] %lld \"%s\"\n", elapsed, sql);
    }
}

void CdDBConnection_PG::SendSetting(const char* sql) {
    Trace("%s\n", sql);
    ResultPtr res(PQexec(conn.get(), sql));
    if (PQresultStatus(res.get()) != PGRES_COMMAND_OK) FillError(res.get());
}

void CdDBConnection_PG::ApplyStatementTimeout() {
    int seconds = timeoutSeconds;
    if (seconds == appliedTimeout) return;
    if (seconds < 0) {
        seconds = defaultTimeoutSeconds;
        if (seconds < 1) {
            if (appliedTimeout > 0) {
                SendSetting("RESET statement_timeout");
                appliedTimeout = -1;
            }
            return;
        }
        if (seconds == appliedTimeout) return;
    }
    char sql[64];
    std::snprintf(sql, sizeof sql, "SET statement_timeout TO %lld",
                  static_cast<long long>(seconds) * 1000);
    SendSetting(sql);
    appliedTimeout = seconds;
}

int CdDBConnection_PG::Begin() {
    if (inTransaction || autoCommit) return 0;
    if (!conn) return kDbNotConnected;
    Trace("TranBegin\n");
    ResultPtr res(PQexec(conn.get(), "BEGIN"));
    if (PQresultStatus(res.get()) == PGRES_COMMAND_OK) {
        Notify("BeginTransaction", 0, 0, nullptr);
        inTransaction = true;
        return 0;
    }
    FillError(res.get());
    Notify("BeginTransaction", kDbBeginFailed, status, errorMessage);
    return kDbBeginFailed;
}

int CdDBConnection_PG::Commit() {
    if (!conn) return kDbNotConnected;
    if (!inTransaction || autoCommit) return 0;
    EndStream();
    Trace("commit\n");
    ResultPtr res(PQexec(conn.get(), "COMMIT"));
    if (PQresultStatus(res.get()) == PGRES_COMMAND_OK) {
        if (std::strcmp(PQcmdStatus(res.get()), "ROLLBACK") != 0) {
            Notify("commit", 0, 0, nullptr);
            inTransaction = false;
            return 0;
        }
        // The transaction had failed before: the server rolled it back instead.
        char errorLine[64];
        std::snprintf(errorLine, sizeof errorLine, "Error      [%d]\n", kDbCommitRolledBack);
        WriteErrorBlock(errorLine, "ErrorMsg   [commit process is rollback]\n");
        Notify("commit", kDbCommitRolledBack, 0, nullptr);
        return kDbCommitRolledBack;
    }
    FillError(res.get());
    Notify("commit", kDbCommitFailed, status, errorMessage);
    return kDbCommitFailed;
}

int CdDBConnection_PG::Rollback(int code) {
    if (!conn) return kDbNotConnected;
    if (!inTransaction || autoCommit) return 0;
    EndStream();
    Trace("rollback\n");
    ResultPtr res(PQexec(conn.get(), "ROLLBACK"));
    if (PQresultStatus(res.get()) == PGRES_COMMAND_OK) {
        Notify("rollback", 0, code, nullptr);
        inTransaction = false;
        return 0;
    }
    FillError(res.get());
    Notify("rollback", kDbRollbackFailed, status, errorMessage);
    return kDbRollbackFailed;
}

int CdDBConnection_PG::Exec(const char* sql, const char* param, void* /*reserved*/,
                            const char* const* paramArray, int paramCount) {
    affectedRows = 0;
    if (!conn) return kDbNotConnected;
    if (!sql || !*sql) return kDbBadArgument;
    const long long start = (warnOnly || IsTracing()) ? comMillis() : 0;
    currentRow = 0;
    ClearResult();
    ApplyStatementTimeout();

    const bool isSelect = StartsWith(sql, "select ") || StartsWith(sql, "SELECT ");
    const std::size_t length = std::strlen(sql);
    const bool forUpdate =
        isSelect && length > 10 && comStrCaseCmp(sql + length - 10, "for update") == 0;
    if (isSelect && !forUpdate) return ExecStreamed(sql, param, paramArray, paramCount, start);
    if (!isSelect || forUpdate) {
        const int rc = Begin();
        if (rc != 0) return rc;
    }

    if (forUpdate) {
        // A locking select takes only the single parameter.
        const char* values[1] = {param};
        result.reset(PQexecParams(conn.get(), sql, param ? 1 : 0, nullptr, values, nullptr,
                                  nullptr, 0));
    } else {
        const std::vector<const char*> values = BoundValues(param, paramArray, paramCount);
        result.reset(PQexecParams(conn.get(), sql, static_cast<int>(values.size()), nullptr,
                                  values.empty() ? nullptr : values.data(), nullptr, nullptr, 0));
    }

    if (!result) {
        return FailWithoutResult(sql, param, start);
    }

    status = PQresultStatus(result.get());
    const bool succeeded = status == PGRES_COMMAND_OK || status == PGRES_TUPLES_OK;
    bool accessLogged = false;
    if (succeeded) {
        if (!isSelect) {
            affectedRows = std::atoi(PQcmdTuples(result.get()));
            if (StartsWith(sql, "update ") || StartsWith(sql, "UPDATE ") ||
                StartsWith(sql, "delete ") || StartsWith(sql, "DELETE ")) {
                Notify(sql, 0, affectedRows, nullptr);
                if (affectedRows == 0) {
                    TraceStatement(sql, param, start);
                    ClearResult();
                    return kDbNoRowTouched;
                }
            } else {
                Notify(sql, 0, 0, nullptr);
            }
            ClearResult();
        }
    } else {
        FillError(result.get());
        ClearResult();
        if (forUpdate) {
            LogAccess(sql);
            accessLogged = true;
        }
    }

    TraceStatement(sql, param, start);
    if (succeeded) return 0;

    const int code = CodeForStatus(status, isSelect && !forUpdate);
    if (code == kDbExecFailed && !accessLogged) LogAccess(sql);
    Notify(sql, code, status, errorMessage);
    return code;
}

int CdDBConnection_PG::GetColumnCount() const { return result ? PQnfields(result.get()) : 0; }

int CdDBConnection_PG::GetColumnName(char* buffer, int index) const {
    if (!result) return kDbNotConnected;
    if (!buffer) return kDbBadArgument;
    if (index < 0 || index >= PQnfields(result.get())) return kDbNoSuchColumn;
    const char* name = PQfname(result.get(), index);
    if (!name) return kDbNoSuchColumn;
    // Called for every field of every row read: a plain bounded copy.
    const std::size_t length = strnlen(name, kCdDBColumnNameSize - 1);
    std::memcpy(buffer, name, length);
    buffer[length] = '\0';
    return 0;
}

int CdDBConnection_PG::GetValue(char** out, int index, uint32_t* outType) const {
    if (!result) return kDbNotConnected;
    if (!out) return kDbBadArgument;
    *out = nullptr;
    if (currentRow >= PQntuples(result.get())) return kDbNoRow;
    if (index < 0 || index >= PQnfields(result.get())) return kDbValueUnreadable;
    const Oid type = PQftype(result.get(), index);
    if (type == kOidBytea) return kDbValueUnreadable;
    if (outType) *outType = type == kOidText ? 2 : type == kOidNumeric ? 1 : 0;
    if (PQgetisnull(result.get(), currentRow, index)) return 0;
    const char* value = PQgetvalue(result.get(), currentRow, index);
    if (!value) return kDbValueUnreadable;
    const std::size_t size = std::strlen(value) + 1;
    char* copy = static_cast<char*>(std::malloc(size));
    if (!copy) return kDbNoMemory;
    std::memcpy(copy, value, size);
    *out = copy;
    return 0;
}

int CdDBConnection_PG::GetValueByName(char** out, const char* name) const {
    if (!result) return kDbNotConnected;
    if (!name || !*name) return kDbBadArgument;
    if (out) *out = nullptr;
    if (currentRow >= PQntuples(result.get())) return kDbNoRow;
    std::string lower = name;
    for (char& c : lower)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    const int fields = PQnfields(result.get());
    for (int i = 0; i < fields; ++i) {
        const char* fieldName = PQfname(result.get(), i);
        if (fieldName && lower == fieldName) return GetValue(out, i, nullptr);
    }
    return kDbNoRow;
}

int CdDBConnection_PG::FailWithoutResult(const char* sql, const char* param, long long start) {
    TraceStatement(sql, param, start);
    FillError(nullptr);
    LogAccess(sql);
    Notify(sql, kDbExecFailed, status, errorMessage);
    return kDbExecFailed;
}

int CdDBConnection_PG::ExecStreamed(const char* sql, const char* param, const char* const* paramArray,
                                     int paramCount, long long start) {
    const std::vector<const char*> values = BoundValues(param, paramArray, paramCount);
    streamError = 0;
    pg_result* first = nullptr;
    if (PQsendQueryParams(conn.get(), sql, static_cast<int>(values.size()), nullptr,
                          values.empty() ? nullptr : values.data(), nullptr, nullptr, 0) == 1) {
        // Without single-row mode the whole result comes at once, as from PQexecParams.
        streaming = PQsetSingleRowMode(conn.get()) == 1;
        first = PQgetResult(conn.get());
        if (!first) streaming = false;
    }
    if (!first) {
        return FailWithoutResult(sql, param, start);
    }
    const int firstStatus = PQresultStatus(first);
    if (firstStatus == PGRES_SINGLE_TUPLE || firstStatus == PGRES_TUPLES_OK) {
        result.reset(first);
        status = PGRES_TUPLES_OK;
        // A select without rows, or a whole result, has nothing more to come.
        if (firstStatus == PGRES_TUPLES_OK) EndStream();
        streamSql = sql;
        TraceStatement(sql, param, start);
        return 0;
    }
    FillError(first);
    PQclear(first);
    EndStream();
    TraceStatement(sql, param, start);
    const int code = CodeForStatus(status, true);
    if (code == kDbExecFailed) LogAccess(sql);
    Notify(sql, code, status, errorMessage);
    return code;
}

void CdDBConnection_PG::Step() {
    result.reset();
    pg_result* next = PQgetResult(conn.get());
    if (!next) {
        streaming = false;
        return;
    }
    const int nextStatus = PQresultStatus(next);
    if (nextStatus == PGRES_SINGLE_TUPLE) {
        result.reset(next);
        return;
    }
    if (nextStatus == PGRES_TUPLES_OK) {
        // The end: a result without rows, which IsEnd sees.
        result.reset(next);
        EndStream();
        return;
    }
    // The server failed after the first rows: the read ends here, and the
    // reader is told so by TakeReadError.
    FillError(next);
    PQclear(next);
    EndStream();
    const int code = CodeForStatus(status, true);
    if (code == kDbExecFailed) LogAccess(streamSql.c_str());
    Notify(streamSql.c_str(), code, status, errorMessage);
    streamError = code;
}

void CdDBConnection_PG::EndStream() {
    if (!streaming) return;
    streaming = false;
    while (pg_result* rest = PQgetResult(conn.get())) PQclear(rest);
}

int CdDBConnection_PG::NextRow() {
    if (streaming) {
        Step();
        return 0;
    }
    ++currentRow;
    return 0;
}

bool CdDBConnection_PG::IsEnd() const {
    return !result || currentRow >= PQntuples(result.get());
}

void CdDBConnection_PG::ClearResult() {
    EndStream();
    result.reset();
}
