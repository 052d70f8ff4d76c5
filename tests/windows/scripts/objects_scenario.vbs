' VXBr5.Animation and VXBr5.CommandList from VBScript: members called, results and the errors a
' script sees printed, ending with the marker line the runner looks for.
Option Explicit
Dim list, anim, channel, first, x
Set list = CreateObject("VXBr5.CommandList")
Set anim = CreateObject("VXBr5.Animation")
Set channel = anim.createChannel()
channel.destination = "n1:pos.x"
channel.after = "CYCLE"
channel.addKeyframeWithTangents 0, 1, "LINEAR", "SMOOTH", 1, 0, 1, 0
WScript.Echo "channel " & channel.destination & " after " & channel.after
list.createNode "Group", "lt/bg"
list.set "lt/bg", "alpha", (0.5)
list.animate "in", "lt"
list.beginTransaction
first = list.callback()
WScript.Echo "next callback id " & (list.callback() - first)

On Error Resume Next
list.createNode "Group", ""
WScript.Echo "createNode: " & Err.Description
Err.Clear
' A variable arrives by reference, which set does not take; (x) passes its value.
x = 1
list.set "lt", "x", x
WScript.Echo "set variable: " & Err.Description
Err.Clear
list.set "lt", "x", (Now)
WScript.Echo "set date: " & Err.Description
Err.Clear
channel.after = "INHERIT"
WScript.Echo "after: " & Err.Description
On Error GoTo 0
WScript.Echo "scenario complete"
