' Conversion functions and type tests.
WScript.Echo CStr(True), CStr(1.5), CStr(-0.5), CStr(100), CStr(Empty) = "", TypeName(CStr(1))
WScript.Echo CDbl("1.5") + 1, CLng("&HFF"), CInt(" 42 "), CBool("True"), CBool("false"), CBool(0), CBool(-3)
WScript.Echo CDate("2003-01-02"), CDate(37623), CDate(37623.5), CDate("13:04:05"), CDate("January 2, 2003")
WScript.Echo CCur(1.23456), TypeName(CCur(1)), CSng(1.5), TypeName(CSng(1)), CByte(7), TypeName(CByte(7))
WScript.Echo IsNumeric("12"), IsNumeric("12a"), IsNumeric(""), IsNumeric(Empty), IsNumeric(Null), IsNumeric("1E3"), IsNumeric(" 5 ")
WScript.Echo IsDate("2003-01-02"), IsDate("hello"), IsDate(#1/2/2003#), IsDate(37623), IsDate("1/2/2003")
WScript.Echo VarType(Empty), VarType(Null), VarType(1), VarType(100000), VarType(CSng(1)), VarType(1.5), VarType(CCur(1))
WScript.Echo VarType(Now), VarType("x"), VarType(Nothing), VarType(True), VarType(CByte(1)), VarType(Array())
WScript.Echo TypeName(Array()), IsArray(Array()), IsArray("a"), IsObject(Nothing), IsObject(1), IsEmpty(Empty), IsEmpty("")
Dim d
Set d = CreateObject("Scripting.Dictionary")
WScript.Echo TypeName(d), IsObject(d)
On Error Resume Next
Dim v
v = CInt("abc")
WScript.Echo "CInt text", Err.Number, Err.Description
Err.Clear
v = CDate("not a date")
WScript.Echo "CDate text", Err.Number
Err.Clear
v = CBool("maybe")
WScript.Echo "CBool text", Err.Number
Err.Clear
v = CStr(Array(1))
WScript.Echo "CStr array", Err.Number
' Booleans: True is all bits set in a Byte, and the texts files hold them as.
WScript.Echo CByte(True), TypeName(CByte(True)), CByte(False), CBool("#TRUE#"), CBool("#false#"), Round(True)
' A Single meets a Double as the Double it converts to.
WScript.Echo CSng(0.1) = 0.1, CSng(0.5) = 0.5, CSng(0.1) > 0.1, CSng(0.1) = CSng(0.1), CDbl(CSng(0.1)) = CSng(0.1)
