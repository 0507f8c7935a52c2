// Common pieces of the schedule pages that the batch needs: the download
// link of a schedule icon image.
#pragma once

#include <string>

// "zrefer.cgi?cmd=referdownload" with the parameters item1, item2, id1, id2,
// filename, mimetype and realname of icon number iconNo; filename is iconFile
// (the number when none) with ".gif".
std::string XSchIconDownloadUrl(int iconNo, const char* iconFile);
