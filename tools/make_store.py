#!/usr/bin/env python3
"""Writes a flat store of the old server of any size, from a seed.

The same seed and sizes give a byte-identical store. The store holds what a
company's server holds: users, groups and personal groups, schedule masters
and icons, schedules of every repeat kind with their dates, deleted dates and
attached files, access rights, facilities in groups with their reservations,
alarm plans, and open and finished minutes with members, topics and files.
Every record is valid: both stages convert the store without a warning.

Schedules go to the first --owners users; their number is either
--schedules-per-owner each or --schedules in all, spread evenly:

  tools/make_store.py /tmp/store --owners 1 --schedules-per-owner 10000
  tools/make_store.py /tmp/store --schedules 100000          # over every user
"""
import argparse
import os
import random
import shutil
import sys

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from flatstore import write_file  # noqa: E402

SURNAMES = [("山田", "やまだ"), ("佐藤", "さとう"), ("鈴木", "すずき"), ("高橋", "たかはし"),
            ("田中", "たなか"), ("伊藤", "いとう"), ("渡辺", "わたなべ"), ("中村", "なかむら"),
            ("小林", "こばやし"), ("加藤", "かとう"), ("吉田", "よしだ"), ("山本", "やまもと"),
            ("松本", "まつもと"), ("井上", "いのうえ"), ("木村", "きむら"), ("斎藤", "さいとう")]
GIVEN = [("太郎", "たろう"), ("花子", "はなこ"), ("一郎", "いちろう"), ("美咲", "みさき"),
         ("健太", "けんた"), ("由美", "ゆみ"), ("翔", "しょう"), ("陽子", "ようこ"),
         ("大輔", "だいすけ"), ("真由美", "まゆみ"), ("誠", "まこと"), ("恵", "めぐみ")]
DEPARTMENTS = ["営業部", "総務部", "開発部", "経理部", "人事部", "製造部", "品質管理部",
               "企画部", "購買部", "物流部", "法務部", "広報部"]
EVENTS = ["会議", "来客", "外出", "出張", "休暇", "打合せ", "研修", "作業"]
PLACES = ["本社 3F 会議室", "大阪支店", "オンライン", "横浜営業所", "顧客先", "第2会議室"]
CUSTOMERS = ["株式会社みなと商事", "北斗工業株式会社", "さくら電機", "有限会社やまびこ",
             "東西物産", "株式会社ひかり設計"]
TOPICS = ["進捗の確認", "予算の見直し", "次期計画", "課題の整理", "品質報告", "顧客からの要望",
          "日程調整", "役割分担"]
MEMO_LINES = ["資料は各自印刷して持参。", "受付で名札を用意すること。", "議事録は翌日までに共有。",
              "前回の宿題を確認する。", "開始 5 分前までに集合のこと。", "見積書と提案資料を持参。",
              "駐車場は 2 台まで予約済み。", "ｶﾀｶﾅの資料名もそのまま残す。"]
FACILITIES = ["会議室", "応接室", "研修室", "社用車", "プロジェクター", "テレビ会議室"]


class Store:
    """The store under construction: files are written as they are made."""

    def __init__(self, root, rng):
        self.root = root
        self.rng = rng
        self.files = 0

    def record(self, rel, text):
        write_file(self.root, rel, text)
        self.files += 1

    def attached(self, rel, data):
        write_file(self.root, rel, data)
        self.files += 1


def obj(oid, fields, lists=()):
    """One record: `object <id>`, its fields (a value with line feeds goes on
    TAB continuation lines), its item lists, `end`."""
    out = [f"object {oid}"]
    for key, value in fields:
        if value is None:
            continue
        out.append(f"{key}=" + str(value).replace("\n", "\n\t"))
    for name, items in lists:
        out.append(f"object {name}")
        out.extend(f"{k}={v}" for k, v in items)
        out.append("end")
    out.append("end")
    return "\n".join(out) + "\n"


def index(entries, lastid):
    return "".join(f"{k}={v}\n" for k, v in entries) + f"_lastid={lastid}\n"


