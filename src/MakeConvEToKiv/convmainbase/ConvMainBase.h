// The program object: counts the start arguments, builds the application object
// and the batch driver, runs them in a fixed order and yields one return code.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

class ConvApp;
class ConvBat;

class ConvMainBase {
public:
    ConvMainBase();
    virtual ~ConvMainBase();
    ConvMainBase(const ConvMainBase&) = delete;
    ConvMainBase& operator=(const ConvMainBase&) = delete;

    virtual int32_t Run(int argc, char** argv);
    virtual int32_t Initialize(int argc, char** argv);
    virtual int32_t GetArguments(int argc, char** argv);
    virtual int32_t CheckArgumentCount(int argc, char** argv);
    virtual void Terminate(int32_t code);
    virtual int32_t Execute();
    virtual int32_t StartBatch();
    virtual int32_t RunBatch();
    virtual int32_t LoadCommonResources();
    virtual int32_t EndBatch();
    virtual int32_t CreateApp(int argc, char** argv);
    virtual void DeleteApp();
    virtual int32_t CreateBat() = 0;
    virtual void DeleteBat() = 0;

    ConvApp* App() const { return app_.get(); }
    ConvBat* Bat() const { return bat_.get(); }

protected:
    std::unique_ptr<ConvApp> app_;
    std::unique_ptr<ConvBat> bat_;
    int32_t requiredArgCount_ = 15;
    std::string moduleName_;     // at most 127 bytes
    std::string functionLabel_;
};
