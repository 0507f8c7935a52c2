// The database connection on libpq: connect with retries, statements in implicit
// transactions, row reading from the one open result, and SQLSTATE mapping.
#pragma once

#include <cstdint>
#include <string>

#include "database/CdDBConnection.h"

class CdDBConnection_PG : public CdDBConnection {
public:
    CdDBConnection_PG();
    ~CdDBConnection_PG() override;

    int Connect(const char* user, const char* password, const char* host, const char* dbname,
                const char* port, int timeoutSeconds) override;
    int Disconnect() override;
    bool IsConnected() const override;
    bool HasResult() const override;
    int Exec(const char* sql, const char* param = nullptr, void* reserved = nullptr,
             const char* const* paramArray = nullptr, int paramCount = 0) override;
    int GetColumnCount() const override;
    int GetColumnName(char* buffer, int index) const override;
    int GetValue(char** out, int index, uint32_t* outType) const override;
    int GetValueByName(char** out, const char* name) const override;
    int NextRow() override;
    bool IsEnd() const override;
    void ClearResult() override;
    int Commit() override;
    int Rollback(int code) override;

private:
    int Begin();
    // The rows of a plain select are read one at a time, so that the client
    // never holds the whole result; Step takes the next one.
    int ExecStreamed(const char* sql, const char* param, const char* const* paramArray, int paramCount,
                     long long start);
    void Step();
    // Reads and drops what is left of a streamed select: the connection takes
    // no other statement before.
    void EndStream();
    std::string streamSql;  // the streamed select, for the report of a late failure
    void ApplyStatementTimeout();
    void SendSetting(const char* sql);
    // Fills status and errorMessage from a failed result (nullptr: none at all),
    // writing the error block to the current log where the SQLSTATE calls for it.
    void FillError(pg_result* failed);
    void FillConnectError(pg_conn* failed);
    void LogAccess(const char* sql) const;
    void TraceStatement(const char* sql, const char* param, long long startMillis) const;
    // A statement that brought no result at all: traced, reported, -1006.
    int FailWithoutResult(const char* sql, const char* param, long long start);
};
