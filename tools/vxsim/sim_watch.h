#pragma once
// The attribute watches of the simulator's clients: which connection asked to be told of which
// node attribute's changes, and the value text it was last told. A client has no packet for a
// watched change, so the hub tells it as a server message (packet 16) with the text
// "PATH.ATTR=VALUE", the target written as the client wrote it in its WATCH_ATTR request.
//
// Changes are found by comparing texts after the scene changed, so every way a value changes is
// caught (a set command, a remote set, a copy over it, a delete: a value that is gone reads as
// "<undefined>"). A watch is told only of changes, never of the value it started with.
//
// A plain value owned by the hub; connections are not owned and must be removed before they
// die. Not thread safe, like the hub. Never throws beyond allocation failure.
#include <functional>
#include <string>
#include <utility>
#include <vector>

class VXSimConnection;

class VXSimWatches {
 public:
  // A change to tell: the connection and the message text "TARGET=VALUE".
  using Change = std::pair<VXSimConnection*, std::string>;
  // The current value text of a target.
  using Reader = std::function<std::string(const std::string& target)>;

  // Registers the connection for the target, remembering value as told; a second registration
  // of the same target by the same connection only updates the remembered value.
  void add(VXSimConnection& connection, const std::string& target, std::string value);
  // Forgets every watch of the connection.
  void remove(const VXSimConnection& connection);
  std::size_t size() const { return watches_.size(); }

  // The watches whose value text now differs from the one last told, in the order they were
  // registered; each remembers its new value.
  std::vector<Change> takeChanges(const Reader& current);

 private:
  struct Watch {
    VXSimConnection* connection;
    std::string target;
    std::string told;
  };
  std::vector<Watch> watches_;
};
