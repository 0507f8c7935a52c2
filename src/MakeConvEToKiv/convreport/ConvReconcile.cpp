// Reads each family's keys from the flat store (with the migration's own
// readers), from the working and from the target database (one query each),
// and matches what differs to the run's reports.
#include "MakeConvEToKiv/convreport/ConvReconcile.h"

#include <sys/stat.h>

#include <algorithm>
#include <cstdlib>
#include <functional>
#include <map>
#include <memory>
#include <new>
#include <set>
#include <unordered_map>
#include <unordered_set>

#include "MakeConvSToKiv/convstdagenda/kiv_std_agendaindex.h"
#include "MakeConvSToKiv/convstdcom/ConvAppStd.h"
#include "MakeConvSToKiv/convstdcom/ConvStdCom.h"
#include "MakeConvSToKiv/convstdcom/ConvStdComIndex.h"
#include "database/CdDBConnection_PG.h"

int64_t ConvReconcileResult::Unexplained() const {
    int64_t total = 0;
    for (const ConvFamilyResult& family : families) total += family.unexplained;
    return total;
}

namespace convrun {
namespace {

constexpr char kJoin = '\x1f';

std::string Joined(const ConvKey& key) {
    std::string out;
    for (std::size_t i = 0; i < key.size(); ++i) {
        if (i) out += kJoin;
        out += key[i];
    }
    return out;
}

std::string Upper(std::string text) {
    for (char& c : text)
        if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    return text;
}

std::string KeyText(const std::vector<std::string>& names, const ConvKey& key) {
    std::string out;
    for (std::size_t i = 0; i < key.size(); ++i) {
        if (i) out += ' ';
        out += (i < names.size() ? names[i] : std::string("key")) + "=" + key[i];
    }
    return out;
}

// The value a report gives for one of the names, or null.
const std::string* NoteValue(const ConvRowReport& row, const std::vector<std::string>& names) {
    for (const auto& [name, value] : row.keys)
        for (const std::string& wanted : names)
            if (Upper(name) == Upper(wanted)) return &value;
    return nullptr;
}

bool ExplainsRow(const ConvNoteRule& rule, const ConvRowReport& row, const ConvKey& key) {
    const std::string table = Upper(row.table);
    if (std::none_of(rule.tables.begin(), rule.tables.end(),
                     [&](const std::string& t) { return Upper(t) == table; }))
        return false;
    for (const auto& [name, value] : rule.fixed) {
        const std::string* given = NoteValue(row, {name});
        if (given && *given != value) return false;
    }
    bool named = false;
    bool wantsAny = false;
    for (std::size_t i = 0; i < key.size() && i < rule.names.size(); ++i) {
        if (rule.names[i].empty()) continue;
        wantsAny = true;
        const std::string* given = NoteValue(row, rule.names[i]);
        if (!given) continue;
        if (*given != key[i]) return false;
        named = true;
    }
    return named || !wantsAny;
}

// The notes that may explain a difference of one stage: the stage's own and
// those made outside any step. Rows that were written (kept, file missing)
// explain no missing row.
std::vector<const ConvStepNote*> NotesOf(const ConvRunAccount& account, char stage) {
    std::vector<const ConvStepNote*> out;
    for (const ConvStep& step : account.steps)
        if (step.stage == stage)
            for (const ConvStepNote& note : step.notes)
                if (note.fate == ConvRowFate::LeftOut || note.fate == ConvRowFate::Failure) out.push_back(&note);
    for (const ConvStepNote& note : account.outsideNotes)
        if (note.fate == ConvRowFate::LeftOut || note.fate == ConvRowFate::Failure) out.push_back(&note);
    return out;
}

// Finds, for a missing key, the first report (in the run's order) that explains
// it, without walking every report per key: each report is filed once under
// the file names it brackets and, per rule, under the key components it names,
// so a look-up costs a few hash probes whatever the number of reports.
class ExplanationIndex {
public:
    ExplanationIndex(const std::vector<const ConvStepNote*>& notes, const std::vector<ConvNoteRule>& rules,
                     std::size_t keySize)
        : notes_(notes), rules_(rules), keySize_(keySize), byRule_(rules.size()) {
        for (std::size_t n = 0; n < notes.size(); ++n) {
            FileBrackets(notes[n]->text, n);
            if (notes[n]->row)
                for (std::size_t r = 0; r < rules.size(); ++r) File(r, *notes[n]->row, n);
        }
    }

    const ConvStepNote* Find(const ConvKey& key, const std::string& path) const {
        // A key of another length than the index was built for: ask each report.
        if (key.size() != keySize_) return Walk(key, path);
        std::size_t best = kNone;
        if (!path.empty()) {
            const auto it = byPath_.find(path);
            if (it != byPath_.end()) best = it->second;
        }
        for (const RuleIndex& index : byRule_)
            for (const auto& [mask, firsts] : index) {
                const auto it = firsts.find(Projection(key, mask));
                if (it != firsts.end()) best = std::min(best, it->second);
            }
        return best == kNone ? nullptr : notes_[best];
    }

private:
    static constexpr std::size_t kNone = static_cast<std::size_t>(-1);
    // Per rule: the set of named components (a bit each) → the projection of
    // their values → the first report naming exactly those values.
    using RuleIndex = std::map<uint32_t, std::unordered_map<std::string, std::size_t>>;

    void FileBrackets(const std::string& text, std::size_t n) {
        for (std::size_t open = text.find('['); open != std::string::npos; open = text.find('[', open + 1)) {
            const std::size_t close = text.find(']', open + 1);
            if (close == std::string::npos) break;
            byPath_.emplace(text.substr(open + 1, close - open - 1), n);
        }
    }

