#pragma once

#include <cstddef>
#include <cstring>

/// The place of a virtual operation in the table of its class, counted from 0, where the destructor
/// has two entries; -1 for an operation that is not virtual. By the Itanium C++ ABI (2.3) a pointer
/// to a virtual member holds one plus the byte offset of its entry. On ARM the one is in the word
/// of the adjustment, since functions may have odd addresses there (C++ ABI for the Arm 64-bit
/// Architecture, 3.2.1).
template <typename Member>
int slotOf(Member member) {
    struct Representation {
        std::ptrdiff_t function;
        std::ptrdiff_t adjustment;
    } representation;
    static_assert(sizeof member == sizeof representation);
    std::memcpy(&representation, &member, sizeof member);
#if defined(__aarch64__)
    const bool isVirtual = representation.adjustment == 1;
    const std::ptrdiff_t offset = representation.function;
#else
    const bool isVirtual = representation.adjustment == 0 && representation.function % 2 != 0;
    const std::ptrdiff_t offset = representation.function - 1;
#endif
    return isVirtual ? static_cast<int>(offset / static_cast<std::ptrdiff_t>(sizeof(void*))) : -1;
}
