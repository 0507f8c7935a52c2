-- Working database of the migration (PostgreSQL 15, UTF8).
--
-- Stage A fills these tables from the flat store; stage B reads them back
-- through the queries in sql/sch/ and writes the target database. The table
-- and column names are those the stage-A writers put into their INSERT
-- statements; unquoted names fold to lower case, so TTPR_SCHEDULE and
-- ttpr_schedule are the same table.
--
-- Conventions:
--   * Every table has SID_CORPORATE first. Stage A writes it only into
--     TT_AGENDA_TOPIC and TT_AGENDA_MEMBER; elsewhere the default 1 applies,
--     which is the corporate id of a target installation with a single
--     corporate. Stage B's queries take the target's SID_CORPORATE from here.
--   * Keys that stage A checks as numbers are integer. Everything else is
--     varchar without a length, so no flat-store value is refused or cut here
--     (the writers cut memo texts themselves).
--   * Long memo texts are text. Stage B hands columns of type text to the
--     target as statement parameters, at most eight per row; all other texts
--     are varchar so that they travel as quoted literals.
--   * Empty flat-store values arrive as NULL: the writer leaves the column out.
--
-- Load into an empty database:
--   psql -v ON_ERROR_STOP=1 -1 -d <ent database> -f schema/ent.sql


-- ---------------------------------------------------------------------------
-- Shared
-- ---------------------------------------------------------------------------

-- Last id of an indexed master, one row per module and sub code:
-- (1,'001') schedule icons, (3,'001') facilities, (3,'002') facility groups,
-- (26,'001') minutes.
CREATE TABLE TM_INDEX (
    SID_CORPORATE   integer NOT NULL DEFAULT 1,
    SID_MODULE      integer NOT NULL,
    SUBCODE         varchar NOT NULL,
    lastid          integer,
    PRIMARY KEY (SID_CORPORATE, SID_MODULE, SUBCODE)
);


-- ---------------------------------------------------------------------------
-- Schedule: settings and masters
-- ---------------------------------------------------------------------------

-- data/schedule/setting: one row.
CREATE TABLE TM_SCH_SETTING (
    SID_CORPORATE   integer NOT NULL DEFAULT 1,
    ROWCOUNT        integer,
    save            integer,
    infomation      varchar,
    stime           integer,
    unit            integer,
    openperm        varchar,
    rowother        integer,
    sunday          varchar,
    holiday         varchar,
    disptotime      varchar,
    dispgroup       varchar,
    toppage         varchar,
    dupperm         varchar,
    othercolor      varchar,
    todo            varchar,
    PRIMARY KEY (SID_CORPORATE)
);

-- data/schedule/event: one row per line, ID is the line number from 1.
CREATE TABLE TM_SCH_EVENT (
    SID_CORPORATE   integer NOT NULL DEFAULT 1,
    ITEM            varchar,
    ID              integer NOT NULL,
    PRIMARY KEY (SID_CORPORATE, ID)
);

-- data/schedule/place: as the events.
CREATE TABLE TM_SCH_PLACE (
    SID_CORPORATE   integer NOT NULL DEFAULT 1,
    ITEM            varchar,
    ID              integer NOT NULL,
    PRIMARY KEY (SID_CORPORATE, ID)
);

-- data/schedule/icon/<id>/info: one row per icon; seqno is the place in the
-- index from 1, filename/dispname/mimetype describe the icon's file.
CREATE TABLE TM_SCH_ICON (
    SID_CORPORATE   integer NOT NULL DEFAULT 1,
    ID              integer NOT NULL,
    name            varchar,
    filename        varchar,
    dispname        varchar,
    mimetype        varchar,
    seqno           integer,
    PRIMARY KEY (SID_CORPORATE, ID)
);

-- data/user/<id>/schgen: one row per user.
CREATE TABLE TMPR_SCH_SETTING (
    SID_CORPORATE   integer NOT NULL DEFAULT 1,
    SID_USER        integer NOT NULL,
    ROWCOUNT        integer,
    rowother        integer,
    sunday          varchar,
    holiday         varchar,
    disptotime      varchar,
    dispgroup       varchar,
    toppage         varchar,
    dupperm         varchar,
    othercolor      varchar,
    todo            varchar,
    PRIMARY KEY (SID_CORPORATE, SID_USER)
);

