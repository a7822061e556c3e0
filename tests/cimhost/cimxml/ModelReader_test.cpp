#include "cimhost/cimxml/ModelReader.h"

#include "cimhost/repository/CimError.h"
#include "tests/cimhost/cimxml/Requests.h"
#include "tests/cimhost/cimxml/TestSchema.h"
#include "tests/support/Thrown.h"

#include <gtest/gtest.h>

#include <memory>

namespace cimhost {
namespace {

constexpr TagSet modelRoots{
    Tag::value,     Tag::valueArray, Tag::valueReference, Tag::valueReferenceArray,
    Tag::className, Tag::instance,   Tag::instanceName};

class ModelReaderTest : public testing::Test {
protected:
    ModelReaderTest() { fillTestSchema(_repository); }

    ModelReader reader() const { return {_repository, _repository.get("root/test")}; }

    Value value(std::string_view xml, CimType type, bool isArray = false) const {
        const XmlDocument document(xml, modelRoots);
        return reader().value(document.root(), {type, isArray, "property", "P", "C"});
    }

    ObjectPath path(std::string_view xml) const {
        const XmlDocument document(xml, modelRoots);
        return reader().path(document.root());
    }

    ObjectPath reference(std::string_view inside) const {
        const XmlDocument document("<VALUE.REFERENCE>" + std::string(inside) + "</VALUE.REFERENCE>",
                                   modelRoots);
        return reader().reference(document.root());
    }

    Instance instance(std::string_view xml) const {
        const XmlDocument document(xml, modelRoots);
        const NameSpace& nameSpace = _repository.get("root/test");
        return reader().instance(
            document.root(),
            *nameSpace.findClass(document.root().attributeText(Attribute::className)));
    }

