// Writer of the minutes' files (TT_ATTACH_AGENDA).
#include "MakeConvEToKiv/convagenda/kiv_attachagenda.h"

#include <strings.h>

#include <cstdio>
#include <cstdlib>
#include <new>

#include "MakeConvEToKiv/convcom/ConvApp.h"
#include "MakeConvEToKiv/convcom/ConvDBRead.h"
#include "MakeConvLib/cmsbase/CMSioObjApp.h"
#include "database/CdDBConnection_PG.h"

namespace {

constexpr int32_t kNoMemory = -1102;
constexpr int32_t kBadArgument = -1099;
// The store groups the minutes' directories by this many ids, whatever the settings say.
constexpr long kStoreGroupUnit = 30000;

bool IsName(const char* name, const char* wanted) { return name && strcasecmp(name, wanted) == 0; }

// An integer text: an optional "-" and at least one digit, nothing else.
bool IsIntegerText(const char* text) {
    if (!text) return false;
    if (*text == '-') ++text;
    if (!*text) return false;
    for (; *text; ++text)
        if (*text < '0' || *text > '9') return false;
    return true;
}

}  // namespace

kiv_attachagenda::kiv_attachagenda(ConvApp* app, CdDBConnection* connection)
    : ConvDBEntryAttach(app, connection) {}

kiv_attachagenda::~kiv_attachagenda() {
    namesReader.reset();
    if (namesConnection) namesConnection->Disconnect();
}

bool kiv_attachagenda::CanRename() const { return attachNumber > 0 && !lastId.empty() && !lastTopicId.empty(); }

int32_t kiv_attachagenda::LoadMinutesNames(const char* agnid) {
    constexpr const char* kLoadFailed = "議題添付ファイル情報データの読み込みに失敗しました。";
    try {
        if (!namesConnection) {
            namesConnection = std::make_unique<CdDBConnection_PG>();
            ++connectCount;
            int32_t ret = app->ConnectWorkingCopy(*namesConnection, "agenda");
            if (ret == 0) ret = namesConnection->SetTransactional(false);
            if (ret != 0) {
                namesConnection.reset();
                app->ReportError(ret, CONV_HERE, false, nullptr, nullptr);
                return ret;
            }
            namesReader = std::make_unique<ConvDBRead>(app, namesConnection.get());
        }
        seenNames.Init(0);
        usedNames.Init(0);
        // The id goes into the statement as it stands: only a number may.
        if (!IsIntegerText(agnid)) {
            ReportMessage(kBadArgument, CONV_HERE, true, "%s agnid=[%s]", kLoadFailed, agnid ? agnid : "");
            return kBadArgument;
        }
        char sql[256];
        std::snprintf(sql, sizeof sql,
                      "SELECT SID_ATTACH,DISPNAME FROM TT_ATTACH_AGENDA_TOPIC WHERE SID_CORPORATE=%d AND agnid=%s",
                      GetCorporateId(), agnid);
        int32_t ret = namesReader->OpenQuery(sql);
        while (ret == 0) {
            ret = namesReader->Fetch();
            if (ret != 1) break;
            const char* number = FindColumn(namesReader->Row(), "SID_ATTACH");
            const char* dispName = FindColumn(namesReader->Row(), "DISPNAME");
            if (number && dispName && usedNames.AddText(dispName, number) != 0) ret = kNoMemory;
            else ret = 0;
        }
        namesConnection->ClearResult();
        if (ret != 0) {
            ReportMessage(ret, CONV_HERE, true, "%s", kLoadFailed);
            return ret;
        }
        return 0;
    } catch (const std::bad_alloc&) {
        app->ReportError(kNoMemory, CONV_HERE, false, nullptr, nullptr);
        return kNoMemory;
    }
}

int32_t kiv_attachagenda::AddColumnValue(const char* name, const char* value, uint32_t type) {
    if (!value) value = "";
    try {
        if (IsName(name, "ID")) {
            if (lastId != value) {
                lastId = value;
                attachNumber = 1;
                const int32_t ret = LoadMinutesNames(value);
                if (ret != 0) {
                    app->ReportError(ret, CONV_HERE, false, nullptr, nullptr);
                    return ret;
                }
            } else {
                ++attachNumber;
            }
            attachNumberText = std::to_string(attachNumber);
            const int32_t ret = ConvDBEntryAttach::AddColumnValue("SID_ATTACH", attachNumberText.c_str(), kRowTypeNumber);
            if (ret != 0) return ret;
            return ConvDBEntryAttach::AddColumnValue(name, value, type);
        }
        if (IsName(name, "topicid")) {
            // Says where the file lies in the store; the target has no such column.
            lastTopicId = value;
            for (auto& [key, keyValue] : keys)
                if (strcasecmp(key.c_str(), name) == 0) keyValue = value;
            return 0;
        }
        if (IsName(name, "FILENAME") && CanRename()) {
            std::string renamed;
            app->AppendAttachName(renamed, attachNumber, value);
            return ConvDBEntryAttach::AddColumnValue(name, renamed.c_str(), type);
        }
        if (IsName(name, "DISPNAME") && CanRename()) {
            std::string unique;
            const int32_t ret = MakeUniqueFileName(value, kDispNameMax, unique, usedNames, seenNames);
            if (ret != 0) {
                app->ReportError(ret, CONV_HERE, false, nullptr, nullptr);
                return ret;
            }
            return ConvDBEntryAttach::AddColumnValue(name, unique.c_str(), type);
        }
        return ConvDBEntryAttach::AddColumnValue(name, value, type);
    } catch (const std::bad_alloc&) {
        app->ReportError(kNoMemory, CONV_HERE, false, nullptr, nullptr);
        return kNoMemory;
    }
}

int32_t kiv_attachagenda::AddNullColumn(const char* name, uint32_t type) {
    // A row without a topic mustn't borrow the previous row's.
    if (IsName(name, "topicid")) lastTopicId.clear();
    return ConvDBEntryAttach::AddNullColumn(name, type);
}

int32_t kiv_attachagenda::GetFilePath(std::string& outPath, const ConvRow& row, char which) {
    try {
        outPath.clear();
        const char* id = FindColumn(row, "ID");
        const char* fileName = FindColumn(row, "FILENAME");
        // The copy follows the row it belongs to: the file takes the number
        // the row was written with, even behind a row that failed.
        if (!id || !fileName || !CanRename() || lastId != id) return 0;
        if (which == 'N') {
            outPath = "agenda/";
            app->AppendNumberedDir(outPath, id, true);
            app->AppendAttachName(outPath, attachNumber, fileName);
            return 0;
        }
        char group[32];
        std::snprintf(group, sizeof group, "%ld/", std::strtol(id, nullptr, 10) / kStoreGroupUnit + 1);
        outPath = std::string("agenda/") + group + id + "/" + lastTopicId + "/" + fileName;
        return 0;
    } catch (const std::bad_alloc&) {
        app->ReportError(kNoMemory, CONV_HERE, false, nullptr, nullptr);
        return kNoMemory;
    }
}
