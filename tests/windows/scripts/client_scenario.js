// The client object from JScript against the simulator whose address is the first argument: zone
// state set and read, remote calls with JScript values, and the errors the script sees. Ends with
// the marker line.
var tm = new ActiveXObject("VXBr5.TitleManager");
var client = tm.getClient();
client.setServerAddress(WScript.Arguments(0));
WScript.Echo("address " + (client.getServerAddress() === WScript.Arguments(0)));
var title = tm.createTitle("Remote");
title.createNode("Group", "box");
client.setZoneState("Remote", 1);
WScript.Echo("zone Remote " + client.getZoneState("Remote"));
client.setZoneState("Remote", 0);
WScript.Echo("zone Remote " + client.getZoneState("Remote"));

var node = "Root/_Br5_Title_1/box";
client.roaSet(node, "pos", [1, 2, 3]);
client.roaSet(node, "count", 3);
WScript.Echo("roaGet pos " + client.roaGet(node, "pos"));
WScript.Echo("roaGet count " + client.roaGet(node, "count") + " " + typeof client.roaGet(node, "count"));
var id = client.previewGenerateID();
WScript.Echo("preview ids " + (client.previewGenerateID() - id));
title.previewSchedule(id);

client.writeScene();

function failure(call) {
  try {
    call();
  } catch (e) {
    return e.message || "code " + (e.number >>> 0).toString(16);
  }
  return "no error";
}
WScript.Echo("roaGet missing: " + failure(function () { client.roaGet(node, "missing"); }));
WScript.Echo("roaSet object: " + failure(function () { client.roaSet(node, "x", {}); }));
// A JScript array is an object, not the host array roaCall takes: the call does not get through.
WScript.Echo("roaCall array: " + failure(function () { client.roaCall("::Control", "writeScene", [1]); }));
WScript.Echo("execute client: " + failure(function () { title.execute(client); }));
WScript.Echo("scenario complete");
