SELECT o.SID_CORPORATE, o.ID, o.kbn AS otherto_type,
       CASE WHEN o.kbn = '3' THEN o.tid ELSE 0 END AS SID_USER,
       CASE WHEN o.kbn = '3' THEN o.prgroup ELSE o.tid END AS SID_ASSIGN,
       r.startdate, r.enddate, r.starttime, r.endtime,
       CASE WHEN r.repeat IN ('r', 'y', 'm', 'w', 'd') THEN r.repeat
            WHEN coalesce(r.repeat, '') IN ('', '0') THEN NULL::varchar
            WHEN l.ID IS NOT NULL THEN 'r'::varchar
            ELSE r.repeat END AS repeat,
       o.cretime, CASE WHEN o.entrytime ~ '^[0-9]{14}$' THEN o.entrytime ELSE o.cretime END AS updtime,
       r.event, r.detail,
       o.kbn AS LOG_KBN, o.tid AS LOG_TID, o.prgroup AS LOG_SID_PRGROUP, o.ID AS LOG_SCH_ID,
       r.startdate AS LOG_startdate, r.starttime AS LOG_starttime
  FROM (SELECT '1'::varchar AS kbn, SID_CORPORATE, SID_USER AS tid, NULL::integer AS prgroup, ID, cretime, entrytime FROM TTPR_SCHEDULE
        UNION ALL SELECT '2'::varchar AS kbn, SID_CORPORATE, SID_GROUP AS tid, NULL::integer AS prgroup, ID, cretime, entrytime FROM TT_SCH_GROUP
        UNION ALL SELECT '3'::varchar AS kbn, SID_CORPORATE, SID_USER AS tid, SID_PRGROUP AS prgroup, ID, cretime, entrytime FROM TTPR_SCH_GROUP
        UNION ALL SELECT '4'::varchar AS kbn, SID_CORPORATE, SID_PLANT AS tid, NULL::integer AS prgroup, ID, cretime, entrytime FROM TT_PLT_SCHEDULE) o
  JOIN (SELECT DISTINCT ON (s.SID_CORPORATE, s.ID) s.*
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
    ON r.SID_CORPORATE = o.SID_CORPORATE AND r.ID = o.ID
  LEFT JOIN (SELECT DISTINCT SID_CORPORATE, ID
        FROM (SELECT '1'::varchar AS kbn, SID_CORPORATE, SID_USER AS tid, NULL::integer AS prgroup, ID, SID_ASSIGN, deldates FROM TTPR_SCH_REPDATE WHERE deldates = 0
              UNION ALL SELECT '2'::varchar AS kbn, SID_CORPORATE, SID_GROUP AS tid, NULL::integer AS prgroup, ID, SID_ASSIGN, deldates FROM TT_SCH_GROUP_REPDATE WHERE deldates = 0
              UNION ALL SELECT '3'::varchar AS kbn, SID_CORPORATE, SID_USER AS tid, SID_PRGROUP AS prgroup, ID, SID_ASSIGN, deldates FROM TTPR_SCH_GROUP_REPDATE WHERE deldates = 0
              UNION ALL SELECT '4'::varchar AS kbn, SID_CORPORATE, SID_PLANT AS tid, NULL::integer AS prgroup, ID, SID_ASSIGN, deldates FROM TT_PLT_SCH_REPDATE WHERE deldates = 0) x) l ON l.SID_CORPORATE = o.SID_CORPORATE AND l.ID = o.ID
 ORDER BY o.SID_CORPORATE, o.ID, o.kbn, o.tid, o.prgroup
