' The title manager's and the client's events in VBScript procedures: two callbacks (a command
' list's, executed by a title, and the title's own), each reaching the handler before tm_onCommand;
' then a zone change, a server message (not all ASCII), a pick result and the disconnection, each
' provoked on the simulator by the event before it. The client's listeners hear the message after
' the event, the pick result and the disconnection before it. The async processor's loop dispatches
' them on this thread until client_onDisconnect closes it.
Option Explicit
Dim processor, title, list, listCallback, titleCallback, commands

Function callbackName(id)
  If id = listCallback Then
    callbackName = "list callback"
  ElseIf id = titleCallback Then
    callbackName = "title callback"
  Else
    callbackName = "unknown callback " & id
  End If
End Function

' The handlers: objects whose default member the title manager and the client call. Wine's
' VBScript has no GetRef, which makes such an object of a procedure elsewhere.
Class CallbackHandler
  Public Default Sub Run(id)
    WScript.Echo "handler: " & callbackName(id)
  End Sub
End Class

Class ListenerHandler
  Public Kind
  Public Default Sub Run(text)
    WScript.Echo Kind & " listener: " & text
  End Sub
End Class

Class DisconnectHandler
  Public Default Sub Run()
    WScript.Echo "disconnect listener"
  End Sub
End Class

Function listener(kind)
  Set listener = New ListenerHandler
  listener.Kind = kind
End Function

Sub tm_onCommand(id)
  WScript.Echo "onCommand: " & callbackName(id)
  commands = commands + 1
  If commands = 2 Then sim.console "zone LowerThirds on"
End Sub

Sub client_onZoneChange(zone, state)
  WScript.Echo "onZoneChange: " & zone & " " & state
  sim.console "message Good evening from Ålesund"
End Sub

Sub client_onMessage(text)
  WScript.Echo "onMessage: " & text
  sim.console "pick <pick node=""name""/>"
End Sub

Sub client_onPickResult(xml)
  WScript.Echo "onPickResult: " & xml
  sim.console "drop"
End Sub

Sub client_onDisconnect()
  WScript.Echo "onDisconnect"
  processor.close
End Sub

Set processor = client.createAsyncProcessor()
client.setServerAddress sim.address
tm.onCommandCallback = New CallbackHandler
client.onMessageListener = listener("message")
client.onPickResultListener = listener("pick")
client.onDisconnectListener = New DisconnectHandler
commands = 0
Set title = tm.createTitle("LowerThirds")
title.enableZoneNotification
Set list = tm.createCommandList()
list.createNode "Text", "name"
listCallback = list.callback()
title.execute list
titleCallback = title.commandCallback()
Do While processor.waitEvent()
  processor.process
Loop
WScript.Echo "scenario complete"
