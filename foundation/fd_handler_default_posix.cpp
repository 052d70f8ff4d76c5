#include "foundation/fd_handler.h"

// Without window messages the default is the event variant, pumped by the owning thread.
std::unique_ptr<AFCFDHandler> AFCFDHandler::makePlatformDefault() {
  return std::make_unique<AFCFDHandlerEvent>();
}
