// Writers of the minutes' record, topics and members.
#include "MakeConvSToKiv/convstdagenda/kiv_std_agendaagenda.h"

#include <cstring>
#include <string>

#include "MakeConvSToKiv/convstdcom/ConvAppStd.h"

namespace {

bool IsOneOf(const char* name, std::initializer_list<const char*> names) {
    if (!name) return false;
    for (const char* candidate : names)
        if (std::strcmp(candidate, name) == 0) return true;
    return false;
}

}  // namespace

kiv_std_agendaagenda::kiv_std_agendaagenda(ConvAppStd* appIn, CdDBConnection* connectionIn)
    : ConvDBEntryStd(appIn, connectionIn) {
    for (const char* key : {"ID", "subject", "sid", "schseldate", "stype", "stargetid", "stargetpri", "entry",
                            "updateuser", "entrydate", "entrytime", "updatedate", "updatetime", "memo", "circleopen",
                            "cid", "docsave", "dfid", "did", "modstatus", "modlogin", "entryname", "entrykana",
                            "updname", "updkana"})
        MapKey(key, key);
    MapKey("status", "STATUS");
    MapKey("to", "mailto");
    AddKey("ID", "");
    AddKey("subject", "");
}

bool kiv_std_agendaagenda::IsNumberField(const char* name) {
    return IsOneOf(name, {"ID", "entry", "updateuser", "cid", "dfid", "did", "modlogin"});
}

int32_t kiv_std_agendaagenda::AddColumnValue(const char* name, const char* value, uint32_t type) {
    if (!name || std::strcmp(name, "memo") != 0) return ConvDBEntryStd::AddColumnValue(name, value, type);
    std::string cut;
    const int32_t ret = CutToLength(name, value, kMemoMax, cut);
    if (ret != 0) {
        app->ReportError(ret, CONV_HERE, false, nullptr, nullptr);
        return ret;
    }
    return ConvDBEntryStd::AddColumnValue(name, cut.c_str(), type);
}

kiv_std_agendtopic::kiv_std_agendtopic(ConvAppStd* appIn, CdDBConnection* connectionIn)
    : ConvDBEntryStd(appIn, connectionIn) {
    for (const char* key : {"ID", "titletopic", "textkind", "memo", "format"}) MapKey(key, key);
    AddKey("agnid", "");
    AddKey("ID", "");
    AddKey("titletopic", "");
}

bool kiv_std_agendtopic::IsNumberField(const char* name) { return IsOneOf(name, {"ID"}); }

kiv_std_agendamember::kiv_std_agendamember(ConvAppStd* appIn, CdDBConnection* connectionIn)
    : ConvDBEntryStd(appIn, connectionIn) {
    for (const char* key : {"ID", "Name", "Kana"}) MapKey(key, key);
    AddKey("agnid", "");
    AddKey("ID", "");
    AddKey("Name", "");
}

bool kiv_std_agendamember::IsNumberField(const char* name) { return IsOneOf(name, {"ID"}); }
