' The RegExp object: its properties, Test, Execute and Replace, the
' Matches and SubMatches collections, the pattern syntax and its errors.
Dim re, ms, m, s, i, sm
Set re = New RegExp
WScript.Echo TypeName(re), "[" & re.Pattern & "]", re.IgnoreCase, re.Global, re.Multiline
Set re = CreateObject("VBScript.RegExp")
WScript.Echo TypeName(re), re.Test("anything")

' Test
re.Pattern = "b+"
WScript.Echo re.Test("abbbc"), re.Test("ac"), re.Test("ABC")
re.IgnoreCase = True
WScript.Echo re.Test("ABC"), re.IgnoreCase
re.IgnoreCase = False

' Execute without and with Global
re.Pattern = "\d+"
Set ms = re.Execute("a1 b22 c333")
WScript.Echo TypeName(ms), ms.Count, ms(0), ms.Item(0).FirstIndex, ms(0).Length
re.Global = True
Set ms = re.Execute("a1 b22 c333")
s = ""
For Each m In ms
  s = s & m.Value & "@" & m.FirstIndex & "/" & m.Length & " "
Next
WScript.Echo ms.Count, s
Set m = ms(2)
WScript.Echo TypeName(m), m, ms.Item(1).Value
Set ms = re.Execute("none here")
WScript.Echo "no match", ms.Count

' SubMatches, and a group that takes no part
re.Pattern = "(\w+)@(\w+)\.(com|org)"
Set ms = re.Execute("mail ann@example.com or bob@test.org")
WScript.Echo ms.Count
For Each m In ms
  Set sm = m.SubMatches
  WScript.Echo m.FirstIndex, sm.Count, sm(0), sm.Item(1), sm(2)
Next
s = ""
For Each i In ms(1).SubMatches
  s = s & "<" & i & ">"
Next
WScript.Echo TypeName(ms(1).SubMatches), s
re.Pattern = "(a)|(b)"
Set m = re.Execute("b")(0)
WScript.Echo m.SubMatches.Count, IsEmpty(m.SubMatches(0)), m.SubMatches(1)

' Replace and its tokens
re.Global = False
re.Pattern = "o"
WScript.Echo re.Replace("foo boo", "0")
re.Global = True
WScript.Echo re.Replace("foo boo", "0")
re.Pattern = "(\w+) (\w+)"
WScript.Echo re.Replace("hello world", "$2 $1")
WScript.Echo re.Replace("hello world", "[$&]")
re.Pattern = "-"
WScript.Echo re.Replace("ab-cd", "($`|$')")
WScript.Echo re.Replace("a-b", "$$"), re.Replace("a-b", "$"), re.Replace("a-b", "$x")
re.Pattern = "(a)(b)(c)(d)(e)(f)(g)(h)(i)(j)(k)"
WScript.Echo re.Replace("abcdefghijk", "$11$10$1")
re.Pattern = "(a)(b)"
WScript.Echo re.Replace("ab", "$21$3")
re.Pattern = "(x)?y"
WScript.Echo re.Replace("y", "[$1]")

' Empty matches move on by one character
re.Pattern = "x*"
WScript.Echo re.Replace("abc", "-")
WScript.Echo re.Execute("abc").Count

