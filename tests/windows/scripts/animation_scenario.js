// Animations from JScript on a title of the simulator whose address is the first argument: a
// client animation with keyframes, one by name with options, stopped, and an animation recorded in
// a command list that two titles run. Ends with the marker line.
var tm = new ActiveXObject("VXBr5.TitleManager");
tm.getClient().setServerAddress(WScript.Arguments(0));
var title = tm.createTitle("Anim");
title.createNode("Group", "bg");

var anim = tm.createAnimation();
var scale = anim.createChannel();
scale.destination = "bg.scale.y";
scale.addKeyframe(0, 0, "STEP", "LINEAR");
scale.addKeyframe(1, 2, "SMOOTH", "SMOOTH");
title.animate(anim, "bg");

var options = tm.createAnimationOptions();
options.name = "outro";
options.skip = 0.25;
options.end = 2;
options.playMode = "FORWARD";
WScript.Echo("options " + options.name + " " + options.skip + " " + options.end + " " + options.playMode);
title.animate("out", "bg", options);
title.stopAnimation("out", "bg");

var list = tm.createCommandList();
list.animate(anim, "");
list.animate("pulse", "", 2);
list.stopAnimation("pulse", "");
var second = tm.createTitle("Anim2");
title.execute(list);
second.execute(list);

tm.getClient().writeScene();

function failure(call) {
  try {
    call();
  } catch (e) {
    return e.message || "code " + (e.number >>> 0).toString(16);
  }
  return "no error";
}
WScript.Echo("interpolation: " + failure(function () { scale.addKeyframe(2, 0, "CUBIC", "STEP"); }));
WScript.Echo("stop: " + failure(function () { list.stopAnimation("", "x"); }));
WScript.Echo("animate channel: " + failure(function () { title.animate(scale, "bg"); }));
WScript.Echo("scenario complete");
