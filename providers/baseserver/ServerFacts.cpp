#include "providers/baseserver/ServerFacts.h"

#include "common/ServerGeneration.h"

namespace baseserver {

ServerFacts readServerFacts(Logger& log) {
    SmBios firmware(log);
    const bool scanned = firmware.scan() == 0;
    return {readHostFacts(firmware), scanned && PYL::isAgentlessOnly(firmware, log)};
}

}  // namespace baseserver
