#include "cimhost/cimxml/Handler.h"

#include "cimhost/repository/CimError.h"
#include "tests/cimhost/cimxml/HandlerFixture.h"
#include "tests/cimhost/cimxml/ReplyChecker.h"
#include "tests/cimhost/cimxml/Requests.h"

#include <gmock/gmock.h>

#include <stdexcept>
#include <vector>

namespace cimhost {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

TestRequest enumerateFans() {
    return intrinsic("EnumerateInstances", parameter("ClassName", "<CLASSNAME NAME='TEST_Fan'/>"));
}

TEST_F(HandlerTest, EchoesIdAndNameOfTheRequest) {
    TestRequest request = intrinsic("enumeratequalifiers");
    const std::size_t id = request.body.find("4711");
    request.body.replace(id, 4, "a&lt;b&quot;&#233;");
    const RecordingReply reply = handle(request);
    EXPECT_THAT(reply.body,
                HasSubstr("<MESSAGE ID=\"a&lt;b&quot;\xC3\xA9\" PROTOCOLVERSION=\"1.0\">"));
    EXPECT_THAT(reply.body, HasSubstr("<IMETHODRESPONSE NAME=\"enumeratequalifiers\">"));
    EXPECT_EQ(problemOfReply(reply.body), "");
}

TEST_F(HandlerTest, RefusesWhatIsNoCimRequestWithoutABody) {
    TestRequest request = enumerateFans();
    request.headers.erase("CIMOperation");
    RecordingReply reply = handle(request);
    EXPECT_EQ(reply.status, 400);
    EXPECT_EQ(reply.cimError, "");
    EXPECT_EQ(reply.body, "");

    request = enumerateFans();
    request.headers["CIMObject"] = "root/elsewhere";
    reply = handle(request);
    EXPECT_EQ(reply.status, 400);
    EXPECT_EQ(reply.cimError, "header-mismatch");

    request = enumerateFans();
    request.body = "<CIM";
    reply = handle(request);
    EXPECT_EQ(reply.status, 400);
    EXPECT_EQ(reply.cimError, "request-not-well-formed");

    request.body = "<CIM/>";
    reply = handle(request);
    EXPECT_EQ(reply.status, 400);
    EXPECT_EQ(reply.cimError, "request-not-valid");

    request = enumerateFans();
    request.body.replace(request.body.find("CIMVERSION=\"2.0\""), 16, "CIMVERSION=\"3.0\"");
    reply = handle(request);
    EXPECT_EQ(reply.status, 501);
    EXPECT_EQ(reply.cimError, "unsupported-cim-version");
    EXPECT_EQ(reply.body, "");
}

struct HostileBody {
    const char* what;
    std::string body;
    const char* cimError;
};

std::vector<HostileBody> hostileBodies() {
    const std::string good = intrinsicRequest("EnumerateQualifiers");
    const std::string call = "<SIMPLEREQ><IMETHODCALL NAME='EnumerateQualifiers'>";
    const auto inCall = [&](const std::string& inside) {
        return envelope(call + inside + "</IMETHODCALL></SIMPLEREQ>");
    };
    std::string withNul = good;
    withNul[100] = '\0';
    std::string latin = good;
    latin.insert(latin.find("root"), "\xE9");
    std::string utf16;
    for (const char character : good) utf16 += {character, '\0'};
    constexpr const char* syntax = "request-not-well-formed";
    constexpr const char* content = "request-not-valid";
    return {
        {"empty", "", syntax},
        {"blank", " \r\n", syntax},
        {"binary", "\x7F\x45\x4C\x46\x02\x01\x01", syntax},
        {"zeros", std::string(4096, '\0'), syntax},
        {"JSON", "{\"CIM\": 1}", syntax},
        {"cut in half", good.substr(0, good.size() / 2), syntax},
        {"second root", good + "<x/>", syntax},
        {"text behind", good + "x", syntax},
        {"crossed tags", envelope("<SIMPLEREQ><IMETHODCALL NAME='x'></SIMPLEREQ></IMETHODCALL>"),
         syntax},
        {"attribute twice", envelope("<SIMPLEREQ a='1' a='2'/>"), syntax},
        {"attribute without quotes", envelope("<SIMPLEREQ a=1/>"), syntax},
        {"bare ampersand", inCall("<NAMESPACE NAME='a&b'/>"), syntax},
        {"unknown entity", inCall("<NAMESPACE NAME='&x;'/>"), syntax},
        {"NUL byte", withNul, syntax},
        {"control character", inCall("\x02"), syntax},
        {"ISO 8859-1", latin, syntax},
        {"UTF-16", utf16, syntax},
        {"UTF-16 with mark", "\xFF\xFE" + utf16, syntax},
        {"UTF-7 declared", "<?xml version='1.0' encoding='UTF-7'?><CIM/>", content},
        {"DTD", "<!DOCTYPE CIM SYSTEM 'http://localhost/x'>" + good.substr(good.find("<CIM")),
         content},
        {"entity bomb",
         "<!DOCTYPE CIM [<!ENTITY a 'ha'><!ENTITY b '&a;&a;&a;&a;'><!ENTITY c "
         "'&b;&b;&b;&b;'>]><CIM>&c;"
         "</CIM>",
         content},
        {"external entity", "<!DOCTYPE CIM [<!ENTITY a SYSTEM '/etc/passwd'>]><CIM>&a;</CIM>",
         content},
        {"HTML", "<html><body>hello</body></html>", content},
        {"SOAP",
         "<s:Envelope xmlns:s='http://www.w3.org/2003/05/soap-envelope'><s:Body/></s:Envelope>",
         content},
        {"too deep", repeated("<CIM>", 100'000), content},
        {"too deep, valid so far",
         envelope(
             call +
             repeated("<INSTANCENAME CLASSNAME='a'><KEYBINDING NAME='b'><VALUE.REFERENCE>", 1'000)),
         content},
        {"100 000 attributes",
         [] {
             std::string text = "<CIM";
             for (int i = 0; i < 100'000; ++i) text += " a" + std::to_string(i) + "='1'";
             return text + "/>";
         }(),
         content},
        {"endless name", "<" + std::string(1'000'000, 'C') + "/>", content},
        {"endless attribute", "<CIM CIMVERSION='" + std::string(9'000'000, '2') + "'/>", content},
        {"a million elements", "<CIM>" + repeated("<a/>", 1'000'000) + "</CIM>", content},
        {"unknown element", inCall(nameSpacePath() + "<FOO/>"), content},
        {"wrong nesting", envelope("<IMETHODCALL NAME='x'><SIMPLEREQ/></IMETHODCALL>"), content},
        {"missing attribute", envelope("<SIMPLEREQ><IMETHODCALL/></SIMPLEREQ>"), content},
        {"no namespace", inCall("<LOCALNAMESPACEPATH/>"), content},
        {"no call", envelope("<SIMPLEREQ/>"), content},
        {"two calls",
         envelope("<SIMPLEREQ>" +
                  repeated("<IMETHODCALL NAME='x'><LOCALNAMESPACEPATH>"
                           "<NAMESPACE NAME='a'/></LOCALNAMESPACEPATH>"
                           "</IMETHODCALL>",
                           2) +
                  "</SIMPLEREQ>"),
         content},
        {"a response", envelope("<SIMPLERSP/>"), content},
        {"an indication", envelope("<SIMPLEEXPREQ/>"), content},
        {"text among elements", inCall("hello" + nameSpacePath()), content},
    };
}

TEST_F(HandlerTest, AnswersHostileBodiesWith400AndTheirKind) {
    TestRequest request = intrinsic("EnumerateQualifiers");
    const std::string good = request.body;
    for (const HostileBody& hostile : hostileBodies()) {
        request.body = hostile.body;
        const RecordingReply reply = handle(request);
        EXPECT_EQ(reply.status, 400) << hostile.what;
        EXPECT_EQ(reply.cimError, hostile.cimError) << hostile.what;
        EXPECT_EQ(reply.body, "") << hostile.what;
        request.body = good;
        EXPECT_THAT(answer(request), StartsWith("<IRETURNVALUE>")) << "after " << hostile.what;
    }
}

TEST_F(HandlerTest, SurvivesEverySingleChangedByte) {
    TestRequest request = intrinsic("GetInstance");
    const std::string good = getInstanceRequest();
    for (std::size_t place = 0; place < good.size(); ++place) {
        for (const char byte : {'\0', '\x7F', '\x80', '\xFF', '<', '"'}) {
            request.body = good;
            request.body[place] = byte;
            const RecordingReply reply = handle(request);
            ASSERT_NE(reply.status.has_value(), !reply.body.empty()) << place;
            if (!reply.status) {
                ASSERT_EQ(problemOfReply(reply.body), "") << reply.body;
            }
        }
    }
}

TEST_F(HandlerTest, AnswersUnknownOperationsWithNotSupported) {
    EXPECT_EQ(error(intrinsic("Reboot")), "7: operation Reboot is not supported");
    EXPECT_EQ(error(intrinsic("deleteclass")),
              "7: operation deleteclass is not supported: classes and qualifiers come from the MOF "
              "files that the server is started with; change those and start it again");
    for (const char* const name :
         {"CreateClass", "ModifyClass", "DeleteClass", "SetQualifier", "DeleteQualifier",
          "OpenEnumerateInstances", "OpenEnumerateInstancePaths", "OpenAssociatorInstances",
          "OpenAssociatorInstancePaths", "OpenReferenceInstances", "OpenReferenceInstancePaths",
          "OpenQueryInstances", "PullInstancesWithPath", "PullInstancePaths", "PullInstances",
          "CloseEnumeration", "EnumerationCount"}) {
        EXPECT_EQ(errorCode(intrinsic(name)), 7) << name;
    }
}

TEST_F(HandlerTest, RefusesToChangeClassesWhateverTheirContent) {
    const std::string newClass =
        "<CLASS NAME='X' SUPERCLASS='Y'><QUALIFIER NAME='Abstract' "
        "TYPE='boolean'><VALUE>true</VALUE>"
        "</QUALIFIER><PROPERTY NAME='p' TYPE='uint8'/><PROPERTY.ARRAY NAME='a' TYPE='uint8'/>"
        "<PROPERTY.REFERENCE NAME='r' REFERENCECLASS='Y'/><METHOD NAME='m' TYPE='uint32'>"
        "<PARAMETER NAME='p' TYPE='uint8'/><PARAMETER.ARRAY NAME='q' TYPE='uint8'/>"
        "<PARAMETER.REFERENCE NAME='r'/><PARAMETER.REFARRAY NAME='s'/></METHOD></CLASS>";
    EXPECT_EQ(errorCode(intrinsic("CreateClass", parameter("NewClass", newClass))), 7);
    EXPECT_EQ(errorCode(intrinsic(
                  "SetQualifier",
                  parameter("QualifierDeclaration",
                            "<QUALIFIER.DECLARATION NAME='q' TYPE='boolean'><SCOPE CLASS='true'/>"
                            "<VALUE>true</VALUE></QUALIFIER.DECLARATION>"))),
              7);
}

TEST_F(HandlerTest, AnswersUnknownNamespacesWithInvalidNamespace) {
    EXPECT_EQ(errorCode(intrinsic("EnumerateQualifiers", "", "root/nowhere")), 3);
    EXPECT_EQ(errorCode(intrinsic("EnumerateInstanceNames", "", "interop")), 3);
    EXPECT_EQ(errorCode(intrinsic("Reboot", "", "root/nowhere")), 7);
    EXPECT_EQ(errorCode(intrinsic("EnumerateQualifiers", "", "ROOT/Test")), 0);
}

TEST_F(HandlerTest, AnswersUnknownAndMissingParametersWithInvalidParameter) {
    for (const char* const name :
         {"GetInstance", "EnumerateInstances", "EnumerateInstanceNames", "CreateInstance",
          "ModifyInstance", "DeleteInstance", "GetProperty", "SetProperty", "ExecQuery",
          "Associators", "AssociatorNames", "References", "ReferenceNames", "GetClass",
          "EnumerateClasses", "EnumerateClassNames", "GetQualifier", "EnumerateQualifiers"}) {
        EXPECT_EQ(error(intrinsic(name, parameter("Bogus", "<VALUE>1</VALUE>"))),
                  "4: " + std::string(name) + " has no parameter Bogus");
        if (!std::string_view(name).starts_with("EnumerateClass") &&
            std::string_view(name) != "EnumerateQualifiers") {
            EXPECT_THAT(error(intrinsic(name)), testing::MatchesRegex("4: parameter .* is missing"))
                << name;
        }
    }
}

TEST_F(HandlerTest, HandsOnWhoAsks) {
    answer(enumerateFans());
    EXPECT_EQ(provider.principal, "tester");
}

TEST_F(HandlerTest, EscapesTheDescriptionOfAFailure) {
    provider.failAfter = 0;
    EXPECT_EQ(error(enumerateFans()), "1: the fans are \"out\" & <gone>");
    provider.failureCode = CMPI_RC_ERR_ACCESS_DENIED;
    EXPECT_EQ(errorCode(enumerateFans()), 2);
}

TEST_F(HandlerTest, NotesHowAnOperationFailed) {
    EXPECT_EQ(handle(enumerateFans()).notedCode, std::nullopt);
    EXPECT_EQ(handle(intrinsic("EnumerateQualifiers", "", "root/nowhere")).notedCode, 3);
    for (int i = 0; i < 2000; ++i) provider.instances.push_back(fan("g" + std::to_string(i)));
    provider.failAfter = 2000;
    provider.failureCode = CMPI_RC_ERR_ACCESS_DENIED;
    EXPECT_EQ(handle(enumerateFans()).notedCode, 2) << "too late for the reply itself";
}

TEST_F(HandlerTest, DescribesAFailureWithoutTextByItsName) {
    provider.failAfter = 0;
    provider.failureText.clear();
    provider.failureCode = CMPI_RC_ERR_ACCESS_DENIED;
    EXPECT_THAT(error(enumerateFans()), StartsWith("2: CIM_ERR_ACCESS_DENIED"));
}

TEST_F(HandlerTest, AnswersExceptionsOfProvidersWithFailed) {
    provider.failAfter = 1;
    provider.beforeFailure = [] { throw std::runtime_error("burnt out"); };
    EXPECT_THAT(error(enumerateFans()), HasSubstr("burnt out"));
    EXPECT_EQ(errorCode(enumerateFans()), 1);
    provider.beforeFailure = [] { throw 42; };
    EXPECT_EQ(errorCode(enumerateFans()), 1);
}

TEST_F(HandlerTest, TakesBackResultsBeforeAnErrorThatComesInTime) {
    provider.failAfter = 2;
    EXPECT_EQ(errorCode(enumerateFans()), 1);
    provider.instances.clear();
    for (int i = 0; i < 150; ++i) provider.instances.push_back(fan("f" + std::to_string(i)));
    provider.failAfter = 150;
    EXPECT_EQ(errorCode(enumerateFans()), 1);
}

TEST_F(HandlerTest, EndsTheReplyWithAnErrorThatComesTooLate) {
    for (int i = 0; i < 2000; ++i) provider.instances.push_back(fan("g" + std::to_string(i)));
    provider.failAfter = 2000;
    const RecordingReply reply = handle(enumerateFans());
    EXPECT_EQ(reply.failureCode, 1);
    EXPECT_EQ(reply.failureText, "the fans are \"out\" & <gone>");
    EXPECT_GT(reply.body.size(), 64U * 1024);
    EXPECT_THAT(reply.body, testing::Not(HasSubstr("<ERROR")));
}

TEST_F(HandlerTest, StreamsManyInstancesInSmallPieces) {
    provider.instances.clear();
    for (int i = 0; i < 10'000; ++i) provider.instances.push_back(fan("fan " + std::to_string(i)));
    const RecordingReply reply = handle(enumerateFans());
    EXPECT_GT(reply.body.size(), 3'000'000U);
    EXPECT_GT(reply.writes, 100U);
    EXPECT_LT(reply.largestWrite, 64U * 1024);
    EXPECT_EQ(problemOfReply(reply.body), "");
    EXPECT_EQ(reply.failureCode, std::nullopt);
}

class ClientGone : public std::runtime_error {
public:
    ClientGone() : std::runtime_error("the client is gone") {}
};

class BrokenReply final : public RecordingReply {
public:
    explicit BrokenReply(std::size_t takes) : _takes(takes) {}

    void write(std::string_view text) override {
        if (writes == _takes) throw ClientGone();
        RecordingReply::write(text);
    }

private:
    std::size_t _takes;
};

TEST_F(HandlerTest, PassesOnWhatTheReplyThrows) {
    for (int i = 0; i < 2000; ++i) provider.instances.push_back(fan("g" + std::to_string(i)));
    const TestRequest request = enumerateFans();
    for (const std::size_t takes : {0UL, 1UL, 5UL}) {
        BrokenReply reply(takes);
        EXPECT_THROW(handler().handle(request.view(), reply), ClientGone);
        EXPECT_EQ(reply.failureCode, std::nullopt);
        EXPECT_EQ(reply.writes, takes);
    }
    provider.failAfter = 0;
    BrokenReply reply(0);
    EXPECT_THROW(handler().handle(request.view(), reply), ClientGone);
}

/// Has room for so many writes, and holds back what it says.
class FullReply final : public RecordingReply {
public:
    FullReply(std::size_t takes, std::size_t hold) : RecordingReply(hold), _takes(takes) {}

    void write(std::string_view text) override {
        if (writes == _takes) throw CimError(CimCode::serverLimitsExceeded, "there is no room");
        RecordingReply::write(text);
    }
    bool restart() override {
        if (!RecordingReply::restart()) return false;
        _takes = body.npos;
        return true;
    }

private:
    std::size_t _takes;
};

TEST_F(HandlerTest, AnswersThatAReplyFindsNoRoom) {
    for (int i = 0; i < 2000; ++i) provider.instances.push_back(fan("g" + std::to_string(i)));
    const TestRequest request = enumerateFans();
    FullReply late(5, 0);
    handler().handle(request.view(), late);
    EXPECT_EQ(late.failureCode, 27);
    EXPECT_EQ(late.failureText, "there is no room");
    EXPECT_EQ(late.writes, 5U) << "the provider's results are wanted no more";
    FullReply early(5, 10'000'000);
    handler().handle(request.view(), early);
    EXPECT_EQ(early.failureCode, std::nullopt);
    EXPECT_EQ(early.notedCode, 27);
    EXPECT_EQ(problemOfReply(early.body), "");
    EXPECT_THAT(early.body, HasSubstr("<ERROR CODE=\"27\" DESCRIPTION=\"there is no room\"/>"));
}

}  // namespace
}  // namespace cimhost
