// The row reader: runs one query and hands its result over row by row. The rows
// come from the server one at a time, and the connection is busy until the
// reader is done.
#pragma once

#include <cstdint>

#include "MakeConvEToKiv/convcom/ConvDB.h"

class ConvDBRead : public ConvDB {
public:
    using ConvDB::ConvDB;
    ~ConvDBRead() override;

    virtual void ClearRow();
    // "select * from <table>".
    virtual int32_t OpenTable(const char* table);
    // 0, or the failure of Exec (1 for a failure that Exec calls continuable).
    virtual int32_t OpenQuery(const char* sql);
    // 1 a row was made, 0 the result is at its end, or a negative code.
    virtual int32_t Fetch();
    // The last Fetch failed because the query itself failed after its first
    // rows: nothing more is to come, and what came is not the whole result.
    bool ReadFailed() const { return readFailed; }

    // The current row, valid until the next Fetch.
    ConvRow& Row() { return row; }
    const ConvRow& Row() const { return row; }

protected:
    ConvRow row;
    bool readFailed = false;
};
