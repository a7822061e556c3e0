#include "tests/support/DataSources.h"

#include "platform/host/HostSource.h"

#include <memory>

namespace {

DataSources* currentSources = nullptr;  // the factories have no room for a this

/// Counts the source that it is a part of.
struct Counted {
    Counted() {
        ++currentSources->alive;
        ++currentSources->made;
    }
    ~Counted() { --currentSources->alive; }
    Counted(const Counted&) = delete;
    Counted& operator=(const Counted&) = delete;
};

class TestComputerSystem : public ComputerSystemMRA {
public:
    MRAStatusEnum getFirstData(unsigned selector,
                               ComputerSystemMRADataObject& object) noexcept override try {
        if (selector != systemData || !currentSources->computerSystem) return MRA_STATUS_FAILED;
        object.setFacts(*currentSources->computerSystem);
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
        if (!currentSources->blade) return MRA_STATUS_FAILED;
        object.setFacts(*currentSources->blade);
        return MRA_STATUS_SUCCESS;
    } catch (const std::bad_alloc&) {
        return MRA_STATUS_FAILED;
    }

private:
    Counted _counted;
};

}  // namespace

DataSources::DataSources() { currentSources = this; }

DataSources::~DataSources() { currentSources = nullptr; }

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
    enclosure.rackUuid = "rack-uuid";
}

// These two take the place of the library's.
ComputerSystemMRA* computerSystemMRAFactory(Logger& log) noexcept try {
    if (!currentSources) return new HostSource(log);
    return currentSources->hasComputerSystem ? new TestComputerSystem : nullptr;
} catch (const std::bad_alloc&) {
    return nullptr;
}

BladeMRA* BladeMRAFactory(Logger& log) noexcept try {
    if (!currentSources) return new HostSource(log);
    return currentSources->hasBlade ? new TestBlade : nullptr;
} catch (const std::bad_alloc&) {
    return nullptr;
}
