#pragma once

#include <cstddef>
#include <cstring>

/// The place of a virtual operation in the table of its class, counted from 0, where the destructor
/// has two entries; -1 for an operation that is not virtual. By the Itanium C++ ABI (2.3) a pointer
/// to a virtual member holds one plus the byte offset of its entry.
template <typename Member>
int slotOf(Member member) {
    struct Representation {
        std::ptrdiff_t pointer;
        std::ptrdiff_t adjustment;
    } representation;
    static_assert(sizeof member == sizeof representation);
    std::memcpy(&representation, &member, sizeof member);
    if ((representation.pointer & 1) == 0 || representation.adjustment != 0) return -1;
    return static_cast<int>((representation.pointer - 1) /
                            static_cast<std::ptrdiff_t>(sizeof(void*)));
}
