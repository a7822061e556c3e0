#pragma once

#include "cmpi/cmpidt.h"
#include "cmpi/cmpift.h"

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <string_view>

/// Where a member of a CMPI structure is and is to be.
struct MemberRow {
    std::string_view type;
    std::string_view member;
    std::size_t actualOffset;
    std::size_t actualSize;
    std::size_t expectedOffset;
    std::size_t expectedSize;
};

/// A row names the member once, for the compiler and for the message.
// clang-format off
#define PYL_MEMBER(type, member, offset, size) \
    {#type, #member, offsetof(type, member), sizeof(type::member), offset, size}
// clang-format on

inline void expectPlaces(const auto& rows) {
    for (const MemberRow& row : rows) {
        EXPECT_EQ(row.actualOffset, row.expectedOffset) << row.type << "::" << row.member;
        EXPECT_EQ(row.actualSize, row.expectedSize) << row.type << "::" << row.member;
    }
}
