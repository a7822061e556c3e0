#pragma once

#include "cmpi/cmpift.h"
#include "cmpicpp/CmpiArgs.h"
#include "cmpicpp/CmpiContext.h"
#include "cmpicpp/CmpiData.h"
#include "cmpicpp/CmpiInstance.h"
#include "cmpicpp/CmpiName.h"
#include "cmpicpp/CmpiObjectPath.h"
#include "cmpicpp/CmpiValue.h"
#include "pylcommon_export.h"

#include <string>
#include <vector>

class Logger;

namespace CmpiCpp {

/// Up-calls: the object manager's own operations, for objects that other providers serve.
///
/// Every operation throws CmpiStatus with the code and text that the object manager answers;
/// CMPI_RC_ERR_INVALID_HANDLE without a context, for an empty path and for an empty instance; and
/// CMPI_RC_ERR_INVALID_PARAMETER for a property list with a name that is none of CIM.
/// Results live until the caller's own CMPI function returns. The context is that of the current
/// call, or one from CmpiThreadContext on a thread of the provider's own. Cheap to make, one for
/// each use.
class PYL_EXPORT CmpiMBService {
public:
    /// The logger is taken so that providers hand theirs on; up-calls write no lines of their own.
    CmpiMBService(const CMPIBroker* broker, Logger& log) noexcept;

    /// @{
    /// What CmpiInstanceProvider's operations of these names deliver, from the provider of the
    /// path's class.
    CmpiInstance getInstance(const CmpiContext&, const CmpiObjectPath& path,
                             const char** properties) const;
    std::vector<CmpiInstance> enumInstances(const CmpiContext&, const CmpiObjectPath& classPath,
                                            const char** properties) const;
    std::vector<CmpiObjectPath> enumInstanceNames(const CmpiContext&,
                                                  const CmpiObjectPath& classPath) const;
    CmpiObjectPath createInstance(const CmpiContext&, const CmpiObjectPath& path,
                                  const CmpiInstance& instance) const;
    void modifyInstance(const CmpiContext&, const CmpiObjectPath& path,
                        const CmpiInstance& instance, const char** properties) const;
    void deleteInstance(const CmpiContext&, const CmpiObjectPath& path) const;
    std::vector<CmpiInstance> execQuery(const CmpiContext&, const CmpiObjectPath& classPath,
                                        const std::string& query,
                                        const std::string& language) const;
    /// @}

    /// @{
    /// The same for the operations of CmpiAssociationProvider, with its filters.
    std::vector<CmpiInstance> associators(const CmpiContext&, const CmpiObjectPath& path,
                                          const CmpiName& assocClass, const CmpiName& resultClass,
                                          const CmpiName& role, const CmpiName& resultRole,
                                          const char** properties) const;
    std::vector<CmpiObjectPath> associatorNames(const CmpiContext&, const CmpiObjectPath& path,
                                                const CmpiName& assocClass,
                                                const CmpiName& resultClass, const CmpiName& role,
                                                const CmpiName& resultRole) const;
    std::vector<CmpiInstance> references(const CmpiContext&, const CmpiObjectPath& path,
                                         const CmpiName& resultClass, const CmpiName& role,
                                         const char** properties) const;
    std::vector<CmpiObjectPath> referenceNames(const CmpiContext&, const CmpiObjectPath& path,
                                               const CmpiName& resultClass,
                                               const CmpiName& role) const;
    /// @}

    /// `out` receives the output arguments. The result is the method's return value.
    CmpiData invokeMethod(const CmpiContext&, const CmpiObjectPath& path, const CmpiName& method,
                          const CmpiArgs& in, CmpiArgs& out) const;
    /// @{
    /// One property of an instance, by a request of its own.
    CmpiData getProperty(const CmpiContext&, const CmpiObjectPath& path,
                         const CmpiName& property) const;
    void setProperty(const CmpiContext&, const CmpiObjectPath& path, const CmpiName& property,
                     CmpiValue value) const;
    /// @}

    /// Hands an indication over for distribution; success does not mean that anybody subscribed.
    /// Some object managers cut it in place to what a subscriber has selected: one that is used
    /// afterwards is delivered as a clone().
    void deliverIndication(const CmpiContext&, const CmpiName& nameSpace,
                           const CmpiInstance& indication) const;

private:
    CmpiData _getPropertyOf(const CmpiContext&, const CmpiObjectPath& path,
                            const char* property) const;

    const CMPIBroker* _broker;
};

/// What a thread of the provider's own needs before it may call the object manager.
/// Made on a thread that serves a request, handed to the new thread, attached and detached there.
class PYL_EXPORT CmpiThreadContext {
public:
    /// Throws CmpiStatus when the broker prepares no context.
    CmpiThreadContext(const CMPIBroker* broker, const CmpiContext& context);

    /// Attached while it lives, to the thread that made it. One for each context.
    class PYL_EXPORT Attachment {
    public:
        /// Throws CmpiStatus when the object manager does not take the thread.
        explicit Attachment(const CmpiThreadContext& context);
        ~Attachment();
        Attachment(const Attachment&) = delete;
        Attachment& operator=(const Attachment&) = delete;

        /// For what the thread asks; good as long as this is.
        CmpiContext context() const noexcept;

    private:
        const CMPIBroker* _broker;
        const CMPIContext* _prepared;
    };

private:
    const CMPIBroker* _broker;
    const CMPIContext* _prepared;
};

}  // namespace CmpiCpp
