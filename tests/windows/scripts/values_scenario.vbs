' set with every kind of VBScript value on a title of the simulator whose address is the first
' argument; the values that cannot be sent fail with the text the script sees. Ends with the
' marker line.
Option Explicit
Dim tm, title, x
Set tm = CreateObject("VXBr5.TitleManager")
tm.getClient().setServerAddress WScript.Arguments(0)
Set title = tm.createTitle("Values")
title.createNode "Text", "t"
title.set "t", "text", "Breaking news"
title.set "t", "emptyText", ""
title.set "t", "integer", 42
title.set "t", "negative", -7
title.set "t", "byte", CByte(200)
title.set "t", "long", CLng(2147483647)
title.set "t", "double", 2.5
title.set "t", "single", CSng(0.25)
title.set "t", "currency", CCur(1.5)
title.set "t", "true", True
title.set "t", "false", False
title.set "t", "empty", Empty
title.set "t", "null", Null
' A variable arrives by reference and fails; (x) and an expression pass its value.
x = 12
title.set "t", "variable", (x)
title.set "t", "expression", x + 1

tm.getClient().writeScene

On Error Resume Next
title.set "t", "byReference", x
WScript.Echo "variable: " & Err.Description
Err.Clear
title.set "t", "date", (Now)
WScript.Echo "date: " & Err.Description
Err.Clear
title.set "t", "array", Array(1, 2, 3)
WScript.Echo "array: " & Err.Description
Err.Clear
title.set "t", "object", (title)
WScript.Echo "object: " & Err.Description
Err.Clear
title.set "t", "", 1
WScript.Echo "no attribute: " & Err.Description
Err.Clear
title.set "t", "nothing", Nothing
WScript.Echo "nothing: " & Err.Description & " (" & Hex(Err.Number) & ")"
On Error GoTo 0
WScript.Echo "scenario complete"
