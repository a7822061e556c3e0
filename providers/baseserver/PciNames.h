#pragma once

#include "platform/host/HostFiles.h"

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <utility>

namespace baseserver {

/// The vendor's number and the device's.
using PciId = std::pair<std::uint16_t, std::uint16_t>;

/// "Intel Corporation 82574L Gigabit Network Connection", of those of these devices that the host's
/// list names, pci.ids(5). Empty on a host without one. It reads the whole list, once.
std::map<PciId, std::string> findPciNames(const std::set<PciId>& wanted,
                                          const std::string& root = hostRoot());

}  // namespace baseserver
