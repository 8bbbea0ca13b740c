' Null spreads through arithmetic, concatenation with Null on both sides and
' comparisons; And/Or use three-valued logic; conversions refuse it.
Dim n
n = Null
WScript.Echo IsNull(n + 1), IsNull(n * 2), IsNull(2 - n), IsNull(n / 1), IsNull(n \ 1), IsNull(n Mod 2), IsNull(n ^ 2)
WScript.Echo IsNull(n & n), n & "x", "x" & n, TypeName(n & 1)
WScript.Echo IsNull(n = 1), IsNull(n <> n), IsNull(n < 1), IsNull(-n), IsNull(Not n)
WScript.Echo n And False, n Or True, IsNull(n And True), IsNull(n Or False), IsNull(n Xor True)
WScript.Echo False Imp n, IsNull(True Imp n), n Imp True, IsNull(n Eqv True)
If n Then
  WScript.Echo "then"
Else
  WScript.Echo "else"
End If
If n = n Then
  WScript.Echo "equal"
Else
  WScript.Echo "not known to be equal"
End If
WScript.Echo IsNull(Len(n)), IsNull(Left(n, 1)), IsNull(UCase(n)), IsNull(Mid(n, 1)), IsNull(Trim(n)), IsNull(Abs(n))
WScript.Echo TypeName(n), VarType(n), IsNull(Empty), IsEmpty(Null), IsNull(n), IsEmpty(n)
Select Case n
  Case Null
    WScript.Echo "matched Null"
  Case Else
    WScript.Echo "no case matches Null"
End Select
On Error Resume Next
Dim s
s = CStr(n)
WScript.Echo "CStr", Err.Number, Err.Description
Err.Clear
s = CInt(n)
WScript.Echo "CInt", Err.Number
Err.Clear
s = Chr(n)
WScript.Echo "Chr", Err.Number
Err.Clear
s = n
WScript.Echo "assignment", Err.Number, IsNull(s)
