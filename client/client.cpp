#include "client/client.h"

#include <algorithm>

#include "foundation/errlog.h"

VXClient::~VXClient() {
  if (master_ != nullptr) master_->removeSlave(this);
  removeSlave(nullptr);
}

void VXClient::addSlave(VXClient* slave) {
  if (slave == nullptr) return;
  if (isSlave_) {
    AFC_REPORT(AFC_ERRLOG_WARNING, "libVX", "Slave cannot have other slaves");
    return;
  }
  if (slave->isSlave_) {
    AFC_REPORT(AFC_ERRLOG_WARNING, "libVX", "Slave already belongs to other master");
    return;
  }
  // A session whose flag another session's removeSlave cleared still stands in its old master's
  // list; it leaves that list now, so that it is listed by one master at most.
  if (slave->master_ != nullptr) std::erase(slave->master_->slaves_, slave);
  slaves_.push_back(slave);
  slave->isSlave_ = true;
  slave->master_ = this;
}

void VXClient::removeSlave(VXClient* slave) {
  if (slave == nullptr) {
    for (VXClient* each : slaves_) each->isSlave_ = false, each->master_ = nullptr;
    slaves_.clear();
    return;
  }
  slave->isSlave_ = false;
  if (std::erase(slaves_, slave) != 0) slave->master_ = nullptr;
}
