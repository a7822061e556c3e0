#include "common/detail/IndicationCatalogue.h"

#include "common/detail/IndicationCatalogueArrays.h"
#include "common/detail/IndicationCatalogueEnvironment.h"
#include "common/detail/IndicationCatalogueLogs.h"
#include "common/detail/IndicationCatalogueNetwork.h"
#include "common/detail/IndicationCatalogueSas.h"
#include "common/detail/IndicationCatalogueServer.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace PYL {

namespace {

constexpr auto groups = std::to_array<IndicationGroup>({
    {"PYL_FanIndication", fanRows},
    {"PYL_PowerSupplyIndication", powerSupplyRows},
    {"PYL_BaseServerIndication", baseServerRows},
    {"PYL_CPUIndication", cpuRows},
    {"PYL_MemoryIndication", memoryRows},

    {"PYL_VelaArrayIndication", arrayRows},
    {"PYL_VelaArrayCntlrIndication", arrayControllerRows},
    {"PYL_VelaArrayStorageVolumeIndication", storageVolumeRows},
    {"PYL_VelaArrayDiskDriveIndication", diskDriveRows},
    {"PYL_VelaArrayStorageEnclosureIndication", storageEnclosureRows},
    {"PYL_VelaArrayStorageEnclosureTempIndication", enclosureTemperatureRows},

    {"PYL_MCARecordLogIndication", machineCheckLogRows},
    {"PYL_SELRecordLogIndication", systemEventLogRows},
    {"PYL_SensorIndication", sensorRows},
    {"PYL_ConfigRecordLogIndication", configurationLogRows},

    {"PYL_EthernetIndication", ethernetRows},
    {"PYL_FCHBAFCPortIndication", fibreChannelPortRows},
    {"PYL_SASIndication", sasRows},

    {"PYL_MPIndication", managementProcessorRows},
    {"PYL_SCInstallerIndication", installerRows},
});

consteval std::ptrdiff_t countOf(RecordSet set) {
    std::ptrdiff_t count = 0;
    for (const IndicationGroup& group : groups) {
        count += std::ranges::count_if(group.rows, [set](auto& row) { return row.isIn(set); });
    }
    return count;
}

/// Only the first of two records with one number could ever be found.
consteval bool hasUniqueKeys(const IndicationGroup& group) {
    for (const IndicationRow& row : group.rows) {
        const auto isSame = [&row](const IndicationRow& other) {
            return other.eventID == row.eventID && other.isIn(row.sets);
        };
        if (std::ranges::count_if(group.rows, isSame) != 1) return false;
    }
    return true;
}

consteval bool haveUniqueKeys() {
    for (const IndicationGroup& group : groups) {
        const auto isSame = [&group](const IndicationGroup& other) {
            return other.providerName == group.providerName;
        };
        if (std::ranges::count_if(groups, isSame) != 1 || !hasUniqueKeys(group)) return false;
    }
    return true;
}

static_assert(countOf(RecordSet::nonValmor) == 152);
static_assert(countOf(RecordSet::valmor) == 99);
static_assert(haveUniqueKeys());

}  // namespace

std::span<const IndicationGroup> indicationGroups() noexcept { return groups; }

std::span<const IndicationRow> findIndicationRows(std::string_view providerName) noexcept {
    const auto group = std::ranges::find(groups, providerName, &IndicationGroup::providerName);
    return group == groups.end() ? std::span<const IndicationRow>() : group->rows;
}

}  // namespace PYL
