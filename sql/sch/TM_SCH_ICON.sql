SELECT SID_CORPORATE, ID, name, filename, dispname, mimetype, seqno, name AS logtitle
  FROM TM_SCH_ICON
 ORDER BY SID_CORPORATE, seqno NULLS LAST, ID
