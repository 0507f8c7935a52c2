// Writer of the minutes' files: one row is one file of one topic. Files are
// numbered per set of minutes across all its topics, get "attachNNNNN" names,
// keep display names that are unique within the minutes, and are copied from
// the store's topic directories into the target's bucketed agenda/ tree.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "MakeConvEToKiv/convcom/ConvDBEntryAttach.h"
#include "base/NUNVList.h"

class ConvDBRead;

class kiv_attachagenda : public ConvDBEntryAttach {
public:
    static constexpr int kDispNameMax = 255;

    kiv_attachagenda(ConvApp* app, CdDBConnection* connection);
    ~kiv_attachagenda() override;

    int32_t AddColumnValue(const char* name, const char* value, uint32_t type) override;
    int32_t AddNullColumn(const char* name, uint32_t type) override;
    // 'N': "agenda/", the settings' bucket, the minutes' id, "attachNNNNN.ext"
    // with the number the row was written with;
    // 'E': "agenda/", the store's group of 30,000, the id, the topic, the file.
    int32_t GetFilePath(std::string& outPath, const ConvRow& row, char which) override;

    // How often the private connection was opened (once per table at most).
    int ConnectCount() const { return connectCount; }

protected:
    // The display names of all files of the minutes agnid, as the topics have
    // them, into usedNames; seenNames starts empty. Opens the private
    // connection on first use. 0 or a failure (reported).
    int32_t LoadMinutesNames(const char* agnid);
    // True when text, when the counter's minutes and its topic are known.
    bool CanRename() const;

    std::string lastId;
    std::string lastTopicId;
    std::string attachNumberText;
    int32_t attachNumber = 0;
    NUNVList seenNames;
    NUNVList usedNames;
    std::unique_ptr<CdDBConnection> namesConnection;
    std::unique_ptr<ConvDBRead> namesReader;
    int connectCount = 0;
};
