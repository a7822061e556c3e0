// CIM-XML requests: each is refused or gets a reply that follows DSP0203, and what our parser takes
// for well-formed XML another parser does too.
#include "cimhost/cimxml/XmlDocument.h"
#include "cimhost/modules/ModuleHost.h"
#include "cimhost/mof/MofReader.h"
#include "cimhost/objects/Broker.h"
#include "cimhost/operations/Operations.h"
#include "cimhost/operations/UpCalls.h"
#include "fuzz/Require.h"
#include "tests/cimhost/cimxml/ReplyChecker.h"
#include "tests/cimhost/cimxml/Requests.h"
#include "tests/cimhost/cimxml/TestSchema.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace {

using cimhost::Broker;
using cimhost::BrokerLog;
using cimhost::CimXmlHandler;
using cimhost::fillTestSchema;
using cimhost::fillUpCalls;
using cimhost::isWellFormedXml;
using cimhost::ModuleHost;
using cimhost::MofReader;
using cimhost::Operations;
using cimhost::problemOfReply;
using cimhost::RecordingReply;
using cimhost::Repository;
using cimhost::Tag;
using cimhost::TestRequest;
using cimhost::XmlDocument;
using cimhost::XmlError;

class SilentLog : public BrokerLog {
    void write(Level, std::string_view, std::string_view) noexcept override {}
};

Repository makeRepository() {
    Repository repository;
    fillTestSchema(repository);
    MofReader(repository, "root/test")
        .readText(R"(
instance of TEST_Pump { Id = "p1"; Count = 7; Flow = 1.5; };
instance of TEST_Pump { Id = "p2"; Flow = 2.0; };
instance of TEST_Link { Antecedent = "TEST_Pump.Id=\"p1\""; Dependent = "TEST_Pump.Id=\"p2\""; };
)",
                  "instances");
    return repository;
}

/// An object manager without modules.
struct Manager {
    Repository repository = makeRepository();
    SilentLog log;
    Broker broker{repository, log, fillUpCalls};
    ModuleHost modules{broker, {}, {}};
    Operations operations{broker, modules};
    CimXmlHandler handler{operations, repository};

    Manager() { broker.setOperations(&operations); }
};

/// The value of the attribute NAME behind this tag, as the header that must go with it says.
std::string nameBehind(std::string_view text, std::string_view tag) {
    const std::size_t at = text.find(tag);
    if (at == std::string_view::npos) return {};
    std::string_view name = text.substr(at + tag.size());
    return std::string(name.substr(0, name.find('"')));
}

TestRequest requestWith(std::string_view body) {
    return {{{"CIMOperation", "MethodCall"},
             {"CIMMethod", nameBehind(body, "METHODCALL NAME=\"")},
             {"CIMObject", "root/test"}},
            std::string(body)};
}

void compareParsers(std::string_view text) {
    try {
        const XmlDocument document(text, {Tag::cim});
    } catch (const XmlError&) {
        return;
    }
    require(isWellFormedXml(text), "the other parser takes it too");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const Manager manager;
    const std::string_view body(reinterpret_cast<const char*>(data), size);
    compareParsers(body);
    const TestRequest request = requestWith(body);
    RecordingReply reply;
    manager.handler.handle(request.view(), reply);
    if (reply.status.has_value()) return 0;
    const std::string problem = problemOfReply(reply.body);
    require(problem.empty(), ("the reply is valid: " + problem + "\n" + reply.body).c_str());
    return 0;
}
