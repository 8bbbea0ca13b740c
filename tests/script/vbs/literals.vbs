' Literals and the subtypes they produce.
WScript.Echo TypeName(1), TypeName(32767), TypeName(32768), TypeName(2147483647), TypeName(2147483648)
WScript.Echo TypeName(1.0), TypeName(1E3), TypeName("x"), TypeName(True), TypeName(#1/2/2003#)
WScript.Echo TypeName(&HFF), TypeName(&H7FFF), TypeName(&H10000)
WScript.Echo &HFF, &H7FFF, &H8000, &HFFFF, &H10000, &O17
WScript.Echo 1.5E3, .5, 1E20, 1E15, 0.0001, 123456789012345
WScript.Echo "say ""hi""", "", "tab" & vbTab & "bed"
WScript.Echo #1/2/2003#, #1/2/2003 1:04:05 PM#, #13:04#
WScript.Echo True, False, -True
WScript.Echo Len(vbCrLf), Asc(vbLf), vbNullString = "", Len(vbNullChar)
