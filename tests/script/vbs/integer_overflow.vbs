' Integer arithmetic grows into a wider subtype instead of overflowing;
' conversions to a narrow subtype raise Overflow (6).
Dim i
i = 32767
i = i + 1
WScript.Echo i, TypeName(i)
i = 2147483647
i = i + 1
WScript.Echo i, TypeName(i)
i = -32768
WScript.Echo -i, TypeName(-i), 32767 * 2, TypeName(32767 * 2)
WScript.Echo &HFFFF + 1, &H7FFF + 1, TypeName(&H7FFF + 1)
WScript.Echo CInt(2.5), CInt(3.5), CInt(-2.5), CLng(1.5), CInt("12"), CInt(True), CByte(255)
WScript.Echo Int(-2.5), Fix(-2.5), Int(2.7), Fix(2.7), Round(2.5), Round(3.5), Round(-2.5), Round(1.25, 1)
WScript.Echo Hex(-1), Hex(65535), Hex(2147483647), Hex(-2), Oct(-1), Hex(255)
On Error Resume Next
Dim x
x = CInt(32768)
WScript.Echo "CInt(32768)", Err.Number, Err.Description
Err.Clear
x = CInt(-32769)
WScript.Echo "CInt(-32769)", Err.Number
Err.Clear
x = CLng(2147483648)
WScript.Echo "CLng(2147483648)", Err.Number
Err.Clear
x = CByte(256)
WScript.Echo "CByte(256)", Err.Number
Err.Clear
x = CByte(-1)
WScript.Echo "CByte(-1)", Err.Number
Err.Clear
x = 2147483648 \ 2
WScript.Echo "2147483648 \ 2", Err.Number
Err.Clear
x = 2147483647 \ 1
WScript.Echo "2147483647 \ 1", Err.Number, x
Err.Clear
x = CInt(32767.5)
WScript.Echo "CInt(32767.5)", Err.Number
Err.Clear
x = CInt(32766.5)
WScript.Echo "CInt(32766.5)", Err.Number, x
