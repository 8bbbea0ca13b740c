' Fixed and dynamic arrays, ReDim Preserve, several dimensions, Erase,
' arrays as values, nested arrays, For Each order.
Dim a(2), b, m(1, 2), i, j, s
a(0) = "x" : a(2) = "z"
WScript.Echo UBound(a), LBound(a), a(0), IsEmpty(a(1)), a(2), TypeName(a), VarType(a)
ReDim b(1)
b(0) = 1 : b(1) = 2
ReDim Preserve b(3)
b(3) = 4
WScript.Echo UBound(b), b(0), b(1), IsEmpty(b(2)), b(3)
ReDim Preserve b(0)
WScript.Echo UBound(b), b(0)
ReDim b(2)
WScript.Echo "redim clears", IsEmpty(b(0))
For i = 0 To 1
  For j = 0 To 2
    m(i, j) = i * 10 + j
  Next
Next
WScript.Echo UBound(m), UBound(m, 1), UBound(m, 2), m(1, 2)
s = ""
For Each i In m
  s = s & i & " "
Next
WScript.Echo "column order:", s
Dim grid()
ReDim grid(1, 1)
grid(1, 1) = "corner"
ReDim Preserve grid(1, 3)
WScript.Echo UBound(grid, 2), grid(1, 1)
Dim c, d
c = Array(1, 2, 3)
d = c
d(0) = 99
WScript.Echo "copies", c(0), d(0)
Dim nested
nested = Array(Array(1, 2), Array("a", "b", "c"))
WScript.Echo UBound(nested), UBound(nested(1)), nested(1)(2), nested(0)(1)
Erase a
WScript.Echo "erase fixed", UBound(a), IsEmpty(a(0))
Dim e()
ReDim e(5)
Erase e
On Error Resume Next
i = UBound(e)
WScript.Echo "erase dynamic", Err.Number
Err.Clear
i = a(3)
WScript.Echo "out of range", Err.Number, Err.Description
Err.Clear
ReDim a(5)
WScript.Echo "redim fixed", Err.Number
Err.Clear
i = m(1)
WScript.Echo "wrong dimensions", Err.Number
Err.Clear
i = UBound(m, 3)
WScript.Echo "no third dimension", Err.Number
Err.Clear
i = UBound("text")
WScript.Echo "not an array", Err.Number
Err.Clear
Dim empty1
empty1 = Array()
WScript.Echo "empty array", UBound(empty1), LBound(empty1)
' Dim a() is an array without dimensions until ReDim gives it some.
Dim undimensioned()
WScript.Echo IsArray(undimensioned), TypeName(undimensioned), VarType(undimensioned), IsEmpty(undimensioned)
On Error Resume Next
WScript.Echo UBound(undimensioned)
WScript.Echo "UBound", Err.Number : Err.Clear
On Error GoTo 0
ReDim Preserve undimensioned(1)
undimensioned(1) = "b"
WScript.Echo UBound(undimensioned), undimensioned(1)
