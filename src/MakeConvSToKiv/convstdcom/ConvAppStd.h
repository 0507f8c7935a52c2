// The application object of the two-stage run, with what the flat store needs:
// the cache of loaded indexes, the user and group id lists, the retry list.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <unordered_set>
#include <vector>

#include "MakeConvEToKiv/convcom/ConvApp.h"

class ConvStdComIndex;

class ConvAppStd : public ConvApp {
public:
    ConvAppStd(int argc, char** argv, const char* moduleWord);
    ~ConvAppStd() override;

    // Releases the index cache and the id lists, then ends as ConvApp does.
    int32_t End() override;
    // Always 1: every row is a commit and progress point.
    int32_t GetCommitInterval() override;
    // The flat store's file tree has neither a corporate directory nor bucket
    // directories: the source root is sourceFileRoot, owners are "user/" + id + "/".
    void GetSourceFileRoot(std::string& path) override;
    void AppendUserDir(std::string& path, const char* id) override;
    void AppendIdDir(std::string& path, const char* id) override;

    // A new index on sourceRoot + relativePath that loads all its records; the
    // caller gives it back through DeleteIndexObject. Null when memory runs out.
    virtual ConvStdComIndex* CreateIndexObject(const char* relativePath);
    // Destroys an index made by CreateIndexObject; null is allowed.
    virtual void DeleteIndexObject(ConvStdComIndex* index);
    // Whether the decimal id is in data/group/index ("group") or
    // data/user/index ("user", "users"): 1 or 0; -1099 for a missing argument
    // or unreadable index, -1109 for another kind, -1102 when memory runs out.
    // Each list is read once.
    virtual int32_t ExistsInIndex(const char* id, const char* kind);
    // The ids of the index at sourceRoot + relativePath, sorted ascending, in
    // ids, and their number in count. False (reported) when the path is empty,
    // count is null or the index can't be read.
    virtual bool LoadIdArray(const char* relativePath, int32_t* count, std::vector<int32_t>& ids);
    // 1 when the decimal id is among the sorted ids, 0 when not or when there
    // are none; -1099 (reported) for a null id.
    virtual int32_t FindId(const std::vector<int32_t>& ids, const char* id);

    // The index at relativePath with its id list read, from the cache or read
    // now and kept until End; hashed records lie in directories of a thousand.
    // Null (reported) for no path or an index that can't be read; a failed path
    // is tried again at the next request.
    ConvStdComIndex* GetIndex(const char* relativePath, bool hashed);

    // Statements put aside for the next pass over a record or owner; exact
    // comparison, one hashed look-up per statement. Frames clear it before each
    // record or owner, so it never holds more than one record's statements.
    bool IsRetryListEmpty() const { return retryList.empty(); }
    std::size_t RetryListSize() const { return retryList.size(); }
    bool IsInRetryList(const char* text) const;
    void AddToRetryList(const char* text);
    void ClearRetryList() { retryList.clear(); }

protected:
    std::map<std::string, std::unique_ptr<ConvStdComIndex>> indexCache;
    std::vector<int32_t> groupIds;
    std::vector<int32_t> userIds;
    int32_t groupCount = -1;  // -1 until loaded
    int32_t userCount = -1;
    std::unordered_set<std::string> retryList;
};