-- data/user/<id>/event: one row per line of the user's list.
CREATE TABLE TMPR_SCH_EVENT (
    SID_CORPORATE   integer NOT NULL DEFAULT 1,
    SID_USER        integer NOT NULL,
    ITEM            varchar,
    ID              integer NOT NULL,
    PRIMARY KEY (SID_CORPORATE, SID_USER, ID)
);

-- data/user/<id>/place: as the user's events.
CREATE TABLE TMPR_SCH_PLACE (
    SID_CORPORATE   integer NOT NULL DEFAULT 1,
    SID_USER        integer NOT NULL,
    ITEM            varchar,
    ID              integer NOT NULL,
    PRIMARY KEY (SID_CORPORATE, SID_USER, ID)
);


-- ---------------------------------------------------------------------------
-- Schedule: personal access rights (data/user/<id>/schacc)
-- ID is the user whose schedule is opened, SID_MODULE is 1, SID_ASSIGN is
-- the group, personal group or user the right is given to.
-- ---------------------------------------------------------------------------

CREATE TABLE TMPR_ACCESS_ALL (
    SID_CORPORATE   integer NOT NULL DEFAULT 1,
    SID_MODULE      integer NOT NULL,
    ID              integer NOT NULL,
    accesskind      integer,
    PRIMARY KEY (SID_CORPORATE, ID, SID_MODULE)
);

CREATE TABLE TMPR_ACCESS_GROUP (
    SID_CORPORATE   integer NOT NULL DEFAULT 1,
    SID_MODULE      integer NOT NULL,
    ID              integer NOT NULL,
    SID_ASSIGN      integer NOT NULL,
    accesskind      integer,
    PRIMARY KEY (SID_CORPORATE, ID, SID_MODULE, SID_ASSIGN)
);

-- Rights given to a personal group (a negative group id in the flat store;
-- SID_ASSIGN holds its absolute value).
CREATE TABLE TMPR_ACCESS_PRGROUP (
    SID_CORPORATE   integer NOT NULL DEFAULT 1,
    SID_MODULE      integer NOT NULL,
    ID              integer NOT NULL,
    SID_ASSIGN      integer NOT NULL,
    accesskind      integer,
    PRIMARY KEY (SID_CORPORATE, ID, SID_MODULE, SID_ASSIGN)
);

CREATE TABLE TMPR_ACCESS_USER (
    SID_CORPORATE   integer NOT NULL DEFAULT 1,
    SID_MODULE      integer NOT NULL,
    ID              integer NOT NULL,
    SID_ASSIGN      integer NOT NULL,
    accesskind      integer,
    PRIMARY KEY (SID_CORPORATE, ID, SID_MODULE, SID_ASSIGN)
);


-- ---------------------------------------------------------------------------
-- Schedule entries
--
-- Each owner's `schedule` file gives, per object, one main row, one row per
-- entry of its `dates` (deldates 0) and `deldates` (deldates 1) lists, and
-- one row per attached file. The four owners have the same layout and differ
-- in their owner columns. ID is the object's id; the same entry may stand in
-- the files of several owners with the same ID.
-- ---------------------------------------------------------------------------

-- A user's own entries (data/user/<id>/schedule), with the user's alarm and
-- approval columns.
CREATE TABLE TTPR_SCHEDULE (
    SID_CORPORATE   integer NOT NULL DEFAULT 1,
    SID_USER        integer NOT NULL,
    ID              integer NOT NULL,
    startdate       varchar,
    enddate         varchar,
    starttime       varchar,
    endtime         varchar,
    eventflg        varchar,
    event           varchar,
    detail          varchar,
    memo            text,
    place           varchar,
    other           varchar,
    rankflg         varchar,
    reserve         varchar,
    openlevel       varchar,
    flag            varchar,
    daycolor        varchar,
    outflg          varchar,
    iconno          integer,
    srctype         varchar,
    srcsid          integer,
    srctarget       integer,
    entry           integer,
    creuser         integer,
    cretime         varchar,
    entrytime       varchar,
    repeat          varchar,
    repeatlimit     varchar,
    intervalkind    varchar,
    interval        integer,
    approvreq       varchar,
    aprvmailnotice  varchar,
    agenda          varchar,
    everyweek       integer,
    everyweekday    integer,
    everymonth      integer,
    alarm           varchar,
    alarmtime       integer,
    alarmcnt        integer,
    approvsts       varchar,
    PRIMARY KEY (SID_CORPORATE, SID_USER, ID)
);

