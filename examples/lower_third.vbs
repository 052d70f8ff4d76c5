' The title sample's lower third from VBScript, through VXBr5.DLL: a title built in one action,
' faded in inside a transaction with a callback that the script waits for, its zone switched on,
' then destroyed.
'   cscript //nologo lower_third.vbs HOST:PORT
' A script variable reaches the DLL by reference, which set does not take: its value is passed as
' an expression or (x).
Option Explicit
Dim manager, client, processor, title, callbackId

' A handler is an object whose default member the DLL calls (GetRef is missing in Wine's VBScript).
Class CallbackHandler
  Public Default Sub Confirmed(id)
    WScript.Echo "handler: callback " & id
    If id = callbackId Then processor.close
  End Sub
End Class

Function FadeIn()
  Dim channel
  Set FadeIn = manager.createAnimation()
  Set channel = FadeIn.createChannel()
  channel.destination = "name:Material.Alpha"
  channel.addKeyframe 0, 0, "LINEAR", "LINEAR"
  channel.addKeyframe 0.5, 1, "LINEAR", "LINEAR"
End Function

Function FadeInOptions()
  Set FadeInOptions = manager.createAnimationOptions()
  FadeInOptions.name = "fadeIn"
End Function

Function Found(titleName)
  Found = "no"
  If Not manager.findTitleByName(titleName) Is Nothing Then Found = "yes"
End Function

Set manager = CreateObject("VXBr5.TitleManager")
Set client = manager.getClient()
client.setServerAddress WScript.Arguments(0)
' The script has no window message loop: its events come through the processor's loop below.
Set processor = client.createAsyncProcessor()
manager.onCommandCallback = New CallbackHandler
manager.setProject "Evening News"
Set title = manager.createTitle("LowerThirds")
WScript.Echo "connected to " & client.getServerAddress() & ", server version " & _
  client.getServerVersion() & ", bridge " & manager.getBridgeVersion()
title.setTitleName "lower third"

title.begin
title.loadScene "LowerThirdBackground", "bg"
title.createNode "Text", "name"
title.createNode "Text", "role"
title.set "name", "Text", "Jane Doe"
title.set "role", "Text", "Reporter"
title.end

title.begin
title.transactionBegin "LT_IN"
title.animate FadeIn(), "", FadeInOptions()
title.transactionEnd
callbackId = title.commandCallback()
title.end
Do While processor.waitEvent()
  processor.process
Loop

client.setZoneState "LowerThirds", 1
WScript.Echo "zone LowerThirds reads back as " & client.getZoneState("LowerThirds")
WScript.Echo "found by name: " & Found("lower third")
title.destroy
WScript.Echo "destroyed; found by name: " & Found("lower third")
WScript.Echo "lower third done"
