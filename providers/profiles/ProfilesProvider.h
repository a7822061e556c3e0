#pragma once

#include "common/ProfileDB.h"
#include "platform/logger/Logger.h"
#include "providers/profiles/Conformance.h"
#include "toolkit/CollectionProvider.h"

#include <memory>

namespace profiles {

/// Answers for the registered profiles, the links between them and to the elements that conform to
/// them, and for the data collection. Read-only.
///
/// What never changes is kept in one collection, which asks for nothing outside itself. The links
/// to elements are found for each request and kept in a collection of its own, so that no request
/// waits for another one's up-calls, and one that comes back here finds no lock taken.
class ProfilesProvider : public PYL::CollectionProvider {
public:
    ProfilesProvider(const CmpiCpp::CmpiBroker& broker, Logger& log);

protected:
    /// From what never changes, and of the links to elements from those of the path's namespace.
    void answer(const CmpiCpp::CmpiContext& context, const CmpiCpp::CmpiObjectPath& path,
                const Ask& ask) override;
    void answerAround(const CmpiCpp::CmpiContext& context, const CmpiCpp::CmpiObjectPath& source,
                      const CmpiCpp::CmpiName& associationClass, const Ask& ask) override;

private:
    std::shared_ptr<const PYL::ProfileDB> _profiles;
    Conformance _conformance;
};

}  // namespace profiles
