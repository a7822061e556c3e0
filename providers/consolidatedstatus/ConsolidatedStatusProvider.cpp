#include "providers/consolidatedstatus/ConsolidatedStatusProvider.h"

#include "cmpicpp/CmpiStatus.h"
#include "common/PYLUtil.h"
#include "providers/consolidatedstatus/StatusInstance.h"

#include <memory>
#include <string_view>

namespace consolidatedstatus {

using CmpiCpp::CmpiContext;
using CmpiCpp::CmpiName;
using CmpiCpp::CmpiObjectPath;
using CmpiCpp::CmpiStatus;
using PYL::PYLUtil;

namespace {

/// Whether the text can be the name of a CIM class (DSP0004, IDENTIFIER), and is not a monster.
/// Names with characters beyond ASCII are allowed there, but no provider of the family has one.
bool isClassName(std::string_view text) noexcept {
    constexpr std::size_t longest = 255;
    constexpr std::string_view characters =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz_0123456789";
    const bool startsWithDigit = !text.empty() && text[0] >= '0' && text[0] <= '9';
    return !text.empty() && text.size() <= longest && !startsWithDigit &&
           text.find_first_not_of(characters) == std::string_view::npos;
}

}  // namespace

ConsolidatedStatusProvider::ConsolidatedStatusProvider(const CmpiCpp::CmpiBroker& broker,
                                                       Logger& log, Clock now)
    : _broker(broker), _log(log), _now(std::move(now)), _collection(log) {
    add({});
}

CMPIBroker* ConsolidatedStatusProvider::getBroker() {
    return _broker.toRawCMPI();
}

/// The collection owns what it was given; what it refuses is deleted here.
void ConsolidatedStatusProvider::add(const std::string& reportingClass) {
    auto instance = std::make_unique<StatusInstance>(_board, reportingClass);
    _collection.createInstance(instance.get());
    static_cast<void>(instance.release());
}

void ConsolidatedStatusProvider::enumInstanceNames(const CmpiContext& context,
                                                   const CmpiObjectPath& path,
                                                   CmpiCpp::CmpiObjectPathResult& result) {
    _collection.enumInstanceNames(result, context, path);
}

void ConsolidatedStatusProvider::enumInstances(const CmpiContext& context,
                                               const CmpiObjectPath& path, const char** properties,
                                               CmpiCpp::CmpiInstanceResult& result) {
    _collection.enumInstances(result, context, path, properties);
}

void ConsolidatedStatusProvider::getInstance(const CmpiContext& context, const CmpiObjectPath& path,
                                             const char** properties,
                                             CmpiCpp::CmpiInstanceResult& result) {
    if (!_collection.getInstance(result, context, path, properties)) {
        throw CmpiStatus(CMPI_RC_ERR_NOT_FOUND, "no such instance: " + path.str());
    }
}

void ConsolidatedStatusProvider::post(const CmpiCpp::CmpiArgs& in) {
    const auto className = PYLUtil::getArg(in, "ClassName", CMPI_string).asString();
    if (!isClassName(className)) {
        throw CmpiStatus(CMPI_RC_ERR_INVALID_PARAMETER, "Argument 'ClassName' is not a class name");
    }
    const auto status =
        static_cast<unsigned short>(PYLUtil::getArg(in, "Status", CMPI_uint16).asUint64());
    bool isNew = false;
    if (!_board->post(className, PYL::opstatusFromUint16(status), _now(), isNew)) {
        throw CmpiStatus(CMPI_RC_ERR_FAILED, "too many classes have posted their status");
    }
    if (isNew) list(className);
}

/// Shows a class that is new on the board; one that cannot be shown is new again at its next post.
void ConsolidatedStatusProvider::list(const std::string& reportingClass) {
    try {
        add(reportingClass);
    } catch (...) {
        _board->forget(reportingClass);
        throw;
    }
}

void ConsolidatedStatusProvider::invokeMethod(const CmpiContext&, const CmpiObjectPath& path,
                                              const CmpiName& methodName,
                                              const CmpiCpp::CmpiArgs& in,
                                              CmpiCpp::CmpiMethodResult& result) {
    const bool isPost = path.getClassName() == CmpiName(PYL::ScopedCentralClassName) &&
                        methodName == CmpiName("PostStatus");
    if (!isPost) {
        throw CmpiStatus(CMPI_RC_ERR_METHOD_NOT_FOUND, "no such method: " + methodName.str());
    }
    post(in);
    result.deliver(0U);
}

}  // namespace consolidatedstatus
