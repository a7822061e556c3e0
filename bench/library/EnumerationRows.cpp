// b1: all devices of a class, or their paths.
#include "bench/library/Rows.h"
#include "bench/library/Sides.h"

#include <memory>
#include <string>

namespace {

void addNames(const std::string& name, std::size_t devices, std::shared_ptr<const Sides> sides,
              CMPIInstanceMI* mi) {
    addRow(
        name,
        [devices, sides, mi] {
            Call call(benchDeviceClass);
            const CMPIStatus status =
                mi->ft->enumerateInstanceNames(mi, call.context, call.result, call.path);
            requireDelivered(status, call.sink.count, devices);
        },
        fewRounds);
}

void addInstances(const std::string& name, std::size_t devices, std::shared_ptr<const Sides> sides,
                  CMPIInstanceMI* mi) {
    addRow(
        name,
        [devices, sides, mi] {
            Call call(benchDeviceClass);
            const CMPIStatus status =
                mi->ft->enumerateInstances(mi, call.context, call.result, call.path, nullptr);
            requireDelivered(status, call.sink.count, devices);
        },
        fewRounds);
}

}  // namespace

void addEnumerationRows() {
    for (const std::size_t devices : {10U, 100U, 1000U}) {
        const auto sides = std::make_shared<const Sides>(devices, 0);
        const std::string size = std::to_string(devices);
        addNames("b1/names " + size + "/library", devices, sides, sides->libraryInstances());
        addNames("b1/names " + size + "/anchor", devices, sides, sides->anchorInstances());
        addInstances("b1/instances " + size + "/library", devices, sides,
                     sides->libraryInstances());
        addInstances("b1/instances " + size + "/anchor", devices, sides, sides->anchorInstances());
    }
}
