// The attachment rows of a record: one row per entry of its `attach` list, with
// the display name and MIME type from the lists beside it.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "MakeConvSToKiv/convstdcom/ConvDBEntryStd.h"

class ConvDBEntryStdAttach : public ConvDBEntryStdEnableRetry {
public:
    // stopOnFailure: a left-out attachment row gives up the whole record.
    ConvDBEntryStdAttach(ConvAppStd* app, CdDBConnection* connection, bool stopOnFailure);

    // The rows of the record's `attach`, `attachdisp` and `mimetype` lists; 0
    // without an `attach` list.
    virtual int32_t InsertAttach(const char* table, ConvRow& record);
    // Numbers the entries from 1; a shorter display or type list gives empty
    // texts. A statement in the retry list (2) is passed over.
    virtual int32_t InsertAttachList(const char* table, ConvRow& rows, const std::vector<std::string>& attachList,
                                     const std::vector<std::string>* dispList,
                                     const std::vector<std::string>* mimeList);
    // `sid_attach` (number), `filename`, `dispname`, `mimetype` (texts) into row.
    virtual int32_t MakeAttachRow(int32_t number, const char* file, const char* disp, const char* mime,
                                  ConvRow& row);

    bool StopsOnFailure() const { return stopOnFailure; }

protected:
    bool stopOnFailure;
};
