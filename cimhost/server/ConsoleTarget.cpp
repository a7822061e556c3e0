#include "cimhost/server/ConsoleTarget.h"

#include "cimhost/indications/ListenerUrl.h"
#include "cimhost/repository/CimError.h"
#include "cimhost/repository/Names.h"
#include "cimhost/server/Command.h"

namespace cimhost {

std::string ConsoleTarget::url() const {
    return (usesTls ? "https://" : "http://") + ListenerUrl{host, port}.authority();
}

ConsoleTarget parseConsoleTarget(std::string_view text) {
    constexpr std::string_view secure = "https://";
    const bool usesTls = equalNames(text.substr(0, secure.size()), secure);
    // All but the scheme is as that of a destination is.
    const std::string plain =
        usesTls ? "http://" + std::string(text.substr(secure.size())) : std::string(text);
    try {
        const ListenerUrl url = parseListenerUrl(plain);
        if (url.isConsole) throw CimError(CimCode::invalidParameter, "no URL");
        const bool namesPort = equalNames(std::string_view(plain)
                                              .substr(std::string_view("http://").size())
                                              .substr(0, url.authority().size()),
                                          url.authority());
        ConsoleTarget target{usesTls, url.host, url.port, url.path};
        if (!namesPort) target.port = usesTls ? 5989 : 5988;
        if (target.path == "/") target.path.clear();
        return target;
    } catch (const CimError&) {
        throw UsageError("--target '" + std::string(text) +
                         "' is not of the form https://host[:port] or http://host[:port]");
    }
}

}  // namespace cimhost
