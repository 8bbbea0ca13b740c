' Comments, line continuations, colons, case-insensitivity, bracketed names
' and the ways to call a procedure.
Rem a comment line
DIM Total : total = 1 ' trailing comment
TOTAL = Total + _
        2 + _
        3
wscript.echo total
Dim [odd name]
[odd name] = "brackets"
WScript.Echo [odd name]
Sub Show(a, b)
  WScript.Echo "show", a, b
End Sub
Show 1, 2
Call Show(3, 4)
Show (5), (6)
Function Pair(a, b) : Pair = a & "+" & b : End Function
WScript.Echo Pair(7, 8), Pair("x", Pair(1, 2))
Dim v : v = Pair(1, 2) : WScript.Echo v
If v <> "" Then WScript.Echo "one-line if with", "two arguments"
Const LIMIT = 3, GREETING = "hi"
Const NEGATIVE = -5
WScript.Echo LIMIT, GREETING, NEGATIVE, TypeName(LIMIT)
Sub UsesConst()
  Const LOCAL_VALUE = 10
  WScript.Echo "const", LOCAL_VALUE + LIMIT
End Sub
UsesConst
WScript.Echo "a" & _
  "b"
