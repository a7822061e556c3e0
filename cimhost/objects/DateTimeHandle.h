#pragma once

#include "cimhost/objects/Object.h"
#include "cimhost/repository/DateTime.h"

#include <array>
#include <string_view>

namespace cimhost {

/// A CIM datetime that never changes.
struct DateTimeObject : ObjectBase<CMPIDateTime, ObjectKind::dateTime> {
    static const CMPIDateTimeFT table;

    /// The text is a datetime.
    explicit DateTimeObject(std::string_view dateTime) noexcept {
        dateTime.copy(text.data(), text.size());
    }

    std::string_view view() const noexcept { return {text.data(), text.size()}; }

    std::array<char, dateTimeLength> text{};
};

/// CimError invalidParameter when the text is no CIM datetime.
DateTimeObject& makeDateTimeObject(const Home& home, std::string_view text);

}  // namespace cimhost
