#include "client/register.h"

#include "client/client.h"
#include "client/listeners.h"
#include "client/object_attribute.h"
#include "client/roa_records.h"
#include "commands/register.h"

void registerClientClasses() {
  registerCommandClasses();
  registerClientRoaClasses();

  VXObjectAttribute::staticClass();
  VXZonesStateObject::staticClass();
  VXConnectListener::staticClass();
  VXDisconnectListener::staticClass();
  VXErrLogListener::staticClass();
  VXPickResultListener::staticClass();
  VXServerMessageListener::staticClass();
  VXCallbackCommandListener::staticClass();
  VXZoneStateListener::staticClass();
  VXClient::staticClass();
}
