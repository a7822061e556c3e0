#include "AcmeThingProvider.h"

#include "cmpicpp/CmpiModule.h"
#include "toolkit/LocalPaths.h"
#include "toolkit/LoggedModule.h"
#include "toolkit/Properties.h"

#include <memory>

namespace {

/// A thing as clients see it.
class ThingInstance : public PYL::CmpiManagedInstance {
public:
    explicit ThingInstance(AcmeThing thing) : _thing(std::move(thing)) {}

    CmpiCpp::CmpiName getClassName() override { return "ACME_Thing"; }

    CmpiCpp::CmpiObjectPath getPath() override {
        return PYL::makeLocalPath("ACME_Thing", {{"InstanceID", "ACME:Thing:" + _thing.id}});
    }

    CmpiCpp::CmpiInstance getInstance() override {
        auto instance = PYL::makeInstanceAt(getPath());
        instance.setProperty("Temperature", _thing.temperature);
        return instance;
    }

private:
    AcmeThing _thing;
};

CmpiCpp::CmpiProvider* makeProvider(const CmpiCpp::CmpiBroker& broker, const CMPIContext*) {
    return PYL::makeLoggedProvider<AcmeThingProvider>(broker, "AcmeThing");
}

}  // namespace

// Two things that are made up: read yours here.
std::vector<AcmeThing> readThings() { return {{"left", 40}, {"right", 42}}; }

void AcmeThingProvider::answer(const CmpiCpp::CmpiContext&, const CmpiCpp::CmpiObjectPath&,
                               const Ask& ask) {
    Collection things(_log);
    for (const auto& thing : _source()) add(things, std::make_unique<ThingInstance>(thing));
    ask(things);
}

PYL_CMPI_PROVIDER(AcmeThingProvider, makeProvider)
