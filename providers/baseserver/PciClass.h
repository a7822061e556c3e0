#pragma once

#include <cstdint>

namespace baseserver {

/// What a PCI class code stands for, in words: the sub-class where it is known, else the base
/// class, else "Unknown device" (PCI Code and ID Assignment Specification 1.11, section 1).
/// `classCode` is 0xBBSSII.
const char* pciClassName(std::uint32_t classCode) noexcept;

}  // namespace baseserver
