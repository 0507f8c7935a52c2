// The row writer for rows that own a file: writes the row, then copies its file
// into the target tree, and can bring the file name into the "attachNNNNN" form.
#pragma once

#include <cstdint>
#include <string>

#include "MakeConvEToKiv/convcom/ConvDBEntry.h"

class ConvDBEntryAttach : public ConvDBEntry {
public:
    using ConvDBEntry::ConvDBEntry;
    ~ConvDBEntryAttach() override;

    // Takes "logtitle" out of the row as the title of the copy, writes the row,
    // and copies its file only when the row went in. A row whose file can't be
    // copied stays written; the result is then the copy's: 1 for a file left out,
    // -80 for a failure that stops the table.
    int32_t Entry(const char* table, ConvRow& row) override;
    // With renameToAttach, a "filename" value not yet beginning with "attach"
    // passes through NormalizeFileName.
    int32_t AddColumnValue(const char* name, const char* value, uint32_t type) override;

    // The file the row speaks of: which 'E' the source, relative to the source
    // root, 'N' the target, relative to the target root. A target ending in "/"
    // keeps the file's own name. Empty here, so nothing is copied.
    virtual int32_t GetFilePath(std::string& outPath, const ConvRow& row, char which);
    // The name behind the last "/" through NormalizeFileName, unless it is empty
    // or begins with "attach".
    virtual int32_t NormalizePath(std::string& path);
    // A name whose stem (the part before the last ".") is shorter than six
    // characters becomes "attach", the stem as a number in five digits, and the
    // extension: "12.txt" gives "attach00012.txt", "7" gives "attach00007", and a
    // stem that isn't a number counts 0. Other names stay. 0, or -1102.
    virtual int32_t NormalizeFileName(std::string& name);

    void SetRenameToAttach(bool flag) { renameToAttach = flag; }
    bool IsRenameToAttach() const { return renameToAttach; }
    const std::string& GetCopyTitle() const { return copyTitle; }

protected:
    // Moves the value of the row's "logtitle" column into copyTitle (empty
    // without one) and removes the column, so that it isn't written.
    int32_t TakeLogTitle(ConvRow& row);
    // Both paths of the row, the renaming of the target, and the copy.
    int32_t CopyRowFile(const ConvRow& row);

    bool renameToAttach = false;
    std::string copyTitle;
};
