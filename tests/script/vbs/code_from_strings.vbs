' Eval, Execute, ExecuteGlobal and GetRef.
Dim x
x = 5
WScript.Echo Eval("x * 2 + 1"), Eval("""a"" & ""b"""), Eval("x = 5")
Execute "x = x + 1"
WScript.Echo x
ExecuteGlobal "Function Twice(n) : Twice = n * 2 : End Function"
WScript.Echo Twice(21)
Sub Scoped()
  Dim y
  y = 3
  Execute "y = y * 10"
  WScript.Echo "local scope", y, Eval("y + x")
End Sub
Scoped
Function Add(a, b)
  Add = a + b
End Function
Dim f
Set f = GetRef("Add")
WScript.Echo f(2, 3), TypeName(f)
On Error Resume Next
Execute "If x Then"
WScript.Echo "syntax error in Execute", Err.Number
Err.Clear
WScript.Echo Eval("1 +")
WScript.Echo "syntax error in Eval", Err.Number
