// Index files of the flat store and the files read as plain lists: an index
// names record directories by id; item and word lists are one entry per line.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "MakeConvSToKiv/convstdcom/ConvStdCom.h"
#include "base/NUioObj.h"

class ConvApp;

// Line receiver of a value-form index: `<anything>=<id>` lines and one
// `_lastid=<number>` line; ids stay in file order.
class ConvStdComIndexIoObj : public NUioObj {
public:
    ConvStdComIndexIoObj(ConvApp* app, std::string indexPath);
    ~ConvStdComIndexIoObj() override;

    // The index path; -11 when it is empty.
    int NUioObjGetPath(std::string& outPath) override;
    int ParseLine(char* line, std::string& section) override;
    int AddValue(const char* name, const char* value, const char* section) override;
    // An index is never written: -20, no item.
    int GetItem(int index, const char** outName, const char** outValue, std::string& outSection) override;
    // A line with a NUL byte names no entry: reported with its line, passed over.
    int BadLine(const char* line, std::size_t length) override;

    // Consumes `object ...` and `end` lines (1), 0 for all else.
    virtual int CheckLine(char* line);
    // One entry; `_lastid` must be an integer text, else -31 (reported).
    virtual int SetItem(const char* name, const char* value);

    const std::vector<int32_t>& Ids() const { return ids; }
    int32_t LastId() const { return lastId; }
    void Rewind() { cursor = 0; }
    // The id under the cursor, and the cursor moves on; false at the end.
    bool Next(int32_t& id);

protected:
    // Takes the `_lastid` line; true when name is `_lastid`, with result set.
    bool TakeLastId(const char* name, const char* value, int& result);
    // Adds the entry's id; one that doesn't fit in 32 bits is reported with its
    // line and passed over, as it would otherwise name another record.
    void AddId(const char* text);
    // A tolerated problem of one line: a warning with the index path and line.
    void ReportLine(const char* source, int line, const char* text);

    ConvApp* app;
    std::string indexPath;
    std::vector<int32_t> ids;
    std::size_t cursor = 0;
    int32_t lastId = 0;
};

// Line receiver of a key-form index: `<id>=<anything>`.
class ConvStdComIDIndexIoObj : public ConvStdComIndexIoObj {
public:
    using ConvStdComIndexIoObj::ConvStdComIndexIoObj;
    int SetItem(const char* name, const char* value) override;
};

// A value-form index and the record directories it names. With loadAll, Read
// loads every record; otherwise records are fetched one at a time by ReadNext.
class ConvStdComIndex : public ConvStdCom {
public:
    ConvStdComIndex(ConvApp* app, const char* indexPath, bool loadAll);
    ~ConvStdComIndex() override;

    // Takes only the first complete object of a record file.
    int CheckLine(char* line) override;
    // The index, then with loadAll every record, passing over tolerated
    // failures. The last id, or a failure; a missing index is empty.
    int Read() override;
    // Frees records and the id list.
    void Clear() override;

    // Reads the id list: the last id; -16 for a missing file (an empty list);
    // other failures are reported.
    virtual int ReadIndex();
    // Reads the record of the next id: 1 with the record in *record (null when
    // the file held none; owned here), 0 at the end, or the read's failure
    // (reported; the cursor has moved on, and the record is dropped).
    virtual int ReadNext(ConvRow** record);
    // Frees the records read so far; the id list stays.
    virtual void ClearRecords();
    virtual std::unique_ptr<ConvStdComIndexIoObj> NewIoObj();
    virtual void DeleteIoObj();

    // The ids of the index in file order; empty before ReadIndex.
    const std::vector<int32_t>& Ids() const;
    int32_t LastId() const { return ioObj ? ioObj->LastId() : 0; }
    bool IsLoadAll() const { return loadAll; }
    const std::string& IndexPath() const { return indexPath; }

protected:
    std::string indexPath;
    bool loadAll;
    std::unique_ptr<ConvStdComIndexIoObj> ioObj;
    // The record file's first object is complete; the rest of the file is passed over.
    bool objectDone = false;
};

// The key-form index (`<id>=<anything>`).
class ConvStdComIDIndex : public ConvStdComIndex {
public:
    using ConvStdComIndex::ConvStdComIndex;
    std::unique_ptr<ConvStdComIndexIoObj> NewIoObj() override;
};

// An item list: each line's value is an id, one record with a type 1 `ID` per
// line; a value that is not an integer text is reported and passed over.
class ConvStdComItemIndex : public ConvStdCom {
public:
    using ConvStdCom::ConvStdCom;
    int SetItem(const char* name, const char* value) override;
    // `object` lines only count the depth.
    int BeginRecord(const char* idText) override;
};

// A word list: one record with a type 0 `ITEM` per line.
class ConvStdComStrIndex : public ConvStdCom {
public:
    using ConvStdCom::ConvStdCom;
    int SetItem(const char* name, const char* value) override;
    // `object` lines only count the depth.
    int BeginRecord(const char* idText) override;
};
