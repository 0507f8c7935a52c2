SELECT count(*) FROM (SELECT DISTINCT SID_CORPORATE, ID, SID_ATTACH
  FROM (SELECT '1'::varchar AS kbn, SID_CORPORATE, SID_USER AS tid, NULL::integer AS prgroup, SID_USER AS uid, ID, SID_ATTACH,
               filename, dispname, mimetype FROM TTPR_ATTACH_SCHEDULE
        UNION ALL SELECT '2'::varchar AS kbn, SID_CORPORATE, SID_GROUP AS tid, NULL::integer AS prgroup, NULL::integer AS uid, ID, SID_ATTACH,
               filename, dispname, mimetype FROM TT_ATTACH_SCH_GROUP
        UNION ALL SELECT '3'::varchar AS kbn, SID_CORPORATE, SID_USER AS tid, SID_PRGROUP AS prgroup, SID_USER AS uid, ID, SID_ATTACH,
               filename, dispname, mimetype FROM TTPR_ATTACH_SCH_GROUP
        UNION ALL SELECT '4'::varchar AS kbn, SID_CORPORATE, SID_PLANT AS tid, NULL::integer AS prgroup, NULL::integer AS uid, ID, SID_ATTACH,
               filename, dispname, mimetype FROM TT_ATTACH_PLT_SCHEDULE) a) n
