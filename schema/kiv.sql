-- Target database tables that the migration writes (PostgreSQL 15, UTF8).
--
-- These are the tables of the target installation as far as the migration
-- sees them: the columns it writes, with the keys that make a second copy of
-- a row fail. A real installation brings its own, wider tables; this file
-- sets up a stand-in target for tests and trial runs, and says what the
-- queries in sql/sch/ must deliver.
--
-- Conventions:
--   * SID_CORPORATE leads every key and has no default: every query has to
--     deliver it (the working database holds it in every table).
--   * Schedule ids are 12 characters of lower-case base 36, made from the
--     decimal ids of the working database; the same id stands wherever a
--     row refers to a schedule (TT_SCHEDULE.ID, DID of tags and alarms,
--     TT_AGENDA.sid, TT_VISITOR.SID_SCHEDULE).
--   * Dates and times are digit texts in UTC: dates YYYYMMDD, times of day
--     HHMM, stamps YYYYMMDDHHMMSS. The times of a schedule are signed and may
--     pass 24 hours ('-0100', '2430'), hence five characters.
--   * cretime and updtime are on every table; most writers fill both, with
--     the time of the conversion when the source has none.
--   * Free texts are varchar without a length so that no migrated value is
--     refused for its length; long texts are text.
--   * No foreign keys: tables are filled one after the other and a row that
--     was left out must not take its dependants with it.
--
-- Load into an empty database:
--   psql -v ON_ERROR_STOP=1 -1 -d <target database> -f schema/kiv.sql


-- ---------------------------------------------------------------------------
-- Shared by several modules; SID_MODULE 1 schedule, 3 facilities, 26 minutes
-- ---------------------------------------------------------------------------

-- Last id handed out per module and sub code.
CREATE TABLE TM_INDEX (
    SID_CORPORATE   integer NOT NULL,
    SID_MODULE      integer NOT NULL,
    SUBCODE         varchar NOT NULL,
    lastid          integer,
    cretime         varchar(14),
    updtime         varchar(14),
    PRIMARY KEY (SID_CORPORATE, SID_MODULE, SUBCODE)
);

-- Users who administer a module: SID_ASSIGN is the user, SID_GROUP the group
-- whose data they administer, 0 for the whole module.
CREATE TABLE TM_RMODULE_ASSIGNUSER (
    SID_CORPORATE   integer NOT NULL,
    SID_MODULE      integer NOT NULL,
    SID_GROUP       integer NOT NULL DEFAULT 0,
    SID_ASSIGN      integer NOT NULL,
    cretime         varchar(14),
    updtime         varchar(14),
    PRIMARY KEY (SID_CORPORATE, SID_MODULE, SID_GROUP, SID_ASSIGN)
);


-- ---------------------------------------------------------------------------
-- Schedule: settings and masters
-- ---------------------------------------------------------------------------

-- One row per corporate, created with the installation; the migration
-- updates it.
CREATE TABLE TM_SCH_SETTING (
    SID_CORPORATE   integer NOT NULL,
    rowcount        integer,
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
    cretime         varchar(14),
    updtime         varchar(14),
    PRIMARY KEY (SID_CORPORATE)
);

CREATE TABLE TM_SCH_EVENT (
    SID_CORPORATE   integer NOT NULL,
    ID              integer NOT NULL,
    item            varchar,
    cretime         varchar(14),
    updtime         varchar(14),
    PRIMARY KEY (SID_CORPORATE, ID)
);

CREATE TABLE TM_SCH_PLACE (
    SID_CORPORATE   integer NOT NULL,
    ID              integer NOT NULL,
    item            varchar,
    cretime         varchar(14),
    updtime         varchar(14),
    PRIMARY KEY (SID_CORPORATE, ID)
);

-- Icons of schedules. The installation's own icons have seqno below 48;
-- migrated icons are numbered from 48 on, and their files lie under
-- schedule/icon/<ID>/.
CREATE TABLE TM_SCH_ICON (
    SID_CORPORATE   integer NOT NULL,
    ID              integer NOT NULL,
    name            varchar,
    filename        varchar,
    dispname        varchar,
    mimetype        varchar,
    seqno           integer,
    cretime         varchar(14),
    updtime         varchar(14),
    PRIMARY KEY (SID_CORPORATE, ID)
);