def date_of(day):
    """YYYYMMDD of the day numbered from 2020-01-01 (a proleptic count)."""
    import datetime
    d = datetime.date(2020, 1, 1) + datetime.timedelta(days=day)
    return d.strftime("%Y%m%d")


def hhmm(minutes):
    return f"{minutes // 60:02d}{minutes % 60:02d}"


def memo(rng):
    n = rng.choice([0, 0, 1, 2, 3])
    return "\n".join(rng.choice(MEMO_LINES) for _ in range(n)) or None


def attachment_text(rng, title):
    lines = [title] + [rng.choice(MEMO_LINES) for _ in range(rng.randint(1, 6))]
    return ("\n".join(lines) + "\n").encode("euc_jp")


class ScheduleMaker:
    """Schedule entries of every kind, numbered by one counter for the whole
    store as the old server numbered them."""

    def __init__(self, store, args):
        self.store = store
        self.rng = store.rng
        self.args = args
        self.next_id = 1
        self.count = 0

    def entry(self, owner_dir, file_dir, creuser, alarm=False):
        rng = self.rng
        sid = self.next_id
        self.next_id += 1
        self.count += 1
        kind = rng.choices(["once", "span", "allday", "night", "list", "d", "w", "m", "y"],
                           weights=[40, 6, 8, 3, 5, 8, 18, 8, 4])[0]
        start = rng.randrange(0, 6 * 365)
        begin = rng.randrange(8 * 60, 19 * 60, 15)
        length = rng.choice([30, 60, 60, 90, 120])
        event = rng.choice(EVENTS)
        customer = rng.choice(CUSTOMERS)
        fields = [("startdate", date_of(start))]
        lists = []
        if kind == "span":
            fields.append(("enddate", date_of(start + rng.randint(1, 5))))
        elif kind in ("d", "w", "m", "y"):
            fields.append(("enddate", date_of(start + rng.choice([30, 90, 180, 365, 730]))))
        if kind == "night":
            fields += [("enddate", date_of(start)), ("starttime", "2200"), ("endtime", "2430")]
        elif kind != "allday" and kind != "y":
            fields += [("starttime", hhmm(begin)), ("endtime", hhmm(begin + length))]
        fields += [("event", event),
                   ("detail", f"{customer} 様 {event}" if event in ("来客", "外出") else f"{rng.choice(TOPICS)}（{event}）"),
                   ("place", rng.choice(PLACES) if rng.random() < 0.6 else None),
                   ("memo", memo(rng))]
        if kind == "list":
            fields.append(("repeat", "1"))
            days = sorted({start + 7 * rng.randint(0, 12) for _ in range(rng.randint(2, 6))} | {start})
            lists.append(("dates", [("date", date_of(d)) for d in days]))
            if len(days) > 2:
                lists.append(("deldates", [("date", date_of(days[1]))]))
        elif kind in ("d", "w", "m", "y"):
            fields.append(("repeat", kind))
            if kind == "w":
                days = ["0"] * 7
                for d in rng.sample(range(1, 6), rng.randint(1, 2)):
                    days[d] = "1"
                fields.append(("everyweekday", "".join(days)))
            if kind in ("d", "w") and rng.random() < 0.3:
                lists.append(("deldates", [("date", date_of(start + 7 * rng.randint(1, 4)))]))
        if self.args.icons and rng.random() < 0.05:
            fields.append(("iconno", rng.choice([48, 49])))
        fields += [("creuser", creuser),
                   ("cretime", date_of(max(start - 7, 0)) + hhmm(begin) + "00")]
        if alarm and rng.random() < 0.1:
            fields += [("alarm", 1), ("alarmtime", rng.choice([5, 10, 15, 30])), ("alarmcnt", 1)]
        if self.args.attach_every and sid % self.args.attach_every == 0:
            names = [f"{rng.choice(TOPICS)}資料{n + 1}.txt" for n in range(rng.randint(1, 2))]
            names = list(dict.fromkeys(names))
            lists += [("attach", [(n + 1, name) for n, name in enumerate(names)]),
                      ("attachdisp", [(n + 1, name) for n, name in enumerate(names)]),
                      ("mimetype", [(n + 1, "text/plain") for n in range(len(names))])]
            for name in names:
                self.store.attached(f"{file_dir}/{sid}/{name}", attachment_text(rng, name))
        return obj(sid, fields, lists)

    def file(self, owner_dir, file_dir, count, creusers, alarm=False):
        parts = [self.entry(owner_dir, file_dir, self.rng.choice(creusers), alarm) for _ in range(count)]
        if parts:
            self.store.record(f"{owner_dir}/schedule", "".join(parts))