CREATE TABLE TTPR_ATTACH_SCHEDULE (
    SID_CORPORATE   integer NOT NULL DEFAULT 1,
    SID_USER        integer NOT NULL,
    ID              integer NOT NULL,
    SID_ATTACH      integer NOT NULL,
    filename        varchar,
    dispname        varchar,
    mimetype        varchar,
    PRIMARY KEY (SID_CORPORATE, SID_USER, ID, SID_ATTACH)
);

-- SID_ASSIGN is a date YYYYMMDD; deldates 0 = the entry falls on that day,
-- 1 = the day is taken out of the series. A day may stand in both lists.
CREATE TABLE TTPR_SCH_REPDATE (
    SID_CORPORATE   integer NOT NULL DEFAULT 1,
    SID_USER        integer NOT NULL,
    ID              integer NOT NULL,
    SID_ASSIGN      integer NOT NULL,
    deldates        integer NOT NULL,
    PRIMARY KEY (SID_CORPORATE, SID_USER, ID, SID_ASSIGN, deldates)
);

-- A group's entries (data/group/<id>/schedule).
CREATE TABLE TT_SCH_GROUP (
    SID_CORPORATE   integer NOT NULL DEFAULT 1,
    SID_GROUP       integer NOT NULL,
    ID              integer NOT NULL,
    startdate       varchar,
    enddate         varchar,
    starttime       varchar,
    endtime         varchar,
    eventflg        varchar,
    event           varchar,
    detail          varchar,
    memo            text,
    place           varchar,
    other           varchar,
    rankflg         varchar,
    reserve         varchar,
    openlevel       varchar,
    flag            varchar,
    daycolor        varchar,
    outflg          varchar,
    iconno          integer,
    srctype         varchar,
    srcsid          integer,
    srctarget       integer,
    entry           integer,
    creuser         integer,
    cretime         varchar,
    entrytime       varchar,
    repeat          varchar,
    repeatlimit     varchar,
    intervalkind    varchar,
    interval        integer,
    approvreq       varchar,
    aprvmailnotice  varchar,
    agenda          varchar,
    everyweek       integer,
    everyweekday    integer,
    everymonth      integer,
    PRIMARY KEY (SID_CORPORATE, SID_GROUP, ID)
);

CREATE TABLE TT_ATTACH_SCH_GROUP (
    SID_CORPORATE   integer NOT NULL DEFAULT 1,
    SID_GROUP       integer NOT NULL,
    ID              integer NOT NULL,
    SID_ATTACH      integer NOT NULL,
    filename        varchar,
    dispname        varchar,
    mimetype        varchar,
    PRIMARY KEY (SID_CORPORATE, SID_GROUP, ID, SID_ATTACH)
);

CREATE TABLE TT_SCH_GROUP_REPDATE (
    SID_CORPORATE   integer NOT NULL DEFAULT 1,
    SID_GROUP       integer NOT NULL,
    ID              integer NOT NULL,
    SID_ASSIGN      integer NOT NULL,
    deldates        integer NOT NULL,
    PRIMARY KEY (SID_CORPORATE, SID_GROUP, ID, SID_ASSIGN, deldates)
);

-- A user's personal group's entries (data/user/<user>/group/<id>/schedule).
-- Personal group ids are the user's own, so the user is part of the key.
CREATE TABLE TTPR_SCH_GROUP (
    SID_CORPORATE   integer NOT NULL DEFAULT 1,
    SID_PRGROUP     integer NOT NULL,
    SID_USER        integer NOT NULL,
    ID              integer NOT NULL,
    startdate       varchar,
    enddate         varchar,
    starttime       varchar,
    endtime         varchar,
    eventflg        varchar,
    event           varchar,
    detail          varchar,
    memo            text,
    place           varchar,
    other           varchar,
    rankflg         varchar,
    reserve         varchar,
    openlevel       varchar,
    flag            varchar,
    daycolor        varchar,
    outflg          varchar,
    iconno          integer,
    srctype         varchar,
    srcsid          integer,
    srctarget       integer,
    entry           integer,
    creuser         integer,
    cretime         varchar,
    entrytime       varchar,
    repeat          varchar,
    repeatlimit     varchar,
    intervalkind    varchar,
    interval        integer,
    approvreq       varchar,
    aprvmailnotice  varchar,
    agenda          varchar,
    everyweek       integer,
    everyweekday    integer,
    everymonth      integer,
    PRIMARY KEY (SID_CORPORATE, SID_USER, SID_PRGROUP, ID)
);

