#pragma once

#include "cimhost/indications/IndicationOutlet.h"
#include "cimhost/objects/Broker.h"
#include "cimhost/repository/CimError.h"

#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace cimhost {

/// An outlet that keeps what it is given: "destination<filter:Class.Number" for each indication.
class RecordingOutlet final : public IndicationOutlet {
public:
    class Queue final : public IndicationQueue {
    public:
        Queue(RecordingOutlet& outlet, std::string name)
            : _outlet(outlet), _name(std::move(name)) {}

        void put(const OutgoingIndication& outgoing) override {
            std::string text = _name + "<" + std::string(outgoing.filterName) + ":" +
                               outgoing.indication.className();
            for (const PropertyValue& property : outgoing.indication.properties) {
                if (!outgoing.selection.selects(property.name)) continue;
                const auto* const number = property.value.get<std::uint64_t>();
                text += "." + (number ? std::to_string(*number) : property.name);
            }
            const std::lock_guard lock(_outlet._mutex);
            _outlet._texts.push_back(std::move(text));
        }

    private:
        RecordingOutlet& _outlet;
        std::string _name;
    };

    std::shared_ptr<IndicationQueue> open(const std::string& name, const ListenerUrl&) override {
        if (isClosed) throw CimError(CimCode::notSupported, "nothing is delivered");
        return std::make_shared<Queue>(*this, name);
    }
    DeliveryManner manner() const override { return {}; }
    std::vector<DeliveryCounts> counts() const override { return {}; }

    bool isClosed = false;

    std::vector<std::string> take() {
        const std::lock_guard lock(_mutex);
        return std::exchange(_texts, {});
    }

private:
    std::mutex _mutex;
    std::vector<std::string> _texts;
};

inline Instance indicationOf(const std::string& className, std::uint64_t number) {
    Instance indication;
    indication.path.nameSpace = "root/test";
    indication.path.className = className;
    indication.set("Number", Value::unsignedInteger(CimType::uint32, number));
    return indication;
}

}  // namespace cimhost
