// The contract between a record file and the object that holds its contents,
// and its general form: a list of name and value pairs with a file path.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "base/NUNVList.h"

// NUFileIO knows nothing of what a file means: it hands each line and record to
// these operations when reading, and asks for the items one by one when writing.
class NUioObj {
public:
    virtual ~NUioObj() = default;

    // The file path; 0 or an error code that ends the read or write.
    virtual int NUioObjGetPath(std::string& outPath) = 0;
    // Sees each fresh physical line (without its LF) before it is split; it may
    // shorten the line in place and may set the section that later records get.
    // 1 consumes the line, 0 lets it be split, anything else aborts the read.
    virtual int ParseLine(char* line, std::string& section);
    // One record read; non-zero aborts the read. section is empty when none.
    virtual int AddValue(const char* name, const char* value, const char* section) = 0;
    // One record for writing; non-zero ends the write. The pointers stay owned
    // by the object; a null name skips the item.
    virtual int GetItem(int index, const char** outName, const char** outValue,
                        std::string& outSection) = 0;
    // The text of a continuation line, beginning with LF for a TAB-led line.
    // -7 means there is nothing to continue and is not an error.
    virtual int AddContinuation(const char* line);
    // A physical line that holds a NUL byte (line and length without its LF).
    // Such a line is bad content: it reaches neither ParseLine nor AddValue, so
    // it never merges with a neighbour. 0 passes over it, anything else aborts
    // the read. By default the file is refused as broken with -31.
    virtual int BadLine(const char* line, std::size_t length);

    // Number (from 1) of the physical line the reader is handing on.
    long ReadLineNumber() const { return readLineNumber; }
    void SetReadLineNumber(long number) { readLineNumber = number; }

private:
    long readLineNumber = 0;
};

// Results: -1 null argument or path too long, -2 out of memory, -7 nothing to
// continue, -11 no path set, -20 no such item.
class NUioObjList : public NUioObj {
public:
    static constexpr std::size_t kPathMax = 1023;

    // capacity: initial slots of the list once it is created, 128 when 0 or below.
    explicit NUioObjList(int capacity = 0);
    ~NUioObjList() override;

    int NUioObjGetPath(std::string& outPath) override;
    // Appends the pair; repeated names are kept. The section is ignored.
    int AddValue(const char* name, const char* value, const char* section) override;
    // outSection is left as it is.
    int GetItem(int index, const char** outName, const char** outValue,
                std::string& outSection) override;
    // Appends line to the value of the last entry.
    int AddContinuation(const char* line) override;

    // "dir/fileName" (no second "/" when dir ends in one), or fileName alone for
    // an empty dir; at most 1023 bytes.
    virtual int SetPath(const char* fileName, const char* dir);
    // The values of every entry of exactly that name, in file order: their
    // number, 0 (outArray untouched) when none. The values stay owned here.
    virtual int GetValues(const char* name, std::vector<const char*>& outArray);

    // Replaces the value of every entry of that name, or appends one.
    int SetValue(const char* name, const char* value);
    // Index of the first entry of that name; -1 when none or for an empty name.
    int Find(const char* name) const;
    // Appends text to the value of the first entry of that name.
    int AppendToName(const char* name, const char* text);
    int DeleteByName(const char* name);
    int DeleteAt(int index);
    int GetCount() const;
    // Value of the first entry of that name; null when absent.
    const char* GetValue(const char* name) const;
    const std::string& GetPath() const { return path; }

protected:
    // Creates the list on first use; false when memory runs out.
    bool EnsureList();
    int AppendAt(int index, const char* text);

    std::unique_ptr<NUNVList> list;
    std::string path;
    int listCapacity;
};