CREATE TABLE TMPR_SCH_SETTING (
    SID_CORPORATE   integer NOT NULL,
    SID_USER        integer NOT NULL,
    rowcount        integer,
    rowother        integer,
    sunday          varchar,
    holiday         varchar,
    disptotime      varchar,
    dispgroup       varchar,
    toppage         varchar,
    dupperm         varchar,
    othercolor      varchar,
    todo            varchar,
    cretime         varchar(14),
    updtime         varchar(14),
    PRIMARY KEY (SID_CORPORATE, SID_USER)
);

CREATE TABLE TMPR_SCH_EVENT (
    SID_CORPORATE   integer NOT NULL,
    SID_USER        integer NOT NULL,
    ID              integer NOT NULL,
    item            varchar,
    cretime         varchar(14),
    updtime         varchar(14),
    PRIMARY KEY (SID_CORPORATE, SID_USER, ID)
);

CREATE TABLE TMPR_SCH_PLACE (
    SID_CORPORATE   integer NOT NULL,
    SID_USER        integer NOT NULL,
    ID              integer NOT NULL,
    item            varchar,
    cretime         varchar(14),
    updtime         varchar(14),
    PRIMARY KEY (SID_CORPORATE, SID_USER, ID)
);

-- A user's display groups.
CREATE TABLE TMPR_DISPGROUP (
    SID_CORPORATE   integer NOT NULL,
    SID_USER        integer NOT NULL,
    ID              integer NOT NULL,
    name            varchar,
    seqno           integer,
    cretime         varchar(14),
    updtime         varchar(14),
    PRIMARY KEY (SID_CORPORATE, SID_USER, ID)
);


-- ---------------------------------------------------------------------------
-- Schedule: who may see a user's schedule. SID_USER is the owner of the
-- schedule, SID_ASSIGN the group, role or user the right is given to.
-- ---------------------------------------------------------------------------

CREATE TABLE TMPR_ACCESS_ALL (
    SID_CORPORATE   integer NOT NULL,
    SID_USER        integer NOT NULL,
    SID_MODULE      integer NOT NULL,
    accesskind      integer,
    cretime         varchar(14),
    updtime         varchar(14),
    PRIMARY KEY (SID_CORPORATE, SID_USER, SID_MODULE)
);

CREATE TABLE TMPR_ACCESS_GROUP (
    SID_CORPORATE   integer NOT NULL,
    SID_USER        integer NOT NULL,
    SID_MODULE      integer NOT NULL,
    SID_ASSIGN      integer NOT NULL,
    accesskind      integer,
    cretime         varchar(14),
    updtime         varchar(14),
    PRIMARY KEY (SID_CORPORATE, SID_USER, SID_MODULE, SID_ASSIGN)
);

CREATE TABLE TMPR_ACCESS_ROLE (
    SID_CORPORATE   integer NOT NULL,
    SID_USER        integer NOT NULL,
    SID_MODULE      integer NOT NULL,
    SID_ASSIGN      integer NOT NULL,
    accesskind      integer,
    cretime         varchar(14),
    updtime         varchar(14),
    PRIMARY KEY (SID_CORPORATE, SID_USER, SID_MODULE, SID_ASSIGN)
);

CREATE TABLE TMPR_ACCESS_USER (
    SID_CORPORATE   integer NOT NULL,
    SID_USER        integer NOT NULL,
    SID_MODULE      integer NOT NULL,
    SID_ASSIGN      integer NOT NULL,
    accesskind      integer,
    cretime         varchar(14),
    updtime         varchar(14),
    PRIMARY KEY (SID_CORPORATE, SID_USER, SID_MODULE, SID_ASSIGN)
);


-- ---------------------------------------------------------------------------
-- Schedules
-- ---------------------------------------------------------------------------

