SELECT SID_CORPORATE, ID, name, memo, assigngroup, starttime, endtime, usetime, reservlimit, holidayuse, managegroup, seqno FROM TM_PLANT ORDER BY SID_CORPORATE, seqno, ID
