// What PYLUtil does for providers with the arguments and keys of a request.

#include "cmpicpp/CmpiStatus.h"
#include "common/PYLUtil.h"

#include <sstream>

namespace PYL {

using CmpiCpp::CmpiArgs;
using CmpiCpp::CmpiArray;
using CmpiCpp::CmpiBroker;
using CmpiCpp::CmpiData;
using CmpiCpp::CmpiName;
using CmpiCpp::CmpiObjectPath;
using CmpiCpp::CmpiStatus;

namespace {

CmpiData presentArgument(const CmpiArgs& args, const CmpiName& name) {
    try {
        return args.getArg(name);
    } catch (const CmpiStatus&) {
        std::ostringstream text;
        text << "Argument '" << name.c_str() << "' not present";
        throw CmpiStatus(CMPI_RC_ERR_INVALID_PARAMETER, text.str());
    }
}

[[noreturn]] void refuseType(const CmpiName& name, CMPIType actual, CMPIType expected) {
    std::ostringstream text;
    text << "Argument '" << name.c_str() << "' has bad type " << CmpiData::typeToString(actual)
         << ", expecting " << CmpiData::typeToString(expected);
    throw CmpiStatus(CMPI_RC_ERR_INVALID_PARAMETER, text.str());
}

}  // namespace

CmpiArray PYLUtil::stringToUint8Array(const std::string& text) {
    auto array = CmpiCpp::makeCmpiArray(CmpiBroker(getBroker()),
                                        static_cast<unsigned int>(text.size()), CMPI_uint8);
    for (unsigned int i = 0; i < text.size(); ++i) {
        array.setElementAt(i, static_cast<unsigned char>(text[i]));
    }
    return array;
}

bool PYLUtil::getInstanceID(const CmpiObjectPath& path, std::string& instanceID) {
    if (path.getKeyCount() != 1) return false;
    try {
        const auto key = path.getKey("InstanceID");
        if (key.isNull() || key.isArray() || key.getType() != CMPI_string) return false;
        instanceID = key.asString();
        return true;
    } catch (const CmpiStatus& status) {
        if (status.rc() == CMPI_RC_ERR_NO_SUCH_PROPERTY) return false;
        throw;
    }
}

CmpiData PYLUtil::getArg(const CmpiArgs& args, const CmpiName& name, unsigned short expectedType) {
    const auto value = presentArgument(args, name);
    if (value.getType() != expectedType) refuseType(name, value.getType(), expectedType);
    return value;
}

}  // namespace PYL
