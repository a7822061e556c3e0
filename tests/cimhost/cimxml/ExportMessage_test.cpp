#include "cimhost/cimxml/ExportMessage.h"

#include "cimhost/cimxml/ExportHandler.h"
#include "cimhost/repository/CimError.h"
#include "tests/cimhost/cimxml/Requests.h"

#include <gmock/gmock.h>

#include <array>
#include <cstring>

namespace cimhost {
namespace {

using testing::HasSubstr;
using testing::Not;

Class alarmClass() {
    Class definition;
    definition.name = "TST_Alarm";
    for (const auto& [name, type] : std::initializer_list<std::pair<const char*, CimType>>{
             {"SequenceContext", CimType::string},
             {"SequenceNumber", CimType::sint64},
             {"IndicationFilterName", CimType::string}}) {
        auto property = std::make_shared<PropertyDefinition>();
        property->name = name;
        property->type = type;
        definition.properties.push_back(property);
    }
    return definition;
}

Instance alarm() {
    Instance indication;
    indication.path.className = "TST_Alarm";
    indication.set("Text", Value::string("<&\">"));
    indication.set("Number", Value::unsignedInteger(CimType::uint8, 7));
    return indication;
}

std::string messageOf(const Instance& indication, const Class* definition,
                      const PropertySelection& selection = {}) {
    XmlBuffer out;
    writeExportMessage(out, {indication, definition, selection, "filter", "root/test"},
                       {"context", 42, "host:1"});
    return std::string(out.view());
}

std::string answerOf(std::string_view inside) {
    return "<?xml version=\"1.0\"?><CIM CIMVERSION=\"2.0\" DTDVERSION=\"2.4\"><MESSAGE ID=\"1\" "
           "PROTOCOLVERSION=\"1.4\"><SIMPLEEXPRSP>" +
           std::string(inside) + "</SIMPLEEXPRSP></MESSAGE></CIM>";
}

TEST(ExportMessage, HoldsTheIndicationWithItsSequence) {
    const Class definition = alarmClass();
    const std::string message = messageOf(alarm(), &definition);
    EXPECT_THAT(message, HasSubstr("<MESSAGE ID=\"42\" PROTOCOLVERSION=\"1.0\"><SIMPLEEXPREQ>"
                                   "<EXPMETHODCALL NAME=\"ExportIndication\">"
                                   "<EXPPARAMVALUE NAME=\"NewIndication\">"
                                   "<INSTANCE CLASSNAME=\"TST_Alarm\">"));
    EXPECT_THAT(message, HasSubstr("<PROPERTY NAME=\"SequenceNumber\" TYPE=\"sint64\"><VALUE>42<"));
    EXPECT_THAT(message,
                HasSubstr("<PROPERTY NAME=\"SequenceContext\" TYPE=\"string\"><VALUE>context<"));
    EXPECT_THAT(message, HasSubstr("\"IndicationFilterName\" TYPE=\"string\"><VALUE>filter<"));
    EXPECT_THAT(message, HasSubstr("&lt;&amp;&quot;&gt;"));
}

TEST(ExportMessage, SetsOnlyWhatTheClassHas) {
    EXPECT_THAT(messageOf(alarm(), nullptr), Not(HasSubstr("Sequence")));
    const Class definition = alarmClass();
    Instance named = alarm();
    named.set("IndicationFilterName", Value::string("its own"));
    EXPECT_THAT(messageOf(named, &definition), HasSubstr("<VALUE>its own<"));
}

TEST(ExportMessage, TellsWhereItsReferencesLeadTo) {
    Instance indication = alarm();
    for (const char* const nameSpace : {"", "root/other"}) {
        indication.set("Source", Value::reference({"", nameSpace, "TST_Fan", {}}));
        const std::string last = *nameSpace ? "other" : "test";
        EXPECT_THAT(messageOf(indication, nullptr),
                    HasSubstr("<NAMESPACEPATH><HOST>host:1</HOST><LOCALNAMESPACEPATH>"
                              "<NAMESPACE NAME=\"root\"/><NAMESPACE NAME=\"" +
                              last + "\"/></LOCALNAMESPACEPATH></NAMESPACEPATH>"));
    }
}

TEST(ExportMessage, ShowsWhatIsSelected) {
    PropertySelection selection;
    selection.names = {"number"};
    const std::string message = messageOf(alarm(), nullptr, selection);
    EXPECT_THAT(message, HasSubstr("Number"));
    EXPECT_THAT(message, Not(HasSubstr("Text")));
}

TEST(ExportMessage, IsTakenWhenTheAnswerSaysSo) {
    EXPECT_EQ(exportFailure(answerOf("<EXPMETHODRESPONSE NAME=\"ExportIndication\"/>")),
              std::nullopt);
    EXPECT_EQ(exportFailure(answerOf("<EXPMETHODRESPONSE NAME=\"ExportIndication\"><IRETURNVALUE/>"
                                     "</EXPMETHODRESPONSE>")),
              std::nullopt);
}

TEST(ExportMessage, IsNotTakenOtherwise) {
    EXPECT_EQ(exportFailure(answerOf("<EXPMETHODRESPONSE NAME=\"ExportIndication\">"
                                     "<ERROR CODE=\"1\" DESCRIPTION=\"full\"/>"
                                     "</EXPMETHODRESPONSE>")),
              "the listener answered error 1 full");
    for (const std::string& bad :
         {std::string(), std::string("nonsense"), std::string("<CIM>"), std::string("<HTML/>"),
          answerOf(""), answerOf("<EXPMETHODRESPONSE NAME=\"Other\"/>"),
          answerOf("<IMETHODRESPONSE NAME=\"ExportIndication\"/>"),
          std::string("<EXPMETHODRESPONSE NAME=\"ExportIndication\"/>"),
          "<!DOCTYPE CIM [<!ENTITY a \"b\">]>" +
              answerOf("<EXPMETHODRESPONSE NAME=\"ExportIndication\"/>").substr(21)}) {
        EXPECT_NE(exportFailure(bad), std::nullopt) << bad;
    }
    std::string deep;
    for (int i = 0; i < 10000; ++i) deep += "<a>";
    EXPECT_NE(exportFailure(deep), std::nullopt);
}

struct ExportHandlerTest : testing::Test {
    RecordingReply handle(const std::string& body,
                          const std::map<std::string, std::string>& headers = {
                              {"Content-Type", "application/xml; charset=\"utf-8\""},
                              {"CIMExport", "MethodRequest"},
                              {"CIMExportMethod", "ExportIndication"}}) {
        RecordingReply reply;
        const auto header = [&](std::string_view name) -> std::optional<std::string_view> {
            const auto found = headers.find(std::string(name));
            if (found == headers.end()) return std::nullopt;
            return found->second;
        };
        ExportHandler([this](const Instance& instance) {
            if (isFull) throw CimError(CimCode::failed, "full");
            taken.push_back(instance);
        }).handle({header, body, {}, "host"}, reply);
        return reply;
    }

