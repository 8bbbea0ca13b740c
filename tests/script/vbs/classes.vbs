' Classes: fields, Property Get/Let/Set, default members, Me, the order of
' Class_Initialize and Class_Terminate, Private members.
Class Point
  Public X, Y
  Private Sub Class_Initialize()
    X = 0 : Y = 0
  End Sub
  Public Function ToText()
    ToText = "(" & X & "," & Y & ")"
  End Function
  Public Sub MoveBy(dx, dy)
    X = X + dx
    Me.Y = Me.Y + dy
  End Sub
End Class

Class Shape
  Private m_name
  Private m_origin
  Private m_log
  Private Sub Class_Initialize()
    m_name = "unnamed"
    Set m_origin = New Point
    WScript.Echo "init shape"
  End Sub
  Private Sub Class_Terminate()
    WScript.Echo "terminate " & m_name
  End Sub
  Public Property Get Name()
    Name = m_name
  End Property
  Public Property Let Name(value)
    m_name = UCase(value)
  End Property
  Public Property Get Origin()
    Set Origin = m_origin
  End Property
  Public Property Set Origin(value)
    Set m_origin = value
  End Property
  Public Property Get Corner(index)
    Corner = Name & "#" & index
  End Property
  Private Function Secret()
    Secret = "hidden"
  End Function
  Public Function Reveal()
    Reveal = Secret() & " via " & Me.Name
  End Function
End Class

Class Money
  Private m_amount
  Public Default Property Get Amount()
    Amount = m_amount
  End Property
  Public Property Let Amount(v)
    m_amount = v
  End Property
End Class

Dim p, s, q, m
Set p = New Point
p.MoveBy 2, 3
WScript.Echo p.ToText(), p.X, TypeName(p), IsObject(p), VarType(p) = vbObject
Set s = New Shape
s.Name = "box"
WScript.Echo s.Name, s.Corner(2), s.Reveal(), TypeName(s.Origin)
Set q = New Point
q.X = 7
Set s.Origin = q
q.Y = 8
WScript.Echo s.Origin.ToText(), s.Origin Is q
Set m = New Money
m.Amount = 25
WScript.Echo m, m + 5, "$" & m, m = 25
Dim points(1)
Set points(0) = New Point
Set points(1) = points(0)
points(1).X = 42
WScript.Echo points(0).X, points(0) Is points(1)
On Error Resume Next
WScript.Echo s.Secret()
WScript.Echo "private", Err.Number
Err.Clear
s.NoSuchThing = 1
WScript.Echo "missing", Err.Number
Err.Clear
Dim bad
Set bad = New Undefined
WScript.Echo "undefined class", Err.Number
Err.Clear
On Error GoTo 0
WScript.Echo "before release"
Set s = Nothing
WScript.Echo "after release"
Sub MakeTemporary()
  Dim t
  Set t = New Shape
  t.Name = "temp"
End Sub
MakeTemporary
WScript.Echo "end"
' Call may start with an object in parentheses, whose member it calls.
Call (New Shape).Reveal()
Dim corner : Set corner = New Point
Call (corner).MoveBy(2, 3)
WScript.Echo "called through parentheses", corner.ToText()
