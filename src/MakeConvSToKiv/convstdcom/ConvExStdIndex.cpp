// The index frame of stage A.
#include "MakeConvSToKiv/convstdcom/ConvExStdIndex.h"

#include <new>

#include "MakeConvSToKiv/convstdcom/ConvAppStd.h"
#include "MakeConvSToKiv/convstdcom/ConvStdComIndex.h"
#include "database/CdDBConnection.h"

ConvExStdIndex::ConvExStdIndex(ConvAppStd* appIn, bool isTransactional, const char* relativePath,
                               const char* table, int32_t module, const char* sub)
    : ConvExStd(appIn, isTransactional, relativePath, table), moduleId(module), subCode(sub ? sub : "") {}

ConvStdComIndex* ConvExStdIndex::IndexReader() const { return dynamic_cast<ConvStdComIndex*>(reader.get()); }

std::unique_ptr<ConvStdCom> ConvExStdIndex::NewReader() {
    return std::unique_ptr<ConvStdCom>(new (std::nothrow) ConvStdComIndex(app, sourcePath.c_str(), false));
}

int32_t ConvExStdIndex::GetLastId() {
    const ConvStdComIndex* index = IndexReader();
    return index ? index->LastId() : 0;
}

std::unique_ptr<ConvDBEntryStdIndex> ConvExStdIndex::NewIndexWriter() {
    return std::unique_ptr<ConvDBEntryStdIndex>(
        new (std::nothrow) ConvDBEntryStdIndex(app, connection, moduleId, subCode.c_str(), GetLastId()));
}

void ConvExStdIndex::DeleteIndexWriter(std::unique_ptr<ConvDBEntryStdIndex>) {}

int32_t ConvExStdIndex::Prepare() {
    // No id was ever given: nothing to convert, not even the index row.
    if (GetLastId() == 0) return 0;
    std::unique_ptr<ConvDBEntryStdIndex> writer = NewIndexWriter();
    if (!writer) {
        app->ReportError(kDbNoMemory, CONV_HERE, false, nullptr, "メモリー確保に失敗しました。[%d]", kDbNoMemory);
        return kDbNoMemory;
    }
    ConvRow onlyFixedFields;
    const int32_t ret = writer->Entry(indexTable.c_str(), onlyFixedFields);
    DeleteIndexWriter(std::move(writer));
    if (ret < 0) {
        app->ReportError(ret, CONV_HERE, false, nullptr, nullptr);
        return ret;
    }
    // A refused index row (reported) leaves the records to convert.
    if (ret == kConvRowSkipped) NoteLeftOut();
    return 1;
}

int32_t ConvExStdIndex::InsertRecord(ConvDBEntryStd* writer, ConvRow& record) {
    const int32_t ret = writer->Entry(tableName.c_str(), record);
    if (ret != 0) app->ReportError(ret, CONV_HERE, false, nullptr, nullptr);
    return ret;
}

int32_t ConvExStdIndex::ConvertAll(ConvDBEntryStd* writer) {
    ConvStdComIndex* index = IndexReader();
    if (!index || !writer) {
        app->ReportError(kDbBadArgument, CONV_HERE, false, nullptr, nullptr);
        return kDbBadArgument;
    }
    int32_t count = 0;
    for (;;) {
        ConvRow* record = nullptr;
        int32_t ret = index->ReadNext(&record);
        if (ret == 0) return CommitBatch(connection, count, true);
        if (ret != 1) {
            // A record file missing or malformed is passed over (warning flag set).
            if (index->CanContinue(ret)) continue;
            app->ReportError(ret, CONV_HERE, false, nullptr, nullptr);
            return ret;
        }
        if (!record) continue;  // the file held no object

        ClearRetryList();
        ret = InsertRecord(writer, *record);
        // Walk the record again after a rollback, passing over the statements
        // that failed; a walk that finds no new one would only repeat itself.
        std::size_t listed = 0;
        while (ret == kConvRowSkipped) {
            const int32_t rolled = RollBack(connection, kConvRowSkipped);
            if (rolled != 0) return rolled;
            if (!HasRetryList() || RetryListSize() == listed) break;
            listed = RetryListSize();
            ret = InsertRecord(writer, *record);
        }
        index->ClearRecords();
        if (ret == kConvRowSkipped) {
            NoteLeftOut();  // the record is left out, the walk goes on
        } else if (ret != 0) {
            app->ReportError(ret, CONV_HERE, false, nullptr, nullptr);
            return ret;
        }
        ret = CommitBatch(connection, count, false);
        if (ret != 0) return ret;
        ++count;
    }
}