    bool isFull = false;
    std::vector<Instance> taken;
};

TEST_F(ExportHandlerTest, TakesWhatWasSent) {
    const Class definition = alarmClass();
    const RecordingReply reply = handle(messageOf(alarm(), &definition));
    EXPECT_EQ(reply.status, std::nullopt);
    EXPECT_EQ(exportFailure(reply.body), std::nullopt);
    EXPECT_THAT(reply.body, HasSubstr("<MESSAGE ID=\"42\""));
    ASSERT_EQ(taken.size(), 1U);
    EXPECT_EQ(taken[0].className(), "TST_Alarm");
    EXPECT_EQ(*taken[0].find("Text")->value.get<Text>(), "<&\">");
    EXPECT_EQ(*taken[0].find("Number")->value.get<std::uint64_t>(), 7U);
    EXPECT_EQ(*taken[0].find("SequenceNumber")->value.get<std::int64_t>(), 42);
}

TEST_F(ExportHandlerTest, AnswersErrors) {
    std::string other = messageOf(alarm(), nullptr);
    other.replace(other.find("ExportIndication"), 16, "SomethingElse123");
    EXPECT_THAT(handle(other, {{"Content-Type", "text/xml"}}).body,
                HasSubstr("<EXPMETHODRESPONSE NAME=\"SomethingElse123\"><ERROR CODE=\"7\""));
    isFull = true;
    EXPECT_EQ(exportFailure(handle(messageOf(alarm(), nullptr)).body),
              "the listener answered error 1 full");
    EXPECT_TRUE(taken.empty());
}

TEST_F(ExportHandlerTest, RefusesWhatIsNoExportRequest) {
    EXPECT_EQ(handle("<CIM").status, 400);
    EXPECT_EQ(handle("<CIM").cimError, "request-not-well-formed");
    EXPECT_EQ(handle("<CIM/>").cimError, "request-not-valid");
    EXPECT_EQ(handle(intrinsic("EnumerateQualifiers").body).cimError, "request-not-valid");
    const std::string good = messageOf(alarm(), nullptr);
    EXPECT_EQ(handle(good, {}).status, 406);
    EXPECT_EQ(handle(good, {{"Content-Type", "text/html"}}).status, 406);
    EXPECT_EQ(handle(good, {{"Content-Type", "text/xml"}, {"CIMExport", "Other"}}).status, 400);
    EXPECT_EQ(handle(good, {{"Content-Type", "text/xml"}, {"CIMExportMethod", "Other"}}).cimError,
              "header-mismatch");
    EXPECT_TRUE(taken.empty());
}

TEST_F(ExportHandlerTest, RefusesVersionsThatItDoesNotKnow) {
    const std::string good = messageOf(alarm(), nullptr);
    for (const auto& [from, to, cimError] : std::initializer_list<std::array<const char*, 3>>{
             {"CIMVERSION=\"2.0", "CIMVERSION=\"3.0", "unsupported-cim-version"},
             {"DTDVERSION=\"2.0", "DTDVERSION=\"1.0", "unsupported-dtd-version"},
             {"PROTOCOLVERSION=\"1.0", "PROTOCOLVERSION=\"2.0", "unsupported-protocol-version"}}) {
        std::string message = good;
        message.replace(message.find(from), std::strlen(from), to);
        const RecordingReply reply = handle(message);
        EXPECT_EQ(reply.status, 501);
        EXPECT_EQ(reply.cimError, cimError);
    }
    EXPECT_TRUE(taken.empty());
}

TEST_F(ExportHandlerTest, RefusesSeveralRequestsInOneMessage) {
    std::string message = messageOf(alarm(), nullptr);
    message.insert(message.find("<SIMPLEEXPREQ>"), "<MULTIEXPREQ>");
    message.insert(message.find("</MESSAGE>"), "</MULTIEXPREQ>");
    const RecordingReply reply = handle(message);
    EXPECT_EQ(reply.status, 501);
    EXPECT_EQ(reply.cimError, "multiple-requests-unsupported");
    EXPECT_TRUE(taken.empty());
}

}  // namespace
}  // namespace cimhost
