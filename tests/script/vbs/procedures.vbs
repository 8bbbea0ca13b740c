' Subs and Functions: arguments ByRef by default, ByVal, parentheses that
' make an argument an expression, array elements passed ByRef.
Sub Increment(x)
  x = x + 1
End Sub
Sub IncrementCopy(ByVal x)
  x = x + 1
End Sub
Sub Swap(a, b)
  Dim t
  t = a : a = b : b = t
End Sub
Function Factorial(n)
  If n <= 1 Then
    Factorial = 1
  Else
    Factorial = n * Factorial(n - 1)
  End If
End Function
Function Nothing_Returned()
End Function
Function EarlyExit(n)
  EarlyExit = "start"
  If n > 0 Then Exit Function
  EarlyExit = "end"
End Function
Function Accumulate(n)
  Accumulate = 0
  Dim k
  For k = 1 To n
    Accumulate = Accumulate + k
  Next
End Function
Function MakeArray(n)
  Dim a()
  ReDim a(n - 1)
  Dim k
  For k = 0 To n - 1
    a(k) = k * k
  Next
  MakeArray = a
End Function
Sub FillArray(arr)
  arr(0) = "filled"
End Sub
Sub FillCopy(ByVal arr)
  arr(0) = "copy"
End Sub

Dim v, w, arr(2), dyn
v = 1
Increment v
WScript.Echo "byref", v
IncrementCopy v
WScript.Echo "byval", v
Increment (v)
WScript.Echo "parenthesized argument", v
Call Increment(v)
WScript.Echo "call keyword", v
Increment v + 0
WScript.Echo "expression argument", v
w = 9
Swap v, w
WScript.Echo "swap", v, w
arr(0) = "a" : arr(1) = "b"
Swap arr(0), arr(1)
WScript.Echo "swap elements", arr(0), arr(1)
Increment arr(2)
WScript.Echo "element incremented", arr(2)
WScript.Echo Factorial(10), TypeName(Nothing_Returned()), IsEmpty(Nothing_Returned), EarlyExit(1), EarlyExit(0), Accumulate(4)
dyn = MakeArray(4)
WScript.Echo UBound(dyn), dyn(3), Join(dyn, ",")
FillArray arr
WScript.Echo arr(0)
FillCopy arr
WScript.Echo arr(0)
FillArray dyn
WScript.Echo dyn(0)
Dim total
Sub AddToTotal(amount)
  total = total + amount
End Sub
AddToTotal 5
AddToTotal 7
WScript.Echo "global from sub", total
Sub UsesLocal()
  Dim total
  total = 100
End Sub
UsesLocal
WScript.Echo "local shadows global", total
' Of two procedures of one name the last one counts, wherever it is called.
WScript.Echo Twice(1)
Function Twice(n)
  Twice = "first " & n
End Function
Function Twice(n)
  Twice = "second " & n
End Function
WScript.Echo Twice(2)
' A procedure inside a block of global code is declared with the others,
' whether the block runs or not.
WScript.Echo Hoisted(1), Skipped(2)
If False Then
  Function Skipped(n)
    Skipped = "skipped " & n
  End Function
Else
  Function Hoisted(n) : Hoisted = "hoisted " & n : End Function
End If
For i = 1 To 1
  Sub FromLoop() : WScript.Echo "declared in a loop" : End Sub
Next
FromLoop
' The last statement of a procedure may share the line of its End.
Sub OneLiner(n)
  WScript.Echo "one line", n End Sub
Function Doubled(n)
  Doubled = n * 2 End Function
OneLiner Doubled(4)
