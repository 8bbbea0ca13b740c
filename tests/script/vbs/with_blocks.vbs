' With evaluates its object once; .member reaches it, nested With blocks
' reach the innermost object.
Class Counter
  Public Count
  Public Child
  Public Sub Add(n)
    Count = Count + n
  End Sub
End Class
Dim made
made = 0
Function Build()
  made = made + 1
  Set Build = New Counter
  Build.Count = 10
End Function
With Build()
  .Add 1
  .Add 2
  WScript.Echo .Count, made
  Set .Child = New Counter
  .Child.Count = 5
  With .Child
    .Add 100
    WScript.Echo .Count
  End With
  WScript.Echo .Count, .Child.Count
End With
Dim d
Set d = CreateObject("Scripting.Dictionary")
With d
  .Add "a", 1
  .Add "b", 2
  .Item("c") = 3
  WScript.Echo .Count, .Item("b"), .Exists("c"), Join(.Keys, "")
End With
