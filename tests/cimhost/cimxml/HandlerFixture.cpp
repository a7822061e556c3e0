#include "tests/cimhost/cimxml/HandlerFixture.h"

#include "cimhost/cimxml/XmlDocument.h"
#include "cimhost/mof/MofReader.h"
#include "cimhost/operations/UpCalls.h"
#include "tests/cimhost/cimxml/ReplyChecker.h"
#include "tests/cimhost/cimxml/TestSchema.h"

namespace cimhost {
namespace {

constexpr std::string_view staticInstances = R"(
instance of TEST_Pump { Id = "p1"; Count = 7; Flow = 1.5; };
instance of TEST_Pump { Id = "p2"; Flow = 2.0; };
instance of TEST_Only { Name = "alone"; };
instance of TEST_Link { Antecedent = "TEST_Pump.Id=\"p1\""; Dependent = "TEST_Pump.Id=\"p2\""; Note = "n"; };
)";

Repository makeRepository() {
    Repository repository;
    fillTestSchema(repository);
    MofReader(repository, "root/test").readText(staticInstances, "instances");
    return repository;
}

Registrations makeRegistrations() {
    Registrations registrations;
    registrations.readText("TEST_Fan root/test TestProvider Test instance method\n",
                           "registrations");
    return registrations;
}

std::string attributeOf(std::string_view text, std::string_view name) {
    const std::string open = std::string(name) + "=\"";
    const std::size_t begin = text.find(open) + open.size();
    return std::string(text.substr(begin, text.find('"', begin) - begin));
}

std::string unescaped(const std::string& text) {
    const std::string xml = "<VALUE>" + text + "</VALUE>";
    return std::string(XmlDocument(xml, {Tag::value}).root().text());
}

}  // namespace

HandlerTest::HandlerTest()
    : repository(makeRepository()),
      _broker(repository, _log, fillUpCalls),
      provider(_broker),
      _modules(_broker, makeRegistrations(), {}),
      _operations(_broker, _modules),
      _handler(_operations, repository) {
    _modules.addStatic("Test", provider.module());
    _broker.setOperations(&_operations);
    provider.instances = {fan("f1"), fan("f2")};
}

Instance HandlerTest::fan(std::string_view id) {
    Instance fan;
    fan.path.nameSpace = "root/test";
    fan.path.className = "TEST_Fan";
    fan.path.setKey("Id", Value::string(std::string(id)));
    fan.set("Id", Value::string(std::string(id)));
    fan.set("Count", Value::unsignedInteger(CimType::uint32, 3));
    fan.set("Running", Value::boolean(true));
    return fan;
}

RecordingReply HandlerTest::handle(const TestRequest& request) const {
    RecordingReply reply;
    _handler.handle(request.view(), reply);
    return reply;
}

std::string HandlerTest::answer(const TestRequest& request) const {
    const RecordingReply reply = handle(request);
    EXPECT_EQ(reply.status, std::nullopt) << reply.cimError;
    EXPECT_EQ(reply.failureCode, std::nullopt);
    EXPECT_EQ(problemOfReply(reply.body), "") << reply.body;
    const std::string name = request.headers.at("CIMMethod");
    const std::string kind = request.body.find("<IMETHODCALL") != std::string::npos
                                 ? "IMETHODRESPONSE"
                                 : "METHODRESPONSE";
    const std::string head =
        "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<CIM CIMVERSION=\"2.0\" DTDVERSION=\"2.0\">"
        "<MESSAGE ID=\"4711\" PROTOCOLVERSION=\"1.0\"><SIMPLERSP><" +
        kind + " NAME=\"" + name + "\">";
    const std::string tail = "</" + kind + "></SIMPLERSP></MESSAGE></CIM>\n";
    EXPECT_TRUE(reply.body.starts_with(head)) << reply.body;
    EXPECT_TRUE(reply.body.ends_with(tail)) << reply.body;
    return reply.body.substr(head.size(), reply.body.size() - head.size() - tail.size());
}

std::string HandlerTest::error(const TestRequest& request) const {
    const std::string text = answer(request);
    if (!text.starts_with("<ERROR ")) return "no error: " + text;
    return attributeOf(text, "CODE") + ": " + unescaped(attributeOf(text, "DESCRIPTION"));
}

int HandlerTest::errorCode(const TestRequest& request) const {
    const std::string text = error(request);
    return text.starts_with("no") ? 0 : std::stoi(text);
}

}  // namespace cimhost
