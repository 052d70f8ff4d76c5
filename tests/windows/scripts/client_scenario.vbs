' The client object from VBScript against the simulator whose address is the first argument:
' zone state set and read, remote calls (roaSet, roaGet, roaCall with a VBScript array), previews,
' the server's services, and the errors the script sees. Ends with the marker line.
Option Explicit
Dim tm, client, title, node, id, args, images
Set tm = CreateObject("VXBr5.TitleManager")
Set client = tm.getClient()
client.setServerAddress WScript.Arguments(0)
client.connect
WScript.Echo "server " & client.getServerVersion()

client.setZoneState "LowerThirds", 1
client.setZoneState "Ticker", 0
WScript.Echo "zones LowerThirds " & client.getZoneState("LowerThirds") & ", Ticker " & client.getZoneState("Ticker")

Set title = tm.createTitle("Remote")
title.createNode "Text", "caption"
title.set "caption", "alpha", (0.5)
node = "Root/_Br5_Title_1/caption"
WScript.Echo "roaGet alpha " & client.roaGet(node, "alpha")
client.roaSet node, "alpha", (0.75)
client.roaSet node, "label", "Headline"
client.roaSet node, "shown", True
WScript.Echo "roaGet alpha " & client.roaGet(node, "alpha") & " " & TypeName(client.roaGet(node, "alpha"))
WScript.Echo "roaGet label " & client.roaGet(node, "label")
WScript.Echo "roaGet shown " & client.roaGet(node, "shown") & " " & TypeName(client.roaGet(node, "shown"))

' Previews through the client and through a remote call with a VBScript array.
id = client.previewGenerateID()
client.previewSchedule id
client.previewGetStillImageFile id, "still.png"
images = client.previewGetSequenceImageFiles(id, "seq.png")
WScript.Echo "preview images " & images
args = Array(id, "call.png")
WScript.Echo "roaCall " & client.roaCall("::Preview", "getSequenceImageFile", args)
WScript.Echo "roaCall expression " & client.roaCall("::Preview", "getSequenceImageFile", Array(id, "x.png"))
client.switchCamera "cam2"
client.writeRenderPicture
client.writeScene

On Error Resume Next
client.roaGet node, "missing"
WScript.Echo "roaGet missing: " & Err.Description
Err.Clear
client.roaCall node, "explode", Array()
WScript.Echo "roaCall missing: " & Err.Description
Err.Clear
client.roaGet "Root/nowhere", "alpha"
WScript.Echo "roaGet nowhere: " & Err.Description
Err.Clear
client.roaSet node, "when", (Now)
WScript.Echo "roaSet date: " & Err.Description
Err.Clear
client.previewGetStillImageFile 99, "none.png"
WScript.Echo "preview 99: " & Err.Description
Err.Clear
title.execute client
WScript.Echo "execute client: " & Err.Description
Err.Clear
client.createAsyncProcessor
WScript.Echo "processor after connect: " & Err.Description
On Error GoTo 0
WScript.Echo "scenario complete"