' Pattern syntax
re.Global = True
re.Pattern = "[a-c]+"
WScript.Echo re.Replace("abcdcba", "#")
re.Pattern = "[^a-c]"
WScript.Echo re.Replace("abcdcba", "#")
re.Pattern = "\bcat\b"
WScript.Echo re.Replace("cat concat cat.", "dog")
re.Pattern = "\Bcat"
WScript.Echo re.Replace("cat concat", "dog")
re.Pattern = "\s+"
WScript.Echo re.Replace("a  b" & vbTab & "c", "_")
re.Pattern = "\W"
WScript.Echo re.Replace("a-b_c!", "")
re.Pattern = "\D+"
WScript.Echo re.Replace("ab12cd3", "")
re.Pattern = "<.+>"
WScript.Echo re.Replace("<a><b>", "X")
re.Pattern = "<.+?>"
WScript.Echo re.Replace("<a><b>", "X")
re.Pattern = "\d(?=px)"
WScript.Echo re.Replace("1px 2em 3px", "N")
re.Pattern = "\d(?!px)"
WScript.Echo re.Replace("1px 2em 3px", "N")
re.Pattern = "(?:ab)+"
Set ms = re.Execute("ababx")
WScript.Echo ms(0), ms(0).SubMatches.Count
re.Pattern = "(\w)\1"
WScript.Echo re.Replace("aabccd", "<$1>")
re.Pattern = "a{2,3}"
WScript.Echo re.Replace("a aa aaaa", "X")
re.Pattern = "a{2}"
WScript.Echo re.Test("a"), re.Test("aa")
re.Pattern = "\$\d+\.\d{2}"
WScript.Echo re.Execute("cost: $12.50")(0)
re.Pattern = "[.]"
WScript.Echo re.Replace("a.b.c", "!")
re.Pattern = "\x41\u0042"
WScript.Echo re.Test("xABy")
re.Pattern = "a|b|c"
WScript.Echo re.Replace("abcd", "*")
re.Pattern = "c$"
WScript.Echo re.Test("abc"), re.Test("abc" & vbLf)
re.Pattern = "^(a)?b\1$"
WScript.Echo re.Test("b"), re.Test("aba"), re.Test("ab")
re.Pattern = "[\d.-]+"
WScript.Echo re.Execute("x -12.5y")(0)

' IgnoreCase
re.Pattern = "hello"
re.IgnoreCase = False
WScript.Echo re.Replace("Hello HELLO hello", "hi")
re.IgnoreCase = True
WScript.Echo re.Replace("Hello HELLO hello", "hi")
re.IgnoreCase = False

' Multiline
s = "one" & vbLf & "two" & vbLf & "three"
re.Pattern = "^\w+$"
re.Multiline = False
WScript.Echo re.Execute(s).Count
re.Multiline = True
Set ms = re.Execute(s)
WScript.Echo ms.Count, ms(1), ms(2).FirstIndex
re.Pattern = "^t"
WScript.Echo re.Replace(s, "T") = "one" & vbLf & "Two" & vbLf & "Three"
re.Multiline = False
WScript.Echo re.Replace(s, "T") = s
re.Pattern = "e$"
WScript.Echo re.Replace(s, "E") = "one" & vbLf & "two" & vbLf & "threE"
re.Pattern = "a.c"
WScript.Echo re.Test("abc"), re.Test("a" & vbLf & "c")

' Errors of the pattern, raised when it is used
On Error Resume Next
re.Pattern = "(?<=a)b"
WScript.Echo "set", Err.Number
re.Test "ab"
WScript.Echo "lookbehind", Err.Number, Err.Description
Err.Clear
re.Pattern = "*a"
re.Test "a"
WScript.Echo "quantifier", Err.Number, Err.Description
Err.Clear
re.Pattern = "a**"
Set ms = re.Execute("a")
WScript.Echo "double quantifier", Err.Number
Err.Clear
re.Pattern = "[abc"
s = re.Replace("a", "b")
WScript.Echo "bracket", Err.Number, Err.Description
Err.Clear
re.Pattern = "(abc"
re.Test "abc"
WScript.Echo "paren", Err.Number, Err.Description
Err.Clear
re.Pattern = "[z-a]"
re.Test "a"
WScript.Echo "range", Err.Number, Err.Description
Err.Clear
re.Pattern = "ok"
WScript.Echo "fixed", re.Test("ok"), Err.Number
Set ms = re.Execute("ok")
m = ms(1)
WScript.Echo "item out of range", Err.Number
Err.Clear
' A function of GetRef as the replacement gives the text of each match from
' the match, its groups, its position and the whole text.
On Error GoTo 0
Function Swapped(whole, letter, digit, position, source)
  Swapped = "[" & digit & letter & "@" & position & "/" & Len(source) & "]"
End Function
Function Which(whole, a, b, position, source)
  Which = TypeName(a) & "," & TypeName(b)
End Function
Set re = New RegExp
re.Global = True
re.Pattern = "(\w)(\d)"
WScript.Echo re.Replace("a1 b2!", GetRef("Swapped"))
re.Pattern = "(a)|(b)"
WScript.Echo re.Replace("ab", GetRef("Which"))
re.Global = False
WScript.Echo re.Replace("ba", GetRef("Which"))
