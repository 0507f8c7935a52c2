// convsch-report: the account of a create run, read from its status file and
// logs under the work root: one line per step, then every reported row. With
// --reconcile and the run's own arguments, also the reconciliation of the flat
// store, the working tables and the target tables.
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "MakeConvEToKiv/convreport/ConvReconcile.h"
#include "MakeConvEToKiv/convreport/ConvRunAccount.h"

namespace {

const char kUsage[] =
    "usage: convsch-report ROOT\n"
    "       convsch-report --reconcile ROOT INTERVAL MODE STORE ENT_HOST ENT_PORT ENT_USER ENT_PASSWORD TARGET\n"
    "                      KIV_HOST KIV_PORT KIV_USER KIV_PASSWORD ENT_DB KIV_DB [SQL_LOG_DIR]\n"
    "  ROOT  the work root given to convsch (it holds conv/sch.sts and conv/log/)\n"
    "  --reconcile  followed by the arguments the run was given (as convsch takes them):\n"
    "               also compares the flat store, the working and the target database\n"
    "exit status: 0 done (with --reconcile: every difference explained), 1 no run under ROOT,\n"
    "             2 wrong arguments, 3 unexplained differences, 4 the reconciliation could not be made\n";

// convsch takes the work root and 15 more arguments, the SQL log directory optionally.
constexpr int kRunArguments = 16;

}  // namespace

int main(int argc, char** argv) {
    const bool reconcile = argc >= 2 && std::strcmp(argv[1], "--reconcile") == 0;
    const bool help = argc == 2 && (std::strcmp(argv[1], "--help") == 0 || std::strcmp(argv[1], "-h") == 0);
    const int runArguments = argc - 2;  // after the program and --reconcile
    const bool valid = reconcile ? (runArguments == kRunArguments - 1 || runArguments == kRunArguments)
                                 : (argc == 2 && argv[1][0] != '-');
    if (help || !valid) {
        std::fputs(kUsage, help ? stdout : stderr);
        return help ? 0 : 2;
    }
    const char* root = argv[reconcile ? 2 : 1];
    const ConvRunAccount account = convrun::ReadAccount(root);
    if (!account.status.present && !account.logPresent) {
        std::fprintf(stderr, "convsch-report: no run under %s (neither conv/sch.sts nor conv/log/sch.log)\n", root);
        return 1;
    }
    std::string text = convrun::FormatAccount(account);
    int status = 0;
    if (reconcile) {
        // The run's arguments as convsch saw them: the program name first.
        std::vector<std::string> args = {"convsch"};
        for (int i = 2; i < argc; ++i) args.emplace_back(argv[i]);
        const ConvReconcileResult result = convrun::Reconcile(args, account);
        text.append("\n").append(convrun::FormatReconcile(result));
        status = !result.failure.empty() ? 4 : result.Unexplained() > 0 ? 3 : 0;
    }
    std::fwrite(text.data(), 1, text.size(), stdout);
    if (std::fflush(stdout) != 0) return 1;
    return status;
}
