// Feeds arbitrary bytes to the remote-object manager as the payload of a reply, through the same
// path a session's answer takes: decoded, traced, checked and turned into a value, a property
// listing or an exception. Any failure must be an AFCException.
#include <cstddef>
#include <cstdint>
#include <sstream>

#include "client/roa_manager.h"
#include "foundation/errlog.h"

namespace {

class FuzzedSession : public VXROAManager {
 public:
  const uint8_t* data = nullptr;
  std::size_t size = 0;

 protected:
  void roaSend(const AFCBuffer&) override {}
  void roaRequest(const AFCBuffer&, AFCBuffer& replyPayload) override {
    replyPayload.append(data, size);
  }
  bool traceEnabled() const override { return true; }
  std::ostream& traceStream() override {
    lines_.str({});
    return lines_;
  }

 private:
  std::ostringstream lines_;
};

void exercise(FuzzedSession& session, bool listing) {
  try {
    if (listing) {
      (void)session.remoteEnumProps("Root/n");
    } else if (auto value = session.remoteGetAttr("Root/n.Text")) {
      (void)value->toString();
    }
  } catch (const AFCException&) {
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  static const bool ready = [] {
    registerClientRoaClasses();
    AFCErrLog::instance().removeAllBackends();  // unknown remote classes are logged
    return true;
  }();
  (void)ready;
  static FuzzedSession session;
  session.data = data;
  session.size = size;
  exercise(session, false);
  exercise(session, true);
  return 0;
}