CREATE TABLE TTPR_ATTACH_SCH_GROUP (
    SID_CORPORATE   integer NOT NULL DEFAULT 1,
    SID_PRGROUP     integer NOT NULL,
    SID_USER        integer NOT NULL,
    ID              integer NOT NULL,
    SID_ATTACH      integer NOT NULL,
    filename        varchar,
    dispname        varchar,
    mimetype        varchar,
    PRIMARY KEY (SID_CORPORATE, SID_USER, SID_PRGROUP, ID, SID_ATTACH)
);

CREATE TABLE TTPR_SCH_GROUP_REPDATE (
    SID_CORPORATE   integer NOT NULL DEFAULT 1,
    SID_PRGROUP     integer NOT NULL,
    SID_USER        integer NOT NULL,
    ID              integer NOT NULL,
    SID_ASSIGN      integer NOT NULL,
    deldates        integer NOT NULL,
    PRIMARY KEY (SID_CORPORATE, SID_USER, SID_PRGROUP, ID, SID_ASSIGN, deldates)
);


-- ---------------------------------------------------------------------------
-- Facilities
-- ---------------------------------------------------------------------------

-- data/setubi/setting: one row. defgroup is kept as text, as it comes.
CREATE TABLE TM_PLT_SETTING (
    SID_CORPORATE   integer NOT NULL DEFAULT 1,
    ROWCOUNT        integer,
    save            integer,
    infomation      varchar,
    stime           integer,
    unit            integer,
    openperm        varchar,
    reservlimit     varchar,
    datadel         varchar,
    rowother        integer,
    sunday          varchar,
    holiday         varchar,
    disptotime      varchar,
    defgroup        varchar,
    title           varchar,
    PRIMARY KEY (SID_CORPORATE)
);

-- data/setubi/event: the purposes, one row per line.
CREATE TABLE TM_PLT_EVENT (
    SID_CORPORATE   integer NOT NULL DEFAULT 1,
    ITEM            varchar,
    ID              integer NOT NULL,
    PRIMARY KEY (SID_CORPORATE, ID)
);

-- data/setubi/group/<id>/info; times of day are local HHMM as they come.
CREATE TABLE TM_PLT_GROUP (
    SID_CORPORATE   integer NOT NULL DEFAULT 1,
    ID              integer NOT NULL,
    name            varchar,
    starttime       varchar,
    endtime         varchar,
    usetime         varchar,
    reservlimit     varchar,
    seqno           integer,
    PRIMARY KEY (SID_CORPORATE, ID)
);

-- data/setubi/plant/<id>/info; managegroup is the first managing group, or 0.
CREATE TABLE TM_PLANT (
    SID_CORPORATE   integer NOT NULL DEFAULT 1,
    ID              integer NOT NULL,
    name            varchar,
    memo            text,
    assigngroup     integer,
    starttime       varchar,
    endtime         varchar,
    usetime         varchar,
    reservlimit     varchar,
    holidayuse      varchar,
    managegroup     integer,
    seqno           integer,
    PRIMARY KEY (SID_CORPORATE, ID)
);

-- data/setubi/plant/<id>/pltacc: ID is the facility, SID_ASSIGN the group or
-- user the right is given to.
CREATE TABLE TM_ACCPLT_ALL (
    SID_CORPORATE   integer NOT NULL DEFAULT 1,
    ID              integer NOT NULL,
    accesskind      integer,
    PRIMARY KEY (SID_CORPORATE, ID)
);

CREATE TABLE TM_ACCPLT_GROUP (
    SID_CORPORATE   integer NOT NULL DEFAULT 1,
    ID              integer NOT NULL,
    SID_ASSIGN      integer NOT NULL,
    accesskind      integer,
    PRIMARY KEY (SID_CORPORATE, ID, SID_ASSIGN)
);

CREATE TABLE TM_ACCPLT_USER (
    SID_CORPORATE   integer NOT NULL DEFAULT 1,
    ID              integer NOT NULL,
    SID_ASSIGN      integer NOT NULL,
    accesskind      integer,
    PRIMARY KEY (SID_CORPORATE, ID, SID_ASSIGN)
);

