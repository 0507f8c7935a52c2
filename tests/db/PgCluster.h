// A private PostgreSQL cluster for the database tests: created with initdb in a
// temporary directory, listening on a free port of 127.0.0.1, and removed at the end,
// by a watchdog process even when the test binary dies.
#pragma once

#include <optional>
#include <string>
#include <sys/types.h>
#include <vector>

class PgCluster {
public:
    using Rows = std::vector<std::vector<std::optional<std::string>>>;

    PgCluster() = default;
    ~PgCluster();
    PgCluster(const PgCluster&) = delete;
    PgCluster& operator=(const PgCluster&) = delete;

    // initdb and start; false with the reason in *error. Runs the server as the
    // user "postgres" when the tests run as root.
    bool Start(int maxConnections, std::string* error);
    // Stops the server and removes the directory; safe to call twice.
    void Stop();
    bool IsRunning() const { return running_; }

    // Connection parameters of the superuser, over TCP with a password.
    const std::string& Host() const { return host_; }
    int Port() const { return port_; }
    std::string PortText() const { return std::to_string(port_); }
    const std::string& User() const { return user_; }
    const std::string& Password() const { return password_; }
    // The temporary directory; the unix socket lies in it too.
    const std::string& Directory() const { return dir_; }
    std::string ConnInfo(const std::string& dbname) const;

    // Drops the database if it exists and creates it anew (UTF8, C locale).
    bool CreateDatabase(const std::string& name, std::string* error = nullptr);
    bool DropDatabase(const std::string& name, std::string* error = nullptr);
    // Runs SQL (several statements allowed) in the database.
    bool Exec(const std::string& dbname, const std::string& sql, std::string* error = nullptr);
    // Runs a query; NULL cells are std::nullopt.
    bool Query(const std::string& dbname, const std::string& sql, Rows* rows,
               std::string* error = nullptr);
    // The first cell of the query's first row, nullopt for NULL, no row or failure.
    std::optional<std::string> QueryValue(const std::string& dbname, const std::string& sql);

private:
    bool FindBinaries(std::string* error);
    // The name as a quoted SQL identifier.
    bool QuoteName(const std::string& name, std::string* quoted, std::string* error) const;
    int Run(const std::vector<std::string>& args, const std::string& logFile) const;
    void StartWatchdog();

    std::string binDir_;
    std::string dir_;
    std::string dataDir_;
    std::string host_ = "127.0.0.1";
    std::string user_ = "convtest";
    std::string password_ = "conv-test-pw";
    int port_ = 0;
    bool asPostgresUser_ = false;
    bool running_ = false;
    int watchdogPipe_ = -1;
    pid_t watchdogPid_ = -1;
};

// The cluster that the test binary's main starts once for all database tests.
PgCluster& TestCluster();
