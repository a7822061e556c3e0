#pragma once

#include "cmpi/cmpift.h"

#include <string_view>
#include <tuple>
#include <type_traits>

namespace cimhost {

/// A function of an MI's table and its name.
template <typename Slot>
struct NamedSlot {
    Slot slot;
    std::string_view name;
};

template <typename Slot>
NamedSlot(Slot, const char*) -> NamedSlot<Slot>;

/// The functions that this host calls.
inline constexpr std::tuple namedSlots{
    NamedSlot{&CMPIInstanceMIFT::enumerateInstanceNames, "enumerateInstanceNames"},
    NamedSlot{&CMPIInstanceMIFT::enumerateInstances, "enumerateInstances"},
    NamedSlot{&CMPIInstanceMIFT::getInstance, "getInstance"},
    NamedSlot{&CMPIInstanceMIFT::createInstance, "createInstance"},
    NamedSlot{&CMPIInstanceMIFT::modifyInstance, "modifyInstance"},
    NamedSlot{&CMPIInstanceMIFT::deleteInstance, "deleteInstance"},
    NamedSlot{&CMPIInstanceMIFT::execQuery, "execQuery"},

    NamedSlot{&CMPIAssociationMIFT::associators, "associators"},
    NamedSlot{&CMPIAssociationMIFT::associatorNames, "associatorNames"},
    NamedSlot{&CMPIAssociationMIFT::references, "references"},
    NamedSlot{&CMPIAssociationMIFT::referenceNames, "referenceNames"},

    NamedSlot{&CMPIMethodMIFT::invokeMethod, "invokeMethod"},

    NamedSlot{&CMPIIndicationMIFT::authorizeFilter, "authorizeFilter"},
    NamedSlot{&CMPIIndicationMIFT::mustPoll, "mustPoll"},
    NamedSlot{&CMPIIndicationMIFT::activateFilter, "activateFilter"},
    NamedSlot{&CMPIIndicationMIFT::deActivateFilter, "deActivateFilter"},
    NamedSlot{&CMPIIndicationMIFT::enableIndications, "enableIndications"},
    NamedSlot{&CMPIIndicationMIFT::disableIndications, "disableIndications"},
};

/// The name of the function in this slot of an MI's table, such as "getInstance".
template <typename Slot>
constexpr std::string_view operationName(Slot slot) noexcept {
    std::string_view name = "another function";
    const auto compare = [&](const auto& named) {
        if constexpr (std::is_same_v<decltype(named.slot), Slot>) {
            if (named.slot == slot) name = named.name;
        }
    };
    std::apply([&](const auto&... named) { (compare(named), ...); }, namedSlots);
    return name;
}

/// True for the functions that read: they have nothing to keep when they return.
template <typename Slot>
constexpr bool isReading(Slot slot) noexcept {
    const std::string_view name = operationName(slot);
    return name.starts_with("get") || name.starts_with("enumerate") || name == "execQuery" ||
           name.starts_with("associator") || name.starts_with("reference");
}

static_assert(operationName(&CMPIInstanceMIFT::deleteInstance) == "deleteInstance");

}  // namespace cimhost
