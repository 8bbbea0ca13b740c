' Arithmetic, precedence and the subtypes of results.
WScript.Echo 2 + 3 * 4, (2 + 3) * 4, 2 ^ 3 ^ 2, -2 ^ 2, 2 ^ -1, 10 / 4
WScript.Echo 7 \ 2, -7 \ 2, 7 Mod 3, -7 Mod 3, 7.5 \ 2, 5.5 Mod 2
WScript.Echo 10 \ 3 * 2, 3 Mod 2 ^ 2, 2 * 3 Mod 4, 1 + 2 & 3, "1" + 2, "1" + "2", "a" & 1
WScript.Echo TypeName(1 + 1), TypeName(1 + 1.5), TypeName(10 / 2), TypeName(7 \ 2), TypeName(100000 \ 2)
WScript.Echo TypeName(2 ^ 2), TypeName("1" + 1), TypeName(True + True), True + True, TypeName(1 & 2)
WScript.Echo TypeName(CByte(1) + CByte(1)), TypeName(CByte(200) + CByte(100)), CByte(200) + CByte(100)
WScript.Echo TypeName(CSng(1.5) * 2), TypeName(CCur(1.5) + 1), CCur(0.1) + CCur(0.2)
WScript.Echo 1 < 2, "a" < "b", "B" < "a", "abc" = "ABC", 1 = 1.0, 2 >= 2, 3 <> 3
WScript.Echo True And False, 12 And 10, 12 Or 3, 5 Xor 3, Not 0, Not True, Not 5
WScript.Echo True Eqv True, False Eqv True, False Imp True, True Imp False, TypeName(12 And 10)
Dim e
WScript.Echo e + 1, TypeName(e + e), e & "x", -e, TypeName(-e)
Dim d1, d2
Set d1 = CreateObject("Scripting.Dictionary")
Set d2 = d1
WScript.Echo d1 Is d2, d1 Is Nothing, Nothing Is Nothing, Not d1 Is Nothing
On Error Resume Next
WScript.Echo 1 / 0
WScript.Echo "after division", Err.Number, Err.Description
Err.Clear
x = 0 / 0
WScript.Echo Err.Number, Err.Description
Err.Clear
x = 5 Mod 0
WScript.Echo Err.Number
Err.Clear
x = "abc" + 1
WScript.Echo Err.Number, Err.Description
' A sign binds tighter than the power, as natively.
WScript.Echo -3^2, -3^2 + 1, 2 * -3 ^ 2, 2 ^ -1 ^ 2, -(3 ^ 2)
