// The open and the finished minutes with their topics, files and members.
#include "MakeConvSToKiv/convstdagenda/ConvExStdAgendaAgenda.h"

#include <cstdio>
#include <cstdlib>
#include <new>

#include "MakeConvLib/cmsbase/CMSioObjApp.h"
#include "MakeConvSToKiv/convstdagenda/kiv_std_agendaagenda.h"
#include "MakeConvSToKiv/convstdagenda/kiv_std_agendaindex.h"
#include "MakeConvSToKiv/convstdcom/ConvAppStd.h"
#include "MakeConvSToKiv/convstdcom/ConvDBEntryStdAttach.h"
#include "MakeConvSToKiv/convstdcom/ConvStdComIndex.h"
#include "database/CdDBConnection.h"

namespace {

constexpr const char* kUserIndex = "data/user/index";
constexpr int32_t kMinutesModule = 26;

// The row results that stop a walk: the negative codes.
bool IsFatal(int32_t code) { return code < 0; }

}  // namespace

ConvExStdAgendaAgenda::ConvExStdAgendaAgenda(ConvAppStd* appIn, const char* relativePath, const char* table)
    : ConvExStdIndex(appIn, false, relativePath, table, kMinutesModule, "001") {}

ConvExStdAgendaAgenda::~ConvExStdAgendaAgenda() = default;

std::unique_ptr<ConvStdCom> ConvExStdAgendaAgenda::NewReader() {
    return std::unique_ptr<ConvStdCom>(new (std::nothrow) kiv_std_agendaindex(app, sourcePath.c_str(), false));
}

std::unique_ptr<ConvDBEntryStd> ConvExStdAgendaAgenda::NewWriter() {
    return std::unique_ptr<ConvDBEntryStd>(new (std::nothrow) kiv_std_agendaagenda(app, connection));
}

int32_t ConvExStdAgendaAgenda::OpenSource() {
    int32_t ret = ConvExStdIndex::OpenSource();
    if (ret != 0) return ret;
    ConvStdComIndex* users = app->GetIndex(kUserIndex, false);
    if (!users) {
        app->ReportError(kDbNoMemory, CONV_HERE, false, kUserIndex, nullptr);
        return kDbNoMemory;
    }
    // The cached index may hold only its ids; the names need the records.
    ConvStdComIndex* loaded = users;
    ConvStdComIndex* own = nullptr;
    if (users->RecordCount() < users->Ids().size()) {
        own = app->CreateIndexObject(kUserIndex);
        if (!own) {
            app->ReportError(kDbNoMemory, CONV_HERE, false, kUserIndex, nullptr);
            return kDbNoMemory;
        }
        ret = own->Read();
        if (ret < 0) {
            app->ReportError(ret, CONV_HERE, false, kUserIndex, nullptr);
            app->DeleteIndexObject(own);
            return ret;
        }
        loaded = own;
    }
    try {
        userNames.clear();
        for (std::size_t i = 0; i < loaded->RecordCount(); ++i) {
            const ConvRow* user = loaded->GetRecord(i);
            const char* id = user ? FindColumn(*user, "ID") : nullptr;
            if (!id) continue;
            const char* name = FindColumn(*user, "Name");
            const char* kana = FindColumn(*user, "Kana");
            // The first record of an id is the one a walk would find.
            userNames.emplace(id, Names(name ? name : "", kana ? kana : ""));
        }
    } catch (const std::bad_alloc&) {
        ret = kDbNoMemory;
        app->ReportError(ret, CONV_HERE, false, kUserIndex, nullptr);
    }
    if (own) app->DeleteIndexObject(own);
    return ret < 0 ? ret : 0;
}

void ConvExStdAgendaAgenda::LookUpUser(ConvRow& record, const char* idKey, const char* nameColumn,
                                       const char* kanaColumn) {
    const char* id = FindColumn(record, idKey);
    if (!id) return;
    const auto found = userNames.find(id);
    if (found == userNames.end()) return;
    // Appended behind the record's own fields: a name the record already has
    // stays, the duplicate-column repair drops the later one.
    AddColumn(nameColumn, found->second.first.c_str(), kRowTypeText, record);
    AddColumn(kanaColumn, found->second.second.c_str(), kRowTypeText, record);
}

std::string ConvExStdAgendaAgenda::MinutesFilePath(int32_t id, const char* name) const {
    char path[2048];
    std::snprintf(path, sizeof path, "%sdata/agenda/%d/%d/%s", rootPath.c_str(),
                  id / kiv_std_agendaindex::kGroupUnit + 1, id, name);
    return path;
}

int32_t ConvExStdAgendaAgenda::ReadMinutesFile(ConvStdCom& file) {
    const int32_t ret = file.Read();
    if (ret >= 0) return 0;  // a missing file is read as empty
    app->ReportError(ret, CONV_HERE, false, file.GetPath().c_str(), nullptr);
    // A broken file is passed over with the warning flag; others stop.
    return file.CanContinue(ret) ? kConvRowSkipped : ret;
}

