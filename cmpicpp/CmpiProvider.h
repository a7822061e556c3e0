#pragma once

#include "cmpi/cmpift.h"
#include "cmpicpp/CmpiContext.h"
#include "pylcommon_export.h"

/// CMPI as C++ values, result sinks and provider interfaces, with the up-calls and the entry points
/// of a module. Failures are thrown as CmpiStatus.
namespace CmpiCpp {

/// What every provider object is. The four kinds of provider derive virtually from it, so that one
/// class can be several kinds. The object manager may call it from several threads at once.
///
/// Operations refuse or fail by throwing CmpiStatus; any other exception becomes
/// CMPI_RC_ERR_FAILED.
class PYL_EXPORT CmpiProvider {
public:
    virtual ~CmpiProvider();
    CmpiProvider(const CmpiProvider&) = delete;
    CmpiProvider& operator=(const CmpiProvider&) = delete;

    /// 0: the module may be unloaded now; 1: not now, ask again; 2: never before the end.
    virtual int unloadOK(const CmpiContext& context);

    /// Called once before the object is deleted; no other call runs meanwhile.
    /// `terminating`: the object manager itself is ending.
    virtual void cleanup(const CmpiContext& context, bool terminating);

    /// The raw handle of the broker that the provider was made with.
    virtual CMPIBroker* getBroker() = 0;

protected:
    CmpiProvider() = default;

private:
    friend class CmpiModule;

    // The MIs that share this object; counted by the module. As a data member it also keeps this
    // class from being a nearly empty base (Itanium C++ ABI, 2.2), whose table the interfaces would
    // merge with.
    unsigned _sharingMIs = 0;
};

}  // namespace CmpiCpp
