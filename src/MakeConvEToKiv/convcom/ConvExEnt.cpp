// The table conversion frame: query, count, row loop, commit and progress.
#include "MakeConvEToKiv/convcom/ConvExEnt.h"

#include <sys/stat.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>

#include "MakeConvEToKiv/convcom/ConvApp.h"
#include "database/CdDBConnection.h"

namespace {

// The query files are read in pieces of this many characters.
constexpr std::size_t kSqlReadPiece = 8191;

}  // namespace

int32_t ReportSqlFileLoad(ConvApp* app, int32_t code, const char* source, int line) {
    app->ReportError(code, source, line, false, nullptr, nullptr);
    return code;
}

ConvExEnt::ConvExEnt(ConvApp* appIn, bool useTransactionIn, const char* tableNameIn,
                     std::initializer_list<const char*> keyNames)
    : app(appIn),
      readConnection(appIn->EntConnection()),
      writeConnection(appIn->KivConnection()),
      tableName(tableNameIn ? tableNameIn : ""),
      useTransaction(useTransactionIn) {
    for (const char* name : keyNames) keys.emplace(name, std::string());
}

ConvExEnt::~ConvExEnt() { Close(); }

void ConvExEnt::Close() {
    if (reader) DeleteReader(reader);
}

int32_t ConvExEnt::Run() {
    int32_t ret = LoadSql();
    if (ret == 0) ret = Open();
    if (ret != 0) {
        app->ReportError(ConvApp::kBatchFailed, CONV_HERE, false, nullptr, nullptr);
        return ConvApp::kBatchFailed;
    }
    ret = Convert();
    if (ret != 0) app->ReportError(ret, CONV_HERE, false, nullptr, nullptr);
    return ret;
}

int32_t ConvExEnt::LoadSql() {
    const int32_t ret = ReadSqlFile(tableName.c_str());
    if (ret != 0) return ReportSqlFileLoad(app, ret, CONV_HERE);
    return 0;
}

int32_t ConvExEnt::ReadSqlFile(const char* name) {
    const std::string path = app->GetSqlScriptPath(name);
    std::FILE* file = std::fopen(path.c_str(), "rb");
    if (!file) {
        const int err = errno;
        app->ReportError(-1021, CONV_HERE, true, path.c_str(), "SQLファイルの読み込みに失敗しました。(errno=%d)",
                         err);
        return -1;
    }
    std::string text;
    char piece[kSqlReadPiece];
    std::size_t got = 0;
    while ((got = std::fread(piece, 1, sizeof piece, file)) > 0) text.append(piece, got);
    const bool failed = std::ferror(file) != 0;
    const int err = errno;
    std::fclose(file);
    if (failed) {
        app->ReportError(-1021, CONV_HERE, true, path.c_str(), "SQLファイルの読み込みに失敗しました。(errno=%d)",
                         err);
        return -1;
    }
    sqlText = std::move(text);
    return 0;
}

int32_t ConvExEnt::Open() {
    if (!readConnection || !writeConnection) {
        app->ReportError(kDbBadArgument, CONV_HERE, false, nullptr, nullptr);
        return kDbBadArgument;
    }
    readConnection->SetTransactional(false);
    int32_t ret = CountRows();
    if (ret != 0) {
        app->ReportError(ret, CONV_HERE, true, nullptr, "データ件数の取得に失敗しました。");
        return ret;
    }
    if (!reader) reader = NewReader();
    if (!reader) {
        app->ReportError(kDbNoMemory, CONV_HERE, true, nullptr, "メモリ確保に失敗しました。");
        return kDbNoMemory;
    }
    ret = reader->OpenQuery(sqlText.c_str());
    if (ret != 0) {
        app->ReportError(ret, CONV_HERE, true, nullptr, "データの読み込みに失敗しました。");
        return ret;
    }
    return 0;
}

int32_t ConvExEnt::CountRows() {
    const std::string name = tableName + "_count";
    // No count file is no failure: the table then shows no progress.
    struct stat st {};
    if (::stat(app->GetSqlScriptPath(name.c_str()), &st) != 0 && errno == ENOENT) return 0;
    // The main query's text is kept aside while the count's is read.
    std::string mainText = std::move(sqlText);
    int32_t ret = ReadSqlFile(name.c_str());
    std::string countText = std::move(sqlText);
    sqlText = std::move(mainText);
    if (ret != 0) {
        app->ReportError(ret, CONV_HERE, false, nullptr, nullptr);
        return ret;
    }
    ConvDBRead counter(app, readConnection);
    ret = counter.OpenQuery(countText.c_str());
    if (ret != 0) {
        app->ReportError(ret, CONV_HERE, false, nullptr, nullptr);
        return ret;
    }
    ret = counter.Fetch();
    if (ret < 0) {
        app->ReportError(ret, CONV_HERE, false, nullptr, nullptr);
        return ret;
    }
    const char* value = (ret == 1 && !counter.Row().empty()) ? counter.Row().front()->Value() : nullptr;
    totalRows = value ? static_cast<int32_t>(std::strtol(value, nullptr, 10)) : 0;
    return 0;
}

