#include "tests/common/DataSources.h"

#include "platform/blade/HostBladeMRA.h"
#include "platform/computersystem/HostComputerSystemMRA.h"

#include <memory>

namespace {

DataSources* current = nullptr;  // the factories have no room for a this

/// Counts the source that it is a part of.
struct Counted {
    Counted() {
        ++current->alive;
        ++current->made;
    }
    ~Counted() { --current->alive; }
    Counted(const Counted&) = delete;
    Counted& operator=(const Counted&) = delete;
};

class TestComputerSystem : public ComputerSystemMRA {
public:
    MRAStatusEnum getFirstData(unsigned selector,
                               ComputerSystemMRADataObject& object) noexcept override try {
        if (selector != systemData || !current->computerSystem) return MRA_STATUS_FAILED;
        object.setFacts(*current->computerSystem);
        return MRA_STATUS_SUCCESS;
    } catch (const std::bad_alloc&) {
        return MRA_STATUS_FAILED;
    }

private:
    Counted _counted;
};

class TestBlade : public BladeMRA {
public:
    MRAStatusEnum getEnclosureData(BladeMRADataObject& object) noexcept override try {
        if (!current->blade) return MRA_STATUS_FAILED;
        object.setFacts(*current->blade);
        return MRA_STATUS_SUCCESS;
    } catch (const std::bad_alloc&) {
        return MRA_STATUS_FAILED;
    }

private:
    Counted _counted;
};

}  // namespace

DataSources::DataSources() {
    current = this;
}

DataSources::~DataSources() {
    current = nullptr;
}

void DataSources::everythingIsKnown() {
    hasComputerSystem = hasBlade = true;
    auto& server = computerSystem.emplace();
    server.productName = "Wave 1";
    server.productId = "P1-B21";
    server.serialNumber = "S1";
    server.uuid = "uuid";
    server.virtualSerialNumber = "V1";
    server.virtualUuid = "virtual-uuid";
    server.solutionName = "solution";
    server.biosVersion = "B1";
    server.osType = OSlinux;
    server.osVersion = "12";
    auto& enclosure = blade.emplace();
    enclosure.isBlade = true;
    enclosure.enclosureName = "enc";
    enclosure.rackName = "rack";
    enclosure.rackUUID = "rack-uuid";
}

// These two take the place of the library's.
ComputerSystemMRA* computerSystemMRAFactory(Logger& log) noexcept try {
    if (!current) return new HostComputerSystemMRA(log);
    return current->hasComputerSystem ? new TestComputerSystem : nullptr;
} catch (const std::bad_alloc&) {
    return nullptr;
}

BladeMRA* BladeMRAFactory(Logger& log) noexcept try {
    if (!current) return new HostBladeMRA(log);
    return current->hasBlade ? new TestBlade : nullptr;
} catch (const std::bad_alloc&) {
    return nullptr;
}
