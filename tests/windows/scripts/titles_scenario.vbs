' Titles from VBScript against the simulator whose address is the first argument: titles made in
' zones and channels, found again, replaced and destroyed (in a transaction too), a command list
' executed by two titles, transactions and previews. Ends with the marker line.
Option Explicit
Dim tm, lower, upper, sport, list, found, ticker, zone, name
Set tm = CreateObject("VXBr5.TitleManager")
tm.getClient().setServerAddress WScript.Arguments(0)

Set lower = tm.createTitle("LowerThirds")
lower.setTitleName "lower"
lower.createNode "Group", "bg"
lower.set "bg", "Text", "Breaking"
Set upper = tm.createTitleInChannel("LowerThirds", 2)
upper.createNode "Group", "bg"
WScript.Echo "zones " & lower.getZone() & " and " & upper.getZone()
WScript.Echo "found by zone: " & (tm.findTitleByZone("LowerThirds") Is upper)
WScript.Echo "found by name: " & (tm.findTitleByName("lower") Is lower)
WScript.Echo "unknown zone: " & (tm.findTitleByZone("Nowhere") Is Nothing)

' Names in variables, which VBScript passes by reference.
zone = "Ticker"
name = "tick"
Set ticker = tm.createTitle(zone)
ticker.transactionBegin name
ticker.transactionEnd
WScript.Echo "zone from a variable: " & ticker.getZone()

' A command list recorded once and replayed under two titles, the second one under a prefix.
Set list = tm.createCommandList()
list.createNode "Text", "caption"
list.set "caption", "Text", "Goal"
list.setZoneState 1
Set sport = tm.createTitle("Sport")
sport.createNode "Group", "score"
sport.execute list, "score"
lower.execute list

' Transactions: named, and falling back to the zone name for any other value.
lower.transactionBegin "fade"
lower.set "bg", "alpha", (0.5)
lower.transactionEnd
lower.transactionRoll 7
upper.callSceneAction "In"

' Previews of a title.
lower.previewSchedule 1
lower.previewScheduleBegin 2
lower.previewScheduleEnd 2
lower.preload "bg"

' A destroyed title is found by its zone, no longer by its name, and is set up anew when used
' again; a new title in a zone replaces the old one, which goes in its destroy transaction.
upper.setTitleName "upper"
upper.destroyInTransaction "out"
WScript.Echo "destroyed, by zone: " & (tm.findTitleByZone("LowerThirds") Is upper) & _
    ", by name: " & (tm.findTitleByName("upper") Is Nothing)
upper.set "", "again", True
sport.setDestroyTransactionName "sportOut"
Set found = tm.createTitle("Sport")
found.createNode "Group", "replacement"
WScript.Echo "replaced: " & (tm.findTitleByZone("Sport") Is found)
tm.getClient().writeScene

On Error Resume Next
lower.createNode "", "x"
WScript.Echo "no node type: " & Err.Description
Err.Clear
lower.renameNode "bg", ""
WScript.Echo "no new name: " & Err.Description
Err.Clear
lower.execute tm
WScript.Echo "execute manager: " & Err.Description & " (" & Hex(Err.Number) & ")"
On Error GoTo 0
WScript.Echo "scenario complete"
