SELECT SID_CORPORATE, SID_USER, rowcount, rowother, sunday, holiday, disptotime, dispgroup, toppage, dupperm, othercolor, todo FROM TMPR_SCH_SETTING ORDER BY SID_CORPORATE, SID_USER
