' & joins any number of values from left to right. Null adds nothing, and
' only Null & Null is Null; objects join as their default value.
Dim n, log, x, s
n = Null
WScript.Echo TypeName(n & n & n), n & n & "x" & n, 1 & True & Empty & 2.5 & "!"

' Operands run in order, each once.
Function Tick(t)
  log = log & t
  Tick = t
End Function
log = ""
WScript.Echo Tick("a") & Tick("b") & Tick("c") & Tick("d"), log

' A variable is read when its turn comes.
Function Change()
  x = "new"
  Change = "-"
End Function
x = "old"
WScript.Echo x & Change() & x

Class Box
  Public Default Property Get Value
    Value = "box"
  End Property
End Class
Dim b
Set b = New Box
WScript.Echo "[" & b & "|" & b & "]"

' An operand that cannot join stops the chain before the operands after it run.
On Error Resume Next
log = ""
s = "a" & Array(1) & Tick("z")
WScript.Echo Err.Number, "[" & log & "]"
On Error GoTo 0

' A chain longer than one piece of work.
WScript.Echo 0 & 1 & 2 & 3 & 4 & 5 & 6 & 7 & 8 & 9 & 0 & 1 & 2 & 3 & 4 & 5 & 6 & 7 & 8 & 9 & 0 & 1 & 2 & 3 & 4 & 5 & 6 & 7 & 8 & 9 & 0 & 1 & 2 & 3 & 4 & 5 & 6 & 7 & 8 & 9
