// set with every kind of JScript value on a title of the simulator whose address is the first
// argument: arrays become two-, three- or four-component vectors; the values that cannot be sent
// fail with the text the script sees. Ends with the marker line.
var tm = new ActiveXObject("VXBr5.TitleManager");
tm.getClient().setServerAddress(WScript.Arguments(0));
var title = tm.createTitle("Values");
title.createNode("Text", "t");
title.set("t", "text", "Breaking news");
title.set("t", "integer", 42);
title.set("t", "double", 2.5);
title.set("t", "true", true);
title.set("t", "null", null);
title.set("t", "undefined", undefined);
title.set("t", "one", [1]);
title.set("t", "two", [0.5, -1]);
title.set("t", "three", [1, 2, 3]);
title.set("t", "four", [1, 2, 3, 4]);
title.set("t", "five", [1, 2, 3, 4, 5]);
title.set("t", "texts", ["abc", "2.5", true]);
title.set("t", "empty", []);

tm.getClient().writeScene();

function failure(call) {
  try {
    call();
  } catch (e) {
    return e.message || "code " + (e.number >>> 0).toString(16);
  }
  return "no error";
}
// JScript makes no date value of its own; a file's time is one.
var files = new ActiveXObject("Scripting.FileSystemObject");
var modified = files.GetFile(WScript.ScriptFullName).DateLastModified;
WScript.Echo("date: " + failure(function () { title.set("t", "d", modified); }));
WScript.Echo("object: " + failure(function () { title.set("t", "o", {x: 1}); }));
WScript.Echo("title: " + failure(function () { title.set("t", "o", title); }));
WScript.Echo("no attribute: " + failure(function () { title.set("t", "", 1); }));
WScript.Echo("scenario complete");