-- data/group/nogroup/setubi/admin: the module's administrators (ID = user).
CREATE TABLE TM_PLT_ADMIN_COMMON (
    SID_CORPORATE   integer NOT NULL DEFAULT 1,
    ID              integer NOT NULL,
    PRIMARY KEY (SID_CORPORATE, ID)
);

-- data/group/<id>/setubi/admin: administrators of one group's facilities.
CREATE TABLE TM_PLT_ADMIN_GROUP (
    SID_CORPORATE   integer NOT NULL DEFAULT 1,
    SID_GROUP       integer NOT NULL,
    ID              integer NOT NULL,
    PRIMARY KEY (SID_CORPORATE, SID_GROUP, ID)
);

-- data/user/<id>/setubi/setting: one row per user.
CREATE TABLE TMPR_PLT_SETTING (
    SID_CORPORATE   integer NOT NULL DEFAULT 1,
    SID_USER        integer NOT NULL,
    ROWCOUNT        integer,
    rowother        integer,
    sunday          varchar,
    holiday         varchar,
    disptotime      varchar,
    defgroup        varchar,
    title           varchar,
    PRIMARY KEY (SID_CORPORATE, SID_USER)
);

-- data/user/<id>/setubi/infocsvindex: a user's order of the columns of the
-- facility import and export; SEQNO is the line number from 1.
CREATE TABLE TMPR_PLTMST_CSVINDEX (
    SID_CORPORATE   integer NOT NULL DEFAULT 1,
    SID_USER        integer NOT NULL,
    ID              integer,
    SEQNO           integer NOT NULL,
    PRIMARY KEY (SID_CORPORATE, SID_USER, SEQNO)
);

-- Reservations (data/setubi/plant/<id>/schedule): schedule entries owned by
-- a facility.
CREATE TABLE TT_PLT_SCHEDULE (
    SID_CORPORATE   integer NOT NULL DEFAULT 1,
    SID_PLANT       integer NOT NULL,
    ID              integer NOT NULL,
    startdate       varchar,
    enddate         varchar,
    starttime       varchar,
    endtime         varchar,
    eventflg        varchar,
    event           varchar,
    detail          varchar,
    memo            text,
    place           varchar,
    other           varchar,
    rankflg         varchar,
    reserve         varchar,
    openlevel       varchar,
    flag            varchar,
    daycolor        varchar,
    outflg          varchar,
    iconno          integer,
    srctype         varchar,
    srcsid          integer,
    srctarget       integer,
    entry           integer,
    creuser         integer,
    cretime         varchar,
    entrytime       varchar,
    repeat          varchar,
    repeatlimit     varchar,
    intervalkind    varchar,
    interval        integer,
    approvreq       varchar,
    aprvmailnotice  varchar,
    agenda          varchar,
    everyweek       integer,
    everyweekday    integer,
    everymonth      integer,
    PRIMARY KEY (SID_CORPORATE, SID_PLANT, ID)
);

CREATE TABLE TT_ATTACH_PLT_SCHEDULE (
    SID_CORPORATE   integer NOT NULL DEFAULT 1,
    SID_PLANT       integer NOT NULL,
    ID              integer NOT NULL,
    SID_ATTACH      integer NOT NULL,
    filename        varchar,
    dispname        varchar,
    mimetype        varchar,
    PRIMARY KEY (SID_CORPORATE, SID_PLANT, ID, SID_ATTACH)
);

CREATE TABLE TT_PLT_SCH_REPDATE (
    SID_CORPORATE   integer NOT NULL DEFAULT 1,
    SID_PLANT       integer NOT NULL,
    ID              integer NOT NULL,
    SID_ASSIGN      integer NOT NULL,
    deldates        integer NOT NULL,
    PRIMARY KEY (SID_CORPORATE, SID_PLANT, ID, SID_ASSIGN, deldates)
);


-- ---------------------------------------------------------------------------
-- Minutes
-- ---------------------------------------------------------------------------

-- data/agenda/setting: one row.
CREATE TABLE TM_AGENDA_SETTING (
    SID_CORPORATE   integer NOT NULL DEFAULT 1,
    ROWCOUNT        integer,
    save            integer,
    mngrow          integer,
    PRIMARY KEY (SID_CORPORATE)
);

