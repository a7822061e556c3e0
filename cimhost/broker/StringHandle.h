#pragma once

#include <memory>
#include <string_view>

#include "cimhost/broker/Entry.h"
#include "cimhost/broker/Object.h"

namespace cimhost {

/// UTF-8 text that never changes. Short texts lie right behind the object.
struct StringObject : ObjectBase<CMPIString, ObjectKind::string> {
    static const CMPIStringFT table;

    /// For makeString and its like only: `room` bytes follow the object.
    StringObject(std::string_view content, std::size_t room);
    StringObject(const StringObject&) = delete;

    std::string_view view() const noexcept { return {text, length}; }

    const char* text;
    std::size_t length;
    std::unique_ptr<char[]> outside;  ///< the text when there is no room behind
};

StringObject& makeText(const Home& home, std::string_view content);

}  // namespace cimhost
