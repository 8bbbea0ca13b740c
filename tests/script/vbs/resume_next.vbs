' On Error Resume Next: the Err object, errors raised in procedures without
' a handler of their own, and statements that fail midway.
Sub Inner()
  WScript.Echo "inner start"
  Err.Raise 5
  WScript.Echo "inner after raise"
End Sub
Sub Middle()
  Inner
  WScript.Echo "middle after inner"
End Sub
Sub Careful()
  On Error Resume Next
  Err.Raise 7
  WScript.Echo "careful continues", Err.Number, Err.Description
  Err.Clear
End Sub
Sub StrictInside()
  On Error GoTo 0
  Dim a(1)
  a(5) = 1
  WScript.Echo "strict after error"
End Sub
Function Fails()
  Fails = 1
  Err.Raise 11
End Function

On Error Resume Next
Middle
WScript.Echo "outer continues", Err.Number, Err.Description
Err.Clear
Careful
StrictInside
WScript.Echo "after strict", Err.Number, Err.Description
Err.Clear
Dim x
x = "unchanged"
x = Fails()
WScript.Echo "assignment skipped", x, Err.Number
Err.Raise 1000, "MySource", "My description"
WScript.Echo Err.Number, Err.Source, Err.Description
Err.Raise vbObjectError + 513, "Obj", "Custom"
WScript.Echo Err.Number, Err.Number - vbObjectError
' Raise keeps the source and description Err still holds when it is not given them.
Err.Raise 6
WScript.Echo Err.Number, Err.Source, Err.Description
Err.Clear
Err.Raise 6
WScript.Echo Err.Number, Err.Source, Err.Description
Err.Number = 0
WScript.Echo "number reset", Err.Number
Err.Raise 13
On Error Resume Next
WScript.Echo "resume next clears", Err.Number
If 1 / 0 = 1 Then
  WScript.Echo "an error in the condition goes on inside the If"
Else
  WScript.Echo "else branch"
End If
Err.Clear
Dim i, count
For i = 1 To 3
  x = 1 / (i - 2)
  count = count + 1
Next
WScript.Echo "loop kept going", count, Err.Number
Err.Clear
Dim o
o.Method
WScript.Echo "call on Empty", Err.Number
Err.Clear
Set o = Nothing
o.Method
WScript.Echo "call on Nothing", Err.Number
Err.Clear
Set o = CreateObject("Scripting.Dictionary")
o.NoSuchMethod
WScript.Echo "missing member", Err.Number
Err.Clear
x = UndefinedFunction(1)
WScript.Echo "undefined function", Err.Number
Err.Clear
WScript.Echo "Err default is Number:", Err
Err.Raise 9
WScript.Echo "Err default is Number:", Err
Err.Clear
Err.Source = "Set before" : Err.Description = "Described before"
Err.Raise 1000
WScript.Echo Err.Number, Err.Source, Err.Description
Err.Clear
Err.Raise 31999
WScript.Echo Err.Number, Err.Description
Err.Clear
Err.Raise 5, "Src", , "manual.chm", 42
WScript.Echo Err.Number, Err.Source, Err.Description, Err.HelpFile, Err.HelpContext
Err.Raise 7
WScript.Echo Err.Number, Err.Source, Err.Description, Err.HelpFile, Err.HelpContext
Err.Clear
WScript.Echo "cleared [" & Err.Source & Err.Description & Err.HelpFile & "]", Err.HelpContext
Err.HelpFile = "other.chm" : Err.HelpContext = 7
WScript.Echo Err.HelpFile, Err.HelpContext
x = 1 / 0
WScript.Echo "a run-time error has no help [" & Err.HelpFile & "]", Err.HelpContext