-- data/group/nogroup/agenda/admin: the module's administrators (ID = user).
CREATE TABLE TM_AGENDA_COMMON (
    SID_CORPORATE   integer NOT NULL DEFAULT 1,
    ID              integer NOT NULL,
    PRIMARY KEY (SID_CORPORATE, ID)
);

-- data/group/<id>/agenda/admin: administrators of one group's minutes.
CREATE TABLE TM_AGENDA_ADMIN_GROUP (
    SID_CORPORATE   integer NOT NULL DEFAULT 1,
    SID_GROUP       integer NOT NULL,
    ID              integer NOT NULL,
    PRIMARY KEY (SID_CORPORATE, SID_GROUP, ID)
);

-- data/user/<id>/agenda/setting: one row per user.
CREATE TABLE TMPR_AGENDA_SETTING (
    SID_CORPORATE   integer NOT NULL DEFAULT 1,
    SID_USER        integer NOT NULL,
    ROWCOUNT        integer,
    mngrow          integer,
    PRIMARY KEY (SID_CORPORATE, SID_USER)
);

-- data/agenda/<g>/<id>/info of the open and the finished minutes. sid is the
-- decimal id of the schedule the minutes belong to; entryname/entrykana and
-- updname/updkana are the author's and last editor's names at migration time.
CREATE TABLE TT_AGENDA (
    SID_CORPORATE   integer NOT NULL DEFAULT 1,
    ID              integer NOT NULL,
    subject         varchar,
    STATUS          varchar,
    sid             varchar,
    schseldate      varchar,
    stype           varchar,
    stargetid       varchar,
    stargetpri      varchar,
    mailto          varchar,
    entry           integer,
    updateuser      integer,
    entrydate       varchar,
    entrytime       varchar,
    updatedate      varchar,
    updatetime      varchar,
    memo            text,
    circleopen      varchar,
    cid             integer,
    docsave         varchar,
    dfid            integer,
    did             integer,
    modstatus       varchar,
    modlogin        integer,
    entryname       varchar,
    entrykana       varchar,
    updname         varchar,
    updkana         varchar,
    PRIMARY KEY (SID_CORPORATE, ID)
);

-- data/agenda/<g>/<agnid>/topic: one row per topic, ID the topic's id.
CREATE TABLE TT_AGENDA_TOPIC (
    SID_CORPORATE   integer NOT NULL DEFAULT 1,
    agnid           integer NOT NULL,
    ID              integer NOT NULL,
    titletopic      varchar,
    textkind        varchar,
    memo            text,
    format          text,
    PRIMARY KEY (SID_CORPORATE, agnid, ID)
);

-- data/agenda/<g>/<agnid>/member: SEQNO is the member's place from 1.
CREATE TABLE TT_AGENDA_MEMBER (
    SID_CORPORATE   integer NOT NULL DEFAULT 1,
    agnid           integer NOT NULL,
    SEQNO           integer NOT NULL,
    ID              integer,
    name            varchar,
    kana            varchar,
    PRIMARY KEY (SID_CORPORATE, agnid, SEQNO)
);

-- Files attached to a topic: ID is the topic, SID_ATTACH the file's number
-- within it. Stage B also reads SID_ATTACH and dispname of one set of
-- minutes by SID_CORPORATE and agnid.
CREATE TABLE TT_ATTACH_AGENDA_TOPIC (
    SID_CORPORATE   integer NOT NULL DEFAULT 1,
    ID              integer NOT NULL,
    agnid           integer NOT NULL,
    SID_ATTACH      integer NOT NULL,
    filename        varchar,
    dispname        varchar,
    mimetype        varchar,
    PRIMARY KEY (SID_CORPORATE, agnid, ID, SID_ATTACH)
);

-- The id of the last topic read for each set of minutes (ID = minutes).
CREATE TABLE TT_INDEX_AGENDA_TOPIC (
    SID_CORPORATE   integer NOT NULL DEFAULT 1,
    ID              integer NOT NULL,
    lastid          integer,
    PRIMARY KEY (SID_CORPORATE, ID)
);


-- ---------------------------------------------------------------------------
-- Alarms
-- ---------------------------------------------------------------------------

