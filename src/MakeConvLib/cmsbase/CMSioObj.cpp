// Settings and message files: the file name and directory behind a name-value list.
#include "MakeConvLib/cmsbase/CMSioObj.h"

#include "MakeConvLib/cmsbase/CMSioObjApp.h"

CMSioObj::CMSioObj(const char* name, bool perCorporate) {
    if (perCorporate)
        directory.Printf("%s%d/", GetDataDir(), GetCorporateId());
    else
        directory.SetStr(GetDataDir());
    SetName(name);
}

int CMSioObj::SetName(const char* name) {
    int ret = fileName.SetStr(name);
    if (ret != 0) return ret;
    return SetPath(fileName.GetStr(), directory.GetStr());
}

const char* CMSioObj::GetName() const { return fileName.GetStr(); }

int CMSioObj::SetDirectory(const char* dir) {
    int ret = directory.SetStr(dir);
    if (ret != 0) return ret;
    return SetPath(fileName.GetStr(), directory.GetStr());
}
