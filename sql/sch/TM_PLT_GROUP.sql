SELECT SID_CORPORATE, ID, name, starttime, endtime, usetime, reservlimit, seqno FROM TM_PLT_GROUP ORDER BY SID_CORPORATE, seqno, ID