-- One row per schedule, whoever owns it; the owners are its destinations.
CREATE TABLE TT_SCHEDULE (
    SID_CORPORATE   integer NOT NULL,
    ID              varchar(12) NOT NULL,
    startdate       varchar(8),
    enddate         varchar(8),
    starttime       varchar(5),
    endtime         varchar(5),
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
    entrytime       varchar,
    repeat          varchar,
    repeatlimit     varchar,
    intervalkind    varchar,
    interval        integer,
    approvreq       varchar,
    aprvmailnotice  varchar,
    agenda          varchar,
    everyweek       integer,
    everyweekday    varchar(7),
    everymonth      integer,
    visitor         varchar(1) NOT NULL DEFAULT '0',
    cretime         varchar(14),
    updtime         varchar(14),
    PRIMARY KEY (SID_CORPORATE, ID)
);

-- Listed days of a repeating schedule; SID_ASSIGN is the UTC date. deldates 0
-- is a day the schedule falls on, 1 a day taken out of its series; one day
-- may stand in both.
CREATE TABLE TT_SCH_REPDATE (
    SID_CORPORATE   integer NOT NULL,
    ID              varchar(12) NOT NULL,
    SID_ASSIGN      varchar(8) NOT NULL,
    deldates        integer NOT NULL DEFAULT 0,
    cretime         varchar(14),
    updtime         varchar(14),
    PRIMARY KEY (SID_CORPORATE, ID, SID_ASSIGN, deldates)
);

-- Files of a schedule; the file lies in schedule/<first 6 of ID>/<ID>/.
CREATE TABLE TT_ATTACH_SCHEDULE (
    SID_CORPORATE   integer NOT NULL,
    ID              varchar(12) NOT NULL,
    SID_ATTACH      integer NOT NULL,
    filename        varchar,
    dispname        varchar,
    mimetype        varchar,
    cretime         varchar(14),
    updtime         varchar(14),
    PRIMARY KEY (SID_CORPORATE, ID, SID_ATTACH)
);

-- Destinations of a schedule: otherto_type tells what SID_ASSIGN is ('1' user,
-- '2' group, '3' personal group, '4' facility). A personal group's id is its owner's
-- own, so SID_USER holds that owner; it is 0 for the other kinds.
CREATE TABLE TT_SCHEDULE_OTHERTO (
    SID_CORPORATE   integer NOT NULL,
    ID              varchar(12) NOT NULL,
    otherto_type    varchar(2) NOT NULL,
    SID_USER        integer NOT NULL DEFAULT 0,
    SID_ASSIGN      integer NOT NULL,
    startdate       varchar(8),
    enddate         varchar(8),
    cretime         varchar(14),
    updtime         varchar(14),
    PRIMARY KEY (SID_CORPORATE, ID, otherto_type, SID_USER, SID_ASSIGN)
);

-- What a schedule is to each user it belongs to (SID_ASSIGN is the user).
CREATE TABLE TT_SCHEDULE_USERINFO (
    SID_CORPORATE   integer NOT NULL,
    ID              varchar(12) NOT NULL,
    SID_ASSIGN      integer NOT NULL,
    alarm           varchar,
    alarmtime       integer,
    alarmcnt        integer,
    approvsts       varchar,
    cretime         varchar(14),
    updtime         varchar(14),
    PRIMARY KEY (SID_CORPORATE, ID, SID_ASSIGN)
);

-- A user's sticky notes; DID is the schedule a note was made from.
CREATE TABLE TTPR_TAG (
    SID_CORPORATE   integer NOT NULL,
    SID_USER        integer NOT NULL,
    ID              integer NOT NULL,
    SID_MODULE      integer,
    DID             varchar(12),
    title           varchar,
    body            text,
    url             varchar,
    X               integer,
    Y               integer,
    width           integer,
    height          integer,
    tagcolor        integer,
    cretime         varchar(14),
    updtime         varchar(14),
    PRIMARY KEY (SID_CORPORATE, SID_USER, ID)
);

