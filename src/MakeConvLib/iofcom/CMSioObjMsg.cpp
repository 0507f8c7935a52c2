// Message files of a language: the directory, the files already read, the read.
#include "MakeConvLib/iofcom/CMSioObjMsg.h"

#include <cerrno>

#include "MakeConvLib/cmsbase/CMSioObjApp.h"
#include "MakeConvLib/cmsbase/comTrace.h"
#include "base/NUFileIO.h"
#include "base/comSource.h"

CMSioObjMsg::CMSioObjMsg(const char* languageName) : CMSioObj("message", false) {
    NUString dir;
    dir.Printf("%slocal/%s", GetRootDir(), languageName ? languageName : "");
    SetDirectory(dir.GetStr());
}

int CMSioObjMsg::IsLoaded(const char* name) {
    if (!name || *name == '\0') return CMS_ERR_NO_SETTINGS;
    const char* seen = nullptr;
    if (loadedFiles.FindExact(name, &seen) == 1) return 0;
    SetName(name);
    int ret = loadedFiles.AddText(name, name);
    if (ret != 0) {
        comTrace("[%s:%d] ret[%d] fname[%s]", CONV_HERE, ret, name);
        return -10;
    }
    return 1;
}

int CMSioObjMsg::ReadNamedFile() {
    NUFileIO io;
    io.SetNoLock(true);
    int ret = io.ReadFile(this, false);
    if (ret == 0 || ret == -16) return 0;
    int err = errno;
    comTrace("[%s:%d] ret[%d] errno[%d] fname[%s]", CONV_HERE, ret, err, GetPath().c_str());
    return CMS_ERR_MESSAGE_READ;
}
