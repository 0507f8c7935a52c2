// convsch-report: the account of a create run, read from its status file and
// logs under the work root: one line per step, then every reported row.
#include <cstdio>
#include <cstring>
#include <string>

#include "MakeConvEToKiv/convreport/ConvRunAccount.h"

namespace {

const char kUsage[] =
    "usage: convsch-report ROOT\n"
    "  ROOT  the work root given to convsch (it holds conv/sch.sts and conv/log/)\n";

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2 || std::strcmp(argv[1], "--help") == 0 || std::strcmp(argv[1], "-h") == 0) {
        std::fputs(kUsage, argc == 2 ? stdout : stderr);
        return argc == 2 ? 0 : 2;
    }
    const ConvRunAccount account = convrun::ReadAccount(argv[1]);
    if (!account.status.present && !account.logPresent) {
        std::fprintf(stderr, "convsch-report: no run under %s (neither conv/sch.sts nor conv/log/sch.log)\n",
                     argv[1]);
        return 1;
    }
    const std::string text = convrun::FormatAccount(account);
    std::fwrite(text.data(), 1, text.size(), stdout);
    return std::fflush(stdout) == 0 ? 0 : 1;
}
