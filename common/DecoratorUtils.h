#pragma once

#include "cmpicpp/CmpiAssociationProvider.h"
#include "cmpicpp/CmpiIndicationProvider.h"
#include "cmpicpp/CmpiInstanceProvider.h"
#include "cmpicpp/CmpiMethodProvider.h"
#include "cmpicpp/CmpiProvider.h"
#include "cmpicpp/CmpiResult.h"
#include "platform/logger/Logger.h"
#include "pylcommon_export.h"

#include <string>

namespace PYL {

/// @{
/// The provider as one of the four kinds. A provider that is not of the kind, or null, is
/// CmpiStatus CMPI_RC_ERROR_SYSTEM with a text that says so ("Not an instance provider" and the
/// like).
PYL_EXPORT CmpiCpp::CmpiInstanceProvider* asInstanceProvider(CmpiCpp::CmpiProvider* provider);
PYL_EXPORT CmpiCpp::CmpiAssociationProvider* asAssociationProvider(CmpiCpp::CmpiProvider* provider);
PYL_EXPORT CmpiCpp::CmpiMethodProvider* asMethodProvider(CmpiCpp::CmpiProvider* provider);
PYL_EXPORT CmpiCpp::CmpiIndicationProvider* asIndicationProvider(CmpiCpp::CmpiProvider* provider);
/// @}

}  // namespace PYL

/// Stands between a provider and the caller's sink: logs each item, passes it on, and counts those
/// that the sink took. Lives for one operation; the caller's sink must outlive it.
class PYL_EXPORT LoggedObjectPathResult : public CmpiCpp::CmpiObjectPathResult {
public:
    /// Keeps a copy of the logger, and borrows the sink.
    LoggedObjectPathResult(const Logger& log, CmpiCpp::CmpiObjectPathResult& result)
        : _log(log), _result(result) {}

    void deliver(const CmpiCpp::CmpiObjectPath& path) override;

    /// How many items were delivered.
    int size() const { return _size; }

private:
    Logger _log;
    CmpiCpp::CmpiObjectPathResult& _result;
    int _size = 0;
};

/// The same for instances, which are logged by their paths.
class PYL_EXPORT LoggedInstanceResult : public CmpiCpp::CmpiInstanceResult {
public:
    /// Keeps a copy of the logger, and borrows the sink.
    LoggedInstanceResult(const Logger& log, CmpiCpp::CmpiInstanceResult& result)
        : _log(log), _result(result) {}

    void deliver(const CmpiCpp::CmpiInstance& instance) override;

    /// How many items the sink took.
    int size() const { return _size; }

private:
    Logger _log;
    CmpiCpp::CmpiInstanceResult& _result;
    int _size = 0;
};

/// The same for a method's return value and output arguments, which count alike.
class PYL_EXPORT LoggedMethodResult : public CmpiCpp::CmpiMethodResult {
public:
    /// Keeps a copy of the logger, and borrows the sink.
    LoggedMethodResult(const Logger& log, CmpiCpp::CmpiMethodResult& result)
        : _log(log), _result(result) {}

    void deliver(const CmpiCpp::CmpiData& value) override;
    void deliver(unsigned char value) override;
    void deliver(signed char value) override;
    void deliver(unsigned short value) override;
    void deliver(short value) override;
    void deliver(unsigned int value) override;
    void deliver(int value) override;
    void deliver(unsigned long long value) override;
    void deliver(long long value) override;
    void deliver(float value) override;
    void deliver(double value) override;
    void deliver(bool value) override;
    void deliver(const char* value) override;
    void deliver(const std::string& value) override;
    void deliver(const CmpiCpp::CmpiObjectPath& value) override;

    void deliver(const CmpiCpp::CmpiName& name, const CmpiCpp::CmpiData& value) override;
    void deliver(const CmpiCpp::CmpiName& name, unsigned char value) override;
    void deliver(const CmpiCpp::CmpiName& name, signed char value) override;
    void deliver(const CmpiCpp::CmpiName& name, unsigned short value) override;
    void deliver(const CmpiCpp::CmpiName& name, short value) override;
    void deliver(const CmpiCpp::CmpiName& name, unsigned int value) override;
    void deliver(const CmpiCpp::CmpiName& name, int value) override;
    void deliver(const CmpiCpp::CmpiName& name, unsigned long long value) override;
    void deliver(const CmpiCpp::CmpiName& name, long long value) override;
    void deliver(const CmpiCpp::CmpiName& name, float value) override;
    void deliver(const CmpiCpp::CmpiName& name, double value) override;
    void deliver(const CmpiCpp::CmpiName& name, bool value) override;
    void deliver(const CmpiCpp::CmpiName& name, const char* value) override;
    void deliver(const CmpiCpp::CmpiName& name, const std::string& value) override;
    void deliver(const CmpiCpp::CmpiName& name, const CmpiCpp::CmpiObjectPath& value) override;

    /// How many items the sink took.
    int size() const { return _size; }

private:
    template <typename Value, typename Printed>
    void _pass(const char* format, const Value& value, const Printed& printed);
    template <typename Value, typename Printed>
    void _pass(const char* format, const CmpiCpp::CmpiName& name, const Value& value,
               const Printed& printed);

    Logger _log;
    CmpiCpp::CmpiMethodResult& _result;
    int _size = 0;
};
