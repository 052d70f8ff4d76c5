#include "foundation/fd_handler.h"
#include "foundation/fd_handler_window.h"

// Threads with a message loop (the script host's apartment thread) are served by the window.
std::unique_ptr<AFCFDHandler> AFCFDHandler::makePlatformDefault() {
  return std::make_unique<AFCFDHandlerWindow>();
}