    void File(std::size_t r, const ConvRowReport& row, std::size_t n) {
        const ConvNoteRule& rule = rules_[r];
        const std::string table = Upper(row.table);
        if (std::none_of(rule.tables.begin(), rule.tables.end(),
                         [&](const std::string& t) { return Upper(t) == table; }))
            return;
        for (const auto& [name, value] : rule.fixed) {
            const std::string* given = NoteValue(row, {name});
            if (given && *given != value) return;
        }
        uint32_t mask = 0;
        bool wantsAny = false;
        std::string projection;
        for (std::size_t i = 0; i < keySize_ && i < rule.names.size() && i < 32; ++i) {
            if (rule.names[i].empty()) continue;
            wantsAny = true;
            const std::string* given = NoteValue(row, rule.names[i]);
            if (!given) continue;
            mask |= 1u << i;
            projection += *given;
            projection += kJoin;
        }
        if (wantsAny && mask == 0) return;
        byRule_[r][mask].emplace(std::move(projection), n);
    }

    static std::string Projection(const ConvKey& key, uint32_t mask) {
        std::string out;
        for (std::size_t i = 0; i < key.size() && i < 32; ++i)
            if (mask & (1u << i)) {
                out += key[i];
                out += kJoin;
            }
        return out;
    }

    const ConvStepNote* Walk(const ConvKey& key, const std::string& path) const {
        for (const ConvStepNote* note : notes_) {
            if (!path.empty() && note->text.find("[" + path + "]") != std::string::npos) return note;
            if (!note->row) continue;
            for (const ConvNoteRule& rule : rules_)
                if (ExplainsRow(rule, *note->row, key)) return note;
        }
        return nullptr;
    }

    const std::vector<const ConvStepNote*>& notes_;
    const std::vector<ConvNoteRule>& rules_;
    std::size_t keySize_;
    std::vector<RuleIndex> byRule_;
    std::unordered_map<std::string, std::size_t> byPath_;
};

void Compare(const std::vector<std::string>& names, const std::vector<ConvStoreKey>& earlier,
             const std::vector<ConvKey>& later, bool toTarget, const std::vector<const ConvStepNote*>& notes,
             const std::vector<ConvNoteRule>& rules, ConvFamilyResult& result) {
    std::unordered_set<std::string> laterSet;
    for (const ConvKey& key : later) laterSet.insert(Joined(key));
    const ExplanationIndex explanations(notes, rules, earlier.empty() ? 0 : earlier.front().key.size());
    std::unordered_set<std::string> earlierSet;
    for (const ConvStoreKey& item : earlier) {
        const std::string joined = Joined(item.key);
        if (!earlierSet.insert(joined).second || laterSet.count(joined)) continue;
        ConvGap gap{toTarget, true, KeyText(names, item.key), ""};
        if (const ConvStepNote* note = explanations.Find(item.key, item.path)) {
            gap.because = "[" + note->tag + "] " + note->text;
            ++result.explained;
        } else {
            ++result.unexplained;
        }
        result.gaps.push_back(std::move(gap));
    }
    std::unordered_set<std::string> extra;
    for (const ConvKey& key : later) {
        const std::string joined = Joined(key);
        if (earlierSet.count(joined) || !extra.insert(joined).second) continue;
        ++result.unexplained;
        result.gaps.push_back({toTarget, false, KeyText(names, key), ""});
    }
}

std::vector<ConvStoreKey> AsStoreKeys(const std::vector<ConvKey>& keys) {
    std::vector<ConvStoreKey> out;
    out.reserve(keys.size());
    for (const ConvKey& key : keys) out.push_back({key, ""});
    return out;
}

int64_t Distinct(const std::vector<ConvKey>& keys) {
    std::unordered_set<std::string> seen;
    for (const ConvKey& key : keys) seen.insert(Joined(key));
    return static_cast<int64_t>(seen.size());
}

}  // namespace

std::string FromBase36(const std::string& text) {
    if (text.empty() || text.size() > 12) return text;
    uint64_t value = 0;
    for (char c : text) {
        int digit;
        if (c >= '0' && c <= '9')
            digit = c - '0';
        else if (c >= 'a' && c <= 'z')
            digit = c - 'a' + 10;
        else
            return text;
        value = value * 36 + static_cast<uint64_t>(digit);
    }
    return std::to_string(value);
}

void CompareFamily(const std::vector<std::string>& keyNames, const std::optional<std::vector<ConvStoreKey>>& store,
                   const std::optional<std::vector<ConvKey>>& working,
                   const std::optional<std::vector<ConvKey>>& target, const std::vector<ConvNoteRule>& storeNotes,
                   const std::vector<ConvNoteRule>& targetNotes, const ConvRunAccount& account,
                   ConvFamilyResult& result) {
    if (store) {
        std::unordered_set<std::string> seen;
        for (const ConvStoreKey& item : *store) seen.insert(Joined(item.key));
        result.store = static_cast<int64_t>(seen.size());
    }
    if (working) result.working = Distinct(*working);
    if (target) result.target = Distinct(*target);
    if (store && working) Compare(keyNames, *store, *working, false, NotesOf(account, 'A'), storeNotes, result);
    if (working && target)
        Compare(keyNames, AsStoreKeys(*working), *target, true, NotesOf(account, 'B'), targetNotes, result);
}

namespace {

// ------------------------------------------------------------- the flat store

// The application object of the reconciliation: the run's arguments and paths,
// no status file, no logs (its reports go nowhere), no connections of its own.
class ReconcileApp : public ConvAppStd {
public:
    ReconcileApp(int argc, char** argv) : ConvAppStd(argc, argv, "sch") {}
    void Prepare() {
        ReadArguments();
        SetupPaths();
    }
    struct Address {
        std::string host, port, user, password, name;
    };
    Address Ent() const { return {entHost_, entPort_, entUser_, entPassword_, entName_}; }
    Address Kiv() const { return {kivHost_, kivPort_, kivUser_, kivPassword_, kivName_}; }
};

bool FileExists(const std::string& path) {
    struct stat info;
    return ::stat(path.c_str(), &info) == 0 && S_ISREG(info.st_mode);
}

ConvKey Prefixed(const ConvKey& prefix, std::string last) {
    ConvKey key = prefix;
    key.push_back(std::move(last));
    return key;
}

// Reads keys from the flat store as stage A walks it.
class StoreReader {
public:
    explicit StoreReader(ReconcileApp& app) : app_(app), root_(app.SourceRoot()) {}

