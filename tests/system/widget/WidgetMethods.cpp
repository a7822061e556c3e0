#include "cmpicpp/CmpiArray.h"
#include "cmpicpp/CmpiStatus.h"
#include "tests/system/widget/WidgetProvider.h"

#include <new>
#include <stdexcept>

using CmpiCpp::CmpiArgs;
using CmpiCpp::CmpiContext;
using CmpiCpp::CmpiMethodResult;
using CmpiCpp::CmpiName;
using CmpiCpp::CmpiObjectPath;
using CmpiCpp::CmpiStatus;

namespace {

[[noreturn]] void fail(const std::string& how) {
    if (how == "status") throw CmpiStatus(CMPI_RC_ERR_ACCESS_DENIED, "not <you> & \"yours\"");
    if (how == "system") throw CmpiStatus(CMPI_RC_ERROR_SYSTEM, "the system is at fault");
    if (how == "exception") throw std::runtime_error("an exception's own text");
    if (how == "memory") throw std::bad_alloc();
    throw 42;
}

}  // namespace

void WidgetProvider::invokeMethod(const CmpiContext&, const CmpiObjectPath&, const CmpiName& method,
                                  const CmpiArgs& in, CmpiMethodResult& result) {
    if (method == CmpiName("Add")) {
        const auto sum = in.getArg("A").asSint64() + in.getArg("B").asSint64();
        result.deliver(CmpiName("Words"), "the sum is " + std::to_string(sum));
        result.deliver(static_cast<int>(sum));
    } else if (method == CmpiName("Echo")) {
        result.deliver(in.getArg("Text"));
    } else if (method == CmpiName("Count")) {
        result.deliver(CmpiName("Total"), in.getArg("Tags").asArray().size());
        result.deliver(0U);
    } else if (method == CmpiName("Fail")) {
        fail(in.getArg("How").asString());
    } else if (method == CmpiName("Greet")) {
        result.deliver("hello");
    } else {
        throw CmpiStatus(CMPI_RC_ERR_METHOD_NOT_FOUND, "no method " + method.str());
    }
}
