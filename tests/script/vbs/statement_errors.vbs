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
' A failing head of For, For Each or Select Case under Resume Next goes on
' with the first statement inside: a loop's body runs once, then its Next
' ends it; Select Case runs its first clause.
Err.Clear
Dim turns, item : turns = 0 : item = "before"
For x = 1 To "x"
  turns = turns + 1
Next
WScript.Echo "For with a bad end", Err.Number, turns
Err.Clear : turns = 0
For x = 1 To 3 Step CDate("no date")
  turns = turns + 1
  If turns = 1 Then Exit For
  turns = 100
Next
WScript.Echo "For with a bad step", Err.Number, turns
Err.Clear : turns = 0
For Each item In 42
  turns = turns + 1
Next
WScript.Echo "For Each over a number", Err.Number, turns, item
Err.Clear
Select Case 1 / 0
  Case 5
    WScript.Echo "first clause", Err.Number
  Case Else
    WScript.Echo "else clause"
End Select
Err.Clear
Select Case 1 / 0
  Case Else
    WScript.Echo "only an else", Err.Number
End Select
Sub LoopsWithoutHandler()
  For x = 1 To "x"
    WScript.Echo "never here"
  Next
End Sub
Err.Clear
LoopsWithoutHandler
WScript.Echo "no handler in the procedure: the call is left", Err.Number
' Calling a name that nothing declares is a type mismatch; reading it gives
' Empty, and once it holds a value it is a variable like any other.
Err.Clear
Call NeverDeclared()
WScript.Echo "Call of an undeclared name", Err.Number, Err.Description
Err.Clear
NeverDeclared
WScript.Echo "statement of an undeclared name", Err.Number
Err.Clear
x = NeverDeclared(1)
WScript.Echo "value of an undeclared call", Err.Number
Err.Clear
x = NeverDeclared
WScript.Echo "read of an undeclared name", TypeName(x), Err.Number
Sub CallsUndeclared()
  Call AlsoNeverDeclared(1)
  WScript.Echo "never here"
End Sub
CallsUndeclared
WScript.Echo "in a procedure", Err.Number
Err.Clear
implicitList = Array(5, 6)
WScript.Echo "assigned without Dim", implicitList(1), Err.Number
