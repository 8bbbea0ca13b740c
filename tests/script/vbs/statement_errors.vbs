' Errors the native engine raises when a statement runs, not when the
' script compiles: conversions called as statements, and a member with a
' leading dot outside any With.
On Error Resume Next
Call CInt(1) : WScript.Echo Err.Number, Err.Description : Err.Clear
CStr 5 : WScript.Echo Err.Number : Err.Clear
Call Len("abc") : WScript.Echo Err.Number : Err.Clear
Dim x : x = .Count : WScript.Echo Err.Number, Err.Description : Err.Clear
If False Then x = .Never
WScript.Echo "compiled", Err.Number
' With needs an object; under Resume Next its body still runs.
With 42
  WScript.Echo "in the body", Err.Number
  Err.Clear
  x = .Count
  WScript.Echo "member", Err.Number
End With
Err.Clear
With CreateObject("No.SuchThing")
  WScript.Echo "after a failed head", Err.Number
End With
