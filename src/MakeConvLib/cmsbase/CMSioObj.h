// A settings or message file of the target installation: a name-value list that
// knows its file name and the directory it lies in.
#pragma once

#include "base/NUString.h"
#include "base/NUioObj.h"

class CMSioObj : public NUioObjList {
public:
    // The directory is the settings' data directory, followed by "<cid>/" for a
    // file kept per corporation.
    CMSioObj(const char* name, bool perCorporate);

    // Names the file; its path becomes the directory joined with the name.
    virtual int SetName(const char* name);
    virtual const char* GetName() const;

    const char* GetDirectory() const { return directory.GetStr(); }

protected:
    // Moves the object to another directory, keeping its file name.
    int SetDirectory(const char* dir);

    NUString fileName;
    NUString directory;
};
