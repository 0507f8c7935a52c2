// The row reader: a query's result as rows of named, typed items.
#include "MakeConvEToKiv/convcom/ConvDBRead.h"

#include <cstdio>
#include <cstdlib>
#include <memory>

#include "MakeConvEToKiv/convcom/ConvApp.h"
#include "database/CdDBConnection.h"

namespace {

// "select * from %s" is formed in this many bytes.
constexpr std::size_t kTableQueryMax = 1024;
// Field names are read into this many bytes.
constexpr std::size_t kFieldNameMax = 256;

struct FreeDeleter {
    void operator()(char* p) const { std::free(p); }
};

}  // namespace

ConvDBRead::~ConvDBRead() = default;

void ConvDBRead::ClearRow() { row.clear(); }

int32_t ConvDBRead::OpenTable(const char* table) {
    char query[kTableQueryMax];
    std::snprintf(query, sizeof query, "select * from %s", table ? table : "");
    const int32_t ret = OpenQuery(query);
    if (ret != 0) app->ReportError(ret, CONV_HERE, false, nullptr, nullptr);
    return ret;
}

int32_t ConvDBRead::OpenQuery(const char* sql) {
    if (!connection) {
        app->ReportError(kDbBadArgument, CONV_HERE, false, nullptr, nullptr);
        return kDbBadArgument;
    }
    const int32_t ret = Exec(sql);
    if (ret != 0) app->ReportError(ret, CONV_HERE, false, nullptr, nullptr);
    return ret;
}

int32_t ConvDBRead::Fetch() {
    if (!connection || !connection->IsConnected()) {
        app->ReportError(kDbBadArgument, CONV_HERE, false, nullptr, nullptr);
        return kDbBadArgument;
    }
    ClearRow();
    readFailed = false;
    if (connection->IsEnd()) {
        const int32_t failed = connection->TakeReadError();
        if (failed == 0) return 0;
        readFailed = true;
        app->ReportError(failed, CONV_HERE, false, nullptr, nullptr);
        return failed;
    }

    // A field that can't be read ends the fetch: a missing result counts as a bad
    // call, and -1110 (never given by a read) as the end.
    auto fail = [this](int32_t code) -> int32_t {
        if (code == kDbNoRowTouched) return 0;
        if (code == kDbNotConnected) code = kDbBadArgument;
        app->ReportError(code, CONV_HERE, false, nullptr, nullptr);
        return code;
    };
    const int count = connection->GetColumnCount();
    for (int i = 0; i < count; ++i) {
        char name[kFieldNameMax] = {};
        int32_t ret = connection->GetColumnName(name, i);
        if (ret != 0) return fail(ret);
        char* raw = nullptr;
        uint32_t type = kRowTypeText;
        ret = connection->GetValue(&raw, i, &type);
        std::unique_ptr<char, FreeDeleter> value(raw);
        if (ret != 0) return fail(ret);
        auto item = std::make_unique<ConvRowItem>();
        item->name = name;
        if (value) item->value = std::string(value.get());
        item->type = type;
        row.push_back(std::move(item));
    }
    connection->NextRow();
    return 1;
}
