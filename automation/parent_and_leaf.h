#pragma once
// A "/"-separated address cut where a new node goes: the leaf is the last component (the new
// node's name, empty for an empty address) and the parent the components before it, joined.
// A plain value; throws nothing but allocation failures.
#include <string>
#include <utility>
#include <vector>

#include "foundation/target_address.h"

struct ParentAndLeaf {
  explicit ParentAndLeaf(const std::string& address) {
    std::vector<std::string> components = AFCTargetAddress::parse(address).components();
    if (components.empty()) return;
    leaf = std::move(components.back());
    components.pop_back();
    parent = AFCTargetAddress(std::move(components)).toString();
  }

  std::string parent;
  std::string leaf;
};
