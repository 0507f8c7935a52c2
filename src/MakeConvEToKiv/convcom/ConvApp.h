// The application object: start arguments, paths, the two database connections,
// the status file with its lock, and the one place where failures are reported.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "base/NUFileIO.h"
#include "base/NUioObj.h"
#include "base/comSource.h"

class CdDBConnection;

class ConvApp {
public:
    static constexpr int32_t kBatchFailed = -8000003;

    ConvApp(int argc, char** argv, const char* moduleWord);
    virtual ~ConvApp();
    ConvApp(const ConvApp&) = delete;
    ConvApp& operator=(const ConvApp&) = delete;

    virtual int32_t Init(const char* label);
    virtual int32_t End();
    virtual void SetFunction(const char* label, bool startsNew);
    virtual int32_t PutMessage(const char* name, int32_t code, int32_t first, int32_t second);
    virtual bool IsCreateMode() const;
    // Attachment paths. Every operation that adds to a path first ends it in a
    // slash. The source root is the Enterprise tree with the corporate id
    // ("<source>file/<cid>/"); owner directories lie inside a bucket directory.
    virtual void GetSourceFileRoot(std::string& path);
    // "user/" + bucket + id + "/".
    virtual void AppendUserDir(std::string& path, const char* id);
    // bucket + id + "/".
    virtual void AppendIdDir(std::string& path, const char* id);
    // 1 (the file is left out with a warning) for the errno values of a file
    // that is missing, refused or unfit; fallback for all others.
    virtual int32_t MapCopyError(int errnum, int32_t fallback);
    virtual void ReadArguments();
    virtual void SetupLogFiles();
    virtual int32_t InitStatusFile();
    virtual int32_t SetupPaths();
    virtual int32_t OpenDatabases();
    virtual void CloseDatabases();
    virtual int32_t GetCommitInterval();
    virtual int32_t CreateConnections();

    // Connects a further connection to the working database with the ent
    // connection's host, port, name, user and password, for a reader that must
    // not disturb the result open on ent. Its SQL trace, under the rule of the
    // run's own, is "<dir>entDB_<traceName>_<pid>.log". 0 or the connect's
    // failure, reported with show.
    virtual int32_t ConnectWorkingCopy(CdDBConnection& connection, const char* traceName);

    // Start argument n, or nullptr when there is none.
    const char* GetArgument(int n) const;
    void GetLastName(std::string& out) const { out = lastName_; }
    void SetAbortInTransaction(bool value) { abortInTransaction_ = value; }
    bool IsAbortInTransaction() const { return abortInTransaction_; }
    // rootPath + "sql/" + module + "/" + name + ".sql"; the text lives until the next call.
    const char* GetSqlScriptPath(const char* name);
    static void EnsureSlash(std::string& path);

    // The target tree: GetFileDir() + "<cid>/".
    void GetTargetFileRoot(std::string& path);
    // The bucket "id / unit + 1" when asked and the unit isn't 0, then id + "/";
    // an id that isn't a number falls into bucket 1.
    void AppendNumberedDir(std::string& path, const char* id, bool withBucket);
    // "attach%05d" and the extension of fileName: 7 and "report.txt" give
    // "attach00007.txt".
    void AppendAttachName(std::string& path, int32_t number, const char* fileName);
    // Copies sourcePath (under the source root) to targetPath (under the target
    // root) and reports a failure to the user log: 0, 1 when the file is left
    // out (MapCopyError), -80 when the table must stop (disk full, I/O error).
    int32_t CopyAttachFile(const char* sourcePath, const char* targetPath, const char* title);

    // Reports a failure or a plain message to the trace log and, when show is set
    // and there is text, to the user log.
    void ReportError(int32_t code, const char* source, int line, bool show, const char* detail,
                     const char* format, ...) __attribute__((format(printf, 7, 8)));
    // Moves the trace text gathered by the base library to the trace log.
    void FlushErrorDetail();
    void WriteFinalStatus();

    // Accessors.
    const std::string& RootPath() const { return rootPath_; }
    const std::string& SourceRoot() const { return sourceRoot_; }
    const std::string& SourceFileRoot() const { return sourceFileRoot_; }
    const std::string& SourceDataRoot() const { return sourceDataRoot_; }
    const std::string& TargetRoot() const { return targetRoot_; }
    const char* ModuleName() const { return moduleName_.c_str(); }
    const char* LogPath() const { return logPath_.c_str(); }
    const char* TracePath() const { return tracePath_.c_str(); }
    const std::string& StatusPath() const { return statusPath_; }
    const std::string& FunctionLabel() const { return functionLabel_; }
    int32_t StatusWord() const { return statusWord_; }
    void SetStatusWord(int32_t value) { statusWord_ = value; }
    int32_t FirstWarning() const { return firstWarning_; }
    int32_t CommitInterval() const { return commitInterval_; }
    CdDBConnection* EntConnection() const { return entConnection_.get(); }
    CdDBConnection* KivConnection() const { return kivConnection_.get(); }
    const std::string& SqlLogDir() const { return sqlLogDir_; }

protected:
    // The directory of the SQL traces, ending in a slash: false when there is
    // none or its path doesn't name today's date.
    bool GetSqlTraceDir(std::string& dir) const;
    // Writes the status list, retrying a busy lock or a refused rename; reports a failure.
    int32_t WriteStatusWithRetry();

    std::string rootPath_;
    std::string sourceRoot_;
    std::string sourceFileRoot_;
    std::string sourceDataRoot_;
    std::string targetRoot_;
    int32_t commitInterval_ = 0;
    int32_t statusWord_ = 0;
    std::unique_ptr<CdDBConnection> kivConnection_;
    std::unique_ptr<CdDBConnection> entConnection_;
    int32_t firstWarning_ = 0;
    int argc_;
    char** argv_;
    std::string logPath_;    // at most 1023 bytes
    std::string tracePath_;  // at most 1023 bytes
    std::string moduleName_; // at most 127 bytes
    std::string lastName_;   // at most 255 bytes
    NUFileIO statusIO_;
    NUioObjList statusList_;
    std::string statusPath_;
    std::string scratchPath_;
    std::string summaryText_;
    bool appendNext_ = false;
    bool functionOpen_ = false;
    bool abortInTransaction_ = false;
    std::string functionLabel_;
    std::string kivHost_, kivPort_, kivUser_, kivPassword_, kivName_;
    std::string entHost_, entPort_, entUser_, entPassword_, entName_;
    std::string sqlLogDir_;
};

// Copies source to target (a target ending in a separator is a directory and
// takes source's file name), creating the target's directory when missing. A
// source that isn't there is looked for in its EUC-JP and Shift_JIS forms, then
// without its last extension. 0, or -1 with errno as the failed call left it.
int CopyFileTolerant(const char* source, const char* target);
// The whole content of the file at path into out: 0, or -1 when it can't be opened.
int ReadTextFile(const char* path, std::string& out);
