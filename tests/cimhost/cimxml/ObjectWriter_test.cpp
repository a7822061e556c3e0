#include "cimhost/cimxml/ObjectWriter.h"

#include "cimhost/repository/CimError.h"
#include "tests/cimhost/cimxml/ReplyChecker.h"
#include "tests/cimhost/cimxml/TestSchema.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace cimhost {
namespace {

ObjectPath fanPath(std::string nameSpace = "root/test") {
    ObjectPath path;
    path.nameSpace = std::move(nameSpace);
    path.className = "TEST_Fan";
    path.keys.push_back({"Id", Value::string("f<1>")});
    return path;
}

constexpr std::string_view writtenFanName =
    "<INSTANCENAME CLASSNAME=\"TEST_Fan\"><KEYBINDING NAME=\"Id\"><KEYVALUE VALUETYPE=\"string\">"
    "f&lt;1&gt;</KEYVALUE></KEYBINDING></INSTANCENAME>";

std::string writtenReference() {
    return "<VALUE.REFERENCE><INSTANCEPATH><NAMESPACEPATH><HOST>host:5988</HOST>"
           "<LOCALNAMESPACEPATH><NAMESPACE NAME=\"root\"/><NAMESPACE NAME=\"test\"/>"
           "</LOCALNAMESPACEPATH></NAMESPACEPATH>" +
           std::string(writtenFanName) + "</INSTANCEPATH></VALUE.REFERENCE>";
}

class ObjectWriterTest : public testing::Test {
protected:
    ObjectWriterTest() { fillTestSchema(_repository); }

    const Class& classOf(std::string_view name) const {
        return *_repository.get("root/test").findClass(name);
    }

    /// What the writer makes, after a check that it is as DSP0203 wants it inside `wrapper`.
    std::string written(const std::function<void(ObjectWriter&)>& write) const {
        XmlBuffer buffer;
        ObjectWriter writer(buffer, "host:5988", "root/test");
        write(writer);
        return std::string(buffer.view());
    }

    std::string value(const Value& value) const {
        return written([&](ObjectWriter& writer) { writer.value(value); });
    }

    std::string instance(const Instance& instance, const Class* definition = nullptr,
                         const PropertySelection& selection = {}, bool classOrigin = false) const {
        const std::string text = written([&](ObjectWriter& writer) {
            writer.instance(instance, definition, selection, classOrigin);
        });
        EXPECT_EQ(
            problemOfReply("<?xml version=\"1.0\" encoding=\"utf-8\"?><CIM CIMVERSION=\"2.0\" "
                           "DTDVERSION=\"2.0\"><MESSAGE ID=\"1\" PROTOCOLVERSION=\"1.0\">"
                           "<SIMPLERSP><IMETHODRESPONSE NAME=\"x\"><IRETURNVALUE>" +
                           text + "</IRETURNVALUE></IMETHODRESPONSE></SIMPLERSP></MESSAGE></CIM>"),
            "");
        return text;
    }