-- A user's alarms; DID is the schedule, SENDTIME the UTC stamp to send at,
-- OBJID the link to the schedule.
CREATE TABLE TTPR_ALARM (
    SID_CORPORATE   integer NOT NULL,
    SID_USER        integer NOT NULL,
    ID              integer NOT NULL,
    SID_MENU        integer,
    DID             varchar(12),
    SENDTIME        varchar(14),
    OBJID           varchar,
    STATUS          integer,
    NAME            varchar,
    MEMO            text,
    cretime         varchar(14),
    updtime         varchar(14),
    PRIMARY KEY (SID_CORPORATE, SID_USER, ID)
);


-- ---------------------------------------------------------------------------
-- Facilities
-- ---------------------------------------------------------------------------

CREATE TABLE TM_PLT_SETTING (
    SID_CORPORATE   integer NOT NULL,
    rowcount        integer,
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
    cretime         varchar(14),
    updtime         varchar(14),
    PRIMARY KEY (SID_CORPORATE)
);

-- Purposes of a reservation.
CREATE TABLE TM_PLT_EVENT (
    SID_CORPORATE   integer NOT NULL,
    ID              integer NOT NULL,
    item            varchar,
    cretime         varchar(14),
    updtime         varchar(14),
    PRIMARY KEY (SID_CORPORATE, ID)
);

-- starttime and endtime are UTC times of day (HHMM).
CREATE TABLE TM_PLT_GROUP (
    SID_CORPORATE   integer NOT NULL,
    ID              integer NOT NULL,
    name            varchar,
    starttime       varchar(4),
    endtime         varchar(4),
    usetime         varchar,
    reservlimit     varchar,
    seqno           integer,
    cretime         varchar(14),
    updtime         varchar(14),
    PRIMARY KEY (SID_CORPORATE, ID)
);

CREATE TABLE TM_PLANT (
    SID_CORPORATE   integer NOT NULL,
    ID              integer NOT NULL,
    name            varchar,
    memo            text,
    assigngroup     integer,
    starttime       varchar(4),
    endtime         varchar(4),
    usetime         varchar,
    reservlimit     varchar,
    holidayuse      varchar,
    managegroup     integer,
    seqno           integer,
    cretime         varchar(14),
    updtime         varchar(14),
    PRIMARY KEY (SID_CORPORATE, ID)
);

-- Who may reserve a facility: SID_PLANT is the facility, SID_ASSIGN the
-- group, role or user the right is given to.
CREATE TABLE TM_ACCPLT_ALL (
    SID_CORPORATE   integer NOT NULL,
    SID_PLANT       integer NOT NULL,
    accesskind      integer,
    cretime         varchar(14),
    updtime         varchar(14),
    PRIMARY KEY (SID_CORPORATE, SID_PLANT)
);

CREATE TABLE TM_ACCPLT_GROUP (
    SID_CORPORATE   integer NOT NULL,
    SID_PLANT       integer NOT NULL,
    SID_ASSIGN      integer NOT NULL,
    accesskind      integer,
    cretime         varchar(14),
    updtime         varchar(14),
    PRIMARY KEY (SID_CORPORATE, SID_PLANT, SID_ASSIGN)
);

CREATE TABLE TM_ACCPLT_ROLE (
    SID_CORPORATE   integer NOT NULL,
    SID_PLANT       integer NOT NULL,
    SID_ASSIGN      integer NOT NULL,
    accesskind      integer,
    cretime         varchar(14),
    updtime         varchar(14),
    PRIMARY KEY (SID_CORPORATE, SID_PLANT, SID_ASSIGN)
);

CREATE TABLE TM_ACCPLT_USER (
    SID_CORPORATE   integer NOT NULL,
    SID_PLANT       integer NOT NULL,
    SID_ASSIGN      integer NOT NULL,
    accesskind      integer,
    cretime         varchar(14),
    updtime         varchar(14),
    PRIMARY KEY (SID_CORPORATE, SID_PLANT, SID_ASSIGN)
);

CREATE TABLE TMPR_PLT_SETTING (
    SID_CORPORATE   integer NOT NULL,
    SID_USER        integer NOT NULL,
    rowcount        integer,
    rowother        integer,
    sunday          varchar,
    holiday         varchar,
    disptotime      varchar,
    defgroup        varchar,
    title           varchar,
    cretime         varchar(14),
    updtime         varchar(14),
    PRIMARY KEY (SID_CORPORATE, SID_USER)
);

