#pragma once
// What a title needs from the title manager that made it: the builder of the manager's session,
// the client object's zone notifications, and leaving the manager's list when the title goes.
// The manager implements it; the title tests put a recording builder behind it. A title holds its
// host by a counted reference, so the host outlives its titles. Called on the script's thread.
#include <string>

class CTitle;
class VXCommandListBeginEndBuilder;

class CTitleHost {
 public:
  virtual ~CTitleHost() = default;

  // The builder of the manager's session, which is also the session (begin, end, flush, the
  // command operations and sendWholeAction). Throws AFCNullPointerException "VXClient" when the
  // manager has no session.
  virtual VXCommandListBeginEndBuilder& getBuilder() = 0;
  // The client object starts or stops listening to zone-state changes of zone (the session's
  // addZoneNotifyListener / removeZoneNotifyListener), so that its onZoneChange events come.
  virtual void addZoneNotification(const std::string& zone) = 0;
  virtual void removeZoneNotification(const std::string& zone) = 0;
  // Removes every entry of title from the manager's title list (the title's final release).
  virtual void forgetTitle(const CTitle& title) = 0;
};
