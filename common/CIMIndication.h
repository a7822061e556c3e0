#pragma once

#include "cmpicpp/CmpiInstance.h"
#include "cmpicpp/CmpiObjectPath.h"
#include "platform/logger/Logger.h"
#include "pylcommon_export.h"

#include <cstdint>
#include <string>

namespace PYL {

/// An indication on its way to becoming a CIM instance: its identity, severity and time.
///
/// An indication is built, filled by setters, turned into one instance and thrown away, by one
/// thread at a time. Different ones may be built at once. Whatever makes objects of the broker,
/// which PYLUtil::setBroker() recorded, passes on its CmpiStatus.
class PYL_EXPORT CIMIndication {
public:
    /// An indication of this class with the next number of the process. `severity` is an
    /// indicationSeverity. Keeps a copy of the logger.
    CIMIndication(Logger& log, const std::string& name, const std::string& nameSpace, int severity);
    CIMIndication(const CIMIndication&) = delete;
    CIMIndication& operator=(const CIMIndication&) = delete;
    virtual ~CIMIndication();

    /// The path of the indication: host, namespace and class, without keys.
    CmpiCpp::CmpiObjectPath getPath() const;

    /// Which indication of this process it is, counted over all classes from 1.
    std::uint64_t getId() const noexcept { return id; }

    /// Sets the properties of this class, without those of the classes that it derives from.
    virtual void addProperties(CmpiCpp::CmpiInstance& instance);

protected:
    /// @{
    /// What the constructor was given, and getId(), for derived classes.
    std::string _name;
    std::string _nameSpace;
    int _severity;
    std::uint64_t id;
    Logger _log;
    /// @}
};

}  // namespace PYL
