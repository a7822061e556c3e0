#pragma once

#include "cimhost/objects/Entry.h"
#include "cimhost/objects/Object.h"

#include <string_view>

namespace cimhost {

/// UTF-8 text that never changes. Short texts lie right behind the object.
struct StringObject : ObjectBase<CMPIString, ObjectKind::string> {
    static const CMPIStringFT table;

    /// For makeString and its like only: `room` bytes follow the object, as many as the content
    /// needs or, for a long one, none.
    StringObject(std::string_view content, std::size_t room);
    ~StringObject();
    StringObject(const StringObject&) = delete;

    std::string_view view() const noexcept { return {text, length}; }

    const char* text;  ///< right behind, or in memory of its own where there is no room
    std::size_t length;
};

StringObject& makeText(const Home& home, std::string_view content);

}  // namespace cimhost
