' Forms the native engine reads that look odd: comparison operators
' written backwards, hex literals with the Long suffix or run into a word,
' "&" before a name that starts like a hex literal, and exponents too small.
Dim hi : hi = "there"
WScript.Echo 3 => 2, 2 =< 2, 1 >< 1, 2 => 3
WScript.Echo &hffff&, TypeName(&hffff&), &hffff, &h7fff&, TypeName(&h7fff&), &hFFFFFFFF&
WScript.Echo &h01or&h02, &h0fxor&h03
WScript.Echo "x" &hi
WScript.Echo 1e-94938484, TypeName(1e-94938484)