-- data/agent/setting: one row.
CREATE TABLE TM_ALM_SETTING (
    SID_CORPORATE   integer NOT NULL DEFAULT 1,
    ROWCOUNT        integer,
    save            integer,
    alarmuse        varchar,
    PRIMARY KEY (SID_CORPORATE)
);

-- data/user/<id>/agent/setting: one row per user.
CREATE TABLE TMPR_ALM_SETTING (
    SID_CORPORATE   integer NOT NULL DEFAULT 1,
    SID_USER        integer NOT NULL,
    ROWCOUNT        integer,
    alarmuse        varchar,
    PRIMARY KEY (SID_CORPORATE, SID_USER)
);

-- data/user/<id>/agent/schedule: a user's notification plan. SENDTIMES is the
-- list of valid send times, local, as numbers joined by commas ("900,1730").
-- SENDLASTDATE/SENDLASTTIME (local YYYYMMDD, HHMM) are the last sending of an
-- Enterprise-edition working database; the flat store has none, so stage A
-- leaves them NULL.
CREATE TABLE TMPR_AGENT (
    SID_CORPORATE   integer NOT NULL DEFAULT 1,
    SID_USER        integer NOT NULL,
    sendkind        varchar,
    sendsize        integer,
    dispendtime     varchar,
    dispevent       varchar,
    dispplace       varchar,
    dispmemo        varchar,
    sendweek        varchar,
    senddate2       integer,
    sendholiday     varchar,
    SENDTIMES       varchar,
    SENDLASTDATE    varchar,
    SENDLASTTIME    varchar,
    PRIMARY KEY (SID_CORPORATE, SID_USER)
);

-- One row per send time of a user's plan: ID is the user, sid_scheduler is
-- always 1, stime is local HHMM with leading zeros. Two equal times of one
-- user give two equal rows, so this table has no key.
CREATE TABLE TM_SCHEDULER (
    SID_CORPORATE   integer NOT NULL DEFAULT 1,
    ID              integer NOT NULL,
    SID_SCHEDULER   integer NOT NULL,
    STIME           varchar NOT NULL
);
CREATE INDEX TM_SCHEDULER_ID ON TM_SCHEDULER (SID_CORPORATE, ID);


-- ---------------------------------------------------------------------------
-- Visitors
-- ---------------------------------------------------------------------------
-- The flat store has no visitors: stage A leaves these tables empty. They have
-- the shape of an Enterprise working database, so that stage B takes over
-- whatever rows such a database holds. Times are local 14-digit stamps.

CREATE TABLE TM_VIS_SETTING (
    SID_CORPORATE   integer NOT NULL DEFAULT 1,
    ROWCOUNT        integer,
    cretime         varchar,
    updtime         varchar,
    PRIMARY KEY (SID_CORPORATE)
);

-- Places where visitors are received.
CREATE TABLE TM_VIS_PLACE (
    SID_CORPORATE   integer NOT NULL DEFAULT 1,
    ID              integer NOT NULL,
    Name            varchar,
    SEQNO           integer,
    cretime         varchar,
    updtime         varchar,
    PRIMARY KEY (SID_CORPORATE, ID)
);

-- Users who receive visitors at a place.
CREATE TABLE TM_VIS_RECEPT_PLACE (
    SID_CORPORATE   integer NOT NULL DEFAULT 1,
    SID_PLACE       integer NOT NULL,
    SID_USER        integer NOT NULL,
    cretime         varchar,
    updtime         varchar,
    PRIMARY KEY (SID_CORPORATE, SID_PLACE, SID_USER)
);

CREATE TABLE TMPR_VIS_SETTING (
    SID_CORPORATE   integer NOT NULL DEFAULT 1,
    SID_USER        integer NOT NULL,
    ROWCOUNT        integer,
    cretime         varchar,
    updtime         varchar,
    PRIMARY KEY (SID_CORPORATE, SID_USER)
);

-- SID_SCHEDULE is the decimal id of the visit's schedule, if any; it is text
-- so that a broken link reaches stage B and is reported there.
CREATE TABLE TT_VISITOR (
    SID_CORPORATE   integer NOT NULL DEFAULT 1,
    ID              integer NOT NULL,
    SID_SCHEDULE    varchar,
    SID_PLACE       integer,
    company         varchar,
    name            varchar,
    memo            text,
    cretime         varchar,
    updtime         varchar,
    PRIMARY KEY (SID_CORPORATE, ID)
);