int32_t ConvExStdAgendaAgenda::InsertMembers(const char* agnid, int32_t id) {
    ConvStdCom file(app, MinutesFilePath(id, "member").c_str());
    int32_t ret = ReadMinutesFile(file);
    if (ret != 0) return ret;
    kiv_std_agendamember writer(app, connection);
    const std::string corporate = std::to_string(GetCorporateId());
    for (std::size_t i = 0; i < file.RecordCount(); ++i) {
        ConvRow* member = file.GetRecord(i);
        if (!member) continue;
        writer.SetFixedField("SID_CORPORATE", corporate.c_str(), kRowTypeNumber);
        writer.SetFixedField("agnid", agnid, kRowTypeNumber);
        writer.SetFixedField("SEQNO", std::to_string(i + 1).c_str(), kRowTypeNumber);
        ret = writer.Entry("TT_AGENDA_MEMBER", *member);
        if (ret == kConvRowSkipped) NoteLeftOut();
        if (IsFatal(ret)) {
            app->ReportError(ret, CONV_HERE, false, nullptr, nullptr);
            return ret;
        }
    }
    return 0;
}

int32_t ConvExStdAgendaAgenda::InsertTopics(const char* agnid, int32_t id) {
    ConvStdCom file(app, MinutesFilePath(id, "topic").c_str());
    int32_t ret = ReadMinutesFile(file);
    if (ret != 0) return ret;
    kiv_std_agendtopic writer(app, connection);
    ConvDBEntryStdAttach attachWriter(app, connection, false);
    const std::string corporate = std::to_string(GetCorporateId());
    writer.SetFixedField("SID_CORPORATE", corporate.c_str(), kRowTypeNumber);
    writer.SetFixedField("agnid", agnid, kRowTypeNumber);
    std::string lastTopic;
    for (std::size_t i = 0; i < file.RecordCount(); ++i) {
        ConvRow* topic = file.GetRecord(i);
        if (!topic) continue;
        const char* topicId = FindColumn(*topic, "ID");
        // The last topic read, whether it went in or not.
        lastTopic = topicId ? topicId : "";
        ret = writer.Entry("TT_AGENDA_TOPIC", *topic);
        if (ret == 0) {
            attachWriter.SetFixedField("ID", topicId, kRowTypeNumber);
            attachWriter.SetFixedField("agnid", agnid, kRowTypeNumber);
            ret = attachWriter.InsertAttach("TT_ATTACH_AGENDA_TOPIC", *topic);
            if (ret != 0) app->ReportError(ret, CONV_HERE, false, nullptr, nullptr);
        }
        if (ret == kConvRowSkipped) NoteLeftOut();
        if (IsFatal(ret)) {
            app->ReportError(ret, CONV_HERE, false, nullptr, nullptr);
            return ret;
        }
    }
    if (lastTopic.empty()) return 0;

    ConvDBEntryStd indexWriter(app, connection);
    indexWriter.SetFixedField("ID", agnid, kRowTypeNumber);
    indexWriter.SetFixedField("lastid", lastTopic.c_str(), kRowTypeNumber);
    indexWriter.AddKey("ID", "");
    ConvRow onlyFixedFields;
    ret = indexWriter.Entry("TT_INDEX_AGENDA_TOPIC", onlyFixedFields);
    if (ret == kConvRowSkipped) NoteLeftOut();
    if (IsFatal(ret)) {
        app->ReportError(ret, CONV_HERE, false, nullptr, nullptr);
        return ret;
    }
    return 0;
}

int32_t ConvExStdAgendaAgenda::InsertRecord(ConvDBEntryStd* writer, ConvRow& record) {
    try {
        LookUpUser(record, "entry", "entryname", "entrykana");
        LookUpUser(record, "updateuser", "updname", "updkana");
        int32_t ret = ConvExStdIndex::InsertRecord(writer, record);
        if (ret != 0) return ret;

        const char* idText = FindColumn(record, "ID");
        if (!idText) return 0;
        const std::string agnid = idText;
        const int32_t id = static_cast<int32_t>(std::strtol(idText, nullptr, 10));
        // The minutes' row is in: a member or topic left out is a warning of
        // its own and the minutes stay; only failures stop the run.
        ret = InsertMembers(agnid.c_str(), id);
        if (ret == kConvRowSkipped) NoteLeftOut();
        if (IsFatal(ret)) {
            app->ReportError(ret, CONV_HERE, false, nullptr, nullptr);
            return ret;
        }
        ret = InsertTopics(agnid.c_str(), id);
        if (ret == kConvRowSkipped) NoteLeftOut();
        if (IsFatal(ret)) {
            app->ReportError(ret, CONV_HERE, false, nullptr, nullptr);
            return ret;
        }
        return 0;
    } catch (const std::bad_alloc&) {
        app->ReportError(kDbNoMemory, CONV_HERE, false, nullptr, nullptr);
        return kDbNoMemory;
    }
}

std::unique_ptr<ConvStdCom> ConvExStdAgendaAgendaEnd::NewReader() {
    return std::unique_ptr<ConvStdCom>(new (std::nothrow) kiv_std_agendaindexend(app, sourcePath.c_str(), false));
}

int32_t ConvExStdAgendaAgendaEnd::Prepare() { return 1; }