    std::string property(Value value, const Class* definition = nullptr,
                         std::string name = "P") const {
        Instance object;
        object.path.className = "C";
        object.properties.push_back({std::move(name), std::move(value), {}});
        const std::string text = instance(object, definition);
        constexpr std::string_view open = "<INSTANCE CLASSNAME=\"C\">";
        return text.substr(open.size(), text.size() - open.size() - 11);
    }

private:
    Repository _repository;
};

TEST_F(ObjectWriterTest, WritesScalarsAsValueElements) {
    EXPECT_EQ(value(Value::string("a<b")), "<VALUE>a&lt;b</VALUE>");
    EXPECT_EQ(value(Value::string("")), "<VALUE></VALUE>");
    EXPECT_EQ(value(Value::boolean(true)), "<VALUE>true</VALUE>");
    EXPECT_EQ(value(Value::boolean(false)), "<VALUE>false</VALUE>");
    EXPECT_EQ(value(Value::unsignedInteger(CimType::uint64, UINT64_MAX)),
              "<VALUE>18446744073709551615</VALUE>");
    EXPECT_EQ(value(Value::signedInteger(CimType::sint8, -128)), "<VALUE>-128</VALUE>");
    EXPECT_EQ(value(Value(CimType::real32, 0.5)), "<VALUE>0.5</VALUE>");
    EXPECT_EQ(value(Value::unsignedInteger(CimType::char16, '<')), "<VALUE>&lt;</VALUE>");
    EXPECT_EQ(value(Value(CimType::dateTime, std::string("20240229123456.123456+060"))),
              "<VALUE>20240229123456.123456+060</VALUE>");
    EXPECT_EQ(value(Value::null(CimType::string)), "");
}

TEST_F(ObjectWriterTest, WritesArraysWithNullElements) {
    EXPECT_EQ(value(Value::array(CimType::uint8, {})), "<VALUE.ARRAY></VALUE.ARRAY>");
    EXPECT_EQ(value(Value::array(CimType::uint8, {Value::unsignedInteger(CimType::uint8, 1),
                                                  Value::null(CimType::uint8)})),
              "<VALUE.ARRAY><VALUE>1</VALUE><VALUE.NULL/></VALUE.ARRAY>");
    EXPECT_EQ(value(Value::nullArray(CimType::uint8)), "");
    EXPECT_EQ(value(Value::array(CimType::reference, {Value::reference(fanPath())})),
              "<VALUE.REFARRAY>" + writtenReference() + "</VALUE.REFARRAY>");
}

TEST_F(ObjectWriterTest, WritesNamesWithKeysOfEveryKind) {
    ObjectPath path;
    path.className = "C";
    path.keys = {{"B", Value::boolean(true)},
                 {"U", Value::unsignedInteger(CimType::uint8, 7)},
                 {"S", Value::signedInteger(CimType::sint64, -7)},
                 {"R", Value(CimType::real64, 1.0)},
                 {"C", Value::unsignedInteger(CimType::char16, 'x')},
                 {"D", Value(CimType::dateTime, std::string("00000000000000.000000:000"))}};
    EXPECT_EQ(written([&](ObjectWriter& writer) { writer.instanceName(path); }),
              "<INSTANCENAME CLASSNAME=\"C\">"
              "<KEYBINDING NAME=\"B\"><KEYVALUE VALUETYPE=\"boolean\">true</KEYVALUE></KEYBINDING>"
              "<KEYBINDING NAME=\"U\"><KEYVALUE VALUETYPE=\"numeric\">7</KEYVALUE></KEYBINDING>"
              "<KEYBINDING NAME=\"S\"><KEYVALUE VALUETYPE=\"numeric\">-7</KEYVALUE></KEYBINDING>"
              "<KEYBINDING NAME=\"R\"><KEYVALUE VALUETYPE=\"numeric\">1.0</KEYVALUE></KEYBINDING>"
              "<KEYBINDING NAME=\"C\"><KEYVALUE VALUETYPE=\"string\">x</KEYVALUE></KEYBINDING>"
              "<KEYBINDING NAME=\"D\"><KEYVALUE VALUETYPE=\"string\">00000000000000.000000:000"
              "</KEYVALUE></KEYBINDING></INSTANCENAME>");
}

TEST_F(ObjectWriterTest, WritesANameWithoutKeysWithAnEndTag) {
    ObjectPath path;
    path.className = "TEST_Only";
    EXPECT_EQ(written([&](ObjectWriter& writer) { writer.instanceName(path); }),
              "<INSTANCENAME CLASSNAME=\"TEST_Only\"></INSTANCENAME>");
}

TEST_F(ObjectWriterTest, WritesTheTypesOfKeysWhenAskedTo) {
    XmlBuffer out;
    ObjectPath path;
    path.className = "C";
    path.keys = {{"B", Value::boolean(true)}, {"U", Value::unsignedInteger(CimType::uint8, 7)}};
    ObjectWriter(out, "host:5988", "root/test", true).instanceName(path);
    EXPECT_EQ(out.view(),
              "<INSTANCENAME CLASSNAME=\"C\"><KEYBINDING NAME=\"B\">"
              "<KEYVALUE VALUETYPE=\"boolean\" TYPE=\"boolean\">true</KEYVALUE></KEYBINDING>"
              "<KEYBINDING NAME=\"U\">"
              "<KEYVALUE VALUETYPE=\"numeric\" TYPE=\"uint8\">7</KEYVALUE></KEYBINDING>"
              "</INSTANCENAME>");
}

TEST_F(ObjectWriterTest, WritesReferencesWithTheirNamespace) {
    EXPECT_EQ(value(Value::reference(fanPath(""))), writtenReference());
    EXPECT_EQ(value(Value::reference(fanPath())), writtenReference());
}

TEST_F(ObjectWriterTest, WritesReferencesAcrossNamespacesInFull) {
    EXPECT_EQ(
        value(Value::reference(fanPath("root/other"))),
        "<VALUE.REFERENCE><INSTANCEPATH><NAMESPACEPATH><HOST>host:5988</HOST><LOCALNAMESPACEPATH>"
        "<NAMESPACE NAME=\"root\"/><NAMESPACE NAME=\"other\"/></LOCALNAMESPACEPATH>"
        "</NAMESPACEPATH>" +
            std::string(writtenFanName) + "</INSTANCEPATH></VALUE.REFERENCE>");
}

TEST_F(ObjectWriterTest, WritesKeysThatLeadOutOfTheNamespaceOfTheirPathInFull) {
    const auto isInFull = [&](std::string ofPath, std::string ofKey) {
        const ObjectPath link{
            "", std::move(ofPath), "TEST_Link", {{"A", Value::reference(fanPath(ofKey))}}};
        return written([&](ObjectWriter& writer) { writer.instanceName(link); }).find("<HOST>") !=
               std::string::npos;
    };
    EXPECT_FALSE(isInFull("", "root/test"));
    EXPECT_FALSE(isInFull("interop", "interop"));
    EXPECT_FALSE(isInFull("interop", ""));
    EXPECT_TRUE(isInFull("interop", "root/test")) << "which is that of the request";
    EXPECT_TRUE(isInFull("", "interop"));
}

TEST_F(ObjectWriterTest, WritesFullPathsWithTheRequestsNamespaceUnlessTheyHaveTheirOwn) {
    const auto path = [&](std::string nameSpace) {
        return written([&](ObjectWriter& writer) { writer.instancePath(fanPath(nameSpace)); });
    };
    EXPECT_NE(path("").find("<NAMESPACE NAME=\"root\"/><NAMESPACE NAME=\"test\"/>"),
              std::string::npos);
    EXPECT_NE(
        path("/a//b/").find("<LOCALNAMESPACEPATH><NAMESPACE NAME=\"a\"/><NAMESPACE NAME=\"b\"/>"
                            "</LOCALNAMESPACEPATH>"),
        std::string::npos);
    EXPECT_EQ(written([](ObjectWriter& writer) { writer.classPath("C"); }),
              "<CLASSPATH><NAMESPACEPATH><HOST>host:5988</HOST><LOCALNAMESPACEPATH>"
              "<NAMESPACE NAME=\"root\"/><NAMESPACE NAME=\"test\"/></LOCALNAMESPACEPATH>"
              "</NAMESPACEPATH><CLASSNAME NAME=\"C\"/></CLASSPATH>");
}

TEST_F(ObjectWriterTest, WritesTheTypeOfEveryScalarWithAndWithoutAValue) {
    for (const auto& [type, data] : std::vector<std::pair<CimType, Value::Data>>{
             {CimType::boolean, true},
             {CimType::char16, std::uint64_t{'x'}},
             {CimType::uint8, std::uint64_t{1}},
             {CimType::uint16, std::uint64_t{1}},
             {CimType::uint32, std::uint64_t{1}},
             {CimType::uint64, std::uint64_t{1}},
             {CimType::sint8, std::int64_t{-1}},
             {CimType::sint16, std::int64_t{-1}},
             {CimType::sint32, std::int64_t{-1}},
             {CimType::sint64, std::int64_t{-1}},
             {CimType::real32, 1.5},
             {CimType::real64, 1.5},
             {CimType::string, std::string("a<b")},
             {CimType::dateTime, std::string("00000000000000.000000:000")}}) {
        const std::string open = "<PROPERTY NAME=\"P\" TYPE=\"" + std::string(typeName(type));
        EXPECT_EQ(property(Value(type, data)),
                  open + "\">" + value(Value(type, data)) + "</PROPERTY>");
        EXPECT_EQ(property(Value::null(type)), open + "\"></PROPERTY>");
    }
}

TEST_F(ObjectWriterTest, WritesPropertiesWithTheTypeOfTheirValue) {
    EXPECT_EQ(property(Value::unsignedInteger(CimType::uint16, 1)),
              "<PROPERTY NAME=\"P\" TYPE=\"uint16\"><VALUE>1</VALUE></PROPERTY>");
    EXPECT_EQ(property(Value::null(CimType::dateTime)),
              "<PROPERTY NAME=\"P\" TYPE=\"datetime\"></PROPERTY>");
    EXPECT_EQ(
        property(Value::array(CimType::string, {})),
        "<PROPERTY.ARRAY NAME=\"P\" TYPE=\"string\"><VALUE.ARRAY></VALUE.ARRAY></PROPERTY.ARRAY>");
    EXPECT_EQ(property(Value::nullArray(CimType::string)),
              "<PROPERTY.ARRAY NAME=\"P\" TYPE=\"string\"></PROPERTY.ARRAY>");
    EXPECT_EQ(property(Value::reference(fanPath())),
              "<PROPERTY.REFERENCE NAME=\"P\">" + writtenReference() + "</PROPERTY.REFERENCE>");
}

TEST_F(ObjectWriterTest, AsksTheClassWhereTheValueDoesNotSay) {
    const Class& values = classOf("TEST_Values");
    EXPECT_EQ(property(Value(), &values, "U8"), "<PROPERTY NAME=\"U8\" TYPE=\"uint8\"></PROPERTY>");
    EXPECT_EQ(property(Value(), &values, "SA"),
              "<PROPERTY.ARRAY NAME=\"SA\" TYPE=\"string\"></PROPERTY.ARRAY>");
    EXPECT_EQ(property(Value(), &values, "Nope"),
              "<PROPERTY NAME=\"Nope\" TYPE=\"string\"></PROPERTY>");
    EXPECT_EQ(
        property(Value::null(CimType::reference), &values, "R"),
        "<PROPERTY.REFERENCE NAME=\"R\" REFERENCECLASS=\"TEST_Element\"></PROPERTY.REFERENCE>");
}

TEST_F(ObjectWriterTest, WritesEmbeddedInstancesAsEscapedText) {
    Instance settings;
    settings.path.className = "TEST_Settings";
    settings.set("Name", Value::string("a<b"));
    EXPECT_EQ(
        property(Value::instance(settings)),
        "<PROPERTY NAME=\"P\" TYPE=\"string\" EmbeddedObject=\"instance\"><VALUE>"
        "&lt;INSTANCE CLASSNAME=&quot;TEST_Settings&quot;&gt;&lt;PROPERTY NAME=&quot;Name&quot; "
        "TYPE=&quot;string&quot;&gt;&lt;VALUE&gt;a&amp;lt;b&lt;/VALUE&gt;&lt;/PROPERTY&gt;"
        "&lt;/INSTANCE&gt;</VALUE></PROPERTY>");
    EXPECT_EQ(property(Value::null(CimType::instance)),
              "<PROPERTY NAME=\"P\" TYPE=\"string\" EmbeddedObject=\"instance\"></PROPERTY>");
    EXPECT_EQ(property(Value::null(CimType::instance), &classOf("TEST_Fan"), "Anything"),
              "<PROPERTY NAME=\"Anything\" TYPE=\"string\" EmbeddedObject=\"object\"></PROPERTY>");
    EXPECT_EQ(property(Value::array(CimType::instance, {Value::null(CimType::instance)})),
              "<PROPERTY.ARRAY NAME=\"P\" TYPE=\"string\" EmbeddedObject=\"instance\"><VALUE.ARRAY>"
              "<VALUE.NULL/></VALUE.ARRAY></PROPERTY.ARRAY>");
}

TEST_F(ObjectWriterTest, AddsClassOriginsOnRequest) {
    Instance fan;
    fan.path.className = "TEST_Fan";
    fan.set("Id", Value::string("f"));
    fan.set("Running", Value::boolean(true));
    fan.properties.push_back({"Own", Value::boolean(true), "TEST_Own"});
    EXPECT_EQ(
        instance(fan, &classOf("TEST_Fan"), {}, true),
        "<INSTANCE CLASSNAME=\"TEST_Fan\">"
        "<PROPERTY NAME=\"Id\" TYPE=\"string\" "
        "CLASSORIGIN=\"TEST_Element\"><VALUE>f</VALUE></PROPERTY>"
        "<PROPERTY NAME=\"Running\" TYPE=\"boolean\" CLASSORIGIN=\"TEST_Fan\"><VALUE>true</VALUE>"
        "</PROPERTY>"
        "<PROPERTY NAME=\"Own\" TYPE=\"boolean\" CLASSORIGIN=\"TEST_Own\"><VALUE>true</VALUE>"
        "</PROPERTY></INSTANCE>");
    EXPECT_EQ(instance(fan, &classOf("TEST_Fan")).find("CLASSORIGIN"), std::string::npos);
}

TEST_F(ObjectWriterTest, LeavesOutWhatIsNotSelected) {
    Instance fan;
    fan.path.className = "TEST_Fan";
    fan.set("Id", Value::string("f"));
    fan.set("Running", Value::boolean(true));
    PropertySelection selection;
    selection.names = std::vector<std::string>{"RUNNING"};
    EXPECT_EQ(instance(fan, nullptr, selection),
              "<INSTANCE CLASSNAME=\"TEST_Fan\"><PROPERTY NAME=\"Running\" TYPE=\"boolean\">"
              "<VALUE>true</VALUE></PROPERTY></INSTANCE>");
    selection.names = std::vector<std::string>{};
    EXPECT_EQ(instance(fan, nullptr, selection), "<INSTANCE CLASSNAME=\"TEST_Fan\"></INSTANCE>");
}

TEST_F(ObjectWriterTest, EscapesNamesFromProviders) {
    Instance hostile;
    hostile.path.className = "C\"><x";
    hostile.path.keys.push_back({"k<", Value::string("v")});
    hostile.set("p\"&", Value::string("v"));
    EXPECT_NE(instance(hostile).find("CLASSNAME=\"C&quot;&gt;&lt;x\""), std::string::npos);
    EXPECT_NE(instance(hostile).find("NAME=\"p&quot;&amp;\""), std::string::npos);
    EXPECT_NE(written([&](ObjectWriter& writer) {
                  writer.instanceName(hostile.path);
              }).find("NAME=\"k&lt;\""),
              std::string::npos);
}

TEST_F(ObjectWriterTest, RefusesWhatHasNoForm) {
    ObjectPath path;
    path.className = "C";
    path.keys = {{"K", Value::array(CimType::uint8, {})}};
    EXPECT_THROW(written([&](ObjectWriter& writer) { writer.instanceName(path); }), CimError);
    path.keys = {{"K", Value::instance(Instance{})}};
    EXPECT_THROW(written([&](ObjectWriter& writer) { writer.instanceName(path); }), CimError);
    Instance object;
    object.set("P", Value::array(CimType::reference, {}));
    EXPECT_THROW(
        written([&](ObjectWriter& writer) { writer.instance(object, nullptr, {}, false); }),
        CimError);
}

TEST_F(ObjectWriterTest, WritesTypeAttributes) {
    const auto attribute = [&](const Value& value) {
        return written([&](ObjectWriter& writer) { writer.typeAttribute("PARAMTYPE", value); });
    };
    EXPECT_EQ(attribute(Value::null(CimType::uint8)), " PARAMTYPE=\"uint8\"");
    EXPECT_EQ(attribute(Value::reference(fanPath())), " PARAMTYPE=\"reference\"");
    EXPECT_EQ(attribute(Value::instance(Instance{})),
              " PARAMTYPE=\"string\" EmbeddedObject=\"instance\"");
}

}  // namespace
}  // namespace cimhost
