// The reconciliation of a create run: per family of the flat store, the keys
// of its records in the store, in the working tables and in the target tables,
// and every difference between them matched to the run's report that explains
// it. A difference that no report explains is the operator's to look at.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "MakeConvEToKiv/convreport/ConvRunAccount.h"

// A key of one family: its components in the family's order, as text.
using ConvKey = std::vector<std::string>;

// A key read from the flat store, with the file it was read from (a report
// of that file explains every key of it).
struct ConvStoreKey {
    ConvKey key;
    std::string path;
};

// Which reports may explain a key: the tables they name and, per key
// component, the report key names that carry it. A report that names none of
// the components explains nothing (unless the rule names none: then the
// table is enough); one that names a component with another value explains
// nothing either. `fixed` are report keys that, when named,
// must have that value (the owner kind of a shared target table).
struct ConvNoteRule {
    std::vector<std::string> tables;
    std::vector<std::vector<std::string>> names;
    std::vector<std::pair<std::string, std::string>> fixed;
};

struct ConvGap {
    bool toTarget = false;  // false: store → working, true: working → target
    bool missing = true;    // true: only in the earlier side; false: only in the later one
    std::string key;        // "SID_USER=1 ID=108"
    std::string because;    // the explaining report; empty when nothing explains it
};

struct ConvFamilyResult {
    std::string label;
    std::string compares;  // what one counted unit is
    std::optional<int64_t> store, working, target;  // nullopt: that side isn't compared
    std::string notCompared;                        // why a side (or the family) isn't
    int64_t explained = 0;
    int64_t unexplained = 0;
    std::vector<ConvGap> gaps;
};

struct ConvReconcileResult {
    std::vector<ConvFamilyResult> families;
    std::string failure;  // the reconciliation couldn't be made: why
    int64_t Unexplained() const;
};

namespace convrun {

// Compares the keys of one family side by side and explains what differs.
// Absent sides aren't compared; keyNames name the components in the output.
// Reports explain a missing key once each, a report about a file every key
// read from it.
void CompareFamily(const std::vector<std::string>& keyNames, const std::optional<std::vector<ConvStoreKey>>& store,
                   const std::optional<std::vector<ConvKey>>& working,
                   const std::optional<std::vector<ConvKey>>& target, const std::vector<ConvNoteRule>& storeNotes,
                   const std::vector<ConvNoteRule>& targetNotes, const ConvRunAccount& account,
                   ConvFamilyResult& result);

// Reconciles the run whose convsch arguments are args (args[0] the program,
// args[1] the work root, args[4] the store, the connections as convsch takes
// them) against its account.
ConvReconcileResult Reconcile(const std::vector<std::string>& args, const ConvRunAccount& account);

// The table and the differences as the operator reads them.
std::string FormatReconcile(const ConvReconcileResult& result);

// "00000000002t" as "101"; the text as it stands when it isn't base 36.
std::string FromBase36(const std::string& text);

}  // namespace convrun
