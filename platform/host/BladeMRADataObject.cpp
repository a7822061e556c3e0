#include "platform/host/BladeMRADataObject.h"

#include <utility>

namespace {

MRAStatusEnum give(const std::optional<std::string>& fact, std::string& value) {
    if (!fact) return MRA_STATUS_DATA_NOT_AVAILABLE;
    value = *fact;
    return MRA_STATUS_SUCCESS;
}

}  // namespace

BladeMRADataObject::BladeMRADataObject(const Logger&) {}

MRAStatusEnum BladeMRADataObject::getEnclosureName(std::string& name) const {
    return give(_facts.enclosureName, name);
}

MRAStatusEnum BladeMRADataObject::getRackName(std::string& name) const {
    return give(_facts.rackName, name);
}

MRAStatusEnum BladeMRADataObject::getRackUUID(std::string& uuid) const {
    return give(_facts.rackUUID, uuid);
}

void BladeMRADataObject::setFacts(BladeFacts facts) {
    _facts = std::move(facts);
}
