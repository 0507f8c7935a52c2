// The batch driver frame: the create run (stage A, then stage B) and the clean
// run (migrated files, then the clean scripts of both databases).
#pragma once

#include <cstdint>
#include <string>

#include "base/comFile.h"

class ConvApp;
class CdDBConnection;
class ConvExEnt;
class ConvExStd;

class ConvBat {
public:
    explicit ConvBat(ConvApp* app);
    virtual ~ConvBat();
    ConvBat(const ConvBat&) = delete;
    ConvBat& operator=(const ConvBat&) = delete;

    virtual int32_t Run();
    virtual int32_t Clean();
    virtual int32_t Hook();
    virtual int32_t CleanFiles();
    virtual int32_t CleanDir(const char* name, const comDirFilter& filter);
    virtual int32_t CleanUserDirs(const char* name);
    virtual int32_t CleanUserDir(const char* name, const char* userId);
    // The target file tree of the corporation, and with a user id that user's
    // directory inside its bucket.
    virtual int32_t GetCleanRoot(std::string& path, const char* userId);
    virtual int32_t RemoveDir(const char* path, const comDirFilter& filter);
    virtual int32_t RunCleanScript(bool isTarget, bool isIndex);
    virtual const char* GetCleanScriptPath(bool isTarget, bool isIndex);
    virtual int32_t RunPrepare();
    virtual int32_t RunMain() = 0;
    // One table of stage A: open, convert, with the status file's running,
    // success and failure messages under label.
    virtual int32_t RunPrepareStep(ConvExStd* conv, const char* label);
    // One table of stage B: messages 3 and 5 around its Run, 8 when it fails.
    virtual int32_t RunStep(ConvExEnt* conv, const char* label);
    virtual int32_t BeginMain();

protected:
    ConvApp* app_;
    CdDBConnection* entConnection_;
    CdDBConnection* kivConnection_;
    bool hasPrepareStage_ = true;
    std::string scriptPath_;
    std::string moduleDir_;
    std::string userDir_;
};
