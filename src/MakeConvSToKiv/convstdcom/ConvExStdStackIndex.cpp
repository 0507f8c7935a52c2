// The owner frames of stage A.
#include "MakeConvSToKiv/convstdcom/ConvExStdStackIndex.h"

#include <cstdlib>
#include <new>

#include "MakeConvLib/cmsbase/CMSioObjApp.h"
#include "MakeConvSToKiv/convstdcom/ConvAppStd.h"
#include "MakeConvSToKiv/convstdcom/ConvDBEntryStd.h"
#include "MakeConvSToKiv/convstdcom/ConvStdComIndex.h"
#include "database/CdDBConnection.h"

namespace {

constexpr const char* kNoMemoryText = "メモリー確保に失敗しました。[%d]";

std::string DirectoryOf(const std::string& path) {
    const std::size_t slash = path.find_last_of('/');
    return slash == std::string::npos ? std::string() : path.substr(0, slash);
}

}  // namespace

ConvExStdStackIndex::ConvExStdStackIndex(ConvAppStd* appIn, bool isTransactional, const char* file,
                                         const char* table, const char* indexPath)
    : ConvExStd(appIn, isTransactional, nullptr, table),
      fileName(file ? file : ""),
      ownerIndexPath(indexPath ? indexPath : ""),
      ownerDirectory(DirectoryOf(ownerIndexPath)) {}

ConvExStdStackIndex::~ConvExStdStackIndex() { ConvExStdStackIndex::CloseSource(); }

int32_t ConvExStdStackIndex::OpenSource() {
    ownerIndex = app->GetIndex(ownerIndexPath.c_str(), false);
    if (!ownerIndex) {
        app->ReportError(kDbNoMemory, CONV_HERE, false, ownerIndexPath.c_str(), kNoMemoryText, kDbNoMemory);
        return kDbNoMemory;
    }
    return 0;
}

void ConvExStdStackIndex::CloseSource() {
    ConvExStd::CloseSource();
    ownerIndex = nullptr;
    ownIndex.reset();
}

int32_t ConvExStdStackIndex::OpenOwnIndex(bool loadRecords) {
    ownIndex.reset(new (std::nothrow) ConvStdComIndex(app, (rootPath + ownerIndexPath).c_str(), loadRecords));
    if (!ownIndex) {
        app->ReportError(kDbNoMemory, CONV_HERE, false, nullptr, kNoMemoryText, kDbNoMemory);
        return kDbNoMemory;
    }
    // An index that isn't there reads as empty.
    const int ret = ownIndex->Read();
    if (ret < 0) {
        app->ReportError(ret, CONV_HERE, false, ownerIndexPath.c_str(), nullptr);
        return ret;
    }
    ownerIndex = ownIndex.get();
    return 0;
}

std::unique_ptr<ConvStdCom> ConvExStdStackIndex::NewReader() {
    return std::unique_ptr<ConvStdCom>(new (std::nothrow) ConvStdCom(app, sourcePath.c_str()));
}

int32_t ConvExStdStackIndex::CommitBatch(CdDBConnection*, int32_t, bool) { return 0; }

int32_t ConvExStdStackIndex::CommitOwner(CdDBConnection* conn, int32_t, bool last) {
    // The interval itself as the count: every owner is one commit.
    return ConvExStd::CommitBatch(conn, app->CommitInterval(), last);
}

bool ConvExStdStackIndex::IsAcceptable(int32_t code) {
    return transactional ? code == 0 : ConvExStd::IsAcceptable(code);
}

int32_t ConvExStdStackIndex::SetUpWriter(ConvDBEntryStd* writer) {
    if (!writer) {
        app->ReportError(kDbBadArgument, CONV_HERE, false, nullptr, nullptr);
        return kDbBadArgument;
    }
    writer->SetFixedField("SID_USER", ownerId.c_str(), kRowTypeNumber);
    writer->AddKey("SID_USER", ownerId.c_str());
    return 0;
}

const char* ConvExStdStackIndex::GetOwnerId(const ConvRow& record) { return FindColumn(record, "ID"); }

int32_t ConvExStdStackIndex::OpenOwner() {
    if (reader) DeleteReader(std::move(reader));
    std::string path = rootPath + ownerDirectory + "/";
    if (ownerIndex && ownerIndex->IsHashedDirectory()) {
        const int unit = GetDirUnit();
        if (unit > 0) path += std::to_string(std::strtol(ownerId.c_str(), nullptr, 10) / unit + 1) + "//";
    }
    sourcePath = path + ownerId + "/" + fileName;
    return ConvExStd::OpenSource();
}

bool ConvExStdStackIndex::IsOwnerOpen(int32_t code) { return code == 0 && reader && !reader->IsFailed(); }

