// The name and value list: a slot array that grows by doubling, with entries in
// insertion order and repeated names allowed.
#include "base/NUNVList.h"

#include <algorithm>
#include <cstring>
#include <new>

#include "base/comStr.h"

namespace {

char* DupText(const char* text) {
    if (!text) return nullptr;
    std::size_t len = std::strlen(text) + 1;
    char* copy = static_cast<char*>(std::malloc(len));
    if (copy) std::memcpy(copy, text, len);
    return copy;
}

bool SameName(const nvEntry& entry, const char* name) {
    return entry.name && std::strcmp(entry.name.get(), name) == 0;
}

}  // namespace

NUNVList::NUNVList(int initialCapacity) { Init(initialCapacity); }

NUNVList::~NUNVList() {
    for (auto& slot : items)
        if (slot) NUNVList::FreeEntry(slot);
}

int NUNVList::AddEntry(const char* name, const char* value, int valueLen) {
    return Insert(name, value, valueLen, count, false);
}

int NUNVList::AddBorrowed(const char* name, char* text) {
    int ret = Insert(name, text, TextLen(text) + 1, count, true);
    if (ret != 0) FreeValue(text);
    return ret;
}

int NUNVList::AddText(const char* name, const char* value) {
    return AddEntry(name, value, TextLen(value) + 1);
}

int NUNVList::Insert(const char* name, const char* value, int valueLen, int position,
                     bool borrowed) {
    if (position < 0 || position > count) return -5;
    if (items.empty()) return -4;
    if (count >= capacity) {
        int ret = Grow();
        if (ret != 0) return ret;
    }
    std::unique_ptr<nvEntry> entry;
    int ret = NewEntry(entry, name, value, valueLen, borrowed);
    if (ret != 0) return ret;
    for (int i = count; i > position; --i) items[i] = std::move(items[i - 1]);
    items[position] = std::move(entry);
    ++count;
    return 0;
}

int NUNVList::SetByName(const char* name, const char* value, int valueLen) {
    if (items.empty()) return -4;
    int changed = 0;
    for (int i = 0; i < count; ++i) {
        nvEntry* entry = items[i].get();
        if (!entry || (name && !SameName(*entry, name))) continue;
        int ret = SetEntryValue(entry, value, valueLen);
        if (ret != 0) return ret;
        ++changed;
    }
    return changed;
}

int NUNVList::SetAt(const char* value, int valueLen, int index) {
    if (items.empty()) return -4;
    if (index < 0 || index >= count) return -7;
    return SetEntryValue(items[index].get(), value, valueLen);
}

int NUNVList::DeleteByName(const char* name) {
    if (items.empty()) return -4;
    int deleted = 0;
    for (int i = 0; i < count; ++i) {
        if (items[i] && (!name || SameName(*items[i], name))) {
            FreeEntry(items[i]);
            ++deleted;
        }
    }
    // Close the gaps, keeping the order of what is left.
    int to = 0;
    for (int from = 0; from < count; ++from)
        if (items[from]) items[to++] = std::move(items[from]);
    count = to;
    return deleted;
}

int NUNVList::DeleteAt(int index) {
    if (items.empty()) return -4;
    if (index < 0 || index >= count) return -7;
    FreeEntry(items[index]);
    for (int i = index; i + 1 < count; ++i) items[i] = std::move(items[i + 1]);
    --count;
    return 0;
}

int NUNVList::FindExact(const char* name, const char** outValue) const {
    if (!outValue) return -5;
    if (items.empty()) return -4;
    for (int i = 0; i < count; ++i) {
        const nvEntry* entry = items[i].get();
        if (entry && (!name || SameName(*entry, name))) {
            *outValue = entry->value;
            return 1;
        }
    }
    return 0;
}

int NUNVList::FindNoCase(const char* name, const char** outValue) const {
    if (!outValue) return -5;
    if (items.empty()) return -4;
    for (int i = 0; i < count; ++i) {
        const nvEntry* entry = items[i].get();
        if (entry && (!name || (entry->name && comStrCaseCmp(entry->name.get(), name) == 0))) {
            *outValue = entry->value;
            return 1;
        }
    }
    return 0;
}

int NUNVList::GetNameAt(int index, const char** outName) const {
    if (!outName) return -5;
    if (items.empty()) return -4;
    if (index < 0 || index >= count || !items[index]) return -7;
    *outName = items[index]->name.get();
    return 0;
}

