SELECT SID_CORPORATE, ID, name, filename, dispname, mimetype, coalesce(seqno, 0) AS seqno, name AS logtitle
  FROM TM_SCH_ICON
 ORDER BY TM_SCH_ICON.SID_CORPORATE, TM_SCH_ICON.seqno NULLS LAST, TM_SCH_ICON.ID
