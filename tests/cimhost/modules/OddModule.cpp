// A module in C++ whose providers misbehave, each in the way that its name says.

#include "cmpi/cmpift.h"

#include <cstring>
#include <stdexcept>

#define TEST_EXPORT extern "C" __attribute__((visibility("default")))

namespace {

CMPIStatus throwException(CMPIInstanceMI*, const CMPIContext*, const CMPIResult*,
                          const CMPIObjectPath*) {
    throw std::runtime_error("a fan blade");
}

CMPIStatus throwNumber(CMPIInstanceMI*, const CMPIContext*, const CMPIResult*,
                       const CMPIObjectPath*, const char**) {
    throw 42;
}

CMPIStatus throwFromCleanup(CMPIInstanceMI*, const CMPIContext*, CMPIBoolean) {
    throw std::runtime_error("the broom");
}

const CMPIInstanceMIFT& oddTable() {
    static const CMPIInstanceMIFT table = [] {
        CMPIInstanceMIFT made{};
        made.ftVersion = CMPICurrentVersion;
        made.miName = "odd";
        made.cleanup = throwFromCleanup;
        made.enumerateInstanceNames = throwException;
        made.enumerateInstances = throwNumber;
        return made;
    }();
    return table;
}

CMPIInstanceMI oddMi{nullptr, &oddTable()};
CMPIInstanceMI tablelessMi{nullptr, nullptr};

void fail(const CMPIBroker* broker, CMPIStatus* status, CMPIrc code, const char* message) {
    status->rc = code;
    status->msg = broker->eft->newString(broker, message, nullptr);
}

}  // namespace

// Called by name; a second entry point for Throwing would be wrong to use.
TEST_EXPORT CMPIInstanceMI* _Generic_Create_InstanceMI(const CMPIBroker* broker, const CMPIContext*,
                                                       const char* name, CMPIStatus* status) {
    *status = {CMPI_RC_OK, nullptr};
    if (std::strcmp(name, "Throwing") == 0) return &oddMi;
    if (std::strcmp(name, "Tableless") == 0) return &tablelessMi;
    if (std::strcmp(name, "ThrowingFactory") == 0) throw std::runtime_error("no clay");
    if (std::strcmp(name, "Denying") == 0) {
        fail(broker, status, CMPI_RC_ERR_ACCESS_DENIED, "not for you");
    } else if (std::strcmp(name, "Declining") == 0) {
        fail(broker, status, CMPI_RC_ERR_NOT_SUPPORTED, "no instances here");
    } else if (std::strcmp(name, "Silent") != 0) {
        fail(broker, status, CMPI_RC_ERR_NOT_FOUND, "unknown provider");
    }
    return nullptr;
}

TEST_EXPORT CMPIInstanceMI* Throwing_Create_InstanceMI(const CMPIBroker*, const CMPIContext*,
                                                       CMPIStatus* status) {
    *status = {CMPI_RC_ERR_FAILED, nullptr};
    return nullptr;
}
