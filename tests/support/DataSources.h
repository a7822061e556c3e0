#pragma once

#include "platform/host/BladeMRA.h"
#include "platform/host/ComputerSystemMRA.h"

#include <optional>

/// What the data libraries tell, for as long as one of these lives. The test program answers their
/// factories itself; without one of these the sources are the host's own. One lives at a time.
class DataSources {
public:
    DataSources();
    ~DataSources();
    DataSources(const DataSources&) = delete;
    DataSources& operator=(const DataSources&) = delete;

    /// Whether there is a source at all.
    bool hasComputerSystem = true;
    bool hasBlade = true;

    /// What the source reads; nullopt makes the read fail.
    std::optional<HostFacts> computerSystem;
    std::optional<HostFacts> blade;

    /// Both are there and read: a blade that tells all of itself and of its enclosure.
    void everythingIsKnown();

    /// Sources that were made and not yet deleted, and all that were made.
    int alive = 0;
    int made = 0;
};
