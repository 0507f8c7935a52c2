// The plain frame of stage A: one file, its records written in order.
#include "MakeConvSToKiv/convstdcom/ConvExStd.h"

#include <new>

#include "MakeConvSToKiv/convstdcom/ConvAppStd.h"
#include "MakeConvSToKiv/convstdcom/ConvDBEntryStd.h"
#include "MakeConvSToKiv/convstdcom/ConvStdCom.h"
#include "MakeConvSToKiv/convstdcom/ConvStdComIndex.h"
#include "database/CdDBConnection.h"

namespace {

constexpr const char* kNoMemoryText = "メモリー確保に失敗しました。[%d]";

}  // namespace

ConvExStd::ConvExStd(ConvAppStd* appIn, bool isTransactional, const char* relativePath, const char* table)
    : app(appIn),
      rootPath(appIn->SourceRoot()),
      sourcePath(rootPath + (relativePath ? relativePath : "")),
      tableName(table ? table : ""),
      transactional(isTransactional),
      connection(appIn->EntConnection()) {}

ConvExStd::~ConvExStd() { ConvExStd::CloseSource(); }

void ConvExStd::NoteLeftOut() { app->SetStatusWord(kConvRowSkipped); }

std::size_t ConvExStd::RetryListSize() const { return app->RetryListSize(); }

int32_t ConvExStd::OpenSource() {
    reader = NewReader();
    if (!reader) {
        app->ReportError(kDbNoMemory, CONV_HERE, false, nullptr, kNoMemoryText, kDbNoMemory);
        return kDbNoMemory;
    }
    readResult = reader->Read();
    if (readResult < 0) {
        app->ReportError(readResult, CONV_HERE, false, sourcePath.c_str(), nullptr);
        return readResult;
    }
    // An index gives its last id: no failure.
    return 0;
}

void ConvExStd::CloseSource() {
    if (reader) DeleteReader(std::move(reader));
}

std::unique_ptr<ConvStdCom> ConvExStd::NewReader() {
    return std::unique_ptr<ConvStdCom>(new (std::nothrow) ConvStdCom(app, sourcePath.c_str()));
}

void ConvExStd::DeleteReader(std::unique_ptr<ConvStdCom>) {}

int32_t ConvExStd::Prepare() { return 1; }

std::unique_ptr<ConvDBEntryStd> ConvExStd::NewWriter() {
    return std::unique_ptr<ConvDBEntryStd>(new (std::nothrow) ConvDBEntryStd(app, connection));
}

void ConvExStd::DeleteWriter(std::unique_ptr<ConvDBEntryStd>) {}

int32_t ConvExStd::SetUpWriter(ConvDBEntryStd*) { return 0; }

int32_t ConvExStd::Convert() {
    int32_t ret = connection ? connection->SetTransactional(transactional) : kDbNotConnected;
    if (ret != 0) {
        app->ReportError(ret, CONV_HERE, false, nullptr, nullptr);
        return ret;
    }
    ret = Prepare();
    if (ret != 1) {
        if (ret != 0) app->ReportError(ret, CONV_HERE, false, nullptr, nullptr);
        return ret;
    }
    std::unique_ptr<ConvDBEntryStd> writer = NewWriter();
    if (!writer) {
        app->ReportError(kDbNoMemory, CONV_HERE, false, nullptr, kNoMemoryText, kDbNoMemory);
        return kDbNoMemory;
    }
    writer->SetSourceFile(sourcePath);
    ret = SetUpWriter(writer.get());
    if (ret != 0)
        app->ReportError(ret, CONV_HERE, false, nullptr, nullptr);
    else {
        ret = ConvertAll(writer.get());
        if (ret != 0) app->ReportError(ret, CONV_HERE, false, nullptr, nullptr);
    }
    DeleteWriter(std::move(writer));
    if (ret < 0)
        app->ReportError(ret, CONV_HERE, true, nullptr,
                         "スタンダード版から作業用データベースへのデータの保存に失敗しました。");
    return ret;
}

int32_t ConvExStd::ConvertAll(ConvDBEntryStd* writer) {
    if (!reader || !writer) {
        app->ReportError(kDbBadArgument, CONV_HERE, false, nullptr, nullptr);
        return kDbBadArgument;
    }
    int32_t count = 0;
    for (std::size_t i = 0; i < reader->RecordCount(); ++i) {
        ConvRow* record = reader->GetRecord(i);
        if (!record) continue;
        int32_t ret = ConvertRecord(writer, *record);
        if (!IsAcceptable(ret)) {
            app->ReportError(ret, CONV_HERE, false, nullptr, nullptr);
            return ret;
        }
        ++count;
        ret = CommitBatch(connection, count, false);
        if (ret != 0) return ret;
    }
    return CommitBatch(connection, count, true);
}

int32_t ConvExStd::ConvertRecord(ConvDBEntryStd* writer, ConvRow& record) {
    const int32_t ret = writer->Entry(tableName.c_str(), record);
    if (ret == kConvRowSkipped)
        NoteLeftOut();
    else if (ret != 0)
        app->ReportError(ret, CONV_HERE, false, nullptr, nullptr);
    return ret;
}

int32_t ConvExStd::CommitBatch(CdDBConnection* conn, int32_t count, bool last) {
    if (!conn || !transactional) return 0;
    const int32_t unit = app->CommitInterval();
    // Without an interval only the last call commits.
    if (!last && (unit <= 0 || count % unit != 0)) return 0;
    const int32_t ret = conn->Commit();
    if (ret != 0) app->ReportError(ret, CONV_HERE, true, nullptr, "コミットに失敗しました。");
    return ret;
}

int32_t ConvExStd::RollBack(CdDBConnection* conn, int32_t code) {
    if (!conn || !transactional) return 0;
    const int32_t ret = conn->Rollback(code);
    if (ret != 0) app->ReportError(ret, CONV_HERE, false, nullptr, nullptr);
    return ret;
}

void ConvExStd::ClearRetryList() { app->ClearRetryList(); }

bool ConvExStd::HasRetryList() { return !app->IsRetryListEmpty(); }

bool ConvExStd::IsAcceptable(int32_t code) { return code == 0 || code == kConvRowSkipped; }

// ------------------------------------------------------------ ConvExStdStrIndex

std::unique_ptr<ConvStdCom> ConvExStdStrIndex::NewReader() {
    return std::unique_ptr<ConvStdCom>(new (std::nothrow) ConvStdComStrIndex(app, sourcePath.c_str()));
}

std::unique_ptr<ConvDBEntryStd> ConvExStdStrIndex::NewWriter() {
    return std::unique_ptr<ConvDBEntryStd>(
        new (std::nothrow) ConvDBEntryStdItemIndex(app, connection, "ITEM", "ITEM", "ID"));
}

// ----------------------------------------------------------- ConvExStdManageAll

ConvExStdManageAll::ConvExStdManageAll(ConvAppStd* appIn, const char* module, const char* table)
    : ConvExStd(appIn, false, (std::string("data/group/nogroup/") + (module ? module : "") + "/admin").c_str(),
                table) {}

std::unique_ptr<ConvStdCom> ConvExStdManageAll::NewReader() {
    return std::unique_ptr<ConvStdCom>(new (std::nothrow) ConvStdComItemIndex(app, sourcePath.c_str()));
}

int32_t ConvExStdManageAll::SetUpWriter(ConvDBEntryStd* writer) {
    if (!writer) {
        app->ReportError(kDbBadArgument, CONV_HERE, false, nullptr, nullptr);
        return kDbBadArgument;
    }
    writer->MapKey("ID", "ID");
    writer->AddKey("ID", "");
    return 0;
}
