' Callbacks from VBScript through an async processor, against the simulator whose address is the
' first argument: the handler set with onCommandCallback (a GetRef procedure) is called on this
' thread from the processor loop, once per confirmed callback, a command list's callback once per
' title that executes it; the handler closes the processor after the last one. Ends with the
' marker line.
Option Explicit
Dim tm, client, processor, title, other, list, first, expected, seen
Set tm = CreateObject("VXBr5.TitleManager")
Set client = tm.getClient()
client.setServerAddress WScript.Arguments(0)
Set processor = client.createAsyncProcessor()

Sub onCallback(id)
  seen = seen + 1
  WScript.Echo "callback " & (id - first) & " (" & TypeName(id) & ")"
  If seen = expected Then processor.close
End Sub

Set tm.onCommandCallback = GetRef("onCallback")
seen = 0
expected = 4
Set title = tm.createTitle("Callbacks")
first = title.commandCallback()
title.createNode "Group", "bg"
title.commandCallback
Set list = tm.createCommandList()
list.set "", "done", True
list.callback
Set other = tm.createTitle("Other")
title.execute list
other.execute list
Do While processor.waitEvent()
  processor.process
Loop
client.writeScene
WScript.Echo "callbacks seen " & seen
WScript.Echo "wait after close: " & processor.waitEvent()

On Error Resume Next
client.createAsyncProcessor
WScript.Echo "processor after connect: " & Err.Description
On Error GoTo 0
WScript.Echo "scenario complete"
