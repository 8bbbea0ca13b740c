Option Explicit
' Undeclared names raise 500 when used; declared ones work everywhere.
Dim declared
declared = 1
On Error Resume Next
undeclared = 5
WScript.Echo "assignment", Err.Number, Err.Description
Err.Clear
WScript.Echo undeclaredToo
WScript.Echo "read", Err.Number
Err.Clear
Sub UsesUndeclared()
  inner = 3
  WScript.Echo "not reached"
End Sub
UsesUndeclared
WScript.Echo "in a sub", Err.Number
Err.Clear
Sub UsesDeclared()
  Dim local
  local = declared + 1
  WScript.Echo "declared works", local
End Sub
UsesDeclared
