SELECT SID_CORPORATE, SID_USER, ROWCOUNT AS rowcount, rowother, sunday, holiday, disptotime, defgroup, title FROM TMPR_PLT_SETTING ORDER BY SID_CORPORATE, SID_USER
