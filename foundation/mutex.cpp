#include "foundation/mutex.h"

#include "foundation/errlog.h"

void AFCMutex::reportAbandoned() const {
  AFC_REPORT(AFC_ERRLOG_WARNING, "libAFC", "Mutex " + name_ + " was abandoned!");
}
