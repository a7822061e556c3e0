#include "cmpicpp/CmpiModule.h"
#include "common/PYLUtil.h"
#include "toolkit/CollectionProvider.h"
#include "toolkit/LocalPaths.h"
#include "toolkit/Properties.h"

#include <unistd.h>

#include <cstdlib>
#include <stdexcept>
#include <string_view>

// A provider of one board that makes the mistake which the environment names: as people make them
// who write their first one.

namespace {

using CmpiCpp::CmpiArgs;
using CmpiCpp::CmpiBroker;
using CmpiCpp::CmpiInstance;
using CmpiCpp::CmpiMethodResult;
using CmpiCpp::CmpiName;
using CmpiCpp::CmpiObjectPath;
using PYL::PYLUtil;

bool makes(std::string_view mistake) {
    const char* const chosen = std::getenv("MISTAKE");
    return chosen && chosen == mistake;
}

bool begin() {
    if (makes("module-crash")) std::abort();
    if (makes("module-leaves")) std::_Exit(3);
    if (makes("module-throws")) throw std::runtime_error("no configuration");
    return true;
}

const bool hasBegun = begin();

class Board final : public PYL::CmpiManagedInstance {
public:
    CmpiName getClassName() override {
        return makes("class-name-misspelt") ? "TST_Bord" : "TST_Board";
    }

    CmpiObjectPath getPath() override {
        const char* const nameSpace = makes("path-namespace-wrong") ? "root/tset" : "root/test";
        const char* const className = makes("path-class-misspelt") ? "TST_Bord" : "TST_Board";
        auto path =
            CmpiCpp::makeCmpiObjectPath(CmpiBroker(PYLUtil::getBroker()), nameSpace, className);
        if (!makes("host-forgotten")) path.setHost(PYLUtil::getHostName());
        path.addKey(makes("key-misnamed") ? "Nmae" : "Name", "one");
        return path;
    }

    CmpiInstance getInstance() override {
        if (makes("operation-throws")) throw std::runtime_error("the board does not answer");
        auto instance = PYL::makeInstanceAt(getPath());
        if (makes("property-unknown")) instance.setProperty("Slotz", 4U);
        if (makes("property-type-wrong")) instance.setProperty("Slots", "four");
        return instance;
    }

    void invokeMethod(const CmpiName&, const CmpiArgs& in, CmpiMethodResult& out) override {
        const char* const argument = makes("argument-misspelt-by-provider") ? "Forse" : "Force";
        const auto force = static_cast<unsigned>(in.getArg(argument).asUint64());
        out.deliver(makes("output-misspelt") ? "Depht" : "Depth", force);
        out.deliver(0U);
    }
};

class Boards final : public PYL::CollectionProvider {
public:
    Boards(const CmpiBroker& broker, Logger& log) : CollectionProvider(broker, log) {
        while (makes("constructor-hangs")) pause();
        if (makes("constructor-throws")) throw std::runtime_error("there is no board");
        PYL::add(_instances, std::make_unique<Board>());
    }
};

CmpiCpp::CmpiProvider* makeBoards(const CmpiBroker& broker, const CMPIContext*) {
    if (!makes("broker-forgotten")) PYLUtil::setBroker(broker);
    Logger log = hostedLogger("Boards");
    return new Boards(broker, log);
}

}  // namespace

PYL_CMPI_PROVIDER(Boards, makeBoards)
