// Callbacks from JScript through an async processor, against the simulator whose address is the
// first argument: a function set with onCommandCallback and one added with
// addCommandCallbackListener are called from the processor loop, after the pick-result handler
// for a pick asked for before them; the last callback closes the processor from the handler.
// Ends with the marker line.
var tm = new ActiveXObject("VXBr5.TitleManager");
var client = tm.getClient();
client.setServerAddress(WScript.Arguments(0));
var processor = client.createAsyncProcessor();
var first = 0;
var seen = [];
tm.onCommandCallback = function (id) {
  seen.push("handler " + (id - first) + " (" + typeof id + ")");
};
tm.addCommandCallbackListener(function (id) {
  seen.push("listener " + (id - first));
  if (id - first === 2) processor.close();
});
client.onPickResultListener = function (xml) {
  seen.push("pick " + xml);
};
var title = tm.createTitle("Callbacks");
title.createNode("Group", "button");
client.sendPickRequestTag("button");
first = title.commandCallback();
title.commandCallback();
title.commandCallback();
while (processor.waitEvent()) {
  processor.process();
}
WScript.Echo(seen.join("\n"));
WScript.Echo("wait after close: " + processor.waitEvent());
WScript.Echo("scenario complete");
