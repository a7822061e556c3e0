// b2: one device by its path, the last of the collection.
#include "bench/library/Rows.h"
#include "bench/library/Sides.h"

#include <cstdio>
#include <memory>
#include <string>

namespace {

void addGet(const std::string& name, std::size_t devices, std::shared_ptr<const Sides> sides,
            CMPIInstanceMI* mi) {
    char id[16];
    std::snprintf(id, sizeof id, "%08zu", devices - 1);
    addRow(
        name,
        [last = std::string(id), sides, mi] {
            Call call(benchDeviceClass, last);
            const CMPIStatus status =
                mi->ft->getInstance(mi, call.context, call.result, call.path, nullptr);
            requireDelivered(status, call.sink.count, 1);
        },
        fewRounds);
}

}  // namespace

void addLookupRows() {
    for (const std::size_t devices : {1U, 100U, 1000U}) {
        const auto sides = std::make_shared<const Sides>(devices, 0);
        const std::string size = std::to_string(devices);
        addGet("b2/get 1 of " + size + "/library", devices, sides, sides->libraryInstances());
        addGet("b2/get 1 of " + size + "/anchor", devices, sides, sides->anchorInstances());
    }
}
