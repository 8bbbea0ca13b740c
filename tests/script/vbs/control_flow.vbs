' If, Select Case and the loops, with Exit and nesting.
Dim i, j, s, n
For i = 1 To 4
  If i = 1 Then
    s = "one"
  ElseIf i = 2 Then
    s = "two"
  ElseIf i = 3 Then s = "three"
  Else
    s = "many"
  End If
  WScript.Echo i, s
Next
If i = 5 Then WScript.Echo "i is five" Else WScript.Echo "i is not five"
If i > 10 Then WScript.Echo "big" : WScript.Echo "very"
If i < 10 Then WScript.Echo "small" : WScript.Echo "indeed"
If False Then WScript.Echo "no" Else If True Then WScript.Echo "nested single-line"
For Each n In Array(1, 5, "x", 10, 7)
  Select Case n
    Case 1, 2, 3
      WScript.Echo n, "low"
    Case "x"
      WScript.Echo n, "letter"
    Case 4 + 1, 10
      WScript.Echo n, "listed"
    Case Else
      WScript.Echo n, "else"
  End Select
Next
s = ""
For i = 10 To 1 Step -3
  s = s & i & " "
Next
WScript.Echo s & "| after:", i
s = ""
For i = 0 To 1 Step 0.25
  s = s & i & " "
Next
WScript.Echo s
For i = 1 To 0
  WScript.Echo "never"
Next
WScript.Echo "empty loop leaves", i
n = 3
s = ""
For i = 1 To n
  n = 10
  s = s & i
Next
WScript.Echo s, n
For i = 1 To 10
  If i = 3 Then Exit For
Next
WScript.Echo "exit for at", i
i = 0
Do While i < 3
  i = i + 1
Loop
WScript.Echo "do while", i
Do Until i = 0
  i = i - 1
Loop
WScript.Echo "do until", i
Do
  i = i + 1
Loop While i < 5
WScript.Echo "loop while", i
Do
  i = i + 1
Loop Until True
WScript.Echo "loop until runs once", i
Do
  i = i + 1
  If i >= 9 Then Exit Do
Loop
WScript.Echo "exit do", i
While i > 0
  i = i - 4
Wend
WScript.Echo "wend", i
s = ""
For i = 1 To 3
  For j = 1 To 3
    If j = 2 Then Exit For
    s = s & i & j & " "
  Next
Next
WScript.Echo s
s = ""
Do
  For j = 1 To 5
    If j = 3 Then Exit Do
    s = s & j
  Next
Loop
WScript.Echo "exit do from for", s
i = 0
Do While True
  i = i + 1
  Select Case i
    Case 2
      Exit Do
  End Select
Loop
WScript.Echo "exit do from select", i
' One-line Ifs may end with a colon or with an End If on the same line.
s = ""
If True Then s = s & "a":
If True Then s = s & "b" End If
If False Then s = s & "x" Else s = s & "c" End If
If False Then s = s & "y": Else s = s & "d": End If
WScript.Echo "one-line forms", s
' "Then :" opens a block If, as a line break would.
If False Then :
  WScript.Echo "never"
Else
  WScript.Echo "block after Then :"
End If
