// b3: the devices of the system through k links, each looked up among N devices.
#include "bench/library/Rows.h"
#include "bench/library/Sides.h"

#include <memory>
#include <string>

namespace {

cimhost::ObjectPath systemRequest() {
    cimhost::ObjectPath path{"client.example.com", stageNameSpace, benchSystemClass, {}};
    path.setKey("CreationClassName", cimhost::Value::string(benchSystemClass));
    path.setKey("Name", cimhost::Value::string(PYL::PYLUtil::getHostName()));
    return path;
}

void addAssociators(const std::string& name, std::size_t links, std::shared_ptr<const Sides> sides,
                    CMPIAssociationMI* mi) {
    addRow(
        name,
        [links, sides, mi] {
            Call call(benchSystemClass);
            const auto* const request = cimhost::makeObjectPath(stageBroker(), systemRequest());
            const CMPIStatus status =
                mi->ft->associators(mi, call.context, call.result, request, nullptr, nullptr,
                                    nullptr, nullptr, nullptr);
            requireDelivered(status, call.sink.count, links);
        },
        fewRounds);
}

void addBoth(std::size_t links, std::size_t devices) {
    const auto sides = std::make_shared<const Sides>(devices, links);
    const std::string name =
        "b3/" + std::to_string(links) + " links of " + std::to_string(devices) + "/";
    addAssociators(name + "library", links, sides, sides->libraryAssociations());
    addAssociators(name + "anchor", links, sides, sides->anchorAssociations());
}

}  // namespace

void addAssociationRows() {
    addBoth(1, 100);
    addBoth(4, 100);
    addBoth(4, 1000);
}