-- A user's order of the columns of the facility import and export.
CREATE TABLE TMPR_PLTMST_CSVINDEX (
    SID_CORPORATE   integer NOT NULL,
    SID_USER        integer NOT NULL,
    SEQNO           integer NOT NULL,
    ID              integer,
    cretime         varchar(14),
    updtime         varchar(14),
    PRIMARY KEY (SID_CORPORATE, SID_USER, SEQNO)
);


-- ---------------------------------------------------------------------------
-- Alarms
-- ---------------------------------------------------------------------------

CREATE TABLE TM_ALM_SETTING (
    SID_CORPORATE   integer NOT NULL,
    rowcount        integer,
    save            integer,
    alarmuse        varchar,
    cretime         varchar(14),
    updtime         varchar(14),
    PRIMARY KEY (SID_CORPORATE)
);

CREATE TABLE TMPR_ALM_SETTING (
    SID_CORPORATE   integer NOT NULL,
    SID_USER        integer NOT NULL,
    rowcount        integer,
    alarmuse        varchar,
    cretime         varchar(14),
    updtime         varchar(14),
    PRIMARY KEY (SID_CORPORATE, SID_USER)
);

-- A user's notification plan. sendtimes lists UTC times of day as numbers
-- joined by commas ("0,830"); sendlastdate/sendlasttime is the last sending.
CREATE TABLE TMPR_AGENT (
    SID_CORPORATE   integer NOT NULL,
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
    sendtimes       varchar,
    sendlastdate    varchar(8),
    sendlasttime    varchar(4),
    cretime         varchar(14),
    updtime         varchar(14),
    PRIMARY KEY (SID_CORPORATE, SID_USER)
);

-- Send times of the users' plans: SID_SCHEDULER is the kind of job (1 for
-- the schedule notification), STIME a UTC time of day (HHMM).
CREATE TABLE TM_SCHEDULER (
    SID_CORPORATE   integer NOT NULL,
    SID_SCHEDULER   integer NOT NULL,
    SID_USER        integer NOT NULL,
    STIME           varchar(4) NOT NULL,
    cretime         varchar(14),
    updtime         varchar(14),
    PRIMARY KEY (SID_CORPORATE, SID_SCHEDULER, SID_USER, STIME)
);


-- ---------------------------------------------------------------------------
-- Minutes
-- ---------------------------------------------------------------------------

-- One row per corporate, created with the installation; the migration
-- updates it.
CREATE TABLE TM_AGENDA_SETTING (
    SID_CORPORATE   integer NOT NULL,
    rowcount        integer,
    save            integer,
    mngrow          integer,
    cretime         varchar(14),
    updtime         varchar(14),
    PRIMARY KEY (SID_CORPORATE)
);

CREATE TABLE TMPR_AGENDA_SETTING (
    SID_CORPORATE   integer NOT NULL,
    SID_USER        integer NOT NULL,
    rowcount        integer,
    mngrow          integer,
    cretime         varchar(14),
    updtime         varchar(14),
    PRIMARY KEY (SID_CORPORATE, SID_USER)
);

-- sid is the schedule the minutes belong to, schseldate its UTC start date;
-- entrydate/entrytime and updatedate/updatetime are UTC.
CREATE TABLE TT_AGENDA (
    SID_CORPORATE   integer NOT NULL,
    ID              integer NOT NULL,
    subject         varchar,
    STATUS          varchar,
    sid             varchar(12),
    schseldate      varchar(8),
    stype           varchar,
    stargetid       varchar,
    stargetpri      varchar,
    mailto          varchar,
    entry           integer,
    updateuser      integer,
    entrydate       varchar(8),
    entrytime       varchar(4),
    updatedate      varchar(8),
    updatetime      varchar(4),
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
    cretime         varchar(14),
    updtime         varchar(14),
    PRIMARY KEY (SID_CORPORATE, ID)
);

