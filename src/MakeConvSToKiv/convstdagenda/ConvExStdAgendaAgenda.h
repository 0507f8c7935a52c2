// The minutes: each entry of an index is a directory with the minutes' record
// (info), its topics (topic, with their files) and its members (member). The
// open and the finished minutes are two indexes that fill the same tables.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>
#include <utility>

#include "MakeConvSToKiv/convstdcom/ConvExStdIndex.h"

class ConvStdComIndex;

class ConvExStdAgendaAgenda : public ConvExStdIndex {
public:
    // Module 26, sub code "001".
    ConvExStdAgendaAgenda(ConvAppStd* app, const char* relativePath, const char* tableName);
    ~ConvExStdAgendaAgenda() override;

    // The index, then the users' names for the look-up of authors and editors.
    int32_t OpenSource() override;
    std::unique_ptr<ConvStdCom> NewReader() override;
    std::unique_ptr<ConvDBEntryStd> NewWriter() override;
    // The minutes' row, then its members and its topics. Once the row is in,
    // a broken member or topic file is a warning and the minutes stay.
    int32_t InsertRecord(ConvDBEntryStd* writer, ConvRow& record) override;

    // Appends the user's Name and Kana under nameColumn and kanaColumn to the
    // record, for the user whose id the record holds under idKey; nothing
    // for a record without that key or an unknown user.
    void LookUpUser(ConvRow& record, const char* idKey, const char* nameColumn, const char* kanaColumn);

protected:
    // "<root>data/agenda/<id / 30000 + 1>/<id>/<name>".
    std::string MinutesFilePath(int32_t id, const char* name) const;
    // Reads one file of the minutes: 0 (records in reader), 1 for a missing
    // or broken file that is passed over (reported), or a failure.
    int32_t ReadMinutesFile(ConvStdCom& reader);
    int32_t InsertMembers(const char* agnid, int32_t id);
    int32_t InsertTopics(const char* agnid, int32_t id);

    // User id to (Name, Kana), as the user index has them.
    using Names = std::pair<std::string, std::string>;
    std::unordered_map<std::string, Names> userNames;
};

// The finished minutes: the same tables, without a TM_INDEX row of their own,
// and converted whatever the open list's last id is.
class ConvExStdAgendaAgendaEnd : public ConvExStdAgendaAgenda {
public:
    using ConvExStdAgendaAgenda::ConvExStdAgendaAgenda;
    std::unique_ptr<ConvStdCom> NewReader() override;
    // 1: nothing to prepare.
    int32_t Prepare() override;
};
