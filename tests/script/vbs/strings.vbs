' The string functions.
WScript.Echo Len("hello"), Len(""), Len(123), Len(Empty), Left("hello", 2), Right("hello", 3), Left("abc", 10)
WScript.Echo Mid("abcdef", 3), Mid("abcdef", 2, 3), "[" & Mid("abc", 5) & "]", Mid("abc", 2, 100)
WScript.Echo InStr("abcabc", "c"), InStr(4, "abcabc", "c"), InStr("abc", ""), InStr("", "a"), InStr("abc", "x")
WScript.Echo InStr(1, "ABC", "b", 1), InStr(1, "ABC", "b", vbBinaryCompare), InStr(1, "ABC", "b", vbTextCompare)
WScript.Echo InStrRev("abcabc", "b"), InStrRev("abcabc", "b", 4), InStrRev("abc", "x"), InStrRev("aXa", "x", -1, 1)
WScript.Echo Replace("aaa", "a", "b"), Replace("aaa", "a", "b", 2), Replace("abcabc", "b", "X", 1, 1), Replace("ABab", "a", "-", 1, -1, 1)
WScript.Echo Replace("abc", "", "X"), Replace("a.b.c", ".", ""), Replace("abc", "b", "bb")
Dim parts
parts = Split("a,b,,c", ",")
WScript.Echo UBound(parts), "[" & parts(2) & "]", parts(3)
parts = Split("a b c")
WScript.Echo UBound(parts), parts(1)
parts = Split("a,b,c", ",", 2)
WScript.Echo UBound(parts), parts(1)
parts = Split("")
WScript.Echo UBound(parts), LBound(parts)
parts = Split("aXbxc", "x", -1, vbTextCompare)
WScript.Echo UBound(parts), Join(parts, "-")
WScript.Echo Join(Array(1, 2, 3)), Join(Array("a", "b"), ""), Join(Array("x"), ", ")
WScript.Echo "[" & Trim("  x  ") & "]", "[" & LTrim("  x ") & "]", "[" & RTrim(" x  ") & "]", "[" & Trim(vbTab & "x") & "]" = "[" & vbTab & "x]"
WScript.Echo UCase("abc"), LCase("ÄBC"), UCase("straße") = "STRASSE", "[" & Space(3) & "]", String(3, "ab"), String(2, 65)
WScript.Echo StrComp("a", "B"), StrComp("a", "B", vbTextCompare), StrComp("x", "x"), StrComp("b", "a"), StrReverse("abc")
WScript.Echo Asc("A"), Asc("abc"), Chr(66), AscW(ChrW(8364)), Len(ChrW(8364)), Chr(97) & Chr(98)
WScript.Echo Join(Filter(Array("apple", "banana", "cherry"), "an"), ","), Join(Filter(Array("apple", "banana", "cherry"), "an", False), ",")
WScript.Echo "abc" < "abd", "abc" < "ab", "Z" < "a", "10" < "9"
On Error Resume Next
Dim r
r = Left("abc", -1)
WScript.Echo "Left -1", Err.Number
Err.Clear
r = Mid("abc", 0)
WScript.Echo "Mid 0", Err.Number
Err.Clear
r = Asc("")
WScript.Echo "Asc empty", Err.Number
Err.Clear
r = Space(-1)
WScript.Echo "Space -1", Err.Number
