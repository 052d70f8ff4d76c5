' Log-in from VBScript to the simulator whose address is the first argument, which asks for the
' password "onair": a wrong password fails with the text the script sees, the right one
' connects. Ends with the marker line.
Option Explicit
Dim tm, client, title
Set tm = CreateObject("VXBr5.TitleManager")
Set client = tm.getClient()
client.setServerAddress WScript.Arguments(0)
client.setPassword "on air"
On Error Resume Next
Set title = tm.createTitle("Login")
WScript.Echo "wrong password: " & Err.Description
Err.Clear
client.setPassword ""
client.connect
WScript.Echo "no password: " & Err.Description
On Error GoTo 0
client.setPassword "onair"
Set title = tm.createTitle("Login")
title.createNode "Group", "in"
client.writeScene
WScript.Echo "logged in, zone " & title.getZone()
WScript.Echo "scenario complete"
