' Animations from VBScript on a title of the simulator whose address is the first argument: a
' client animation built from channels and keyframes, one started by name with options, stopped,
' and the same animation recorded in a command list. Ends with the marker line.
Option Explicit
Dim tm, title, anim, fade, move, options, list
Set tm = CreateObject("VXBr5.TitleManager")
tm.getClient().setServerAddress WScript.Arguments(0)
Set title = tm.createTitle("Anim")
title.createNode "Group", "bg"

Set anim = tm.createAnimation()
Set fade = anim.createChannel()
fade.destination = "bg.alpha"
fade.addKeyframe 0, 0, "LINEAR", "LINEAR"
fade.addKeyframe 0.5, 1, "LINEAR", "STEP"
Set move = anim.createChannel()
move.destination = "bg.pos.x"
move.before = "CYCLE"
move.after = "OSCILLATE"
move.addKeyframeWithTangents 0, -100, "SMOOTH", "SMOOTH", 1, 0, 1, 0
WScript.Echo "channels " & fade.destination & ", " & move.destination & " " & move.before & "/" & move.after
title.animate anim, "bg"

Set options = tm.createAnimationOptions()
options.name = "intro"
options.offset = 0.5
options.playMode = "BACKWARD"
options.enableFinish = 1
options.watchID = 7
WScript.Echo "options " & options.name & " " & options.offset & " " & options.playMode & " " & options.enableFinish & " " & options.watchID
title.animate "in", "bg", options
title.animate "loop", "", 3
title.stopAnimation "loop", ""

Set list = tm.createCommandList()
list.createNode "Group", "box"
list.animate anim, "box", options
list.animate "in", "box"
title.execute list

tm.getClient().writeScene

On Error Resume Next
fade.addKeyframe 1, 0, "linear", "STEP"
WScript.Echo "keyframe: " & Err.Description
Err.Clear
move.before = "INHERIT"
WScript.Echo "before: " & Err.Description
Err.Clear
list.animate "in", "box", list
WScript.Echo "list options: " & Err.Description
Err.Clear
list.animate "", "box"
WScript.Echo "list name: " & Err.Description
On Error GoTo 0
WScript.Echo "scenario complete"
