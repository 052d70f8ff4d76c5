' Callbacks from VBScript through an async processor, against the simulator whose address is the
' first argument: the handler set with onCommandCallback is called on this thread from the
' processor loop, once per confirmed callback, a command list's callback once per title that
' executes it; the handler closes the processor after the last one. The handler is an object
' whose default member is the procedure (Wine's VBScript has no GetRef; where there is one,
' Set tm.onCommandCallback = GetRef("onCallback") does the same). Ends with the marker line.
Option Explicit
Dim tm, client, processor, title, other, list, first, expected, seen
Set tm = CreateObject("VXBr5.TitleManager")
Set client = tm.getClient()
client.setServerAddress WScript.Arguments(0)
Set processor = client.createAsyncProcessor()

Class CallbackHandler
  Public Default Sub onCallback(id)
    seen = seen + 1
    ' The id comes as VT_INT, which Wine's VBScript can print and compare but not compute with.
    WScript.Echo "callback " & (CLng(id) - first)
    If seen = expected Then processor.close
  End Sub
End Class

Set tm.onCommandCallback = New CallbackHandler
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

WScript.Echo "scenario complete"
