#include "cimhost/cimxml/Message.h"

#include "tests/cimhost/cimxml/Requests.h"

#include <gtest/gtest.h>

#include <string>

namespace cimhost {
namespace {

/// "400 header-mismatch" and the like, or "accepted".
std::string outcome(const TestRequest& request) {
    const CimXmlRequest view = request.view();
    const auto text = [](const Refusal& refusal) {
        return std::to_string(refusal.status) + " " + std::string(refusal.cimError);
    };
    if (const std::optional<Refusal> refusal = checkHeaders(view)) return text(*refusal);
    try {
        const XmlDocument document(view.body, {Tag::cim});
        readMessage(view, document);
        return "accepted";
    } catch (const Refusal& refusal) {
        return text(refusal);
    }
}

TestRequest getClass() {
    return intrinsic("GetClass", parameter("ClassName", "<CLASSNAME NAME='C'/>"));
}

std::string replaced(std::string text, std::string_view from, std::string_view to) {
    const std::size_t place = text.find(from);
    EXPECT_NE(place, std::string::npos) << from;
    return text.replace(place, from.size(), to);
}

TEST(Message, TellsIdNameAndKindOfTheCall) {
    const TestRequest request = getClass();
    const XmlDocument document(request.body, {Tag::cim});
    const Message message = readMessage(request.view(), document);
    EXPECT_EQ(message.id, "4711");
    EXPECT_EQ(message.name, "GetClass");
    EXPECT_TRUE(message.isIntrinsic);
    EXPECT_EQ(message.call.tag(), Tag::intrinsicCall);

    const TestRequest method = extrinsic("GetClass", "<CLASSNAME NAME='C'/>", "root/test:C");
    const XmlDocument methodDocument(method.body, {Tag::cim});
    EXPECT_FALSE(readMessage(method.view(), methodDocument).isIntrinsic);
}

std::string classAskedFor(const TestRequest& request) {
    const XmlDocument document(request.body, {Tag::cim});
    return std::string(classAskedFor(readMessage(request.view(), document)));
}

TEST(Message, TellsTheClassThatIsAskedFor) {
    EXPECT_EQ(classAskedFor(getClass()), "C");
    const std::string path = instanceName("TST_Fan", "Name", "a");
    EXPECT_EQ(classAskedFor(intrinsic("GetInstance", parameter("instancename", path))), "TST_Fan");
    EXPECT_EQ(classAskedFor(intrinsic("Associators",
                                      parameter("AssocClass", "<CLASSNAME NAME='TST_Cools'/>") +
                                          parameter("ObjectName", path))),
              "TST_Fan");
    EXPECT_EQ(classAskedFor(intrinsic("CreateInstance",
                                      parameter("NewInstance", "<INSTANCE CLASSNAME='TST_Fan'/>"))),
              "TST_Fan");
    EXPECT_EQ(
        classAskedFor(intrinsic("ModifyInstance",
                                parameter("ModifiedInstance", "<VALUE.NAMEDINSTANCE>" + path +
                                                                  "<INSTANCE CLASSNAME='TST_Fan'/>"
                                                                  "</VALUE.NAMEDINSTANCE>"))),
        "TST_Fan");
    EXPECT_EQ(classAskedFor(extrinsic("Stop", path, "root/test:TST_Fan.Name=\"a\"")), "TST_Fan");
    EXPECT_EQ(classAskedFor(extrinsic("Stop", "<CLASSNAME NAME='TST_Fan'/>", "root/test:TST_Fan")),
              "TST_Fan");
    EXPECT_EQ(classAskedFor(intrinsic("EnumerateQualifiers")), "");
    EXPECT_EQ(classAskedFor(intrinsic("GetInstance", parameter("InstanceName", ""))), "");
}

TEST(Message, NeedsTheOperationHeader) {
    TestRequest request = getClass();
    for (const char* const value : {"MethodCall", "methodcall", "METHODCALL"}) {
        request.headers["CIMOperation"] = value;
        EXPECT_EQ(outcome(request), "accepted");
    }
    for (const char* const value : {"", "MethodResponse", "MethodCal", "MethodCall2"}) {
        request.headers["CIMOperation"] = value;
        EXPECT_EQ(outcome(request), "400 unsupported-operation") << value;
    }
    request.headers.erase("CIMOperation");
    EXPECT_EQ(outcome(request), "400 ");
}

TEST(Message, TakesXmlInUtf8ByWhateverNameItComes) {
    TestRequest request = getClass();
    for (const char* const value :
         {"application/xml", "text/xml", "Text/XML", "application/xml; charset=utf-8",
          "application/xml;charset=\"UTF-8\"", "text/xml ; Charset = utf-8", "text/xml; q=1",
          "text/xml; charset=us-ascii", "text/xml;"}) {
        request.headers["Content-Type"] = value;
        EXPECT_EQ(outcome(request), "accepted") << value;
    }
    request.headers.erase("Content-Type");
    EXPECT_EQ(outcome(request), "accepted") << "a client that does not say";
}

TEST(Message, RefusesWhatCallsItselfNoXmlInUtf8) {
    TestRequest request = getClass();
    for (const char* const value :
         {"", "text/plain", "text/xmlx", "application/json", "application/x-www-form-urlencoded",
          "application/xml; charset=utf-16", "text/xml; q=1; charset=\"iso-8859-1\"",
          "text/xml; charset", "text/xml; charset=\"", "; application/xml"}) {
        request.headers["Content-Type"] = value;
        EXPECT_EQ(outcome(request), "415 ") << value;
    }
    request.headers.erase("CIMOperation");
    EXPECT_EQ(outcome(request), "400 ") << "what is no CIM request at all comes first";
}

TEST(Message, NeedsTheMethodHeaderOfItsBody) {
    TestRequest request = getClass();
    for (const char* const value : {"GetClass", "getclass", "Get%43lass"}) {
        request.headers["CIMMethod"] = value;
        EXPECT_EQ(outcome(request), "accepted") << value;
    }
    for (const char* const value : {"", "GetInstance", "GetClas", "GetClass "}) {
        request.headers["CIMMethod"] = value;
        EXPECT_EQ(outcome(request), "400 header-mismatch") << value;
    }
    request.headers.erase("CIMMethod");
    EXPECT_EQ(outcome(request), "400 header-mismatch");
}

TEST(Message, NeedsTheObjectHeaderOfItsBody) {
    TestRequest request = getClass();
    for (const char* const value : {"root/test", "root%2Ftest", "Root%2ftest", "/root/test"}) {
        request.headers["CIMObject"] = value;
        EXPECT_EQ(outcome(request), "accepted") << value;
    }
    for (const char* const value : {"", "root", "root/tes", "root/test:C", "root%252Ftest"}) {
        request.headers["CIMObject"] = value;
        EXPECT_EQ(outcome(request), "400 header-mismatch") << value;
    }
    request.headers.erase("CIMObject");
    EXPECT_EQ(outcome(request), "400 header-mismatch");
}

TEST(Message, ComparesTheObjectOfAMethodCallAsAPath) {
    const std::string target =
        "<INSTANCENAME CLASSNAME='C'><KEYBINDING NAME='Id'><KEYVALUE>50%41</KEYVALUE></KEYBINDING>"
        "<KEYBINDING NAME='B'><KEYVALUE "
        "VALUETYPE='boolean'>TRUE</KEYVALUE></KEYBINDING></INSTANCENAME>";
    for (const char* const value :
         {"root/test:C.B=TRUE,Id=\"50%41\"", "root%2Ftest%3AC.Id=\"50%2541\",B=true"}) {
        EXPECT_EQ(outcome(extrinsic("M", target, value)), "accepted") << value;
    }
    for (const char* const value : {"root/test", "root/test:C", "root/test:C.Id=\"50A\",B=TRUE"}) {
        EXPECT_EQ(outcome(extrinsic("M", target, value)), "400 header-mismatch") << value;
    }
    EXPECT_EQ(outcome(extrinsic("M", "<CLASSNAME NAME='C'/>", "root%2Ftest%3AC")), "accepted");
    EXPECT_EQ(outcome(extrinsic("M", "<CLASSNAME NAME='C'/>", "root%2Ftest%3AD")),
              "400 header-mismatch");
}

TEST(Message, AcceptsEveryMinorVersion) {
    TestRequest request = getClass();
    request.body = replaced(request.body, "CIMVERSION=\"2.0\"", "CIMVERSION=\"2.8\"");
    request.body = replaced(request.body, "DTDVERSION=\"2.0\"", "DTDVERSION=\"2.4\"");
    request.body = replaced(request.body, "PROTOCOLVERSION=\"1.0\"", "PROTOCOLVERSION=\"1.4\"");
    request.headers["CIMProtocolVersion"] = "1.4";
    EXPECT_EQ(outcome(request), "accepted");
}

TEST(Message, KnowsWhetherTheClientReadsTypesOfKeys) {
    const auto wantsTypedKeys = [](const std::string& body) {
        TestRequest request = intrinsic("GetInstance");
        request.body = body;
        const XmlDocument document(request.body, TagSet{Tag::cim});
        return readMessage(request.view(), document).wantsTypedKeys;
    };
    const std::string plain = getInstanceRequest();
    EXPECT_FALSE(wantsTypedKeys(plain));
    for (const std::string version : {"2.4", "2.5", "2.10", "2.99999999999999999999"}) {
        EXPECT_TRUE(
            wantsTypedKeys(replaced(plain, "DTDVERSION=\"2.0\"", "DTDVERSION=\"" + version + "\"")))
            << version;
    }
    EXPECT_FALSE(wantsTypedKeys(replaced(plain, "DTDVERSION=\"2.0\"", "DTDVERSION=\"2.3.1\"")));
    EXPECT_TRUE(wantsTypedKeys(replaced(plain, "<KEYVALUE ", "<KEYVALUE TYPE=\"string\" ")));
}

TEST(Message, RefusesOtherVersions) {
    for (const std::string version :
         {"3.0", "1.0", "", "2", "2.", "20.0", "2.0x", " 2.0", "2.3.", "2..3", "2.3.1.0"}) {
        TestRequest request = getClass();
        request.body =
            replaced(request.body, "CIMVERSION=\"2.0\"", "CIMVERSION=\"" + version + "\"");
        EXPECT_EQ(outcome(request), "501 unsupported-cim-version") << version;
        request = getClass();
        request.body =
            replaced(request.body, "DTDVERSION=\"2.0\"", "DTDVERSION=\"" + version + "\"");
        EXPECT_EQ(outcome(request), "501 unsupported-dtd-version") << version;
    }
    for (const std::string version : {"2.0", "0.9", "", "1", "1.x"}) {
        TestRequest request = getClass();
        request.body = replaced(request.body, "PROTOCOLVERSION=\"1.0\"",
                                "PROTOCOLVERSION=\"" + version + "\"");
        EXPECT_EQ(outcome(request), "501 unsupported-protocol-version") << version;
        request = getClass();
        request.headers["CIMProtocolVersion"] = version;
        EXPECT_EQ(outcome(request), "501 unsupported-protocol-version") << version;
    }
}

TEST(Message, RefusesMultipleRequests) {
    TestRequest request = getClass();
    const std::size_t begin = request.body.find("<SIMPLEREQ>");
    const std::size_t end = request.body.find("</MESSAGE>");
    const std::string simple = request.body.substr(begin, end - begin);
    request.body = envelope("<MULTIREQ>" + simple + simple + "</MULTIREQ>");
    EXPECT_EQ(outcome(request), "501 multiple-requests-unsupported");
}

TEST(Message, PassesOverCorrelators) {
    TestRequest request = getClass();
    request.body =
        replaced(request.body, "<SIMPLEREQ>",
                 "<SIMPLEREQ><CORRELATOR NAME='c' TYPE='string'><VALUE>1</VALUE></CORRELATOR>");
    EXPECT_EQ(outcome(request), "accepted");
}

}  // namespace
}  // namespace cimhost
