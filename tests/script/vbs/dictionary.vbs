' Scripting.Dictionary, and default properties: d(k) is d.Item(k).
Dim d, k, s
Set d = CreateObject("Scripting.Dictionary")
d.Add "apple", 3
d.Add "pear", 5
d("plum") = 7
d.Item("apple") = 4
WScript.Echo d.Count, d("apple"), d.Item("pear"), d.Exists("plum"), d.Exists("Plum")
s = ""
For Each k In d
  s = s & k & "=" & d(k) & " "
Next
WScript.Echo s
WScript.Echo Join(d.Keys, ","), Join(d.Items, ",")
WScript.Echo "read of missing key", IsEmpty(d("cherry")), d.Count
d.Remove "cherry"
d.Key("plum") = "prune"
WScript.Echo Join(d.Keys, ","), d("prune")
d.Add 1, "number one"
d.Add "1", "text one"
WScript.Echo d(1), d("1"), d.Count
d.RemoveAll
WScript.Echo "after RemoveAll", d.Count
d.CompareMode = vbTextCompare
d.Add "Key", "v"
WScript.Echo d.Exists("KEY"), d("key")
Dim o
Set o = CreateObject("Scripting.Dictionary")
Set d("obj") = o
WScript.Echo d("obj") Is o, TypeName(d("obj"))
On Error Resume Next
d.Add "KEY", 1
WScript.Echo "duplicate", Err.Number
Err.Clear
d.Remove "absent"
WScript.Echo "remove missing", Err.Number
