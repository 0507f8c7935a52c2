// One file of the flat store read into records: `object <id>` blocks of
// `name=value` fields and nested lists, converted from EUC-JP to UTF-8.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "MakeConvEToKiv/convcom/ConvRow.h"
#include "base/NUioObj.h"
#include "base/comEncoding.h"

class ConvApp;

// Reads one record or list file into rows, one per record, each beginning with
// the type 1 item `ID`; a nested list is a type 9 item whose entries are in its
// list. Every read is lock-free and read-only.
// Codes: -1 bad argument or a field outside a record, -2 out of memory, -11 no
// path, -16 file not found, -31 bad content; other file codes pass through.
class ConvStdCom : public NUioObj {
public:
    static constexpr std::size_t kPathMax = 1023;

    ConvStdCom(ConvApp* app, const char* path);
    ~ConvStdCom() override;
    ConvStdCom(const ConvStdCom&) = delete;
    ConvStdCom& operator=(const ConvStdCom&) = delete;

    // The record file reader's view of this object.
    int NUioObjGetPath(std::string& outPath) override { return GetFilePath(outPath); }
    int ParseLine(char* line, std::string& section) override;
    int AddValue(const char* name, const char* value, const char* section) override;
    // The flat store is never written; there is nothing to hand out.
    int GetItem(int index, const char** outName, const char** outValue, std::string& outSection) override;
    int AddContinuation(const char* line) override { return AppendLine(line); }
    // A line with a NUL byte is reported with its line number (tolerated -31)
    // and its field is dropped; an `object` or `end` before the NUL still
    // counts, so that the records around it keep their bounds.
    int BadLine(const char* line, std::size_t length) override;

    // The path; -11 when it is empty.
    virtual int GetFilePath(std::string& dst);
    // Strips the CR and takes `object` and `end` lines: 1 consumed, 0 a field,
    // -31 an object name that was refused (reported).
    virtual int CheckLine(char* line);
    // One `name=value` field of the open record, or the next entry of the open list.
    virtual int SetItem(const char* name, const char* value);
    // Continuation of the last value: a TAB line (led by LF) or the next piece
    // of a long physical line.
    virtual int AppendLine(const char* line);
    // Reads the file at the path; a missing file gives 0 and no records.
    virtual int Read();
    // Frees all records and resets the depth and cursors.
    virtual void Clear();
    // Appends to the name of the record file inside a record directory.
    virtual int AddFileName(const char* name);
    // True for the tolerated codes -16 and -31, which set the failed flag and
    // the application's warning flag.
    virtual bool CanContinue(int code);
    virtual int BeginRecord(const char* idText);
    virtual int BeginList(const char* name);
    virtual int SetLastValue(const char* value);
    // A nested list entry can't be continued: -31.
    virtual int AppendListValue(const char* value);
    // Sets the path of the record file of id below the directory part.
    virtual int MakeRecordPath(int id);
    // Reads the record file of id; its records take id as their `ID`. A missing
    // file is -16. Records read before stay.
    virtual int ReadById(int id);
    // Reports code with the path. The detail is formatted in EUC-JP, so that
    // %s arguments may be raw flat-store text, and reported in UTF-8; a tolerated
    // code is reported as a warning (1).
    virtual void ReportFileError(int code, const char* source, int line, int errnum, const char* format, ...)
        __attribute__((format(printf, 6, 7)));
    virtual bool WantsFileError(int code);
    // Removes one CR right before the end of line; -1 for a null line.
    virtual int StripCr(char* line);

    std::size_t RecordCount() const { return records.size(); }
    // Record index in file order, null when out of range; owned by this object.
    const ConvRow* GetRecord(std::size_t index) const;
    ConvRow* GetRecord(std::size_t index);
    const std::string& GetPath() const { return path; }
    const std::string& GetDirectory() const { return directory; }
    const std::string& GetFileName() const { return fileName; }
    bool IsFailed() const { return failed; }
    void SetFailed(bool value) { failed = value; }
    void SetHashedDirectory(bool value) { hashedDirectory = value; }
    bool IsHashedDirectory() const { return hashedDirectory; }
    void SetIdIsFileName(bool value) { idIsFileName = value; }
    ConvApp* App() const { return app; }

protected:
    // Reads object's file lock-free with this object's separator; readErrno
    // keeps the errno of a failed open, 0 otherwise.
    int ReadFileNoLock(NUioObj* object);
    // Sets path and its directory part (up to and including the last '/' or ':').
    void SetPathText(const char* text);
    // EUC-JP to UTF-8; -2 (reported) when memory runs out.
    int Convert(const std::string& raw, std::string& out);
    // Starts a value that continuation lines may extend: its conversion into text.
    void StartValue(const std::string& raw, std::string& text);
    // No value can be continued any more.
    void ResetValue();

    ConvApp* app;
    int depth = 0;
    std::string path;
    std::string directory;
    std::string fileName;
    ConvRow* currentRecord = nullptr;
    std::vector<std::string>* currentList = nullptr;
    // The value being read, converted as its pieces arrive; the last valueTail
    // bytes of the last item's value are the conversion of bytes held back.
    EucToUtf8Stream valueStream;
    std::size_t valueTail = 0;
    std::vector<std::unique_ptr<ConvRow>> records;
    int forcedId = 0;
    bool failed = false;
    bool hashedDirectory = false;
    bool idIsFileName = false;
    char separator = '=';
    // The last fresh line was a field, so a following piece of it continues a value.
    bool lastLineWasField = false;
    int readErrno = 0;
};
