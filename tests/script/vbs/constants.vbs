' The built-in constants: their values and the subtypes the native engine
' gives them, Integer for the numbers but the colours and those too large.
WScript.Echo TypeName(vbOKOnly), TypeName(vbSunday), TypeName(vbYes), TypeName(vbTextCompare), TypeName(vbString)
WScript.Echo TypeName(vbCr), TypeName(vbObjectError), TypeName(vbRed), TypeName(vbWhite), TypeName(vbArray)
WScript.Echo vbMsgBoxHelpButton, vbMsgBoxSetForeground, vbMsgBoxRight, vbMsgBoxRtlReading
WScript.Echo TypeName(vbMsgBoxHelpButton), TypeName(vbMsgBoxSetForeground)
WScript.Echo vbOKCancel + vbQuestion + vbDefaultButton2, TypeName(vbOKCancel + vbQuestion)
WScript.Echo vbSaturday * 5000, TypeName(vbSaturday * 5000)
WScript.Echo vbObjectError + 513, vbWhite, vbUseDefault, vbTrue