int32_t ConvExEnt::Convert() {
    if (!reader) {
        app->ReportError(kDbBadArgument, CONV_HERE, false, nullptr, nullptr);
        return kDbBadArgument;
    }
    writeConnection->SetTransactional(useTransaction);
    std::unique_ptr<ConvDBEntry> writer = NewWriter();
    if (!writer) {
        app->ReportError(kDbNoMemory, CONV_HERE, true, nullptr, "メモリ確保に失敗しました。");
        return kDbNoMemory;
    }
    int32_t ret = SetupWriter(*writer);
    if (ret != 0) {
        app->ReportError(ret, CONV_HERE, false, nullptr, nullptr);
        DeleteWriter(writer);
        return ret;
    }
    int32_t rowCount = 0;
    // A negative fetch counts as a row: the writer then reports what it makes of
    // it. A query that fails after its first rows stops the table, as one that
    // fails at once does.
    int32_t fetched = 0;
    while ((fetched = reader->Fetch()) != 0) {
        if (fetched < 0 && reader->ReadFailed()) {
            app->ReportError(fetched, CONV_HERE, true, nullptr, "データの読み込みに失敗しました。");
            DeleteWriter(writer);
            RollbackWriter(writeConnection, fetched);
            return fetched;
        }
        ret = ConvertRow(*writer, reader->Row());
        if (static_cast<uint32_t>(ret) > 1) {
            DeleteWriter(writer);
            RollbackWriter(writeConnection, ret);
            return ret;
        }
        if (ret == 1) {
            app->SetStatusWord(1);
            ++failedRows;
        }
        ++rowCount;
        ret = Checkpoint(writeConnection, rowCount, false);
        if (ret != 0) {
            app->ReportError(ret, CONV_HERE, false, nullptr, nullptr);
            DeleteWriter(writer);
            return ret;
        }
    }
    const int32_t finished = Finish(*writer);
    DeleteWriter(writer);
    if (static_cast<uint32_t>(finished) > 1) {
        RollbackWriter(writeConnection, finished);
        return finished;
    }
    ret = Checkpoint(writeConnection, rowCount, true);
    if (ret != 0) {
        app->ReportError(ret, CONV_HERE, false, nullptr, nullptr);
        return ret;
    }
    return finished == 1 ? 0 : finished;
}

int32_t ConvExEnt::SetupWriter(ConvDBEntry& writer) {
    writer.SetNoContinue(noContinue);
    writer.CopyKeys(keys);
    return 0;
}

int32_t ConvExEnt::ConvertRow(ConvDBEntry& writer, ConvRow& row) {
    const int32_t ret = writer.Entry(tableName.c_str(), row);
    if (ret != 0 && ret != 1) app->ReportError(ret, CONV_HERE, false, nullptr, nullptr);
    return ret;
}

int32_t ConvExEnt::Finish(ConvDBEntry&) { return 0; }

std::unique_ptr<ConvDBRead> ConvExEnt::NewReader() { return std::make_unique<ConvDBRead>(app, readConnection); }

void ConvExEnt::DeleteReader(std::unique_ptr<ConvDBRead>& target) { target.reset(); }

std::unique_ptr<ConvDBEntry> ConvExEnt::NewWriter() { return std::make_unique<ConvDBEntry>(app, writeConnection); }

void ConvExEnt::DeleteWriter(std::unique_ptr<ConvDBEntry>& writer) { writer.reset(); }

int32_t ConvExEnt::Checkpoint(CdDBConnection* connection, int32_t rowCount, bool force) {
    const int32_t interval = app->CommitInterval();
    if (!connection || interval == 0) return 0;
    if (!force && rowCount % interval != 0) return 0;
    if (useTransaction) {
        const int32_t ret = connection->Commit();
        if (ret != 0) {
            app->ReportError(ret, CONV_HERE, true, nullptr, "コミットに失敗しました。");
            return ret;
        }
    }
    if (totalRows < 0) return 0;
    // No name of its own: the step's label, given at its start, names the count
    // and the function's closing summary.
    if (totalRows != rowCount) return app->PutMessage(nullptr, 4, totalRows, rowCount);
    return app->PutMessage(nullptr, 6, totalRows, failedRows);
}

int32_t ConvExEnt::RollbackWriter(CdDBConnection* connection, int32_t code) {
    if (!useTransaction || !connection) return 0;
    return connection->Rollback(code);
}
