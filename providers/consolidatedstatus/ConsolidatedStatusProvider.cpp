#include "providers/consolidatedstatus/ConsolidatedStatusProvider.h"

#include "cmpicpp/CmpiStatus.h"
#include "common/PYLUtil.h"
#include "providers/consolidatedstatus/StatusInstance.h"
#include "toolkit/Methods.h"

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
    : CollectionProvider(broker, log), _now(std::move(now)) {
    add(_instances, std::make_unique<StatusInstance>(_board));
}

void ConsolidatedStatusProvider::_post(const CmpiCpp::CmpiArgs& in) {
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
    if (isNew) _list(className);
}

/// Shows a class that is new on the board; one that cannot be shown is new again at its next post.
void ConsolidatedStatusProvider::_list(const std::string& reportingClass) {
    try {
        add(_instances, std::make_unique<StatusInstance>(_board, reportingClass));
    } catch (...) {
        _board->forget(reportingClass);
        throw;
    }
}

int ConsolidatedStatusProvider::unloadOK(const CmpiContext&) { return _board->overall() ? 1 : 0; }

void ConsolidatedStatusProvider::invokeMethod(const CmpiContext&, const CmpiObjectPath& path,
                                              const CmpiName& methodName,
                                              const CmpiCpp::CmpiArgs& in,
                                              CmpiCpp::CmpiMethodResult& result) {
    PYL::requireMethod(path, methodName, StatusInstance::className, "PostStatus");
    _post(in);
    result.deliver(0U);
}

}  // namespace consolidatedstatus