    // The file's presence: one key ("setting") when it is there.
    void File(const std::string& relative, const ConvKey& prefix, std::vector<ConvStoreKey>& out) {
        const std::string path = root_ + relative;
        if (FileExists(path)) out.push_back({Prefixed(prefix, "setting"), path});
    }
    // A word list: one key per line, its number from 1.
    void Lines(const std::string& relative, const ConvKey& prefix, std::vector<ConvStoreKey>& out) {
        const std::string path = root_ + relative;
        ConvStdComStrIndex reader(&app_, path.c_str());
        if (reader.Read() < 0) return;
        for (std::size_t i = 0; i < reader.RecordCount(); ++i)
            out.push_back({Prefixed(prefix, std::to_string(i + 1)), path});
    }
    // An id list: one key per line, its number from 1 (seqno) or its id.
    void Items(const std::string& relative, const ConvKey& prefix, bool byPosition, std::vector<ConvStoreKey>& out) {
        const std::string path = root_ + relative;
        ConvStdComItemIndex reader(&app_, path.c_str());
        if (reader.Read() < 0) return;
        for (std::size_t i = 0; i < reader.RecordCount(); ++i) {
            const ConvRow* row = reader.GetRecord(i);
            const char* id = row ? FindColumn(*row, "ID") : nullptr;
            if (byPosition)
                out.push_back({Prefixed(prefix, std::to_string(i + 1)), path});
            else if (id)
                out.push_back({Prefixed(prefix, id), path});
        }
    }
    // A record file: one key per record id; with listName, one per entry of
    // that list in each record, numbered from 1.
    void Records(const std::string& path, const ConvKey& prefix, const char* listName,
                 std::vector<ConvStoreKey>& out) {
        ConvStdCom reader(&app_, path.c_str());
        if (reader.Read() < 0) return;
        for (std::size_t i = 0; i < reader.RecordCount(); ++i) {
            const ConvRow* row = reader.GetRecord(i);
            const char* id = row ? FindColumn(*row, "ID") : nullptr;
            if (!id) continue;
            if (!listName) {
                out.push_back({Prefixed(prefix, id), path});
                continue;
            }
            const ConvRowItem* list = FindItem(*row, listName);
            if (!list || list->type != kRowTypeList) continue;
            for (std::size_t n = 0; n < list->list.size(); ++n)
                out.push_back({Prefixed(Prefixed(prefix, id), std::to_string(n + 1)), path});
        }
    }
    // The ids of an index, each with the path of its record.
    template <class Index = ConvStdComIndex>
    std::vector<std::pair<std::string, std::string>> IndexIds(const std::string& relative) {
        std::vector<std::pair<std::string, std::string>> out;
        const std::string path = root_ + relative;
        Index index(&app_, path.c_str(), false);
        if (index.ReadIndex() < 0) return out;
        for (const int32_t id : index.Ids()) {
            index.MakeRecordPath(id);
            out.emplace_back(std::to_string(id), index.GetPath());
        }
        return out;
    }
    // The owners of an owner index, as stage A walks them (the cached id list).
    std::vector<std::string> Owners(const std::string& relative) {
        std::vector<std::string> out;
        ConvStdComIndex* index = app_.GetIndex(relative.c_str(), false);
        if (!index) return out;
        for (const int32_t id : index->Ids()) out.push_back(std::to_string(id));
        return out;
    }
    // "<store><directory of the owner index>/<owner>/<file>".
    std::string OwnerPath(const std::string& ownerIndex, const std::string& owner, const std::string& file) const {
        return root_ + ownerIndex.substr(0, ownerIndex.rfind('/')) + "/" + owner + "/" + file;
    }
    const std::string& Root() const { return root_; }

private:
    ReconcileApp& app_;
    std::string root_;
};

constexpr const char* kUsers = "data/user/index";
constexpr const char* kGroups = "data/group/index";
constexpr const char* kPlants = "data/setubi/plant/index";

// The four owner kinds of schedule entries.
struct ScheduleKind {
    const char* label;
    const char* kind;  // otherto_type
    const char* table;
    const char* attachTable;
    std::vector<std::string> keyNames;
};

// Every schedule record of one kind: (owner..., ID), and with listName its
// list entries.
void ScheduleKeys(StoreReader& store, const std::string& kind, const char* listName,
                  std::vector<ConvStoreKey>& out) {
    if (kind == "1" || kind == "2" || kind == "4") {
        const std::string index = kind == "1" ? kUsers : kind == "2" ? kGroups : kPlants;
        for (const std::string& owner : store.Owners(index))
            store.Records(store.OwnerPath(index, owner, "schedule"), {owner}, listName, out);
        return;
    }
    for (const std::string& user : store.Owners(kUsers)) {
        const std::string groups = "data/user/" + user + "/group/index";
        for (const std::string& group : store.Owners(groups))
            store.Records(store.OwnerPath(groups, group, "schedule"), {user, group}, listName, out);
    }
}

// Drops the owner components, leaving (ID[, entry]).
std::vector<ConvStoreKey> WithoutOwner(const std::vector<ConvStoreKey>& keys, std::size_t owners) {
    std::vector<ConvStoreKey> out;
    out.reserve(keys.size());
    for (const ConvStoreKey& item : keys)
        out.push_back({ConvKey(item.key.begin() + static_cast<std::ptrdiff_t>(owners), item.key.end()), item.path});
    return out;
}

// ---------------------------------------------------------------- the families

struct Family {
    const char* label;
    const char* compares;
    std::vector<std::string> keyNames;
    std::function<void(StoreReader&, std::vector<ConvStoreKey>&)> store;  // empty: not compared
    std::string workingSql;                                              // empty: not compared
    std::string targetSql;                                               // empty: not compared
    unsigned targetBase36 = 0;  // bit i: target column i is a base-36 schedule id
    std::vector<ConvNoteRule> storeNotes;
    std::vector<ConvNoteRule> targetNotes;
    const char* notCompared = "";
};

ConvNoteRule Rule(std::vector<std::string> tables, std::vector<std::vector<std::string>> names,
                  std::vector<std::pair<std::string, std::string>> fixed = {}) {
    return ConvNoteRule{std::move(tables), std::move(names), std::move(fixed)};
}

// A family of one file of settings, copied into one row.
Family Setting(const char* label, const char* file, const char* table, bool updatedInPlace) {
    Family f{label, "the file, one row", {"file"}, {}, {}, {}, 0, {}, {}, ""};
    const std::string relative = file;
    f.store = [relative](StoreReader& s, std::vector<ConvStoreKey>& out) { s.File(relative, {}, out); };
    f.workingSql = std::string("SELECT 'setting'::text FROM ") + table;
    f.storeNotes = {Rule({table}, {{}})};
    if (updatedInPlace) {
        f.notCompared = "target: the installation's own row is updated in place";
    } else {
        f.targetSql = std::string("SELECT 'setting'::text FROM ") + table + " WHERE SID_CORPORATE = 1";
        f.targetNotes = {Rule({table}, {{}})};
    }
    return f;
}

// A user's file of settings: one row per user who has the file.
Family UserSetting(const char* label, const char* file, const char* table) {
    Family f{label, "users with the file", {"SID_USER"}, {}, {}, {}, 0, {}, {}, ""};
    const std::string name = file;
    f.store = [name](StoreReader& s, std::vector<ConvStoreKey>& out) {
        for (const std::string& user : s.Owners(kUsers)) {
            const std::string path = s.OwnerPath(kUsers, user, name);
            if (FileExists(path)) out.push_back({{user}, path});
        }
    };
    f.workingSql = std::string("SELECT SID_USER::text FROM ") + table;
    f.targetSql = std::string("SELECT SID_USER::text FROM ") + table + " WHERE SID_CORPORATE = 1";
    f.storeNotes = {Rule({table}, {{"SID_USER"}})};
    f.targetNotes = f.storeNotes;
    return f;
}

// A common word list: one row per line.
Family WordList(const char* label, const char* file, const char* table) {
    Family f{label, "lines (ID = line number)", {"ID"}, {}, {}, {}, 0, {}, {}, ""};
    const std::string relative = file;
    f.store = [relative](StoreReader& s, std::vector<ConvStoreKey>& out) { s.Lines(relative, {}, out); };
    f.workingSql = std::string("SELECT ID::text FROM ") + table;
    f.targetSql = std::string("SELECT ID::text FROM ") + table + " WHERE SID_CORPORATE = 1";
    f.storeNotes = {Rule({table}, {{"ID"}})};
    f.targetNotes = f.storeNotes;
    return f;
}

// A user's word list: one row per user and line.
Family UserWordList(const char* label, const char* file, const char* table) {
    Family f{label, "lines per user", {"SID_USER", "ID"}, {}, {}, {}, 0, {}, {}, ""};
    const std::string name = file;
    f.store = [name](StoreReader& s, std::vector<ConvStoreKey>& out) {
        for (const std::string& user : s.Owners(kUsers)) {
            const std::string path = s.OwnerPath(kUsers, user, name);
            if (FileExists(path)) s.Lines(path.substr(s.Root().size()), {user}, out);
        }
    };
    f.workingSql = std::string("SELECT SID_USER::text, ID::text FROM ") + table;
    f.targetSql = std::string("SELECT SID_USER::text, ID::text FROM ") + table + " WHERE SID_CORPORATE = 1";
    f.storeNotes = {Rule({table}, {{"SID_USER"}, {"ID"}})};
    f.targetNotes = f.storeNotes;
    return f;
}

// An index and its record directories: one row per id of the index.
Family Indexed(const char* label, const char* index, const char* table, const char* targetWhere) {
    Family f{label, "ids of the index", {"ID"}, {}, {}, {}, 0, {}, {}, ""};
    const std::string relative = index;
    f.store = [relative](StoreReader& s, std::vector<ConvStoreKey>& out) {
        for (auto& [id, path] : s.IndexIds(relative)) out.push_back({{id}, path});
    };
    f.workingSql = std::string("SELECT ID::text FROM ") + table;
    f.targetSql = std::string("SELECT ID::text FROM ") + table + " WHERE SID_CORPORATE = 1" + targetWhere;
    f.storeNotes = {Rule({table}, {{"ID"}})};
    f.targetNotes = f.storeNotes;
    return f;
}

// Administrators: module-wide (group 0) and per group.
Family Admins(const char* label, const char* module, const char* table, int moduleNumber) {
    Family f{label, "ids of the list", {"ID"}, {}, {}, {}, 0, {}, {}, ""};
    const std::string relative = std::string("data/group/nogroup/") + module + "/admin";
    f.store = [relative](StoreReader& s, std::vector<ConvStoreKey>& out) { s.Items(relative, {}, false, out); };
    f.workingSql = std::string("SELECT ID::text FROM ") + table;
    f.targetSql = "SELECT SID_ASSIGN::text FROM TM_RMODULE_ASSIGNUSER WHERE SID_CORPORATE = 1 AND SID_MODULE = " +
                  std::to_string(moduleNumber) + " AND SID_GROUP = 0";
    f.storeNotes = {Rule({table}, {{"ID"}})};
    f.targetNotes = {Rule({"TM_RMODULE_ASSIGNUSER"}, {{"SID_ASSIGN", "ID"}}, {{"SID_GROUP", "0"}})};
    return f;
}

Family GroupAdmins(const char* label, const char* module, const char* table, int moduleNumber) {
    Family f{label, "ids per group", {"SID_GROUP", "ID"}, {}, {}, {}, 0, {}, {}, ""};
    const std::string file = std::string(module) + "/admin";
    f.store = [file](StoreReader& s, std::vector<ConvStoreKey>& out) {
        for (const std::string& group : s.Owners(kGroups)) {
            const std::string path = s.OwnerPath(kGroups, group, file);
            if (FileExists(path)) s.Items(path.substr(s.Root().size()), {group}, false, out);
        }
    };
    f.workingSql = std::string("SELECT SID_GROUP::text, ID::text FROM ") + table;
    f.targetSql = "SELECT SID_GROUP::text, SID_ASSIGN::text FROM TM_RMODULE_ASSIGNUSER WHERE SID_CORPORATE = 1 "
                  "AND SID_MODULE = " +
                  std::to_string(moduleNumber) + " AND SID_GROUP <> 0";
    f.storeNotes = {Rule({table}, {{"SID_GROUP", "SID_USER"}, {"ID"}})};
    f.targetNotes = {Rule({"TM_RMODULE_ASSIGNUSER"}, {{"SID_GROUP"}, {"SID_ASSIGN", "ID"}})};
    return f;
}

const char* const kScheduleTables[] = {"TTPR_SCHEDULE", "TT_SCH_GROUP", "TTPR_SCH_GROUP", "TT_PLT_SCHEDULE"};

std::string AllScheduleIds() {
    return "SELECT ID::text FROM TTPR_SCHEDULE UNION SELECT ID::text FROM TT_SCH_GROUP "
           "UNION SELECT ID::text FROM TTPR_SCH_GROUP UNION SELECT ID::text FROM TT_PLT_SCHEDULE";
}

std::vector<Family> Families() {
    std::vector<Family> out;
    out.push_back(Setting("スケジュール共通設定", "data/schedule/setting", "TM_SCH_SETTING", true));
    out.push_back(WordList("スケジュール予定マスター", "data/schedule/event", "TM_SCH_EVENT"));
    out.push_back(WordList("スケジュール場所マスター", "data/schedule/place", "TM_SCH_PLACE"));
    out.push_back(Indexed("その他アイコン", "data/schedule/icon/index", "TM_SCH_ICON", " AND seqno >= 48"));
    out.push_back(UserSetting("スケジュール個人設定", "schgen", "TMPR_SCH_SETTING"));
    out.push_back(UserWordList("個人スケジュール予定マスター", "event", "TMPR_SCH_EVENT"));
    out.push_back(UserWordList("個人スケジュール場所マスター", "place", "TMPR_SCH_PLACE"));

    // Schedule entries by owner: each owner's copy is one destination.
    const ScheduleKind kinds[] = {
        {"ユーザースケジュール", "1", "TTPR_SCHEDULE", "TTPR_ATTACH_SCHEDULE", {"SID_USER", "ID"}},
        {"グループスケジュール", "2", "TT_SCH_GROUP", "TT_ATTACH_SCH_GROUP", {"SID_GROUP", "ID"}},
        {"個人グループスケジュール", "3", "TTPR_SCH_GROUP", "TTPR_ATTACH_SCH_GROUP",
         {"SID_USER", "SID_PRGROUP", "ID"}},
        {"設備予約", "4", "TT_PLT_SCHEDULE", "TT_ATTACH_PLT_SCHEDULE", {"SID_PLANT", "ID"}},
    };
    for (const ScheduleKind& kind : kinds) {
        Family f{kind.label, "owner copies / destinations", kind.keyNames, {}, {}, {}, 0, {}, {}, ""};
        const std::string k = kind.kind;
        f.store = [k](StoreReader& s, std::vector<ConvStoreKey>& keys) { ScheduleKeys(s, k, nullptr, keys); };
        std::string columns;
        for (const std::string& name : kind.keyNames) columns += (columns.empty() ? "" : ", ") + name + "::text";
        f.workingSql = "SELECT " + columns + " FROM " + kind.table;
        const bool personal = k == "3";
        f.targetSql = std::string("SELECT ") + (personal ? "SID_USER::text, " : "") +
                      "SID_ASSIGN::text, ID::text FROM TT_SCHEDULE_OTHERTO WHERE SID_CORPORATE = 1 AND "
                      "otherto_type = '" +
                      k + "'";
        f.targetBase36 = 1u << (personal ? 2 : 1);
        std::vector<std::vector<std::string>> names;
        for (const std::string& name : kind.keyNames) names.push_back({name});
        f.storeNotes = {Rule({kind.table}, names)};
        if (personal)
            f.targetNotes = {Rule({"TT_SCHEDULE_OTHERTO"}, {{"LOG_TID"}, {"LOG_SID_PRGROUP"}, {"LOG_SCH_ID"}},
                                  {{"LOG_KBN", k}})};
        else
            f.targetNotes = {Rule({"TT_SCHEDULE_OTHERTO"}, {{"LOG_TID"}, {"LOG_SCH_ID"}}, {{"LOG_KBN", k}})};
        out.push_back(std::move(f));
    }

    // One schedule, whatever its owners: distinct ids.
    {
        Family f{"スケジュール", "distinct schedule ids", {"ID"}, {}, {}, {}, 0, {}, {}, ""};
        f.store = [](StoreReader& s, std::vector<ConvStoreKey>& keys) {
            const std::pair<const char*, std::size_t> kinds[] = {{"1", 1}, {"2", 1}, {"3", 2}, {"4", 1}};
            for (const auto& [kind, owners] : kinds) {
                std::vector<ConvStoreKey> copies;
                ScheduleKeys(s, kind, nullptr, copies);
                for (ConvStoreKey& item : WithoutOwner(copies, owners)) keys.push_back(std::move(item));
            }
        };
        f.workingSql = AllScheduleIds();
        f.targetSql = "SELECT ID::text FROM TT_SCHEDULE WHERE SID_CORPORATE = 1";
        f.targetBase36 = 1;
        f.storeNotes = {Rule({kScheduleTables[0], kScheduleTables[1], kScheduleTables[2], kScheduleTables[3]},
                             {{"ID"}})};
        f.targetNotes = {Rule({"TT_SCHEDULE"}, {{"LOG_SCH_ID"}})};
        out.push_back(std::move(f));
    }
    // Attached files: (schedule, file number), once whatever the owners.
    {
        Family f{"スケジュール添付ファイル", "distinct (schedule, file number)", {"ID", "SID_ATTACH"}, {}, {}, {},
                 0, {}, {}, ""};
        f.store = [](StoreReader& s, std::vector<ConvStoreKey>& keys) {
            const std::pair<const char*, std::size_t> kinds[] = {{"1", 1}, {"2", 1}, {"3", 2}, {"4", 1}};
            for (const auto& [kind, owners] : kinds) {
                std::vector<ConvStoreKey> files;
                ScheduleKeys(s, kind, "attach", files);
                for (ConvStoreKey& item : WithoutOwner(files, owners)) keys.push_back(std::move(item));
            }
        };
        f.workingSql =
            "SELECT ID::text, SID_ATTACH::text FROM TTPR_ATTACH_SCHEDULE UNION SELECT ID::text, SID_ATTACH::text "
            "FROM TT_ATTACH_SCH_GROUP UNION SELECT ID::text, SID_ATTACH::text FROM TTPR_ATTACH_SCH_GROUP UNION "
            "SELECT ID::text, SID_ATTACH::text FROM TT_ATTACH_PLT_SCHEDULE";
        f.targetSql = "SELECT ID::text, SID_ATTACH::text FROM TT_ATTACH_SCHEDULE WHERE SID_CORPORATE = 1";
        f.targetBase36 = 1;
        // A schedule left out takes its files with it.
        f.storeNotes = {Rule({"TTPR_ATTACH_SCHEDULE", "TT_ATTACH_SCH_GROUP", "TTPR_ATTACH_SCH_GROUP",
                              "TT_ATTACH_PLT_SCHEDULE"},
                             {{"ID"}, {"SID_ATTACH"}}),
                        Rule({kScheduleTables[0], kScheduleTables[1], kScheduleTables[2], kScheduleTables[3]},
                             {{"ID"}, {}})};
        f.targetNotes = {Rule({"TT_ATTACH_SCHEDULE"}, {{"LOG_SCH_ID"}, {"SID_ATTACH", "LOG_SID_ATTACH"}})};
        out.push_back(std::move(f));
    }
    {
        Family f{"スケジュール繰返日", "", {}, {}, {}, {}, 0, {}, {}, ""};
        f.notCompared = "not compared: each day moves to UTC by its schedule's start time and repeat kind, and a "
                        "day is taken once over all owners";
        out.push_back(std::move(f));
    }
    {
        Family f{"スケジュールアクセス権", "users with schacc", {"ID"}, {}, {}, {}, 0, {}, {}, ""};
        f.store = [](StoreReader& s, std::vector<ConvStoreKey>& keys) {
            for (const std::string& user : s.Owners(kUsers)) {
                const std::string path = s.OwnerPath(kUsers, user, "schacc");
                if (FileExists(path)) keys.push_back({{user}, path});
            }
        };
        f.workingSql = "SELECT ID::text FROM TMPR_ACCESS_ALL WHERE SID_MODULE = 1";
        f.targetSql = "SELECT SID_USER::text FROM TMPR_ACCESS_ALL WHERE SID_CORPORATE = 1 AND SID_MODULE = 1";
        f.storeNotes = {Rule({"TMPR_ACCESS_ALL"}, {{"ID", "SID_USER"}})};
        f.targetNotes = {Rule({"TMPR_ACCESS_ALL"}, {{"SID_USER", "ID"}})};
        out.push_back(std::move(f));
    }
    {
        Family f{"スケジュールアクセス権（個別）", "", {}, {}, {}, {}, 0, {}, {}, ""};
        f.notCompared = "not compared: entries naming a deleted user or group are dropped without a report, and "
                        "rights for personal groups are not carried";
        out.push_back(std::move(f));
    }

    out.push_back(Setting("設備予約共通設定", "data/setubi/setting", "TM_PLT_SETTING", false));
    out.push_back(WordList("設備予約利用目的", "data/setubi/event", "TM_PLT_EVENT"));
    out.push_back(Indexed("設備グループマスター", "data/setubi/group/index", "TM_PLT_GROUP", ""));
    out.push_back(Indexed("設備マスター", kPlants, "TM_PLANT", ""));
    {
        Family f{"設備アクセス権", "facilities with pltacc", {"ID"}, {}, {}, {}, 0, {}, {}, ""};
        f.store = [](StoreReader& s, std::vector<ConvStoreKey>& keys) {
            for (auto& [id, info] : s.IndexIds(kPlants)) {
                const std::string path = s.OwnerPath(kPlants, id, "pltacc");
                // The rights are read with the facility's record: a missing record explains them.
                if (FileExists(path)) keys.push_back({{id}, FileExists(info) ? path : info});
            }
        };
        f.workingSql = "SELECT ID::text FROM TM_ACCPLT_ALL";
        f.targetSql = "SELECT SID_PLANT::text FROM TM_ACCPLT_ALL WHERE SID_CORPORATE = 1";
        f.storeNotes = {Rule({"TM_ACCPLT_ALL", "TM_PLANT"}, {{"ID"}})};
        f.targetNotes = {Rule({"TM_ACCPLT_ALL"}, {{"SID_PLANT", "ID"}})};
        out.push_back(std::move(f));
    }
    {
        Family f{"設備アクセス権（個別）", "", {}, {}, {}, {}, 0, {}, {}, ""};
        f.notCompared = "not compared: entries naming a deleted user or group are dropped without a report";
        out.push_back(std::move(f));
    }
    out.push_back(Admins("設備予約機能管理者", "setubi", "TM_PLT_ADMIN_COMMON", 3));
    out.push_back(GroupAdmins("設備予約所属管理者", "setubi", "TM_PLT_ADMIN_GROUP", 3));
    out.push_back(UserSetting("設備予約個人設定", "setubi/setting", "TMPR_PLT_SETTING"));
    {
        Family f{"設備情報インポートエクスポート順", "lines per user (SEQNO)", {"SID_USER", "SEQNO"}, {}, {}, {},
                 0, {}, {}, ""};
        f.store = [](StoreReader& s, std::vector<ConvStoreKey>& keys) {
            for (const std::string& user : s.Owners(kUsers)) {
                const std::string path = s.OwnerPath(kUsers, user, "setubi/infocsvindex");
                if (FileExists(path)) s.Items(path.substr(s.Root().size()), {user}, true, keys);
            }
        };
        f.workingSql = "SELECT SID_USER::text, SEQNO::text FROM TMPR_PLTMST_CSVINDEX";
        f.targetSql = "SELECT SID_USER::text, SEQNO::text FROM TMPR_PLTMST_CSVINDEX WHERE SID_CORPORATE = 1";
        f.storeNotes = {Rule({"TMPR_PLTMST_CSVINDEX"}, {{"SID_USER"}, {"SEQNO"}})};
        f.targetNotes = f.storeNotes;
        out.push_back(std::move(f));
    }

    out.push_back(Setting("議事録共通設定", "data/agenda/setting", "TM_AGENDA_SETTING", true));
    out.push_back(Admins("議事録機能管理者", "agenda", "TM_AGENDA_COMMON", 26));
    out.push_back(GroupAdmins("議事録所属管理者", "agenda", "TM_AGENDA_ADMIN_GROUP", 26));
    out.push_back(UserSetting("議事録個人設定", "agenda/setting", "TMPR_AGENDA_SETTING"));
    {
        Family f{"議事録", "ids of index and indexend", {"ID"}, {}, {}, {}, 0, {}, {}, ""};
        f.store = [](StoreReader& s, std::vector<ConvStoreKey>& keys) {
            for (auto& [id, path] : s.IndexIds<kiv_std_agendaindex>("data/agenda/index")) keys.push_back({{id}, path});
            for (auto& [id, path] : s.IndexIds<kiv_std_agendaindexend>("data/agenda/indexend"))
                keys.push_back({{id}, path});
        };
        f.workingSql = "SELECT ID::text FROM TT_AGENDA";
        f.targetSql = "SELECT ID::text FROM TT_AGENDA WHERE SID_CORPORATE = 1";
        f.storeNotes = {Rule({"TT_AGENDA"}, {{"ID"}})};
        f.targetNotes = f.storeNotes;
        out.push_back(std::move(f));
    }
    // The minutes' own files: topics by id, members by place.
    struct MinutesFile {
        const char* label;
        const char* compares;
        const char* file;
        const char* table;
        const char* second;
        bool byPosition;
    };
    const MinutesFile minutesFiles[] = {
        {"議事録議題", "topics per minutes", "topic", "TT_AGENDA_TOPIC", "ID", false},
        {"議事録参加者", "members per minutes (SEQNO)", "member", "TT_AGENDA_MEMBER", "SEQNO", true},
    };
    for (const MinutesFile& mf : minutesFiles) {
        Family f{mf.label, mf.compares, {"agnid", mf.second}, {}, {}, {}, 0, {}, {}, ""};
        const std::string file = mf.file;
        const bool byPosition = mf.byPosition;
        f.store = [file, byPosition](StoreReader& s, std::vector<ConvStoreKey>& keys) {
            std::vector<std::pair<std::string, std::string>> minutes = s.IndexIds<kiv_std_agendaindex>(
                "data/agenda/index");
            for (auto& item : s.IndexIds<kiv_std_agendaindexend>("data/agenda/indexend")) minutes.push_back(item);
            for (const auto& [id, info] : minutes) {
                // A minutes' record that can't be read takes its files with it.
                if (!FileExists(info)) continue;
                const std::string path = info.substr(0, info.rfind('/') + 1) + file;
                std::vector<ConvStoreKey> rows;
                s.Records(path, {id}, nullptr, rows);
                for (std::size_t i = 0; i < rows.size(); ++i) {
                    if (byPosition) rows[i].key.back() = std::to_string(i + 1);
                    keys.push_back(std::move(rows[i]));
                }
            }
        };
        f.workingSql = std::string("SELECT agnid::text, ") + mf.second + "::text FROM " + mf.table;
        f.targetSql =
            std::string("SELECT agnid::text, ") + mf.second + "::text FROM " + mf.table + " WHERE SID_CORPORATE = 1";
        f.storeNotes = {Rule({mf.table}, {{"agnid"}, {mf.second}}), Rule({"TT_AGENDA"}, {{"ID"}, {}})};
        f.targetNotes = {Rule({mf.table}, {{"agnid"}, {mf.second}})};
        out.push_back(std::move(f));
    }
    {
        Family f{"議事録添付ファイル", "", {}, {}, {}, {}, 0, {}, {}, ""};
        f.notCompared = "not compared: a topic's files are numbered anew per minutes in the target";
        out.push_back(std::move(f));
    }

    out.push_back(Setting("アラーム共通設定", "data/agent/setting", "TM_ALM_SETTING", false));
    out.push_back(UserSetting("アラーム個人設定", "agent/setting", "TMPR_ALM_SETTING"));
    out.push_back(UserSetting("個人予定通知設定", "agent/schedule", "TMPR_AGENT"));
    {
        Family f{"個人予定通知時刻", "", {}, {}, {}, {}, 0, {}, {}, ""};
        f.notCompared = "not compared: send times move to UTC and equal times of a user are taken once";
        out.push_back(std::move(f));
    }
    return out;
}

// -------------------------------------------------------------- the databases

// A server's message of several lines as one.
std::string OneLine(const char* message) {
    std::string out;
    for (const char* p = message ? message : ""; *p; ++p) {
        const bool blank = *p == '\n' || *p == '\r' || *p == '\t' || *p == ' ';
        if (blank && (out.empty() || out.back() == ' ')) continue;
        out += blank ? ' ' : *p;
    }
    while (!out.empty() && out.back() == ' ') out.pop_back();
    return out;
}

struct Database {
    std::unique_ptr<CdDBConnection_PG> connection;
    std::string error;
};

Database Connect(const ReconcileApp::Address& address) {
    Database db;
    db.connection.reset(new (std::nothrow) CdDBConnection_PG());
    if (!db.connection) {
        db.error = "out of memory";
        return db;
    }
    const int ret = db.connection->Connect(address.user.c_str(), address.password.c_str(), address.host.c_str(),
                                           address.name.c_str(), address.port.c_str(), -1);
    if (ret != 0) {
        db.error = "cannot connect to " + address.name + " on " + address.host + ":" + address.port + ": " +
                   OneLine(db.connection->GetErrorMessage()) + " (" + std::to_string(ret) + ")";
        db.connection.reset();
    }
    return db;
}

// The rows of a key query, each column as text (NULL as empty).
bool QueryKeys(CdDBConnection_PG& connection, const std::string& sql, std::size_t columns, unsigned base36,
               std::vector<ConvKey>& out, std::string& error) {
    const int ret = connection.Exec(sql.c_str());
    if (ret != 0) {
        error = "query failed: " + sql + ": " + OneLine(connection.GetErrorMessage()) + " (" + std::to_string(ret) +
                ")";
        connection.ClearResult();
        return false;
    }
    for (; !connection.IsEnd(); connection.NextRow()) {
        ConvKey key;
        key.reserve(columns);
        for (std::size_t i = 0; i < columns; ++i) {
            char* value = nullptr;
            connection.GetValue(&value, static_cast<int>(i), nullptr);
            std::string text = value ? value : "";
            std::free(value);
            if (base36 & (1u << i)) text = FromBase36(text);
            key.push_back(std::move(text));
        }
        out.push_back(std::move(key));
    }
    connection.ClearResult();
    return true;
}

}  // namespace

ConvReconcileResult Reconcile(const std::vector<std::string>& args, const ConvRunAccount& account) {
    ConvReconcileResult result;
    std::vector<char*> argv;
    for (const std::string& arg : args) argv.push_back(const_cast<char*>(arg.c_str()));
    argv.push_back(nullptr);
    ReconcileApp app(static_cast<int>(args.size()), argv.data());
    app.Prepare();
    if (app.SourceRoot().empty()) {
        result.failure = "no flat store given";
        return result;
    }
    Database ent = Connect(app.Ent());
    if (!ent.connection) {
        result.failure = "working database: " + ent.error;
        return result;
    }
    Database kiv = Connect(app.Kiv());
    if (!kiv.connection) {
        result.failure = "target database: " + kiv.error;
        return result;
    }
    StoreReader store(app);
    for (const Family& family : Families()) {
        ConvFamilyResult line;
        line.label = family.label;
        line.compares = family.compares;
        line.notCompared = family.notCompared;
        if (family.keyNames.empty()) {
            result.families.push_back(std::move(line));
            continue;
        }
        std::optional<std::vector<ConvStoreKey>> storeKeys;
        if (family.store) {
            storeKeys.emplace();
            family.store(store, *storeKeys);
        }
        std::optional<std::vector<ConvKey>> working, target;
        std::string error;
        if (!family.workingSql.empty()) {
            working.emplace();
            if (!QueryKeys(*ent.connection, family.workingSql, family.keyNames.size(), 0, *working, error)) {
                result.failure = "working database: " + error;
                return result;
            }
        }
        if (!family.targetSql.empty()) {
            target.emplace();
            if (!QueryKeys(*kiv.connection, family.targetSql, family.keyNames.size(), family.targetBase36, *target,
                           error)) {
                result.failure = "target database: " + error;
                return result;
            }
        }
        CompareFamily(family.keyNames, storeKeys, working, target, family.storeNotes, family.targetNotes, account,
                      line);
        result.families.push_back(std::move(line));
    }
    ent.connection->Disconnect();
    kiv.connection->Disconnect();
    return result;
}

std::string FormatReconcile(const ConvReconcileResult& result) {
    std::string out = "reconciliation: flat store → working database → target database\n";
    if (!result.failure.empty()) return out + "not made: " + result.failure + "\n";
    std::size_t labelWidth = 20, comparesWidth = 10;
    for (const ConvFamilyResult& family : result.families) {
        labelWidth = std::max(labelWidth, DisplayWidth(family.label));
        comparesWidth = std::max(comparesWidth, DisplayWidth(family.compares));
    }
    out += "\n" + Pad("family", labelWidth + 2) + Pad("compares", comparesWidth + 2) + PadLeft("store", 7) +
           PadLeft("working", 9) + PadLeft("target", 8) + PadLeft("explained", 11) + PadLeft("unexplained", 13) +
           "\n";
    for (const ConvFamilyResult& family : result.families) {
        out += Pad(family.label, labelWidth + 2);
        if (family.compares.empty()) {
            out += family.notCompared + "\n";
            continue;
        }
        out += Pad(family.compares, comparesWidth + 2) + PadLeft(CountText(family.store), 7) +
               PadLeft(CountText(family.working), 9) + PadLeft(CountText(family.target), 8) +
               PadLeft(std::to_string(family.explained), 11) + PadLeft(std::to_string(family.unexplained), 13);
        if (!family.notCompared.empty()) out += "  (" + family.notCompared + ")";
        out += "\n";
    }
    auto appendGaps = [&](bool explained) {
        for (const ConvFamilyResult& family : result.families)
            for (const ConvGap& gap : family.gaps) {
                if (gap.because.empty() == explained) continue;
                const char* where = gap.toTarget ? (gap.missing ? "working, not target" : "target, not working")
                                                 : (gap.missing ? "store, not working" : "working, not store");
                out += "    " + Pad(family.label, labelWidth + 2) + Pad(where, 22) + gap.key + "\n";
                if (explained) out += "        " + gap.because + "\n";
            }
    };
    const int64_t unexplained = result.Unexplained();
    int64_t explained = 0;
    for (const ConvFamilyResult& family : result.families) explained += family.explained;
    out += "\nexplained differences: " + std::to_string(explained) + "\n";
    appendGaps(true);
    out += "\nunexplained differences: " + std::to_string(unexplained) + "\n";
    appendGaps(false);
    return out;
}

}  // namespace convrun
