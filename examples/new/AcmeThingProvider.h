#pragma once

#include "toolkit/CollectionProvider.h"

#include <functional>
#include <string>
#include <utility>
#include <vector>

/// A thing as the machine tells of it. Knows nothing of CIM.
struct AcmeThing {
    std::string id;
    unsigned int temperature;
};

/// The things that are there now.
std::vector<AcmeThing> readThings();

/// Answers for ACME_Thing, from things that are read afresh for each request. Tests give it theirs.
class AcmeThingProvider : public PYL::CollectionProvider {
public:
    using Source = std::function<std::vector<AcmeThing>()>;

    AcmeThingProvider(const CmpiCpp::CmpiBroker& broker, Logger& log, Source source = readThings)
        : CollectionProvider(broker, log), _source(std::move(source)) {}

protected:
    void answer(const CmpiCpp::CmpiContext& context, const CmpiCpp::CmpiObjectPath& path,
                const Ask& ask) override;

private:
    Source _source;
};
