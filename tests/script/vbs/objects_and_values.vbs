' Set and Let: references are shared, Let takes the default value, Set needs
' an object, Nothing is an object without a target.
Class Cell
  Public Data
  Public Default Property Get Value()
    Value = Data
  End Property
End Class
Dim a, b, c
Set a = New Cell
a.Data = 1
Set b = a
b.Data = 2
WScript.Echo "shared", a.Data, a Is b
c = a
WScript.Echo "let takes the default", c, TypeName(c), IsObject(c)
Set a = Nothing
WScript.Echo "b still holds it", b.Data, TypeName(a), IsObject(a), a Is Nothing
Dim arr(1)
Set arr(0) = b
arr(0).Data = 3
WScript.Echo "through an array", b.Data
Dim d
Set d = CreateObject("Scripting.Dictionary")
d.Add "cell", b
d("cell").Data = 4
WScript.Echo "through a dictionary", b.Data, d("cell") = 4
On Error Resume Next
Set c = 5
WScript.Echo "set of a number", Err.Number, Err.Description
Err.Clear
Dim n
n = Nothing
WScript.Echo "let of Nothing", Err.Number
Err.Clear
WScript.Echo 1 Is 1
WScript.Echo "is on numbers", Err.Number
