// The abstract database connection: its operations, its state and the error codes
// that the layers above see. CdDBConnection_PG is the one implementation.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

struct pg_conn;
struct pg_result;

// Codes of the database layer.
constexpr int kDbConnectFailed = -1001;
constexpr int kDbConnectBusy = -1002;  // server busy or connect timed out
constexpr int kDbCommitFailed = -1004;
constexpr int kDbRollbackFailed = -1005;
constexpr int kDbExecFailed = -1006;
constexpr int kDbNoSuchColumn = -1007;
constexpr int kDbValueUnreadable = -1008;
constexpr int kDbForeignKey = -1009;
constexpr int kDbCancelled = -1010;
constexpr int kDbUniqueKey = -1012;
constexpr int kDbNoRow = -1013;  // past the last row, or no such field
constexpr int kDbTooLong = -1014;
constexpr int kDbDeadlock = -1015;
constexpr int kDbSyntax = -1016;
constexpr int kDbUndefinedColumn = -1017;
constexpr int kDbBeginFailed = -1019;
constexpr int kDbInvalidCharacter = -1024;
constexpr int kDbSelectCancelled = -1028;
constexpr int kDbModeInTransaction = -1034;
constexpr int kDbCommitRolledBack = -1041;
constexpr int kDbNotNull = -1043;
constexpr int kDbOutOfRange = -1044;
constexpr int kDbBadArgument = -1099;
constexpr int kDbNotConnected = -1101;  // not connected, or no result
constexpr int kDbNoMemory = -1102;
constexpr int kDbNoRowTouched = -1110;  // UPDATE or DELETE touched no row

// Status numbers that replace the libpq result status for known SQLSTATEs.
constexpr int kDbStatusConnectTimeout = 11;
constexpr int kDbStatusTooManyClients = -911;
constexpr int kDbStatusUniqueKey = 2601;
constexpr int kDbStatusNotNull = 515;
constexpr int kDbStatusOutOfRange = 8115;
constexpr int kDbStatusTooLong = 8152;
constexpr int kDbStatusForeignKey = 547;
constexpr int kDbStatusSyntax = 170;
constexpr int kDbStatusUndefinedColumn = 7601;
constexpr int kDbStatusDeadlock = 1205;
constexpr int kDbStatusInvalidCharacter = 10000000;
constexpr int kDbStatusCancelled = 57014;
constexpr int kDbStatusDuplicateColumn = 264;

// errorMessage: 255 characters and the terminator.
constexpr std::size_t kCdDBErrorMessageSize = 256;
// Buffer for GetColumnName: the server's longest identifier (63 bytes) and the terminator.
constexpr std::size_t kCdDBColumnNameSize = 64;

// Observer called after each statement with (text, code, status, error message).
using CdDBCallback = void (*)(const char* text, int code, int status, const char* errorMessage);

class CdDBConnection {
public:
    CdDBConnection();
    virtual ~CdDBConnection();
    CdDBConnection(const CdDBConnection&) = delete;
    CdDBConnection& operator=(const CdDBConnection&) = delete;

    // All text arguments but port are required; timeoutSeconds < 0: the server's
    // statement time-out.
    virtual int Connect(const char* user, const char* password, const char* host,
                        const char* dbname, const char* port, int timeoutSeconds) = 0;
    virtual int Disconnect() = 0;
    virtual bool IsConnected() const = 0;
    virtual bool HasResult() const = 0;
    // Runs one statement. param is bound as $1 when given, paramArray follows it
    // (an empty entry is sent as NULL); reserved is ignored. The derived class
    // repeats these defaults, so calls read the same through either type.
    virtual int Exec(const char* sql, const char* param = nullptr, void* reserved = nullptr,
                     const char* const* paramArray = nullptr, int paramCount = 0) = 0;
    virtual int GetColumnCount() const = 0;
    // buffer holds kCdDBColumnNameSize bytes.
    virtual int GetColumnName(char* buffer, int index) const = 0;
    // *out receives a malloc'ed copy of the value (the caller frees it), or nullptr
    // for SQL NULL. *outType, when asked for: 2 text, 1 numeric, 0 anything else.
    virtual int GetValue(char** out, int index, uint32_t* outType) const = 0;
    virtual int GetValueByName(char** out, const char* name) const = 0;
    virtual int NextRow() = 0;
    virtual bool IsEnd() const = 0;
    virtual void ClearResult() = 0;
    virtual int Commit() = 0;
    // code is handed to the callback as the status.
    virtual int Rollback(int code) = 0;
    virtual int GetStatus() const;
    virtual const char* GetErrorMessage() const;
    virtual int GetTimeout() const;
    // Takes effect at the next Exec.
    virtual void SetTimeout(int seconds);
    virtual void ResetTimeout();
    virtual int GetAffectedRows() const;
    virtual bool IsTransactional() const;

    // -1034 while a transaction is open; otherwise off means auto-commit.
    int SetTransactional(bool on);
    bool IsInTransaction() const { return inTransaction; }
    // The code of a select that failed after its first rows had been read
    // (0: none), given once; IsEnd is then true.
    int TakeReadError() {
        const int code = streamError;
        streamError = 0;
        return code;
    }

    // Path of the SQL trace (empty: none); slow statements also go to "<path>.warn".
    void SetTraceFile(const char* path) { traceFile = path ? path : ""; }
    const char* GetTraceFile() const { return traceFile.c_str(); }
    void SetRetryCount(int count) { retryCount = count; }
    int GetRetryCount() const { return retryCount; }
    // Seconds: the server's connect_timeout and the wait between connect attempts.
    void SetConnectTimeout(int seconds) { connectTimeout = seconds; }
    int GetConnectTimeout() const { return connectTimeout; }
    // Without a trace file, note statements of 100 ms or more in the current log.
    void SetWarnOnly(bool on) { warnOnly = on; }
    void SetCallback(CdDBCallback fn) { callback = fn; }

protected:
    struct ConnCloser {
        void operator()(pg_conn* c) const;
    };
    struct ResultFreer {
        void operator()(pg_result* r) const;
    };
    using ConnPtr = std::unique_ptr<pg_conn, ConnCloser>;
    using ResultPtr = std::unique_ptr<pg_result, ResultFreer>;

    // Appends a line to the trace file (nothing without one), or to another file,
    // leaving the current log as it was.
    void Trace(const char* format, ...) __attribute__((format(printf, 2, 3)));
    static void WriteTo(const std::string& path, const char* format, ...)
        __attribute__((format(printf, 2, 3)));
    bool IsTracing() const { return !traceFile.empty(); }
    void Notify(const char* text, int code, int statusValue, const char* message) const;

    int status = 0;
    char errorMessage[kCdDBErrorMessageSize] = {};
    int retryCount = 5;
    int connectTimeout = 1;
    std::string traceFile;
    int timeoutSeconds = -1;
    int affectedRows = 0;
    bool inTransaction = false;
    bool autoCommit = false;
    bool warnOnly = false;
    CdDBCallback callback = nullptr;
    int defaultTimeoutSeconds = -1;
    ConnPtr conn;
    ResultPtr result;
    int currentRow = 0;
    int appliedTimeout = -1;
    // A plain select's rows arrive one result at a time while streaming is set;
    // streamError holds the code of a failure that came after its first row.
    bool streaming = false;
    int streamError = 0;
};