int NUNVList::GetValueAt(int index, const char** outValue) const {
    if (!outValue) return -5;
    if (items.empty()) return -4;
    if (index < 0 || index >= count || !items[index]) return -7;
    *outValue = items[index]->value;
    return 0;
}

int NUNVList::Grow() {
    if (items.empty()) return -4;
    try {
        items.resize(static_cast<std::size_t>(capacity) * 2);
    } catch (const std::bad_alloc&) {
        return -6;
    }
    capacity *= 2;
    return 0;
}

char* NUNVList::AllocValue(std::size_t size) {
    if (size == 0) return nullptr;
    return static_cast<char*>(std::malloc(size));
}

void NUNVList::FreeValue(char* block) { std::free(block); }

char* NUNVList::Concat(const char* first, const char* second) {
    if (!first) return nullptr;
    std::size_t firstLen = std::strlen(first);
    std::size_t secondLen = second ? std::strlen(second) : 0;
    char* joined = AllocValue(firstLen + secondLen + 1);
    if (!joined) return nullptr;
    std::memcpy(joined, first, firstLen);
    if (secondLen) std::memcpy(joined + firstLen, second, secondLen);
    joined[firstLen + secondLen] = '\0';
    return joined;
}

int NUNVList::TextLen(const char* text) const {
    return text ? static_cast<int>(std::strlen(text)) : 0;
}

std::unique_ptr<NUNVList> NUNVList::Clone() const {
    std::unique_ptr<NUNVList> copy(new (std::nothrow) NUNVList(capacity));
    if (!copy || copy->items.empty()) return nullptr;
    for (int i = 0; i < count; ++i) {
        const nvEntry* entry = items[i].get();
        if (!entry) continue;
        if (copy->AddText(entry->name.get(), entry->value) != 0) return nullptr;
    }
    return copy;
}

int NUNVList::Init(int newCapacity) {
    for (auto& slot : items)
        if (slot) FreeEntry(slot);
    items.clear();
    count = 0;
    capacity = newCapacity > 0 ? newCapacity : kDefaultCapacity;
    try {
        items.resize(static_cast<std::size_t>(capacity));
    } catch (const std::bad_alloc&) {
        return -6;
    }
    return 0;
}

void NUNVList::FreeEntry(std::unique_ptr<nvEntry>& slot) {
    if (!slot) return;
    FreeValue(slot->value);
    slot->value = nullptr;
    slot.reset();
}

int NUNVList::NewEntry(std::unique_ptr<nvEntry>& outEntry, const char* name, const char* value,
                       int valueLen, bool borrowed) {
    if (valueLen < 0) return -5;
    std::unique_ptr<nvEntry> entry(new (std::nothrow) nvEntry);
    if (!entry) return -6;
    if (name) {
        entry->name.reset(DupText(name));
        if (!entry->name) return -6;
    }
    if (borrowed) {
        entry->value = const_cast<char*>(value);
    } else if (value) {
        int ret = SetEntryValue(entry.get(), value, valueLen);
        if (ret != 0) return ret;
    }
    outEntry = std::move(entry);
    return 0;
}

int NUNVList::SetEntryValue(nvEntry* entry, const char* value, int valueLen) {
    if (!entry || valueLen < 0) return -5;
    char* copy = nullptr;
    if (value) {
        copy = AllocValue(static_cast<std::size_t>(valueLen) + 1);
        if (!copy) return -6;
        std::memcpy(copy, value, static_cast<std::size_t>(valueLen));
        copy[valueLen] = '\0';
    }
    FreeValue(entry->value);
    entry->value = copy;
    return 0;
}

void NUNVList::SortByName() {
    std::stable_sort(items.begin(), items.begin() + count,
                     [](const std::unique_ptr<nvEntry>& a, const std::unique_ptr<nvEntry>& b) {
                         return comStrCaseCmp(a ? a->value : nullptr, b ? b->value : nullptr) < 0;
                     });
}

void NUNVList::SortByNumber() {
    auto number = [](const std::unique_ptr<nvEntry>& e) {
        return e && e->value ? std::strtoll(e->value, nullptr, 10) : 0LL;
    };
    std::stable_sort(items.begin(), items.begin() + count,
                     [&](const std::unique_ptr<nvEntry>& a, const std::unique_ptr<nvEntry>& b) {
                         return number(a) < number(b);
                     });
}