def spread(total, owners):
    """total items over owners as evenly as possible, the first ones taking the rest."""
    base, extra = divmod(total, owners) if owners else (0, 0)
    return [base + (1 if i < extra else 0) for i in range(owners)]


def person(rng, uid):
    sur, sur_kana = SURNAMES[(uid - 1) % len(SURNAMES)]
    given, given_kana = GIVEN[((uid - 1) // len(SURNAMES) + rng.randrange(len(GIVEN))) % len(GIVEN)]
    return f"{sur} {given}", f"{sur_kana} {given_kana}"


def build(args):
    rng = random.Random(args.seed)
    store = Store(args.store, rng)
    users = list(range(1, args.users + 1))
    groups = list(range(1, args.groups + 1))
    names = {}

    # Users, their groups and personal groups.
    store.record("data/user/index", "# 利用者の一覧\n" + index([(f"user{u:05d}", u) for u in users], args.users))
    for u in users:
        name, kana = person(rng, u)
        names[u] = (name, kana)
        store.record(f"data/user/{u}/info", obj(u, [("Name", name), ("Kana", kana),
                                                   ("memo", f"{DEPARTMENTS[(u - 1) % len(DEPARTMENTS)]}\n内線 {1000 + u}")]))
    store.record("data/group/index", index([(f"group{g:03d}", g) for g in groups], args.groups))
    for g in groups:
        store.record(f"data/group/{g}/info", obj(g, [("Name", DEPARTMENTS[(g - 1) % len(DEPARTMENTS)]
                                                      + ("" if g <= len(DEPARTMENTS) else f" 第{g}課"))]))
    pgroup_users = [u for u in users if args.pgroup_every and u % args.pgroup_every == 1]
    for u in pgroup_users:
        store.record(f"data/user/{u}/group/index", index([("project1", 1)], 1))
        store.record(f"data/user/{u}/group/1/info", obj(1, [("Name", f"{rng.choice(TOPICS)}プロジェクト")]))

    # Schedule settings, masters and icons.
    store.record("data/schedule/setting", obj(1, [("row", 10), ("save", 1), ("start", 8), ("unit", 30),
                                                  ("openperm", 1), ("rowother", 5), ("sunday", 1),
                                                  ("holiday", 1), ("Group", 1), ("toppage", 1)]))
    store.record("data/schedule/event", "".join(f"event={e}\n" for e in EVENTS))
    store.record("data/schedule/place", "".join(f"place={p}\n" for p in PLACES[:3]))
    if args.icons:
        store.record("data/schedule/icon/index", index([("important", 48), ("holiday", 49)], 49))
        for icon, title, file_name in ((48, "重要", "juyo.png"), (49, "休み", "yasumi.png")):
            store.record(f"data/schedule/icon/{icon}/info", obj(icon, [("Name", title)], [
                ("attach", [(1, file_name)]), ("attachdisp", [(1, f"{title}.png")]),
                ("mimetype", [(1, "image/png")])]))
            store.attached(f"file/schedule/icon/{icon}/{file_name}", b"\x89PNG\r\n\x1a\n" + bytes(range(icon)))
    for u in users[: max(1, args.users // 10)]:
        store.record(f"data/user/{u}/schgen", obj(u, [("row", 8), ("rowother", 3), ("Group", 1 + u % args.groups)]))
        store.record(f"data/user/{u}/event", f"event=顧客訪問\nevent=見積作成\n")
        store.record(f"data/user/{u}/place", f"place={rng.choice(PLACES[3:])}\n")

    # Schedules: users (with access rights and alarms), groups, personal groups.
    maker = ScheduleMaker(store, args)
    owners = users[: min(args.owners or args.users, args.users)]
    counts = (spread(args.schedules, len(owners)) if args.schedules is not None
              else [args.schedules_per_owner] * len(owners))
    for u, count in zip(owners, counts):
        gid = 1 + (u - 1) % args.groups
        store.record(f"data/user/{u}/schacc", obj(u, [("accesskind", 2)], [
            ("group", [(1, gid)]), ("gaccess", [(1, 1)]),
            ("user", [(1, 1 + u % args.users)]), ("uaccess", [(1, 1)])]))
        maker.file(f"data/user/{u}", f"file/user/{u}/schedule", count, [u], alarm=True)
    for g in groups:
        maker.file(f"data/group/{g}", f"file/group/{g}/schedule", args.group_schedules, users[:5])
    for u in pgroup_users:
        maker.file(f"data/user/{u}/group/1", f"file/user/{u}/group/1/schedule", args.pgroup_schedules, [u])

    # Facilities in groups, with rights, administrators and reservations.
    fgroups = [1, 2] if args.facilities > 1 else [1]
    store.record("data/setubi/setting", obj(1, [("row", 10), ("save", 1), ("start", 8), ("unit", 30),
                                                ("openperm", 1), ("reservlimit", 90), ("Group", 1),
                                                ("title", "設備予約")]))
    store.record("data/setubi/event", "".join(f"event={e}\n" for e in ["会議", "来客対応", "研修", "外出"]))
    store.record("data/setubi/group/index", index([(f"site{g}", g) for g in fgroups], len(fgroups)))
    for g in fgroups:
        store.record(f"data/setubi/group/{g}/info", obj(g, [("Name", ["本社", "大阪支店"][g - 1]),
                                                            ("starttime", "0800"), ("endtime", "2000")]))
    if args.facilities:
        store.record("data/setubi/plant/index",
                     index([(f"plant{p}", p) for p in range(1, args.facilities + 1)], args.facilities))
        store.record("data/group/nogroup/setubi/admin", "admin=1\n")
    for p in range(1, args.facilities + 1):
        title = f"{FACILITIES[(p - 1) % len(FACILITIES)]}{(p - 1) // len(FACILITIES) + 1}"
        store.record(f"data/setubi/plant/{p}/info", obj(p, [("Name", title), ("assigngroup", fgroups[p % len(fgroups)]),
                                                            ("starttime", "0800"), ("endtime", "2000"),
                                                            ("usetime", 30)],
                                                        [("managegroup", [(1, 1 + p % args.groups)])]))
        store.record(f"data/setubi/plant/{p}/pltacc", obj(p, [("accesskind", 2)], [
            ("group", [(1, 1 + p % args.groups)]), ("gaccess", [(1, 1)]),
            ("user", [(1, 1 + p % args.users)]), ("uaccess", [(1, 1)])]))
        maker.file(f"data/setubi/plant/{p}", f"file/setubi/plant/{p}/schedule", args.reservations, users[:10])

    # Personal settings of the first tenth of the users.
    for u in users[: max(1, args.users // 10)]:
        if args.facilities:
            store.record(f"data/user/{u}/setubi/setting", obj(u, [("row", 8), ("rowother", 3), ("Group", 1),
                                                                 ("title", "設備の予約")]))
            store.record(f"data/user/{u}/setubi/infocsvindex", "col=1\ncol=3\ncol=2\n")
        store.record(f"data/user/{u}/agent/setting", obj(u, [("row", 5), ("save", 1), ("alarmuse", 1)]))
        if args.minutes:
            store.record(f"data/user/{u}/agenda/setting", obj(u, [("row", 15), ("save", 1), ("mngrow", 10)]))

    # Alarm plans.
    store.record("data/agent/setting", obj(1, [("row", 10), ("save", 1), ("alarmuse", 1)]))
    for u in users[: max(1, args.users // 10)]:
        store.record(f"data/user/{u}/agent/schedule", obj(u, [("sendkind", 1), ("sendsize", 100), ("dispevent", 1)],
                                                          [("sendtimes", [(1, "0800"), (2, "1230")])]))

    # Minutes: the first tenth finished, the rest open.
    store.record("data/agenda/setting", obj(1, [("row", 10), ("save", 1), ("mngrow", 20)]))
    store.record("data/group/nogroup/agenda/admin", "admin=1\n")
    finished = args.minutes // 10
    subjects = {}
    for m in range(1, args.minutes + 1):
        subjects[m] = f"{rng.choice(DEPARTMENTS)} {rng.choice(TOPICS)}会議"
        bucket = f"data/agenda/{m // 30000 + 1}/{m}"
        day = rng.randrange(0, 6 * 365)
        entry_user = rng.choice(users)
        store.record(f"{bucket}/info", obj(m, [("subject", subjects[m]), ("status", 1 if m <= finished else 0),
                                               ("schseldate", date_of(day)), ("entry", entry_user),
                                               ("entrydate", date_of(day)), ("entrytime", "0900"),
                                               ("memo", memo(rng))]))
        members = sorted(rng.sample(users, min(len(users), rng.randint(1, 5))))
        store.record(f"{bucket}/member", "".join(obj(u, [("Name", names[u][0]), ("Kana", names[u][1])])
                                                 for u in members))
        topics = []
        for t in range(1, args.topics + 1):
            title = rng.choice(TOPICS)
            lists = []
            if args.attach_every and (m * args.topics + t) % args.attach_every == 0:
                file_name = f"{title}.txt"
                lists = [("attach", [(1, file_name)]), ("attachdisp", [(1, file_name)]),
                         ("mimetype", [(1, "text/plain")])]
                store.attached(f"file/agenda/{m // 30000 + 1}/{m}/{t}/{file_name}", attachment_text(rng, title))
            topics.append(obj(t, [("titletopic", title), ("textkind", 0), ("memo", memo(rng) or "特になし")], lists))
        store.record(f"{bucket}/topic", "".join(topics))
    if args.minutes:
        store.record("data/agenda/index", "".join(f"{m}={subjects[m]}\n" for m in range(finished + 1, args.minutes + 1))
                     + f"_lastid={args.minutes}\n")
        store.record("data/agenda/indexend", "".join(f"{m}={subjects[m]}\n" for m in range(1, finished + 1)))
    return store, maker


def main():
    p = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    p.add_argument("store", help="directory to write (replaced if it exists)")
    p.add_argument("--seed", type=int, default=1)
    p.add_argument("--users", type=int, default=50)
    p.add_argument("--groups", type=int, default=5)
    p.add_argument("--owners", type=int, default=0, help="users holding schedules (default: all)")
    p.add_argument("--schedules", type=int, help="user schedules in all, spread over the owners")
    p.add_argument("--schedules-per-owner", type=int, default=20)
    p.add_argument("--group-schedules", type=int, default=10, help="per group")
    p.add_argument("--pgroup-every", type=int, default=10, help="every n-th user has a personal group (0: none)")
    p.add_argument("--pgroup-schedules", type=int, default=5, help="per personal group")
    p.add_argument("--facilities", type=int, default=5)
    p.add_argument("--reservations", type=int, default=20, help="per facility")
    p.add_argument("--minutes", type=int, default=20)
    p.add_argument("--topics", type=int, default=3, help="per minutes")
    p.add_argument("--attach-every", type=int, default=25, help="every n-th schedule or topic has files (0: none)")
    p.add_argument("--no-icons", dest="icons", action="store_false")
    args = p.parse_args()
    if args.users < 1 or args.groups < 1:
        p.error("--users and --groups must be at least 1")
    if os.path.exists(args.store):
        shutil.rmtree(args.store)
    store, maker = build(args)
    print(f"{store.files} files, {maker.count} schedule entries written to {args.store}")


if __name__ == "__main__":
    main()
