SELECT SID_CORPORATE, agnid, ID, titletopic, textkind, memo, format FROM TT_AGENDA_TOPIC ORDER BY SID_CORPORATE, agnid, ID
