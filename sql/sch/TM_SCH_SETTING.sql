SELECT ROWCOUNT AS rowcount, save, infomation, stime, unit, openperm, rowother, sunday, holiday, disptotime,
       dispgroup, toppage, dupperm, othercolor, todo
  FROM TM_SCH_SETTING
 ORDER BY SID_CORPORATE
