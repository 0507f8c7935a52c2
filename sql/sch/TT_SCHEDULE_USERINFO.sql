SELECT u.SID_CORPORATE, u.ID, u.SID_USER AS SID_ASSIGN,
       u.alarm, u.alarmtime, u.alarmcnt, u.approvsts, u.cretime, CASE WHEN u.entrytime ~ '^[0-9]{14}$' THEN u.entrytime ELSE u.cretime END AS updtime,
       r.startdate, r.enddate, r.starttime, r.endtime,
       CASE WHEN r.repeat IN ('r', 'y', 'm', 'w', 'd') THEN r.repeat
            WHEN coalesce(r.repeat, '') IN ('', '0') THEN NULL::varchar
            WHEN l.ID IS NOT NULL THEN 'r'::varchar
            ELSE r.repeat END AS repeat,
       r.memo, r.event, r.detail, r.place, r.other, r.outflg, r.openlevel, r.rankflg, r.reserve, r.flag,
       NULL::varchar AS visitor, r.iconno, i.name AS iconname, i.filename AS iconfilename,
       NULL::integer AS TAG_SID_MODULE, NULL::integer AS TAG_ID, NULL::integer AS TAG_tagcolor,
       CASE WHEN coalesce(u.alarm, '') NOT IN ('', '0') THEN u.alarmno END AS ALARM_ID,
       CASE WHEN coalesce(u.alarm, '') NOT IN ('', '0') THEN 1 END AS ALARM_SID_MENU,
       CASE WHEN coalesce(u.alarm, '') NOT IN ('', '0') AND r.startdate ~ '^[0-9]{4}(0[1-9]|1[0-2])(0[1-9]|[12][0-9]|3[01])'
                 AND substr(r.startdate, 1, 4) <> '0000'
            THEN to_char((to_date(substr(r.startdate, 1, 6) || '01', 'YYYYMMDD') + (substr(r.startdate, 7, 2)::int - 1))::timestamp
                         + (CASE WHEN r.starttime ~ '^[0-9]{4}$'
                      THEN least(substr(r.starttime, 1, 2)::int * 60 + substr(r.starttime, 3, 2)::int, 23 * 60 + 55)
                      ELSE 0 END - coalesce(u.alarmtime, 0)) * interval '1 minute',
                         'YYYYMMDDHH24MISS')::varchar END AS ALARM_SENDTIME,
       CASE WHEN coalesce(u.alarm, '') NOT IN ('', '0') THEN 0 END AS ALARM_STATUS,
       CASE WHEN coalesce(u.alarm, '') NOT IN ('', '0') THEN coalesce(r.event, r.detail) END AS ALARM_NAME,
       CASE WHEN coalesce(u.alarm, '') NOT IN ('', '0') THEN r.memo END AS ALARM_MEMO,
       '1'::varchar AS LOG_KBN, u.SID_USER AS LOG_TID, NULL::integer AS LOG_SID_PRGROUP, u.ID AS LOG_SCH_ID,
       u.startdate AS LOG_startdate, u.starttime AS LOG_starttime
  FROM (SELECT t.*, row_number() OVER (PARTITION BY t.SID_CORPORATE, t.SID_USER ORDER BY t.ID) AS alarmno
          FROM TTPR_SCHEDULE t) u
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
    ON r.SID_CORPORATE = u.SID_CORPORATE AND r.ID = u.ID
  LEFT JOIN (SELECT DISTINCT SID_CORPORATE, ID
        FROM (SELECT '1'::varchar AS kbn, SID_CORPORATE, SID_USER AS tid, NULL::integer AS prgroup, ID, SID_ASSIGN, deldates FROM TTPR_SCH_REPDATE WHERE deldates = 0
              UNION ALL SELECT '2'::varchar AS kbn, SID_CORPORATE, SID_GROUP AS tid, NULL::integer AS prgroup, ID, SID_ASSIGN, deldates FROM TT_SCH_GROUP_REPDATE WHERE deldates = 0
              UNION ALL SELECT '3'::varchar AS kbn, SID_CORPORATE, SID_USER AS tid, SID_PRGROUP AS prgroup, ID, SID_ASSIGN, deldates FROM TTPR_SCH_GROUP_REPDATE WHERE deldates = 0
              UNION ALL SELECT '4'::varchar AS kbn, SID_CORPORATE, SID_PLANT AS tid, NULL::integer AS prgroup, ID, SID_ASSIGN, deldates FROM TT_PLT_SCH_REPDATE WHERE deldates = 0) x) l ON l.SID_CORPORATE = u.SID_CORPORATE AND l.ID = u.ID
  LEFT JOIN TM_SCH_ICON i ON i.SID_CORPORATE = r.SID_CORPORATE AND i.ID = r.iconno
 ORDER BY u.SID_CORPORATE, u.ID, u.SID_USER
