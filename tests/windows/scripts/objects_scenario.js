// VXBr5.Animation and VXBr5.CommandList from JScript: members called, results and the errors a
// script sees printed, ending with the marker line the runner looks for.
var list = new ActiveXObject("VXBr5.CommandList");
var anim = new ActiveXObject("VXBr5.Animation");
var channel = anim.createChannel();
channel.destination = "n1:scale.y";
channel.before = "OSCILLATE";
channel.addKeyframe(0, 1, "LINEAR", "STEP");
WScript.Echo("channel " + channel.destination + " before " + channel.before);
list.set("lt", "pos", [1, 2, 3]);
list.animate(anim, "lt");
list.animate("in", "lt", 3);
WScript.Echo("callback id " + (typeof list.callback()));

function failure(call) {
  try {
    call();
  } catch (e) {
    return e.message || "code " + (e.number >>> 0).toString(16);
  }
  return "no error";
}
WScript.Echo("set object: " + failure(function () { list.set("lt", "x", anim); }));
WScript.Echo("animate channel: " + failure(function () { list.animate(channel, "lt"); }));
WScript.Echo("animate options: " + failure(function () { list.animate("in", "lt", list); }));
WScript.Echo("keyframe: " + failure(function () { channel.addKeyframe(1, 0, "linear", "STEP"); }));
WScript.Echo("scenario complete");
