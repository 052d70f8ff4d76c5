// The title manager's and the client's events in JScript functions: two callbacks (a command
// list's, executed by a title, and the title's own), each reaching the handler function before
// tm_onCommand; then a zone change, a server message (not all ASCII), a pick result and the
// disconnection, each provoked on the simulator by the event before it. The client's listeners hear
// the message after the event, the pick result and the disconnection before it. The async
// processor's loop dispatches them on this thread until client_onDisconnect closes it.
var processor = client.createAsyncProcessor();
var listCallback, titleCallback, commands = 0;

function callbackName(id) {
  if (id == listCallback) return "list callback";
  if (id == titleCallback) return "title callback";
  return "unknown callback " + id;
}

function tm_onCommand(id) {
  WScript.Echo("onCommand: " + callbackName(id));
  if (++commands == 2) sim.console("zone LowerThirds on");
}

function client_onZoneChange(zone, state) {
  WScript.Echo("onZoneChange: " + zone + " " + state);
  sim.console("message Good evening from Ålesund");
}

function client_onMessage(text) {
  WScript.Echo("onMessage: " + text);
  sim.console("pick <pick node=\"name\"/>");
}

function client_onPickResult(xml) {
  WScript.Echo("onPickResult: " + xml);
  sim.console("drop");
}

function client_onDisconnect() {
  WScript.Echo("onDisconnect");
  processor.close();
}

client.setServerAddress(sim.address);
tm.onCommandCallback = function (id) {
  WScript.Echo("handler: " + callbackName(id));
};
client.onMessageListener = function (text) {
  WScript.Echo("message listener: " + text);
};
client.onPickResultListener = function (xml) {
  WScript.Echo("pick listener: " + xml);
};
client.onDisconnectListener = function () {
  WScript.Echo("disconnect listener");
};
var title = tm.createTitle("LowerThirds");
title.enableZoneNotification();
var list = tm.createCommandList();
list.createNode("Text", "name");
listCallback = list.callback();
title.execute(list);
titleCallback = title.commandCallback();
while (processor.waitEvent()) processor.process();
WScript.Echo("scenario complete");
