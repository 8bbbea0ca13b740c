' Default members: obj(args) is obj.DefaultMember(args), and an object used
' as a value gives its default property.
Class List
  Private m_items
  Private Sub Class_Initialize()
    Set m_items = CreateObject("Scripting.Dictionary")
  End Sub
  Public Default Property Get Item(index)
    Item = m_items(index)
  End Property
  Public Property Let Item(index, value)
    m_items(index) = value
  End Property
  Public Property Get Count()
    Count = m_items.Count
  End Property
End Class
Class Plain
  Public Value
End Class
Class Measure
  Public Text
  Public Default Property Get Reading()
    Reading = Text
  End Property
End Class

Dim l
Set l = New List
l(0) = "zero"
l.Item(1) = "one"
WScript.Echo l(0), l.Item(1), l.Count, l(0) = l.Item(0)
Dim d
Set d = CreateObject("Scripting.Dictionary")
d("k") = "via default"
WScript.Echo d("k"), d.Item("k")
Dim x, p
Set p = New Plain
p.Value = 3
x = l.Item(1)
WScript.Echo x, TypeName(x)
On Error Resume Next
x = p
WScript.Echo "no default member", Err.Number
Err.Clear
On Error GoTo 0
Dim e
On Error Resume Next
WScript.Echo Err.Number
Err.Raise 5
e = Err
WScript.Echo e, TypeName(e), Err.Description
' IsNumeric reads an object's default property.
Dim m : Set m = New Measure
m.Text = "12.5"
WScript.Echo IsNumeric(m), IsNumeric(Err), IsNumeric(p), IsNumeric(Nothing)
m.Text = "abc"
WScript.Echo IsNumeric(m)
