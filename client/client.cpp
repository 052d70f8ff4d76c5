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
  if (std::erase(slaves_, slave) == 0) return;
  slave->isSlave_ = false;
  slave->master_ = nullptr;
}
