SELECT f.SID_CORPORATE, f.ID, f.SID_ATTACH, f.filename, f.dispname, f.mimetype,
       f.kbn AS KBN, f.ID AS ORG_ID,
       CASE WHEN f.kbn = '3' THEN f.prgroup ELSE f.tid END AS SID_ASSIGN, f.uid AS SID_USER,
       coalesce(f.dispname, f.filename) AS logtitle,
       r.event, r.detail,
       f.kbn AS LOG_KBN, f.tid AS LOG_TID, f.prgroup AS LOG_SID_PRGROUP, f.ID AS LOG_SCH_ID,
       r.startdate AS LOG_startdate, r.starttime AS LOG_starttime
  FROM (SELECT DISTINCT ON (a.SID_CORPORATE, a.ID, a.SID_ATTACH) a.*
          FROM (SELECT '1'::varchar AS kbn, SID_CORPORATE, SID_USER AS tid, NULL::integer AS prgroup, SID_USER AS uid, ID, SID_ATTACH,
                       filename, dispname, mimetype FROM TTPR_ATTACH_SCHEDULE
                UNION ALL SELECT '2'::varchar AS kbn, SID_CORPORATE, SID_GROUP AS tid, NULL::integer AS prgroup, NULL::integer AS uid, ID, SID_ATTACH,
                       filename, dispname, mimetype FROM TT_ATTACH_SCH_GROUP
                UNION ALL SELECT '3'::varchar AS kbn, SID_CORPORATE, SID_USER AS tid, SID_PRGROUP AS prgroup, SID_USER AS uid, ID, SID_ATTACH,
                       filename, dispname, mimetype FROM TTPR_ATTACH_SCH_GROUP
                UNION ALL SELECT '4'::varchar AS kbn, SID_CORPORATE, SID_PLANT AS tid, NULL::integer AS prgroup, NULL::integer AS uid, ID, SID_ATTACH,
                       filename, dispname, mimetype FROM TT_ATTACH_PLT_SCHEDULE) a
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
                               s.kbn, s.tid, s.prgroup) c
            ON c.SID_CORPORATE = a.SID_CORPORATE AND c.ID = a.ID
         ORDER BY a.SID_CORPORATE, a.ID, a.SID_ATTACH,
                  coalesce(a.kbn = c.kbn AND a.tid = c.tid AND a.prgroup IS NOT DISTINCT FROM c.prgroup, false) DESC,
                  a.kbn, a.tid, a.prgroup) f
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
    ON r.SID_CORPORATE = f.SID_CORPORATE AND r.ID = f.ID
 ORDER BY f.SID_CORPORATE, f.ID, f.SID_ATTACH
