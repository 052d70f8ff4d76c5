' 100,000 set calls with a text value on one title from a VBScript loop, against the same loop
' calling getZone on that title, which only reads a field: one line per pass with the two times
' in seconds. Run by scripts/wine_script_bench through the script host; the number of passes is
' its one argument.
Option Explicit
Dim title, pass, count, started, setSeconds, zoneSeconds, zone
client.setServerAddress sim.address
Set title = tm.createTitle("Bench")
For pass = 1 To CInt(WScript.Arguments(0))
  started = Timer
  For count = 1 To 100000
    title.set "name", "Text", "Jane Doe"
  Next
  setSeconds = Timer - started
  started = Timer
  For count = 1 To 100000
    zone = title.getZone()
  Next
  zoneSeconds = Timer - started
  WScript.Echo "set " & setSeconds & " getZone " & zoneSeconds
Next
