SELECT d.SID_CORPORATE, d.ID, d.SID_ASSIGN::varchar AS SID_ASSIGN, d.deldates,
       r.starttime, r.endtime,
       CASE WHEN r.repeat IN ('r', 'y', 'm', 'w', 'd') THEN r.repeat
            WHEN coalesce(r.repeat, '') IN ('', '0') THEN NULL::varchar
            WHEN l.ID IS NOT NULL THEN 'r'::varchar
            ELSE r.repeat END AS repeat,
       r.everyweek,
       CASE WHEN length(r.everyweekday::varchar) <= 7 THEN lpad(r.everyweekday::varchar, 7, '0')::varchar
            ELSE r.everyweekday::varchar END AS everyweekday,
       r.event, r.detail, r.cretime, CASE WHEN r.entrytime ~ '^[0-9]{14}$' THEN r.entrytime ELSE r.cretime END AS updtime,
       d.kbn AS LOG_KBN, d.tid AS LOG_TID, d.prgroup AS LOG_SID_PRGROUP, d.ID AS LOG_SCH_ID,
       r.startdate AS LOG_startdate, r.starttime AS LOG_starttime, d.SID_ASSIGN AS LOG_repdate
  FROM (SELECT DISTINCT ON (a.SID_CORPORATE, a.ID, a.SID_ASSIGN, a.deldates) a.*
          FROM (SELECT '1'::varchar AS kbn, SID_CORPORATE, SID_USER AS tid, NULL::integer AS prgroup, ID, SID_ASSIGN, deldates FROM TTPR_SCH_REPDATE
                UNION ALL SELECT '2'::varchar AS kbn, SID_CORPORATE, SID_GROUP AS tid, NULL::integer AS prgroup, ID, SID_ASSIGN, deldates FROM TT_SCH_GROUP_REPDATE
                UNION ALL SELECT '3'::varchar AS kbn, SID_CORPORATE, SID_USER AS tid, SID_PRGROUP AS prgroup, ID, SID_ASSIGN, deldates FROM TTPR_SCH_GROUP_REPDATE
                UNION ALL SELECT '4'::varchar AS kbn, SID_CORPORATE, SID_PLANT AS tid, NULL::integer AS prgroup, ID, SID_ASSIGN, deldates FROM TT_PLT_SCH_REPDATE) a
         ORDER BY a.SID_CORPORATE, a.ID, a.SID_ASSIGN, a.deldates, a.kbn, a.tid, a.prgroup) d
  LEFT JOIN (SELECT DISTINCT ON (s.SID_CORPORATE, s.ID) s.*
             FROM (SELECT '1'::varchar AS kbn, SID_CORPORATE, SID_USER AS tid, NULL::integer AS prgroup, ID,
                          startdate, enddate, starttime, endtime, eventflg, event, detail, memo, place, other, rankflg,
                          reserve, openlevel, flag, daycolor, outflg, iconno, srctype, srcsid, srctarget, entry, creuser,
                          cretime, entrytime, repeat, repeatlimit, intervalkind, interval, approvreq, aprvmailnotice, agenda,
                          everyweek, everyweekday, everymonth, alarm, alarmtime, alarmcnt, approvsts
                   FROM TTPR_SCHEDULE
                   UNION ALL SELECT '2'::varchar AS kbn, SID_CORPORATE, SID_GROUP AS tid, NULL::integer AS prgroup, ID,
                          startdate, enddate, starttime, endtime, eventflg, event, detail, memo, place, other, rankflg,
                          reserve, openlevel, flag, daycolor, outflg, iconno, srctype, srcsid, srctarget, entry, creuser,
                          cretime, entrytime, repeat, repeatlimit, intervalkind, interval, approvreq, aprvmailnotice, agenda,
                          everyweek, everyweekday, everymonth,
                          NULL::varchar AS alarm, NULL::integer AS alarmtime, NULL::integer AS alarmcnt, NULL::varchar AS approvsts
                   FROM TT_SCH_GROUP
                   UNION ALL SELECT '3'::varchar AS kbn, SID_CORPORATE, SID_USER AS tid, SID_PRGROUP AS prgroup, ID,
                          startdate, enddate, starttime, endtime, eventflg, event, detail, memo, place, other, rankflg,
                          reserve, openlevel, flag, daycolor, outflg, iconno, srctype, srcsid, srctarget, entry, creuser,
                          cretime, entrytime, repeat, repeatlimit, intervalkind, interval, approvreq, aprvmailnotice, agenda,
                          everyweek, everyweekday, everymonth,
                          NULL::varchar AS alarm, NULL::integer AS alarmtime, NULL::integer AS alarmcnt, NULL::varchar AS approvsts
                   FROM TTPR_SCH_GROUP
                   UNION ALL SELECT '4'::varchar AS kbn, SID_CORPORATE, SID_PLANT AS tid, NULL::integer AS prgroup, ID,
                          startdate, enddate, starttime, endtime, eventflg, event, detail, memo, place, other, rankflg,
                          reserve, openlevel, flag, daycolor, outflg, iconno, srctype, srcsid, srctarget, entry, creuser,
                          cretime, entrytime, repeat, repeatlimit, intervalkind, interval, approvreq, aprvmailnotice, agenda,
                          everyweek, everyweekday, everymonth,
                          NULL::varchar AS alarm, NULL::integer AS alarmtime, NULL::integer AS alarmcnt, NULL::varchar AS approvsts
                   FROM TT_PLT_SCHEDULE) s
             ORDER BY s.SID_CORPORATE, s.ID, coalesce(s.kbn = '1' AND s.tid = s.creuser, false) DESC,
                      s.kbn, s.tid, s.prgroup) r
    ON r.SID_CORPORATE = d.SID_CORPORATE AND r.ID = d.ID
  LEFT JOIN (SELECT DISTINCT SID_CORPORATE, ID
             FROM (SELECT '1'::varchar AS kbn, SID_CORPORATE, SID_USER AS tid, NULL::integer AS prgroup, ID, SID_ASSIGN, deldates FROM TTPR_SCH_REPDATE WHERE deldates = 0
                   UNION ALL SELECT '2'::varchar AS kbn, SID_CORPORATE, SID_GROUP AS tid, NULL::integer AS prgroup, ID, SID_ASSIGN, deldates FROM TT_SCH_GROUP_REPDATE WHERE deldates = 0
                   UNION ALL SELECT '3'::varchar AS kbn, SID_CORPORATE, SID_USER AS tid, SID_PRGROUP AS prgroup, ID, SID_ASSIGN, deldates FROM TTPR_SCH_GROUP_REPDATE WHERE deldates = 0
                   UNION ALL SELECT '4'::varchar AS kbn, SID_CORPORATE, SID_PLANT AS tid, NULL::integer AS prgroup, ID, SID_ASSIGN, deldates FROM TT_PLT_SCH_REPDATE WHERE deldates = 0) x) l ON l.SID_CORPORATE = d.SID_CORPORATE AND l.ID = d.ID
 ORDER BY d.SID_CORPORATE, d.ID, d.SID_ASSIGN, d.deldates
