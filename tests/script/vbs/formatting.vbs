' FormatNumber, FormatCurrency and FormatPercent (United States settings).
WScript.Echo FormatNumber(1234.5), FormatNumber(1234.56, 1), FormatNumber(-1234.567, 2), FormatNumber(1234567, 0)
WScript.Echo FormatNumber(0.5, 2, False), FormatNumber(0.5, 2, True), FormatNumber(-5, 2, , True), FormatNumber(1234567, 0, , , False)
WScript.Echo FormatNumber(0), FormatNumber("12.3"), FormatNumber(12, 3)
WScript.Echo FormatCurrency(1234.5), FormatCurrency(-1234.5), FormatCurrency(0.456, 1), FormatCurrency(5, 0)
WScript.Echo FormatPercent(0.256), FormatPercent(0.256, 0), FormatPercent(1), FormatPercent(-0.5, 1)
On Error Resume Next
Dim s
s = FormatNumber("abc")
WScript.Echo "text", Err.Number
