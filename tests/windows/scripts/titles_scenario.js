// Titles from JScript against the simulator whose address is the first argument: a title in the
// default zone replaced by the next one, titles in channels, node operations, a command list
// with a transaction, a scene action and previews run by two titles, and destroy in a
// transaction. Ends with the marker line.
var tm = new ActiveXObject("VXBr5.TitleManager");
tm.getClient().setServerAddress(WScript.Arguments(0));
tm.setProject("News");

var first = tm.createTitle();
first.createNode("Group", "gone");
var title = tm.createTitle();
WScript.Echo("zone " + title.getZone() + ", first replaced: " + (tm.findTitleByZone("default") !== first));
title.setTitleName("main");
title.setProject("Sports");
title.createNode("Group", "panel");
title.createEffect("Blur", "panel/blur");
title.copyNode("panel", "copy");
title.renameNode("Root/_Br5_Title_2/copy", "renamed");
title.loadScene("Ticker", "ticker");
title.createNode("Group", "doomed");
title.deleteNode("doomed");
title.deleteEffect("panel/blur");

var list = tm.createCommandList();
list.beginTransaction("in");
list.createNode("Text", "caption");
list.doAction("Show");
list.endTransaction();
list.rollTransaction("in");
list.beginSequencePreview(5);
list.captureStillPreview(6);
list.endSequencePreview(5);
list.preload("caption");
var second = tm.createTitleInChannel("default", 1);
second.createNode("Group", "slot");
title.execute(list);
second.execute(list, "slot");
WScript.Echo("by name: " + (tm.findTitleByName("main") === title) + ", channels apart: " + (second !== title));
tm.getClient().writeScene();

function failure(call) {
  try {
    call();
  } catch (e) {
    return e.message || "code " + (e.number >>> 0).toString(16);
  }
  return "no error";
}
second.destroyInTransaction("out");
WScript.Echo("no node type: " + failure(function () { title.createNode("", "x"); }));
WScript.Echo("no effect type: " + failure(function () { list.createEffect("", "x"); }));
WScript.Echo("empty scene: " + failure(function () { list.loadScene("", "x"); }));
WScript.Echo("no action: " + failure(function () { list.doAction(""); }));
WScript.Echo("scenario complete");
