// What PYLUtil does for providers with the arguments and keys of a request.

#include <sstream>

#include "cmpicpp/CmpiStatus.h"
#include "common/PYLUtil.h"

namespace PYL {

using CmpiCpp::CmpiArgs;
using CmpiCpp::CmpiArray;
using CmpiCpp::CmpiBroker;
using CmpiCpp::CmpiData;
using CmpiCpp::CmpiName;
using CmpiCpp::CmpiObjectPath;
using CmpiCpp::CmpiStatus;

namespace {

CmpiData presentArgument(CmpiArgs const& args, CmpiName const& name) {
    try {
        return args.getArg(name);
    } catch (CmpiStatus const&) {
        std::ostringstream text;
        text << "Argument '" << name.c_str() << "' not present";
        throw CmpiStatus(CMPI_RC_ERR_INVALID_PARAMETER, text.str());
    }
}

[[noreturn]] void refuseType(CmpiName const& name, CMPIType actual, CMPIType expected) {
    std::ostringstream text;
    text << "Argument '" << name.c_str() << "' has bad type " << CmpiData::typeToString(actual)
         << ", expecting " << CmpiData::typeToString(expected);
    throw CmpiStatus(CMPI_RC_ERR_INVALID_PARAMETER, text.str());
}

}  // namespace

CmpiArray PYLUtil::stringToUint8Array(std::string const& text) {
    auto array = CmpiCpp::makeCmpiArray(CmpiBroker(getBroker()),
                                        static_cast<unsigned int>(text.size()), CMPI_uint8);
    for (unsigned int i = 0; i < text.size(); ++i)
        array.setElementAt(i, static_cast<unsigned char>(text[i]));
    return array;
}

bool PYLUtil::getInstanceID(CmpiObjectPath const& path, std::string& instanceID) {
    if (path.getKeyCount() != 1) return false;
    try {
        auto const key = path.getKey("InstanceID");
        if (key.isNull() || key.isArray() || key.getType() != CMPI_string) return false;
        instanceID = key.asString();
        return true;
    } catch (CmpiStatus const& status) {
        if (status.rc() == CMPI_RC_ERR_NO_SUCH_PROPERTY) return false;
        throw;
    }
}

CmpiData PYLUtil::getArg(CmpiArgs const& args, CmpiName const& name, unsigned short expectedType) {
    auto const value = presentArgument(args, name);
    if (value.getType() != expectedType) refuseType(name, value.getType(), expectedType);
    return value;
}

}  // namespace PYL
