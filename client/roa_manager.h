#pragma once
// Turns each remote-object operation into one VXROARequest, hands its encoded form to the
// session, and turns the reply into a value, nothing, or an exception.
//
// The session supplies the exchange through four members, all implemented by the packet
// protocol session:
//   roaSend(payload)           sends the payload as a packet 9 and waits for nothing;
//   roaRequest(payload, reply) sends the payload as a packet 9 and fills reply with the payload
//                              of the packet 10 that answers it (left empty when none came);
//   traceEnabled(), traceStream() the debug flag and the debug stream; each trace is one line
//                              ("ROA-REQ[...]", with " ASYNC" when no reply is awaited, and
//                              "ROA-REPLY[...]"). They have the signatures of the command-list
//                              builder's, so one override in the session serves both.
//
// Threading: calls may come from several threads when the session's exchange allows it; the
// manager keeps no state of its own. A reply is untrusted: a malformed one throws the stream's
// AFCPersistentReadException2 and yields nothing. A failure the server reports, a missing reply
// ("? null reply ?") and a reply that carries no usable answer ("? bad reply ?") throw
// VXROARemoteException; a request without target throws VXROABadRequest before anything is
// sent.
#include <memory>
#include <optional>
#include <ostream>
#include <span>
#include <string_view>

#include "client/roa_manager_interface.h"
#include "client/roa_records.h"
#include "client/roa_resolvable.h"
#include "foundation/buffer.h"

class VXROAManager : public virtual VXROAManagerInterface, public VXROAResolvable {
 public:
  void remoteSetAttr(std::string_view path, const AFCAttribute* value) override;
  void remoteSetAttrAsync(std::string_view path, const AFCAttribute* value) override;
  std::unique_ptr<AFCAttribute> remoteGetAttr(std::string_view path) override;
  std::unique_ptr<AFCAttribute> remoteInvoke(
      std::string_view path, std::span<const AFCAttribute* const> arguments) override;
  std::optional<VXROAClassInfo> remoteEnumProps(std::string_view path) override;

 protected:
  virtual void roaSend(const AFCBuffer& requestPayload) = 0;
  virtual void roaRequest(const AFCBuffer& requestPayload, AFCBuffer& replyPayload) = 0;
  virtual bool traceEnabled() const = 0;
  virtual std::ostream& traceStream() = 0;

  // Sends the request, the one path of every kind: nullptr for an asynchronous kind, else the
  // checked reply (VOID, VALUE or PROPS).
  std::unique_ptr<VXROAReply> roaCall(const VXROARequest& request);

 private:
  std::unique_ptr<VXROAReply> exchange(const AFCBuffer& requestPayload);
  void trace(std::string_view line);
};
