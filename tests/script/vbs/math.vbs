' Math functions.
WScript.Echo Abs(-3), Abs(2.5), TypeName(Abs(-3)), Sgn(-7), Sgn(0), Sgn(0.5), Sqr(16), Sqr(2) * Sqr(2) > 1.99
WScript.Echo Int(-0.5), Fix(-0.5), Int(3), TypeName(Int(2.5)), TypeName(Int(CSng(2.5)))
WScript.Echo Round(2.567, 2), Round(0.5), Round(1.5), Round(-1.5), Round(12), TypeName(Round(2.5))
WScript.Echo Exp(0), Log(1), Sin(0), Cos(0), Atn(1) * 4, Log(Exp(2))
WScript.Echo RGB(255, 0, 0), RGB(0, 0, 255), RGB(300, 0, 0)
Dim r, ok, i
ok = True
For i = 1 To 100
  r = Rnd
  If r < 0 Or r >= 1 Then ok = False
Next
WScript.Echo "rnd in range", ok, TypeName(Rnd)
Rnd -1
Randomize 42
r = Rnd
Rnd -1
Randomize 42
WScript.Echo "reseeded sequence repeats", r = Rnd
r = Rnd(-3)
WScript.Echo "negative seed repeats", r = Rnd(-3), Rnd(0) = Rnd(0)
On Error Resume Next
r = Sqr(-1)
WScript.Echo "sqr", Err.Number
Err.Clear
r = Log(0)
WScript.Echo "log", Err.Number