    /// One property of TEST_Values.
    Value property(std::string_view xml) const {
        return instance("<INSTANCE CLASSNAME=\"TEST_Values\">" + std::string(xml) + "</INSTANCE>")
            .properties.at(0)
            .value;
    }

private:
    Repository _repository;
};

/// "<code>: <description>" of the error, or nothing.
TEST_F(ModelReaderTest, ReadsScalarsOfTheDeclaredType) {
    EXPECT_EQ(value("<VALUE>TRUE</VALUE>", CimType::boolean), Value::boolean(true));
    EXPECT_EQ(value("<VALUE>0xFF</VALUE>", CimType::uint8),
              Value::unsignedInteger(CimType::uint8, 255));
    EXPECT_EQ(value("<VALUE>-1</VALUE>", CimType::sint64),
              Value::signedInteger(CimType::sint64, -1));
    EXPECT_EQ(value("<VALUE> a </VALUE>", CimType::string), Value::string(" a "));
}

TEST_F(ModelReaderTest, ReadsEmptyStringsAsEmptyAndNothingAsNull) {
    EXPECT_EQ(value("<VALUE></VALUE>", CimType::string), Value::string(""));
    EXPECT_EQ(value("<VALUE/>", CimType::string), Value::string(""));
    EXPECT_EQ(reader().value(std::nullopt, {CimType::uint8, false, "", "", ""}),
              Value::null(CimType::uint8));
    EXPECT_EQ(reader().value(std::nullopt, {CimType::uint8, true, "", "", ""}),
              Value::nullArray(CimType::uint8));
}

TEST_F(ModelReaderTest, NamesWhatDoesNotFitItsType) {
    EXPECT_EQ(errorOf([&] { value("<VALUE>256</VALUE>", CimType::uint8); }),
              "13: property P of C: \"256\" is no value of type uint8");
    EXPECT_EQ(errorOf([&] { value("<VALUE></VALUE>", CimType::uint8); }),
              "13: property P of C: \"\" is no value of type uint8");
    EXPECT_EQ(
        errorOf([&] { value("<VALUE>" + std::string(90, 'x') + "</VALUE>", CimType::boolean); }),
        "13: property P of C: \"" + std::string(64, 'x') + "...\" is no value of type boolean");
    EXPECT_EQ(errorOf([&] { value("<VALUE.ARRAY></VALUE.ARRAY>", CimType::uint8); }),
              "13: property P of C is of type uint8, not an array");
    EXPECT_EQ(errorOf([&] { value("<VALUE>1</VALUE>", CimType::uint8, true); }),
              "13: property P of C is of type uint8[], not a scalar");
    EXPECT_EQ(errorOf([&] { value("<VALUE>1</VALUE>", CimType::reference); }),
              "13: property P of C is of type reference, not VALUE");
    EXPECT_EQ(errorOf([&] {
                  value("<VALUE.REFERENCE><CLASSNAME NAME='C'/></VALUE.REFERENCE>",
                        CimType::string);
              }),
              "13: property P of C is of type string, not VALUE.REFERENCE");
    EXPECT_EQ(errorOf([&] { value("<CLASSNAME NAME='C'/>", CimType::string); }),
              "13: property P of C is of type string, not CLASSNAME");
}

TEST_F(ModelReaderTest, ReadsArraysWithNullsAndEmptyOnes) {
    EXPECT_EQ(value("<VALUE.ARRAY/>", CimType::uint8, true), Value::array(CimType::uint8, {}));
    EXPECT_EQ(value("<VALUE.ARRAY><VALUE>1</VALUE><VALUE.NULL/><VALUE>0x2</VALUE></VALUE.ARRAY>",
                    CimType::uint8, true),
              Value::array(CimType::uint8,
                           {Value::unsignedInteger(CimType::uint8, 1), Value::null(CimType::uint8),
                            Value::unsignedInteger(CimType::uint8, 2)}));
    EXPECT_EQ(value("<VALUE.ARRAY><VALUE></VALUE></VALUE.ARRAY>", CimType::string, true),
              Value::array(CimType::string, {Value::string("")}));
    EXPECT_EQ(errorOf([&] {
                  value("<VALUE.ARRAY><VALUE>1</VALUE><VALUE>x</VALUE></VALUE.ARRAY>",
                        CimType::uint8, true);
              }),
              "13: property P of C: \"x\" is no value of type uint8");
}

TEST_F(ModelReaderTest, ReadsArraysOfReferences) {
    const Value array =
        value("<VALUE.REFARRAY><VALUE.REFERENCE>" + instanceName("TEST_Fan", "Id", "a") +
                  "</VALUE.REFERENCE><VALUE.NULL/></VALUE.REFARRAY>",
              CimType::reference, true);
    ASSERT_EQ(array.get<Value::Array>()->size(), 2U);
    EXPECT_TRUE(array.get<Value::Array>()->at(1).isNull());
}

TEST_F(ModelReaderTest, TypesKeysByTheClassAndNotByTheRequest) {
    const ObjectPath keys = path(
        "<INSTANCENAME CLASSNAME='test_keys'>"
        "<KEYBINDING NAME='SMALL'><KEYVALUE VALUETYPE='string'>0x7</KEYVALUE></KEYBINDING>"
        "<KEYBINDING NAME='signed'><KEYVALUE VALUETYPE='numeric' "
        "TYPE='uint8'>-3</KEYVALUE></KEYBINDING>"
        "<KEYBINDING NAME='Flag'><KEYVALUE>TRUE</KEYVALUE></KEYBINDING>"
        "<KEYBINDING NAME='When'><KEYVALUE VALUETYPE='string'>20240229123456.123456+060</KEYVALUE>"
        "</KEYBINDING>"
        "<KEYBINDING NAME='Letter'><KEYVALUE VALUETYPE='string'>x</KEYVALUE></KEYBINDING>"
        "</INSTANCENAME>");
    EXPECT_EQ(keys.className, "TEST_Keys");
    EXPECT_EQ(keys.nameSpace, "root/test");
    EXPECT_EQ(*keys.findKey("Small"), Value::unsignedInteger(CimType::uint8, 7));
    EXPECT_EQ(*keys.findKey("Signed"), Value::signedInteger(CimType::sint64, -3));
    EXPECT_EQ(*keys.findKey("Flag"), Value::boolean(true));
    EXPECT_EQ(keys.findKey("When")->type(), CimType::dateTime);
    EXPECT_EQ(*keys.findKey("Letter"), Value::unsignedInteger(CimType::char16, 'x'));
}

TEST_F(ModelReaderTest, RefusesWhatIsNoStringForAKeyThatIsOne) {
    const auto fan = [&](std::string_view kind) {
        return path(
            "<INSTANCENAME CLASSNAME='TEST_Fan'><KEYBINDING NAME='Id'><KEYVALUE VALUETYPE='" +
            std::string(kind) + "'>1</KEYVALUE></KEYBINDING></INSTANCENAME>");
    };
    EXPECT_EQ(*fan("string").findKey("Id"), Value::string("1"));
    EXPECT_EQ(*fan("String").findKey("Id"), Value::string("1"));
    EXPECT_EQ(errorOf([&] { fan("numeric"); }),
              "4: key Id of TEST_Fan is of type string, not numeric");
    EXPECT_EQ(errorOf([&] { fan("boolean"); }),
              "4: key Id of TEST_Fan is of type string, not boolean");
}

TEST_F(ModelReaderTest, TypesKeysOfUnknownClassesByTheRequest) {
    const auto key = [&](std::string_view attributes, std::string_view text) {
        return path("<INSTANCENAME CLASSNAME='Nobody'><KEYBINDING NAME='k'><KEYVALUE " +
                    std::string(attributes) + ">" + std::string(text) +
                    "</KEYVALUE></KEYBINDING></INSTANCENAME>")
            .keys.at(0)
            .value;
    };
    EXPECT_EQ(key("", "1"), Value::string("1"));
    EXPECT_EQ(key("VALUETYPE='string'", " 1"), Value::string(" 1"));
    EXPECT_EQ(key("VALUETYPE='boolean'", "False"), Value::boolean(false));
    EXPECT_EQ(key("VALUETYPE='numeric'", "5"), Value::unsignedInteger(CimType::uint64, 5));
    EXPECT_EQ(key("VALUETYPE='numeric'", "-5"), Value::signedInteger(CimType::sint64, -5));
    EXPECT_EQ(key("VALUETYPE='numeric'", "0x1E"), Value::unsignedInteger(CimType::uint64, 30));
    EXPECT_EQ(key("VALUETYPE='numeric'", "1.5"), Value(CimType::real64, 1.5));
    EXPECT_EQ(key("VALUETYPE='numeric'", "-2e3"), Value(CimType::real64, -2000.0));
    EXPECT_EQ(key("VALUETYPE='numeric' TYPE='uint32'", "5"),
              Value::unsignedInteger(CimType::uint32, 5));
    EXPECT_EQ(errorOf([&] { key("VALUETYPE='numeric'", "many"); }),
              "4: key k of a path: \"many\" is no value of type uint64");
}

TEST_F(ModelReaderTest, RefusesBadKeys) {
    const auto keys = [](std::string_view inside) {
        return "<INSTANCENAME CLASSNAME='TEST_Keys'>" + std::string(inside) + "</INSTANCENAME>";
    };
    constexpr std::string_view small =
        "<KEYBINDING NAME='Small'><KEYVALUE>7</KEYVALUE></KEYBINDING>";
    EXPECT_EQ(errorOf([&] {
                  path(keys("<KEYBINDING NAME='Small'><KEYVALUE>256</KEYVALUE></KEYBINDING>"));
              }),
              "4: key Small of TEST_Keys: \"256\" is no value of type uint8");
    EXPECT_EQ(errorOf([&] {
                  path(keys(std::string(small) +
                            "<KEYBINDING NAME='SMALL'><KEYVALUE>7</KEYVALUE></KEYBINDING>"));
              }),
              "4: key SMALL of TEST_Keys is given more than once");
    EXPECT_EQ(errorOf([&] {
                  path(
                      keys("<KEYBINDING NAME='Small'><VALUE.REFERENCE><CLASSNAME NAME='C'/>"
                           "</VALUE.REFERENCE></KEYBINDING>"));
              }),
              "4: key Small of TEST_Keys is of type uint8");
    EXPECT_EQ(errorOf([&] { path(keys("<KEYVALUE>7</KEYVALUE>")); }),
              "4: a key of TEST_Keys has no name");
    EXPECT_EQ(errorOf([&] {
                  path(
                      "<INSTANCENAME CLASSNAME='TEST_Link'><KEYBINDING NAME='Antecedent'><KEYVALUE>"
                      "TEST_Fan.Id=1</KEYVALUE></KEYBINDING></INSTANCENAME>");
              }),
              "4: key Antecedent of TEST_Link is of type reference");
    std::string many;
    for (int i = 0; i < 257; ++i) {
        many += "<KEYBINDING NAME='k" + std::to_string(i) + "'><KEYVALUE>1</KEYVALUE></KEYBINDING>";
    }
    EXPECT_EQ(errorOf([&] { path(keys(many)); }), "4: a path of TEST_Keys has too many keys");
}

TEST_F(ModelReaderTest, TakesABareValueForTheOnlyKey) {
    const ObjectPath fan =
        path("<INSTANCENAME CLASSNAME='TEST_Fan'><KEYVALUE>f</KEYVALUE></INSTANCENAME>");
    ASSERT_EQ(fan.keys.size(), 1U);
    EXPECT_EQ(fan.keys[0].name, "Id");
    EXPECT_EQ(fan.keys[0].value, Value::string("f"));
    EXPECT_EQ(errorOf([&] {
                  path(
                      "<INSTANCENAME CLASSNAME='TEST_Fan'><KEYVALUE>f</KEYVALUE>"
                      "<KEYVALUE>g</KEYVALUE></INSTANCENAME>");
              }),
              "4: key Id of TEST_Fan is given more than once");
    EXPECT_EQ(errorOf([&] {
                  path("<INSTANCENAME CLASSNAME='Nobody'><KEYVALUE>f</KEYVALUE></INSTANCENAME>");
              }),
              "4: a key of Nobody has no name");
}

TEST_F(ModelReaderTest, ReadsReferencesInAllSixForms) {
    const std::string fan = instanceName("TEST_Fan", "Id", "f");
    const std::string foreign =
        "<INSTANCENAME CLASSNAME='TEST_Foreign'><KEYBINDING NAME='Number'><KEYVALUE>12</KEYVALUE>"
        "</KEYBINDING></INSTANCENAME>";
    const std::string full = "<NAMESPACEPATH><HOST>elsewhere:1</HOST>" +
                             nameSpacePath("ROOT/other") + "</NAMESPACEPATH>";

    const ObjectPath bare = reference(fan);
    EXPECT_EQ(bare.nameSpace, "root/test");
    EXPECT_EQ(bare.className, "TEST_Fan");
    EXPECT_EQ(bare.keys.size(), 1U);

    const ObjectPath local = reference("<LOCALINSTANCEPATH>" + nameSpacePath("root/other") +
                                       foreign + "</LOCALINSTANCEPATH>");
    EXPECT_EQ(local.nameSpace, "root/other");
    // The class of the path's own namespace tells the type.
    EXPECT_EQ(local.keys.at(0).value, Value::unsignedInteger(CimType::uint32, 12));

    const ObjectPath hosted = reference("<INSTANCEPATH>" + full + foreign + "</INSTANCEPATH>");
    EXPECT_EQ(hosted.host, "");
    EXPECT_EQ(hosted.nameSpace, "root/other");
    EXPECT_EQ(hosted.keys.at(0).value, Value::unsignedInteger(CimType::uint32, 12));

    const ObjectPath className = reference("<CLASSNAME NAME='TEST_Fan'/>");
    EXPECT_EQ(className.className, "TEST_Fan");
    EXPECT_TRUE(className.keys.empty());
    EXPECT_EQ(reference("<LOCALCLASSPATH>" + nameSpacePath("root/other") +
                        "<CLASSNAME NAME='TEST_Foreign'/></LOCALCLASSPATH>")
                  .nameSpace,
              "root/other");
    EXPECT_EQ(
        reference("<CLASSPATH>" + full + "<CLASSNAME NAME='TEST_Foreign'/></CLASSPATH>").className,
        "TEST_Foreign");
}

TEST_F(ModelReaderTest, KeepsReferencesIntoUnknownNamespaces) {
    const ObjectPath far = reference("<LOCALINSTANCEPATH>" + nameSpacePath("no/such") +
                                     instanceName("X", "k", "v") + "</LOCALINSTANCEPATH>");
    EXPECT_EQ(far.nameSpace, "no/such");
    EXPECT_EQ(far.keys.at(0).value, Value::string("v"));
}

TEST_F(ModelReaderTest, ReadsReferenceKeysWithinPaths) {
    const ObjectPath link = path(
        "<INSTANCENAME CLASSNAME='TEST_Link'><KEYBINDING NAME='Antecedent'>"
        "<VALUE.REFERENCE>" +
        instanceName("TEST_Fan", "Id", "f") + "</VALUE.REFERENCE></KEYBINDING></INSTANCENAME>");
    const auto* const target = link.keys.at(0).value.get<std::shared_ptr<const ObjectPath>>();
    ASSERT_NE(target, nullptr);
    EXPECT_EQ((*target)->className, "TEST_Fan");
}

TEST_F(ModelReaderTest, ReadsInstancesAndPassesOverQualifiers) {
    const Instance fan = instance(
        "<INSTANCE CLASSNAME='test_fan'><QUALIFIER NAME='Description' "
        "TYPE='string'><VALUE>d</VALUE>"
        "</QUALIFIER><PROPERTY NAME='ID' TYPE='string'><QUALIFIER NAME='Key' TYPE='boolean'>"
        "<VALUE>true</VALUE></QUALIFIER><VALUE>f</VALUE></PROPERTY>"
        "<PROPERTY NAME='Count' TYPE='uint32'/>"
        "<PROPERTY.ARRAY NAME='Speeds' TYPE='uint16'><VALUE.ARRAY/></PROPERTY.ARRAY>"
        "<PROPERTY.ARRAY NAME='Fixed' TYPE='string'/></INSTANCE>");
    EXPECT_EQ(fan.className(), "TEST_Fan");
    EXPECT_EQ(fan.path.nameSpace, "root/test");
    EXPECT_TRUE(fan.path.keys.empty());
    ASSERT_EQ(fan.properties.size(), 4U);
    EXPECT_EQ(fan.properties[0].name, "Id");
    EXPECT_EQ(fan.properties[0].value, Value::string("f"));
    EXPECT_EQ(fan.properties[1].value, Value::null(CimType::uint32));
    EXPECT_EQ(fan.properties[2].value, Value::array(CimType::uint16, {}));
    EXPECT_EQ(fan.properties[3].value, Value::nullArray(CimType::string));
}

TEST_F(ModelReaderTest, RefusesBadProperties) {
    EXPECT_EQ(errorOf([&] { property("<PROPERTY NAME='Nope' TYPE='uint8'/>"); }),
              "12: class TEST_Values has no property 'Nope'");
    EXPECT_EQ(errorOf([&] {
                  property("<PROPERTY NAME='U8' TYPE='uint8'/><PROPERTY NAME='u8' TYPE='uint8'/>");
              }),
              "4: property u8 is given more than once");
    EXPECT_EQ(
        errorOf([&] { property("<PROPERTY NAME='U8' TYPE='uint16'><VALUE>1</VALUE></PROPERTY>"); }),
        "13: property U8 of TEST_Values is of type uint8, not uint16");
    EXPECT_EQ(errorOf([&] { property("<PROPERTY.ARRAY NAME='U8' TYPE='uint8'/>"); }),
              "13: property U8 of TEST_Values is of type uint8, not uint8[]");
    EXPECT_EQ(errorOf([&] { property("<PROPERTY.REFERENCE NAME='U8'/>"); }),
              "13: property U8 of TEST_Values is of type uint8, not reference");
    EXPECT_EQ(errorOf([&] { property("<PROPERTY NAME='R' TYPE='string'/>"); }),
              "13: property R of TEST_Values is of type reference, not string");
    for (const std::string type : {"void", "reference", "instance", "int", ""}) {
        EXPECT_EQ(errorOf([&] { property("<PROPERTY NAME='U8' TYPE='" + type + "'/>"); }),
                  "4: property U8 has the unknown type \"" + type + "\"");
    }
    EXPECT_EQ(
        errorOf([&] { property("<PROPERTY NAME='U8' TYPE='uint8'><VALUE>x</VALUE></PROPERTY>"); }),
        "13: property U8 of TEST_Values: \"x\" is no value of type uint8");
}

TEST_F(ModelReaderTest, AcceptsReferencesWithoutTheirClass) {
    const Value value =
        property("<PROPERTY.REFERENCE NAME='R'><VALUE.REFERENCE>" +
                 instanceName("TEST_Fan", "Id", "f") + "</VALUE.REFERENCE></PROPERTY.REFERENCE>");
    EXPECT_EQ(value.type(), CimType::reference);
    EXPECT_FALSE(value.isNull());
}

const Instance& embeddedIn(const Value& value) {
    return **value.get<std::shared_ptr<const Instance>>();
}

TEST_F(ModelReaderTest, ReadsEmbeddedInstancesInEverySpelling) {
    const std::string text = escaped(
        "<INSTANCE CLASSNAME=\"TEST_Settings\"><PROPERTY NAME=\"Level\" "
        "TYPE=\"uint16\"><VALUE>3</VALUE>"
        "</PROPERTY><PROPERTY NAME=\"Name\" "
        "TYPE=\"string\"><VALUE>a&amp;b</VALUE></PROPERTY></INSTANCE>");
    for (const std::string attribute : {"EmbeddedObject='instance'", "EMBEDDEDOBJECT='instance'",
                                        "EmbeddedObject='object'", ""}) {
        const Value value = property("<PROPERTY NAME='E' TYPE='string' " + attribute + "><VALUE>" +
                                     text + "</VALUE></PROPERTY>");
        ASSERT_EQ(value.type(), CimType::instance) << attribute;
        const Instance& embedded = embeddedIn(value);
        EXPECT_EQ(embedded.className(), "TEST_Settings");
        EXPECT_EQ(embedded.find("Level")->value, Value::unsignedInteger(CimType::uint16, 3));
        EXPECT_EQ(embedded.find("Name")->value, Value::string("a&b"));
    }
    const Value cdata = property(
        "<PROPERTY NAME='E' TYPE='string'><VALUE><![CDATA[<INSTANCE "
        "CLASSNAME='TEST_Settings'></INSTANCE>]]></VALUE></PROPERTY>");
    EXPECT_EQ(embeddedIn(cdata).className(), "TEST_Settings");
}

TEST_F(ModelReaderTest, ReadsArraysOfEmbeddedInstances) {
    const std::string text = escaped("<INSTANCE CLASSNAME='TEST_Settings'/>");
    const Value value = property(
        "<PROPERTY.ARRAY NAME='EA' TYPE='string' EmbeddedObject='instance'><VALUE.ARRAY><VALUE>" +
        text + "</VALUE><VALUE.NULL/></VALUE.ARRAY></PROPERTY.ARRAY>");
    EXPECT_EQ(value.type(), CimType::instance);
    EXPECT_EQ(value.get<Value::Array>()->size(), 2U);
}

TEST_F(ModelReaderTest, ReadsEmbeddedInstancesOfUnknownClassesByTheirOwnTypes) {
    const Value value = property(
        "<PROPERTY NAME='E' TYPE='string'><VALUE>" +
        escaped(
            "<INSTANCE CLASSNAME='Nobody'><PROPERTY NAME='n' "
            "TYPE='sint8'><VALUE>-1</VALUE></PROPERTY>"
            "<PROPERTY.REFERENCE NAME='r'/><PROPERTY.ARRAY NAME='a' TYPE='boolean'/></INSTANCE>") +
        "</VALUE></PROPERTY>");
    const Instance& embedded = embeddedIn(value);
    EXPECT_EQ(embedded.className(), "Nobody");
    EXPECT_EQ(embedded.find("n")->value, Value::signedInteger(CimType::sint8, -1));
    EXPECT_EQ(embedded.find("r")->value, Value::null(CimType::reference));
    EXPECT_EQ(embedded.find("a")->value, Value::nullArray(CimType::boolean));
    EXPECT_EQ(errorOf([&] {
                  property("<PROPERTY NAME='E' TYPE='string'><VALUE>" +
                           escaped("<INSTANCE CLASSNAME='Nobody'><PROPERTY NAME='n' TYPE='sint8'/>"
                                   "<PROPERTY NAME='N' TYPE='sint8'/></INSTANCE>") +
                           "</VALUE></PROPERTY>");
              }),
              "4: property N is given more than once");
}

TEST_F(ModelReaderTest, RefusesTextThatIsNoEmbeddedInstance) {
    const auto embed = [&](std::string_view xml) {
        return errorOf([&] {
            property("<PROPERTY NAME='E' TYPE='string'><VALUE>" + escaped(xml) +
                     "</VALUE></PROPERTY>");
        });
    };
    EXPECT_TRUE(
        embed("").starts_with("13: property E of TEST_Values holds no embedded instance: "));
    EXPECT_TRUE(embed("plain text").starts_with("13: "));
    EXPECT_TRUE(embed("<INSTANCE CLASSNAME='TEST_Settings'>").starts_with("13: "));
    EXPECT_TRUE(embed("<VALUE>1</VALUE>").starts_with("13: "));
    EXPECT_TRUE(
        embed("<!DOCTYPE INSTANCE><INSTANCE CLASSNAME='TEST_Settings'/>").starts_with("13: "));
    EXPECT_EQ(embed("<CLASS NAME='TEST_Settings'/>"),
              "7: property E of TEST_Values: embedded classes are not supported");
    EXPECT_EQ(
        embed("<INSTANCE CLASSNAME='TEST_Settings'><PROPERTY NAME='x' TYPE='uint8'/></INSTANCE>"),
        "12: class TEST_Settings has no property 'x'");
}

TEST_F(ModelReaderTest, BoundsInstancesEmbeddedInOneAnother) {
    const auto nested = [](int depth) {
        std::string xml = "<INSTANCE CLASSNAME='TEST_Values'/>";
        for (int i = 1; i < depth; ++i) {
            xml = "<INSTANCE CLASSNAME='TEST_Values'><PROPERTY NAME='E' TYPE='string'><VALUE>" +
                  escaped(xml) + "</VALUE></PROPERTY></INSTANCE>";
        }
        return "<PROPERTY NAME='E' TYPE='string'><VALUE>" + escaped(xml) + "</VALUE></PROPERTY>";
    };
    EXPECT_EQ(errorOf([&] { property(nested(16)); }), "");
    EXPECT_EQ(errorOf([&] { property(nested(17)); }),
              "27: property E of TEST_Values: instances are embedded too deeply");
}

}  // namespace
}  // namespace cimhost
