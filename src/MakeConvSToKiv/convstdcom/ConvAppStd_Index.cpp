// The flat-store side of the application object: indexes kept for the whole
// run, the sorted id lists behind ExistsInIndex, and the writers' retry list.
#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <new>

#include "MakeConvSToKiv/convstdcom/ConvAppStd.h"
#include "MakeConvSToKiv/convstdcom/ConvStdComIndex.h"
#include "base/comSource.h"

namespace {

int32_t DecimalId(const char* text) { return static_cast<int32_t>(std::strtol(text, nullptr, 10)); }

}  // namespace

ConvStdComIndex* ConvAppStd::CreateIndexObject(const char* relativePath) {
    try {
        const std::string full = sourceRoot_ + (relativePath ? relativePath : "");
        return new ConvStdComIndex(this, full.c_str(), true);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

void ConvAppStd::DeleteIndexObject(ConvStdComIndex* index) { delete index; }

ConvStdComIndex* ConvAppStd::GetIndex(const char* relativePath, bool hashed) {
    if (!relativePath || !*relativePath) {
        ReportError(-1, CONV_HERE, false, nullptr, nullptr);
        return nullptr;
    }
    if (auto found = indexCache.find(relativePath); found != indexCache.end()) return found->second.get();

    ConvStdComIndex* index = CreateIndexObject(relativePath);
    if (!index) {
        ReportError(-2, CONV_HERE, false, relativePath, "メモリ確保に失敗しました[%d]", errno);
        return nullptr;
    }
    if (hashed) index->SetHashedDirectory(true);
    const int ret = index->ReadIndex();
    if (ret < 0) {
        // Not cached: the next request reads the file again.
        ReportError(ret, CONV_HERE, false, relativePath, nullptr);
        DeleteIndexObject(index);
        return nullptr;
    }
    try {
        indexCache.emplace(relativePath, std::unique_ptr<ConvStdComIndex>(index));
    } catch (const std::bad_alloc&) {
        DeleteIndexObject(index);
        ReportError(-2, CONV_HERE, false, relativePath, "メモリ確保に失敗しました[%d]", ENOMEM);
        return nullptr;
    }
    return index;
}

bool ConvAppStd::LoadIdArray(const char* relativePath, int32_t* count, std::vector<int32_t>& ids) {
    if (!relativePath || !*relativePath || !count) {
        ReportError(-1099, CONV_HERE, false, nullptr, nullptr);
        return false;
    }
    try {
        ConvStdComIndex index(this, (sourceRoot_ + relativePath).c_str(), false);
        const int ret = index.Read();
        if (ret < 0) {
            ReportError(ret, CONV_HERE, false, relativePath, nullptr);
            return false;
        }
        *count = static_cast<int32_t>(index.Ids().size());
        try {
            ids = index.Ids();
        } catch (const std::bad_alloc&) {
            ReportError(-1102, CONV_HERE, false, relativePath, nullptr);
            return false;  // with the count of the ids that found no room
        }
        std::sort(ids.begin(), ids.end());
        return true;
    } catch (const std::bad_alloc&) {
        ReportError(-1102, CONV_HERE, false, relativePath, nullptr);
        return false;
    }
}

int32_t ConvAppStd::FindId(const std::vector<int32_t>& ids, const char* id) {
    if (ids.empty()) return 0;
    if (!id) {
        ReportError(-1099, CONV_HERE, false, nullptr, nullptr);
        return -1099;
    }
    return std::binary_search(ids.begin(), ids.end(), DecimalId(id)) ? 1 : 0;
}

int32_t ConvAppStd::ExistsInIndex(const char* id, const char* kind) {
    if (!id || DecimalId(id) == 0 || !kind) {
        ReportError(-1099, CONV_HERE, false, nullptr, nullptr);
        return -1099;
    }
    std::vector<int32_t>* ids = nullptr;
    int32_t* count = nullptr;
    const char* relativePath = nullptr;
    if (std::strcmp(kind, "group") == 0) {
        ids = &groupIds;
        count = &groupCount;
        relativePath = "data/group/index";
    } else if (std::strcmp(kind, "user") == 0 || std::strcmp(kind, "users") == 0) {
        ids = &userIds;
        count = &userCount;
        relativePath = "data/user/index";
    } else {
        ReportError(-1109, CONV_HERE, false, nullptr, nullptr);
        return -1109;
    }
    if (*count == -1 && !LoadIdArray(relativePath, count, *ids)) {
        if (*count > 0) {
            *count = -1;  // read again at the next call
            ReportError(-1102, CONV_HERE, false, nullptr, nullptr);
            return -1102;
        }
        // The index couldn't be read: there are no ids to look in.
        ReportError(-1099, CONV_HERE, false, nullptr, nullptr);
        return -1099;
    }
    return FindId(*ids, id);
}

bool ConvAppStd::IsInRetryList(const char* text) const {
    if (!text) return false;
    return retryList.find(text) != retryList.end();
}

void ConvAppStd::AddToRetryList(const char* text) {
    if (!text) return;
    try {
        retryList.emplace(text);
    } catch (const std::bad_alloc&) {
        ReportError(-1102, CONV_HERE, false, nullptr, nullptr);
    }
}
