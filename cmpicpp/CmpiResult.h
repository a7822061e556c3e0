#pragma once

#include "cmpicpp/CmpiData.h"
#include "cmpicpp/CmpiInstance.h"
#include "cmpicpp/CmpiName.h"
#include "cmpicpp/CmpiObjectPath.h"
#include "pylcommon_export.h"

#include <string>

namespace CmpiCpp {

/// Where a provider's results go. A sink lives for one operation and is used by one thread at a
/// time. Every deliver throws CmpiStatus when the object manager does not take the item.
class PYL_EXPORT CmpiResult {
public:
    virtual ~CmpiResult();

protected:
    CmpiResult() = default;
    /// @{
    /// For sinks that derive from it.
    CmpiResult(const CmpiResult&) = default;
    CmpiResult& operator=(const CmpiResult&) = default;
    /// @}
};

/// Takes the paths of objects.
class PYL_EXPORT CmpiObjectPathResult : public CmpiResult {
public:
    /// Passes the path on.
    virtual void deliver(const CmpiObjectPath& path) = 0;
};

/// Takes instances, with the properties that they have.
class PYL_EXPORT CmpiInstanceResult : public CmpiResult {
public:
    /// Passes the instance on.
    virtual void deliver(const CmpiInstance& instance) = 0;
};

/// Takes a method's return value, once, and its output arguments by name, in any order.
/// A null `const char*` is delivered as a NULL string.
class PYL_EXPORT CmpiMethodResult : public CmpiResult {
public:
    /// @{
    /// The method's return value. The C++ type decides the CIM type, as in CmpiValue.
    virtual void deliver(const CmpiData& value) = 0;
    virtual void deliver(unsigned char value) = 0;
    virtual void deliver(signed char value) = 0;
    virtual void deliver(unsigned short value) = 0;
    virtual void deliver(short value) = 0;
    virtual void deliver(unsigned int value) = 0;
    virtual void deliver(int value) = 0;
    virtual void deliver(unsigned long long value) = 0;
    virtual void deliver(long long value) = 0;
    virtual void deliver(float value) = 0;
    virtual void deliver(double value) = 0;
    virtual void deliver(bool value) = 0;
    virtual void deliver(const char* value) = 0;
    virtual void deliver(const std::string& value) = 0;
    virtual void deliver(const CmpiObjectPath& value) = 0;
    /// @}

    /// @{
    /// The output argument of that name.
    virtual void deliver(const CmpiName& name, const CmpiData& value) = 0;
    virtual void deliver(const CmpiName& name, unsigned char value) = 0;
    virtual void deliver(const CmpiName& name, signed char value) = 0;
    virtual void deliver(const CmpiName& name, unsigned short value) = 0;
    virtual void deliver(const CmpiName& name, short value) = 0;
    virtual void deliver(const CmpiName& name, unsigned int value) = 0;
    virtual void deliver(const CmpiName& name, int value) = 0;
    virtual void deliver(const CmpiName& name, unsigned long long value) = 0;
    virtual void deliver(const CmpiName& name, long long value) = 0;
    virtual void deliver(const CmpiName& name, float value) = 0;
    virtual void deliver(const CmpiName& name, double value) = 0;
    virtual void deliver(const CmpiName& name, bool value) = 0;
    virtual void deliver(const CmpiName& name, const char* value) = 0;
    virtual void deliver(const CmpiName& name, const std::string& value) = 0;
    virtual void deliver(const CmpiName& name, const CmpiObjectPath& value) = 0;
    /// @}
};

}  // namespace CmpiCpp
