' ByRef in less common places: the same variable twice, chains of ByRef
' parameters, loop counters, fields of Me, elements of 2-D arrays, and the
' function result variable.
Sub AddBoth(a, b)
  a = a + 1
  b = b + 10
End Sub
Sub Outer(x)
  Inner x
End Sub
Sub Inner(y)
  y = y * 2
End Sub
Function Bump(ByRef n)
  n = n + 1
  Bump = n * 100
End Function
Dim v
v = 1
AddBoth v, v
WScript.Echo "same variable twice", v
v = 3
Outer v
WScript.Echo "passed along", v
v = 0
WScript.Echo "in an expression", Bump(v) + Bump(v), v
Dim i, visits
For i = 1 To 10
  visits = visits + 1
  If i = 2 Then Bump i
Next
WScript.Echo "counter changed by a call", visits
Dim grid(2, 2)
grid(1, 2) = 5
Bump grid(1, 2)
WScript.Echo "2-D element", grid(1, 2)
Class Holder
  Public Value
  Public Sub Grow()
    Bump Value
  End Sub
End Class
Dim h
Set h = New Holder
h.Value = 7
h.Grow
WScript.Echo "field of Me", h.Value
Bump h.Value
WScript.Echo "property of another object goes by value", h.Value
Function Result()
  Result = 1
  Bump Result
End Function
WScript.Echo "result variable", Result()
Dim o1, o2
Set o1 = New Holder
o1.Value = "shared"
Sub ChangeObject(ByVal target)
  target.Value = "changed through a copy of the reference"
  Set target = Nothing
End Sub
ChangeObject o1
WScript.Echo o1.Value, o1 Is Nothing
