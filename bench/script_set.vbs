' 100,000 set calls with a text value on one title from a VBScript loop, each its own action, then
' the same calls in actions of 1,000 (begin/end; one action of 100,000 would pass the packet
' limit), against the same loop calling getZone on that title, which only reads a field: one line
' per pass with the three times in seconds. Run by scripts/wine_script_bench through the script
' host; its arguments are the number of passes and the server's address (the host's own
' simulator when there is none).
Option Explicit
Dim title, pass, count, action, started, setSeconds, batchedSeconds, zoneSeconds, zone
If WScript.Arguments.Count > 1 Then
  client.setServerAddress WScript.Arguments(1)
Else
  client.setServerAddress sim.address
End If
Set title = tm.createTitle("Bench")
For pass = 1 To CInt(WScript.Arguments(0))
  started = Timer
  For count = 1 To 100000
    title.set "name", "Text", "Jane Doe"
  Next
  setSeconds = Timer - started
  started = Timer
  For action = 1 To 100
    title.begin
    For count = 1 To 1000
      title.set "name", "Text", "Jane Doe"
    Next
    title.end
  Next
  batchedSeconds = Timer - started
  started = Timer
  For count = 1 To 100000
    zone = title.getZone()
  Next
  zoneSeconds = Timer - started
  WScript.Echo "set " & setSeconds & " batched " & batchedSeconds & " getZone " & zoneSeconds
Next