int32_t ConvExStdStackIndex::ConvertOwner(const ConvRow& owner, int32_t count) {
    const char* id = GetOwnerId(owner);
    if (!id) {
        app->ReportError(-1109, CONV_HERE, false, ownerIndexPath.c_str(), nullptr);
        NoteLeftOut();
        return kConvRowSkipped;
    }
    ownerId = id;
    int32_t ret = OpenOwner();
    if (!IsOwnerOpen(ret)) {
        // The reader reported what it couldn't read; the next owner is taken.
        app->ReportError(ret != 0 ? ret : kConvRowSkipped, CONV_HERE, false, sourcePath.c_str(), nullptr);
        NoteLeftOut();
        return kConvRowSkipped;
    }
    ClearRetryList();
    ret = ConvExStd::Convert();
    // Walk the owner again after a rollback, passing over the statements that
    // failed; a walk that finds no new one would only repeat itself.
    std::size_t listed = 0;
    while (ret == kConvRowSkipped) {
        const int32_t rolled = RollBack(connection, kConvRowSkipped);
        if (rolled != 0) return rolled;
        if (!HasRetryList() || RetryListSize() == listed) break;
        listed = RetryListSize();
        ret = ConvExStd::Convert();
    }
    if (ret == kConvRowSkipped) {
        NoteLeftOut();  // the owner is given up: nothing of it is committed
        return kConvRowSkipped;
    }
    if (ret != 0) {
        app->ReportError(ret, CONV_HERE, false, nullptr, nullptr);
        return ret;
    }
    return CommitOwner(connection, count, false);
}

int32_t ConvExStdStackIndex::Convert() {
    if (!ownerIndex) {
        app->ReportError(kDbNotConnected, CONV_HERE, false, ownerIndexPath.c_str(), nullptr);
        return kDbNotConnected;
    }
    int32_t count = 0;
    int32_t ret = 0;
    if (walkRecords) {
        for (std::size_t i = 0; i < ownerIndex->RecordCount(); ++i) {
            const ConvRow* owner = ownerIndex->GetRecord(i);
            if (!owner) continue;
            ret = ConvertOwner(*owner, count);
            if (ret != 0 && ret != kConvRowSkipped) return ret;
            ++count;
        }
    } else {
        // The cached index holds the ids; each owner is its `ID`.
        for (const int32_t id : ownerIndex->Ids()) {
            ConvRow owner;
            AddColumn("ID", std::to_string(id).c_str(), kRowTypeNumber, owner);
            ret = ConvertOwner(owner, count);
            if (ret != 0 && ret != kConvRowSkipped) return ret;
            ++count;
        }
    }
    return CommitOwner(connection, count, true);
}

// --------------------------------------------------------- ConvExStdManageGroup

ConvExStdManageGroup::ConvExStdManageGroup(ConvAppStd* appIn, const char* module, const char* table)
    : ConvExStdStackIndex(appIn, false, (std::string(module ? module : "") + "/admin").c_str(), table,
                          "data/group/index") {
    walkRecords = true;
}

int32_t ConvExStdManageGroup::OpenSource() { return OpenOwnIndex(true); }

std::unique_ptr<ConvStdCom> ConvExStdManageGroup::NewReader() {
    return std::unique_ptr<ConvStdCom>(new (std::nothrow) ConvStdComItemIndex(app, sourcePath.c_str()));
}

int32_t ConvExStdManageGroup::SetUpWriter(ConvDBEntryStd* writer) {
    if (!writer) {
        app->ReportError(kDbBadArgument, CONV_HERE, false, nullptr, nullptr);
        return kDbBadArgument;
    }
    writer->SetFixedField("SID_GROUP", ownerId.c_str(), kRowTypeNumber);
    writer->MapKey("ID", "ID");
    writer->AddKey("ID", "");
    return 0;
}

// ------------------------------------------------------------ ConvExStdCSVIndex

ConvExStdCSVIndex::ConvExStdCSVIndex(ConvAppStd* appIn, const char* file, const char* table, const char* indexPath)
    : ConvExStdStackIndex(appIn, true, file, table, indexPath) {}

std::unique_ptr<ConvStdCom> ConvExStdCSVIndex::NewReader() {
    return std::unique_ptr<ConvStdCom>(new (std::nothrow) ConvStdComItemIndex(app, sourcePath.c_str()));
}

std::unique_ptr<ConvDBEntryStd> ConvExStdCSVIndex::NewWriter() {
    return std::unique_ptr<ConvDBEntryStd>(
        new (std::nothrow) ConvDBEntryStdItemIndex(app, connection, "ID", "ID", "SEQNO"));
}
