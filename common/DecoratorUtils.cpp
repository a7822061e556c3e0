#include "common/DecoratorUtils.h"

#include "cmpicpp/CmpiStatus.h"

using CmpiCpp::CmpiData;
using CmpiCpp::CmpiName;
using CmpiCpp::CmpiObjectPath;

namespace PYL {

namespace {

template <typename Interface>
Interface* castProvider(CmpiCpp::CmpiProvider* provider, const char* message) {
    auto* const cast = dynamic_cast<Interface*>(provider);
    if (!cast) throw CmpiCpp::CmpiStatus(CMPI_RC_ERROR_SYSTEM, message);
    return cast;
}

}  // namespace

CmpiCpp::CmpiInstanceProvider* asInstanceProvider(CmpiCpp::CmpiProvider* provider) {
    return castProvider<CmpiCpp::CmpiInstanceProvider>(provider, "Not an instance provider");
}

CmpiCpp::CmpiAssociationProvider* asAssociationProvider(CmpiCpp::CmpiProvider* provider) {
    return castProvider<CmpiCpp::CmpiAssociationProvider>(provider, "Not an association provider");
}

CmpiCpp::CmpiMethodProvider* asMethodProvider(CmpiCpp::CmpiProvider* provider) {
    return castProvider<CmpiCpp::CmpiMethodProvider>(provider, "Not a method provider");
}

CmpiCpp::CmpiIndicationProvider* asIndicationProvider(CmpiCpp::CmpiProvider* provider) {
    return castProvider<CmpiCpp::CmpiIndicationProvider>(provider, "Not an indication provider");
}

}  // namespace PYL

void LoggedObjectPathResult::deliver(const CmpiObjectPath& path) {
    if (_log.infoEnabled()) _log.info("deliver(%s)", path.str());
    _result.deliver(path);
    ++_size;
}

void LoggedInstanceResult::deliver(const CmpiCpp::CmpiInstance& instance) {
    if (_log.infoEnabled()) _log.info("deliver(%s)", instance.getPath().str());
    _result.deliver(instance);
    ++_size;
}

template <typename Value, typename Printed>
void LoggedMethodResult::_pass(const char* format, const Value& value, const Printed& printed) {
    _log.info(format, printed);
    _result.deliver(value);
    ++_size;
}

template <typename Value, typename Printed>
void LoggedMethodResult::_pass(const char* format, const CmpiName& name, const Value& value,
                               const Printed& printed) {
    _log.info(format, name.c_str(), printed);
    _result.deliver(name, value);
    ++_size;
}

void LoggedMethodResult::deliver(const CmpiData& value) {
    if (_log.infoEnabled()) {
        _log.info("deliver([%s%s]%s)", CmpiData::typeToString(value.getType()),
                  value.isArray() ? " array" : "", value.str());
    }
    _result.deliver(value);
    ++_size;
}

// Small integers are widened by their signedness before they are printed, as C's own conversion
// does.
void LoggedMethodResult::deliver(unsigned char value) {
    _pass("deliver([uint8]%u)", value, static_cast<unsigned int>(value));
}
void LoggedMethodResult::deliver(signed char value) {
    _pass("deliver([sint8]%i)", value, static_cast<int>(value));
}
void LoggedMethodResult::deliver(unsigned short value) {
    _pass("deliver([uint16]%u)", value, static_cast<unsigned int>(value));
}
void LoggedMethodResult::deliver(short value) {
    _pass("deliver([sint16]%i)", value, static_cast<int>(value));
}
void LoggedMethodResult::deliver(unsigned int value) {
    _pass("deliver([uint32]%u)", value, value);
}
void LoggedMethodResult::deliver(int value) {
    _pass("deliver([sint32]%i)", value, value);
}
void LoggedMethodResult::deliver(unsigned long long value) {
    _pass("deliver([uint64]%lu)", value, value);
}
void LoggedMethodResult::deliver(long long value) {
    _pass("deliver([sint64]%li)", value, value);
}
void LoggedMethodResult::deliver(float value) {
    _pass("deliver([real32]%f)", value, static_cast<double>(value));
}
void LoggedMethodResult::deliver(double value) {
    _pass("deliver([real64]%f)", value, value);
}
void LoggedMethodResult::deliver(bool value) {
    _pass("deliver([bool]%d)", value, value ? 1 : 0);
}
void LoggedMethodResult::deliver(const char* value) {
    _pass("deliver([char*]%s)", value, value);
}
void LoggedMethodResult::deliver(const std::string& value) {
    _pass("deliver([string]%s)", value, value);
}
void LoggedMethodResult::deliver(const CmpiObjectPath& value) {
    if (_log.infoEnabled()) _log.info("deliver([obj]%s)", value.str());
    _result.deliver(value);
    ++_size;
}

void LoggedMethodResult::deliver(const CmpiName& name, const CmpiData& value) {
    if (_log.infoEnabled()) {
        _log.info("deliver(%s=[%s%s]%s)", name.c_str(), CmpiData::typeToString(value.getType()),
                  value.isArray() ? " array" : "", value.str());
    }
    _result.deliver(name, value);
    ++_size;
}
void LoggedMethodResult::deliver(const CmpiName& name, unsigned char value) {
    _pass("deliver(%s=[uint8]%u)", name, value, static_cast<unsigned int>(value));
}
void LoggedMethodResult::deliver(const CmpiName& name, signed char value) {
    _pass("deliver(%s=[sint8]%i)", name, value, static_cast<int>(value));
}
void LoggedMethodResult::deliver(const CmpiName& name, unsigned short value) {
    _pass("deliver(%s=[uint16]%u)", name, value, static_cast<unsigned int>(value));
}
void LoggedMethodResult::deliver(const CmpiName& name, short value) {
    _pass("deliver(%s=[sint16]%i)", name, value, static_cast<int>(value));
}
void LoggedMethodResult::deliver(const CmpiName& name, unsigned int value) {
    _pass("deliver(%s=[uint32]%u)", name, value, value);
}
void LoggedMethodResult::deliver(const CmpiName& name, int value) {
    _pass("deliver(%s=[sint32]%i)", name, value, value);
}
void LoggedMethodResult::deliver(const CmpiName& name, unsigned long long value) {
    _pass("deliver(%s=[uint64]%lu)", name, value, value);
}
void LoggedMethodResult::deliver(const CmpiName& name, long long value) {
    _pass("deliver(%s=[sint64]%li)", name, value, value);
}
void LoggedMethodResult::deliver(const CmpiName& name, float value) {
    _pass("deliver(%s=[real32]%f)", name, value, static_cast<double>(value));
}
// The lines of a named real64 and bool lack the closing parenthesis: tools that read these logs
// know them so.
void LoggedMethodResult::deliver(const CmpiName& name, double value) {
    _pass("deliver(%s=[real64]%f", name, value, value);
}
void LoggedMethodResult::deliver(const CmpiName& name, bool value) {
    _pass("deliver(%s=[bool]%d", name, value, value ? 1 : 0);
}
void LoggedMethodResult::deliver(const CmpiName& name, const char* value) {
    _pass("deliver(%s=[char*]%s)", name, value, value);
}
void LoggedMethodResult::deliver(const CmpiName& name, const std::string& value) {
    _pass("deliver(%s=[string]%s)", name, value, value);
}
void LoggedMethodResult::deliver(const CmpiName& name, const CmpiObjectPath& value) {
    if (_log.infoEnabled()) _log.info("deliver(%s=[obj]%s)", name.c_str(), value.str());
    _result.deliver(name, value);
    ++_size;
}