-- Files of a set of minutes (ID); SID_ATTACH counts from 1 per minutes and
-- the file is stored as attach<5 digits> under agenda/.
CREATE TABLE TT_ATTACH_AGENDA (
    SID_CORPORATE   integer NOT NULL,
    ID              integer NOT NULL,
    SID_ATTACH      integer NOT NULL,
    filename        varchar,
    dispname        varchar,
    mimetype        varchar,
    cretime         varchar(14),
    updtime         varchar(14),
    PRIMARY KEY (SID_CORPORATE, ID, SID_ATTACH)
);

-- Topics: memo is the rich text (HTML), format the plain text it was made
-- from; SEQNO numbers the topics of one set of minutes from 1.
CREATE TABLE TT_AGENDA_TOPIC (
    SID_CORPORATE   integer NOT NULL,
    agnid           integer NOT NULL,
    ID              integer NOT NULL,
    SEQNO           integer,
    titletopic      varchar,
    textkind        varchar,
    memo            text,
    format          text,
    cretime         varchar(14),
    updtime         varchar(14),
    PRIMARY KEY (SID_CORPORATE, agnid, ID)
);

-- Last topic id per set of minutes (ID).
CREATE TABLE TT_INDEX_AGENDA_TOPIC (
    SID_CORPORATE   integer NOT NULL,
    ID              integer NOT NULL,
    lastid          integer,
    cretime         varchar(14),
    updtime         varchar(14),
    PRIMARY KEY (SID_CORPORATE, ID)
);

CREATE TABLE TT_AGENDA_MEMBER (
    SID_CORPORATE   integer NOT NULL,
    agnid           integer NOT NULL,
    SEQNO           integer NOT NULL,
    ID              integer,
    name            varchar,
    kana            varchar,
    cretime         varchar(14),
    updtime         varchar(14),
    PRIMARY KEY (SID_CORPORATE, agnid, SEQNO)
);


-- ---------------------------------------------------------------------------
-- Visitors
-- ---------------------------------------------------------------------------

CREATE TABLE TM_VIS_SETTING (
    SID_CORPORATE   integer NOT NULL,
    rowcount        integer,
    cretime         varchar(14),
    updtime         varchar(14),
    PRIMARY KEY (SID_CORPORATE)
);

-- Places where visitors are received.
CREATE TABLE TM_VIS_PLACE (
    SID_CORPORATE   integer NOT NULL,
    ID              integer NOT NULL,
    name            varchar,
    seqno           integer,
    cretime         varchar(14),
    updtime         varchar(14),
    PRIMARY KEY (SID_CORPORATE, ID)
);

-- Users who receive visitors at a place.
CREATE TABLE TM_VIS_RECEPT_PLACE (
    SID_CORPORATE   integer NOT NULL,
    SID_PLACE       integer NOT NULL,
    SID_USER        integer NOT NULL,
    cretime         varchar(14),
    updtime         varchar(14),
    PRIMARY KEY (SID_CORPORATE, SID_PLACE, SID_USER)
);

CREATE TABLE TMPR_VIS_SETTING (
    SID_CORPORATE   integer NOT NULL,
    SID_USER        integer NOT NULL,
    rowcount        integer,
    cretime         varchar(14),
    updtime         varchar(14),
    PRIMARY KEY (SID_CORPORATE, SID_USER)
);

-- Visitors. The migration never writes ID; the table numbers its rows.
-- SID_SCHEDULE is the schedule of the visit, if any.
CREATE TABLE TT_VISITOR (
    SID_CORPORATE   integer NOT NULL,
    ID              integer GENERATED BY DEFAULT AS IDENTITY,
    SID_SCHEDULE    varchar(12),
    SID_PLACE       integer,
    company         varchar,
    name            varchar,
    memo            text,
    cretime         varchar(14),
    updtime         varchar(14),
    PRIMARY KEY (SID_CORPORATE, ID)
);


-- ---------------------------------------------------------------------------
-- Rows of a fresh installation that the migration relies on: the two
-- settings it updates instead of inserting. Corporate id 1.
-- ---------------------------------------------------------------------------

INSERT INTO TM_SCH_SETTING (SID_CORPORATE) VALUES (1);
INSERT INTO TM_AGENDA_SETTING (SID_CORPORATE) VALUES (1);
