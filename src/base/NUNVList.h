// An ordered list of name and value pairs that allows repeated names: the
// container behind record files, message files and template parameters.
#pragma once

#include <cstdlib>
#include <memory>
#include <vector>

// One pair. The name is owned and may be none. The value is a heap block that
// the owning list releases through FreeValue; it may be none.
struct nvEntry {
    struct FreeDeleter {
        void operator()(char* p) const noexcept { std::free(p); }
    };
    std::unique_ptr<char, FreeDeleter> name;
    char* value = nullptr;
};

// Results: -4 no slot array, -5 bad position, null output or length, -6 out of
// memory, -7 index out of range. Values are copied with their given length, and
// a terminating NUL is always added behind the copy so that a value can be read
// as text whatever length it was given.
class NUNVList {
public:
    static constexpr int kDefaultCapacity = 128;

    // capacity: initial slots, 128 when 0 or below.
    explicit NUNVList(int capacity = kDefaultCapacity);
    NUNVList(const NUNVList&) = delete;
    NUNVList& operator=(const NUNVList&) = delete;
    // Frees every entry through the base FreeEntry. A subclass whose values are
    // not plain heap blocks must empty the list in its own destructor.
    virtual ~NUNVList();

    // Appends a copy of valueLen bytes of value (none when value is null).
    virtual int AddEntry(const char* name, const char* value, int valueLen);
    // Appends text without copying it: the list takes the heap block over and
    // frees it with the entry (also when the add fails).
    virtual int AddBorrowed(const char* name, char* text);
    // AddEntry with strlen + 1.
    virtual int AddText(const char* name, const char* value);
    // Inserts before position (0..count); later entries move down one slot.
    virtual int Insert(const char* name, const char* value, int valueLen, int position,
                       bool borrowed);
    // Sets the value of every entry of that name (every entry for a null name);
    // returns the number changed or the error.
    virtual int SetByName(const char* name, const char* value, int valueLen);
    virtual int SetAt(const char* value, int valueLen, int index);
    // Deletes every entry of that name (all for a null name); returns the count.
    virtual int DeleteByName(const char* name);
    // Deletes one entry; later entries move up, the freed last slot is empty.
    virtual int DeleteAt(int index);
    // 1 and the first value of that name, 0 when there is none; a null name
    // gives the first entry. FindExact compares case-sensitively.
    virtual int FindExact(const char* name, const char** outValue) const;
    virtual int FindNoCase(const char* name, const char** outValue) const;
    virtual int GetNameAt(int index, const char** outName) const;
    virtual int GetValueAt(int index, const char** outValue) const;
    // Doubles the slots.
    virtual int Grow();
    // Heap blocks of values: AllocValue gives none for 0.
    virtual char* AllocValue(std::size_t size);
    virtual void FreeValue(char* block);
    // A new block (from AllocValue) holding first and second; none for a null first.
    virtual char* Concat(const char* first, const char* second);
    // strlen, 0 for null.
    virtual int TextLen(const char* text) const;
    // A copy with the same capacity and copied entries (values copied as text);
    // none on any failure.
    virtual std::unique_ptr<NUNVList> Clone() const;
    // Drops all entries and sets up capacity empty slots (128 when 0 or below).
    virtual int Init(int capacity);
    // Frees the value through FreeValue, then the entry; the slot becomes empty.
    virtual void FreeEntry(std::unique_ptr<nvEntry>& slot);
    virtual int NewEntry(std::unique_ptr<nvEntry>& outEntry, const char* name,
                         const char* value, int valueLen, bool borrowed);
    // Replaces the entry's value with a copy of valueLen bytes; none for a null value.
    virtual int SetEntryValue(nvEntry* entry, const char* value, int valueLen);

    // Both order the entries by their values: case-insensitively as text, or as
    // decimal numbers. Equal values keep their order.
    void SortByName();
    void SortByNumber();

    int GetCount() const { return count; }
    int GetCapacity() const { return capacity; }

protected:
    int capacity = kDefaultCapacity;
    int count = 0;
    std::vector<std::unique_ptr<nvEntry>> items;  // capacity slots, empty when none
};
