#include "common/DecoratorUtils.h"

#include "cmpicpp/CmpiStatus.h"
#include "common/detail/LogText.h"

using CmpiCpp::CmpiData;
using CmpiCpp::CmpiName;
using CmpiCpp::CmpiObjectPath;
using PYL::logText;

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
    if (_log.infoEnabled()) _log.info("deliver(%s)", logText(path));
    _result.deliver(path);
    ++_size;
}

void LoggedInstanceResult::deliver(const CmpiCpp::CmpiInstance& instance) {
    if (_log.infoEnabled()) {
        _log.info("deliver(%s)", logText([&instance] { return instance.getPath(); }));
    }
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

void LoggedMethodResult::deliver(const CmpiName& name, const CmpiData& value) {
    if (_log.infoEnabled()) {
        _log.info("deliver(%s=[%s%s]%s)", name.c_str(), CmpiData::typeToString(value.getType()),
                  value.isArray() ? " array" : "", value.str());
    }
    _result.deliver(name, value);
    ++_size;
}

void LoggedMethodResult::deliver(const CmpiObjectPath& value) {
    if (_log.infoEnabled()) _log.info("deliver([obj]%s)", logText(value));
    _result.deliver(value);
    ++_size;
}

void LoggedMethodResult::deliver(const CmpiName& name, const CmpiObjectPath& value) {
    if (_log.infoEnabled()) _log.info("deliver(%s=[obj]%s)", name.c_str(), logText(value));
    _result.deliver(name, value);
    ++_size;
}

// clang-format off

// The other types: how each is printed, how the line of a named value ends, and what is printed.
// Small integers are widened by their signedness, as C's own conversion does. The lines of a named
// real64 and bool lack the closing parenthesis: tools that read these logs know them so.
#define PYL_DELIVER(type, form, namedEnd, printed) \
    void LoggedMethodResult::deliver(type value) { _pass("deliver(" form ")", value, printed); } \
    void LoggedMethodResult::deliver(const CmpiName& name, type value) { \
        _pass("deliver(%s=" form namedEnd, name, value, printed); \
    }

PYL_DELIVER(unsigned char, "[uint8]%u", ")", static_cast<unsigned int>(value))
PYL_DELIVER(signed char, "[sint8]%i", ")", static_cast<int>(value))
PYL_DELIVER(unsigned short, "[uint16]%u", ")", static_cast<unsigned int>(value))
PYL_DELIVER(short, "[sint16]%i", ")", static_cast<int>(value))
PYL_DELIVER(unsigned int, "[uint32]%u", ")", value)
PYL_DELIVER(int, "[sint32]%i", ")", value)
PYL_DELIVER(unsigned long long, "[uint64]%lu", ")", value)
PYL_DELIVER(long long, "[sint64]%li", ")", value)
PYL_DELIVER(float, "[real32]%f", ")", static_cast<double>(value))
PYL_DELIVER(double, "[real64]%f", "", value)
PYL_DELIVER(bool, "[bool]%d", "", value ? 1 : 0)
PYL_DELIVER(const char*, "[char*]%s", ")", value)
PYL_DELIVER(const std::string&, "[string]%s", ")", value)
