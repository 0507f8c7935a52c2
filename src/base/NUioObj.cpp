// Default line hooks of the record-file contract and the name-value list that
// most record files are read into.
#include "base/NUioObj.h"

#include <cstring>
#include <new>

int NUioObj::ParseLine(char* /*line*/, std::string& /*section*/) { return 0; }

int NUioObj::AddContinuation(const char* /*line*/) { return 0; }

int NUioObj::BadLine(const char* /*line*/, std::size_t /*length*/) { return -31; }

NUioObjList::NUioObjList(int capacity) : listCapacity(capacity) {}

NUioObjList::~NUioObjList() = default;

bool NUioObjList::EnsureList() {
    if (list) return true;
    list.reset(new (std::nothrow) NUNVList(listCapacity));
    return list != nullptr;
}

int NUioObjList::NUioObjGetPath(std::string& outPath) {
    if (path.empty()) return -11;
    outPath = path;
    return 0;
}

int NUioObjList::AddValue(const char* name, const char* value, const char* /*section*/) {
    if (!name) return -1;
    if (!EnsureList()) return -2;
    return list->AddEntry(name, value, list->TextLen(value) + 1);
}

int NUioObjList::GetItem(int index, const char** outName, const char** outValue,
                         std::string& /*outSection*/) {
    if (!list || index < 0 || index >= list->GetCount()) return -20;
    if (!outName || !outValue) return -20;
    if (list->GetNameAt(index, outName) != 0 || list->GetValueAt(index, outValue) != 0) return -20;
    return 0;
}

int NUioObjList::AppendAt(int index, const char* text) {
    const char* old = nullptr;
    if (!list || list->GetValueAt(index, &old) != 0) return -7;
    char* joined = list->Concat(old ? old : "", text);
    if (!joined) return -2;
    int ret = list->SetAt(joined, list->TextLen(joined) + 1, index);
    list->FreeValue(joined);
    if (ret == -6) return -2;
    return ret;
}

int NUioObjList::AddContinuation(const char* line) {
    if (!list || list->GetCount() == 0) return -7;
    return AppendAt(list->GetCount() - 1, line);
}

int NUioObjList::SetPath(const char* fileName, const char* dir) {
    if (!fileName) return -1;
    std::size_t nameLen = std::strlen(fileName);
    if (dir && dir[0] != '\0') {
        std::size_t dirLen = std::strlen(dir);
        if (dirLen + nameLen + 1 > kPathMax) return -1;
        path.assign(dir);
        if (dir[dirLen - 1] != '/') path += '/';
        path += fileName;
    } else {
        if (nameLen > kPathMax) return -1;
        path.assign(fileName);
    }
    return 0;
}

int NUioObjList::GetValues(const char* name, std::vector<const char*>& outArray) {
    if (!name) return -1;
    std::vector<const char*> found;
    for (int i = 0; list && i < list->GetCount(); ++i) {
        const char* entryName = nullptr;
        const char* value = nullptr;
        if (list->GetNameAt(i, &entryName) != 0 || !entryName || std::strcmp(entryName, name) != 0)
            continue;
        list->GetValueAt(i, &value);
        try {
            found.push_back(value);
        } catch (const std::bad_alloc&) {
            return -2;
        }
    }
    if (found.empty()) return 0;
    outArray = std::move(found);
    return static_cast<int>(outArray.size());
}

int NUioObjList::SetValue(const char* name, const char* value) {
    if (!name) return -1;
    if (Find(name) < 0) return AddValue(name, value, "");
    int ret = list->SetByName(name, value, list->TextLen(value) + 1);
    return ret < 0 ? ret : 0;
}

int NUioObjList::Find(const char* name) const {
    if (!name || name[0] == '\0' || !list) return -1;
    for (int i = 0; i < list->GetCount(); ++i) {
        const char* entryName = nullptr;
        if (list->GetNameAt(i, &entryName) == 0 && entryName && std::strcmp(entryName, name) == 0)
            return i;
    }
    return -1;
}

int NUioObjList::AppendToName(const char* name, const char* text) {
    int index = Find(name);
    if (index < 0) return -7;
    return AppendAt(index, text);
}

int NUioObjList::DeleteByName(const char* name) { return list ? list->DeleteByName(name) : 0; }

int NUioObjList::DeleteAt(int index) { return list ? list->DeleteAt(index) : -7; }

int NUioObjList::GetCount() const { return list ? list->GetCount() : 0; }

const char* NUioObjList::GetValue(const char* name) const {
    int index = Find(name);
    if (index < 0) return nullptr;
    const char* value = nullptr;
    list->GetValueAt(index, &value);
    return value;
}
