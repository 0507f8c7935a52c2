// The state and the plain accessors shared by every database connection, and the
// writing of the SQL trace.
#include "database/CdDBConnection.h"

#include <libpq-fe.h>

#include <cstdarg>
#include <cstdio>

#include "base/comLog.h"

void CdDBConnection::ConnCloser::operator()(pg_conn* c) const { PQfinish(c); }

void CdDBConnection::ResultFreer::operator()(pg_result* r) const { PQclear(r); }

CdDBConnection::CdDBConnection() = default;

CdDBConnection::~CdDBConnection() = default;

int CdDBConnection::GetStatus() const { return status; }

const char* CdDBConnection::GetErrorMessage() const { return errorMessage; }

int CdDBConnection::GetTimeout() const { return timeoutSeconds; }

void CdDBConnection::SetTimeout(int seconds) { timeoutSeconds = seconds; }

void CdDBConnection::ResetTimeout() { timeoutSeconds = defaultTimeoutSeconds; }

int CdDBConnection::GetAffectedRows() const { return affectedRows; }

bool CdDBConnection::IsTransactional() const { return !autoCommit; }

int CdDBConnection::SetTransactional(bool on) {
    if (inTransaction) return kDbModeInTransaction;
    autoCommit = !on;
    return 0;
}

namespace {

// Switches the process-wide log to path for one line, then back.
void AppendToFile(const std::string& path, const char* format, va_list args) {
    // Formatted by the log writer itself, which cuts an overlong line between
    // characters and still ends it.
    char previous[1024];
    comLogSetPath(path.c_str(), previous);
    comDebugLogV(format, args);
    comLogSetPath(previous, nullptr);
}

}  // namespace

void CdDBConnection::Trace(const char* format, ...) {
    if (traceFile.empty()) return;
    va_list args;
    va_start(args, format);
    AppendToFile(traceFile, format, args);
    va_end(args);
}

void CdDBConnection::WriteTo(const std::string& path, const char* format, ...) {
    if (path.empty()) return;
    va_list args;
    va_start(args, format);
    AppendToFile(path, format, args);
    va_end(args);
}

void CdDBConnection::Notify(const char* text, int code, int statusValue,
                            const char* message) const {
    if (callback) callback(text, code, statusValue, message);
}
