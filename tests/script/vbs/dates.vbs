' Date functions and date arithmetic (United States regional settings).
WScript.Echo DateSerial(2003, 1, 2), DateSerial(2003, 13, 1), DateSerial(2003, 3, 0), DateSerial(2004, 2, 30)
WScript.Echo TimeSerial(13, 4, 5), TimeSerial(0, 90, 0), DateSerial(2003, 1, 2) = #1/2/2003#
Dim d
d = #1/2/2003 1:04:05 PM#
WScript.Echo Year(d), Month(d), Day(d), Hour(d), Minute(d), Second(d), TypeName(Year(d))
WScript.Echo Weekday(d), Weekday(d, vbMonday), WeekdayName(5), WeekdayName(1, True), WeekdayName(1, False, vbMonday)
WScript.Echo MonthName(2), MonthName(12, True)
WScript.Echo DateAdd("d", 30, #1/2/2003#), DateAdd("m", 1, #1/31/2003#), DateAdd("yyyy", 1, #2/29/2004#), DateAdd("q", 1, #11/15/2003#)
WScript.Echo DateAdd("h", 25, #1/2/2003#), DateAdd("n", -1, #1/2/2003#), DateAdd("ww", 2, #1/2/2003#)
WScript.Echo DateAdd("s", 30, #1/2/2003 11:59:45 PM#)
WScript.Echo DateDiff("d", #1/1/2003#, #3/1/2003#), DateDiff("m", #1/31/2003#, #2/1/2003#), DateDiff("yyyy", #12/31/2002#, #1/1/2003#)
WScript.Echo DateDiff("h", #1/1/2003 11:59:00 PM#, #1/2/2003 12:01:00 AM#), DateDiff("n", #1/1/2003 11:59:00 PM#, #1/2/2003 12:01:00 AM#)
WScript.Echo DateDiff("s", #1/1/2003#, #1/1/2003 12:01:00 AM#), DateDiff("d", #3/1/2003#, #1/1/2003#), DateDiff("ww", #1/4/2003#, #1/5/2003#), DateDiff("w", #1/1/2003#, #1/15/2003#)
WScript.Echo DatePart("q", #5/1/2003#), DatePart("y", #2/1/2003#), DatePart("ww", #1/1/2003#), DatePart("w", #1/2/2003#), DatePart("ww", #12/31/2003#), DatePart("yyyy", d)
WScript.Echo DateValue("1/2/2003 1:04 PM"), TimeValue("1/2/2003 1:04 PM")
WScript.Echo #1/2/2003# + 1, #1/3/2003# - #1/1/2003#, #1/2/2003# - 1, #1/2/2003 6:00:00 PM# + 0.25
WScript.Echo TypeName(#1/2/2003# + 1), TypeName(#1/3/2003# - #1/1/2003#), TypeName(Now), TypeName(Date), TypeName(Time), TypeName(Timer)
WScript.Echo Year(Now) > 2000, IsDate(Now), Time < 1, Date <= Now
WScript.Echo FormatDateTime(d), FormatDateTime(d, vbShortDate), FormatDateTime(d, vbLongTime), FormatDateTime(d, vbShortTime)
WScript.Echo CDate("1/2/2003") > CDate("12/31/2002"), CLng(#1/2/2003#), CDbl(#12:00:00 PM#)
' A DateSerial outside the years 100 to 9999 is an invalid argument.
On Error Resume Next
d = DateSerial(10000, 1, 1)
WScript.Echo "year 10000", Err.Number, Err.Description
Err.Clear
d = DateSerial(9999, 12, 32)
WScript.Echo "past 9999", Err.Number
Err.Clear
d = DateSerial(100, 1, 0)
WScript.Echo "before 100", Err.Number
Err.Clear
On Error GoTo 0
WScript.Echo DateSerial(9999, 12, 31), DateSerial(100, 1, 1)
