#include "cimhost/repository/InstanceConformer.h"

#include "cimhost/repository/CimError.h"
#include "cimhost/repository/ValueConversion.h"
#include "tests/cimhost/mof/MofText.h"

#include <gtest/gtest.h>

namespace cimhost {
namespace {

using test::MofText;

class InstanceConformer : public testing::Test {
protected:
    InstanceConformer() {
        _mof.read(
            "class T_Fan { [Key] string ID; uint8 Speed = 7; datetime At; uint16 List[2]; };"
            "[Abstract] class T_Abstract { [Key] string ID; };"
            "[Association] class T_Link { [Key] T_Fan REF Left; [Key] T_Fan REF Right; };"
            "[Association] class T_Meta { [Key] T_Link REF Link; [Key] T_Fan REF Fan; };");
        _fan.path.className = "t_fan";
        _fan.set("id", Value::string("1"));
    }

    Instance add(Instance instance) {
        _mof.nameSpace().addInstance(std::move(instance));
        return _mof.nameSpace().instances().back();
    }

    std::pair<CimCode, std::string> refusal(const Instance& instance) {
        try {
            add(instance);
        } catch (const CimError& error) {
            return {error.code(), error.what()};
        }
        return {};
    }

    using Refusal = std::pair<CimCode, std::string>;
    MofText _mof;
    Instance _fan;
};

TEST_F(InstanceConformer, SpellsTypesAndFillsInAsTheClassDoes) {
    _fan.set("AT", Value::string("00000001000000.000000:000"));
    const Instance stored = add(_fan);
    EXPECT_EQ(stored.path.className, "T_Fan");
    EXPECT_EQ(stored.path.nameSpace, "root/test");
    ASSERT_EQ(stored.path.keys.size(), 1U);
    EXPECT_EQ(stored.path.keys[0].name, "ID");
    ASSERT_EQ(stored.properties.size(), 3U);
    EXPECT_EQ(stored.properties[0].name, "ID");
    EXPECT_EQ(stored.properties[0].classOrigin, "T_Fan");
    EXPECT_EQ(stored.properties[1].value, Value::unsignedInteger(CimType::uint8, 7));
    EXPECT_EQ(stored.properties[2].value.type(), CimType::dateTime);
}

TEST_F(InstanceConformer, ChargesTheInstanceAndEachOfItsPropertiesWithItsValue) {
    const MemoryBudget& budget = _mof.nameSpace().budget();
    std::size_t before = budget.used();
    add(_fan);
    const std::size_t bare = budget.used() - before;
    const Value speed = Value::unsignedInteger(CimType::uint8, 7);
    EXPECT_EQ(bare, sizeof(Instance) + 2 * sizeof(PropertyValue) + valueBytes(Value::string("1")) +
                        valueBytes(speed))
        << "the default is charged as what is given is";

    before = budget.used();
    const Value list = Value::array(CimType::uint16, {Value::unsignedInteger(CimType::uint16, 1),
                                                      Value::unsignedInteger(CimType::uint16, 2)});
    _fan.set("id", Value::string("2"));
    _fan.set("List", list);
    add(_fan);
    EXPECT_EQ(budget.used() - before, bare + sizeof(PropertyValue) + valueBytes(list));
}

TEST_F(InstanceConformer, AddsNothingThatTheBudgetCannotPay) {
    MemoryBudget& budget = _mof.nameSpace().budget();
    const std::size_t left = sizeof(Instance) + sizeof(PropertyValue) + 100;
    budget.charge(MemoryBudget::limit - budget.used() - left);
    _fan.set("id", Value::string(std::string(100, 'x')));
    EXPECT_EQ(refusal(_fan).first, CimCode::serverLimitsExceeded);
    EXPECT_TRUE(_mof.nameSpace().instances().empty());
}

TEST_F(InstanceConformer, TakesKeysFromThePathToo) {
    Instance instance;
    instance.path.className = "T_Fan";
    instance.path.setKey("ID", Value::string("9"));
    const Instance stored = add(instance);
    ASSERT_NE(stored.find("ID"), nullptr);
    EXPECT_EQ(stored.find("ID")->value, Value::string("9"));
    EXPECT_EQ(*stored.path.findKey("ID"), Value::string("9"));
}

TEST_F(InstanceConformer, FindsKeysBehindOtherPropertiesToo) {
    _mof.read("class T_Bay { uint8 Width; [Key] string ID; uint8 Height; [Key] uint8 Row; };");
    Instance bay;
    bay.path.className = "T_Bay";
    bay.set("ID", Value::string("1"));
    bay.set("Row", Value::unsignedInteger(CimType::uint8, 2));
    const Instance stored = add(bay);
    ASSERT_EQ(stored.path.keys.size(), 2U);
    EXPECT_EQ(stored.path.keys[0].name, "ID");
    EXPECT_EQ(stored.path.keys[1].name, "Row");
}

TEST_F(InstanceConformer, AnExplicitNullReplacesTheDefault) {
    _fan.set("Speed", Value::null(CimType::uint8));
    EXPECT_TRUE(add(_fan).find("Speed")->value.isNull());
}

TEST_F(InstanceConformer, SaysWhyAnInstanceCannotBe) {
    Instance other = _fan;
    other.path.className = "Nope";
    EXPECT_EQ(refusal(other), (Refusal{CimCode::invalidClass, "class 'Nope' is not known"}));
    other.path.className = "T_Abstract";
    EXPECT_EQ(refusal(other), (Refusal{CimCode::invalidClass,
                                       "class 'T_Abstract' is abstract and has no instances"}));
    other = _fan;
    other.set("Nope", Value());
    EXPECT_EQ(refusal(other),
              (Refusal{CimCode::noSuchProperty, "class 'T_Fan' has no property 'Nope'"}));
    other = _fan;
    other.set("Speed", Value::unsignedInteger(CimType::uint64, 300));
    EXPECT_EQ(refusal(other), (Refusal{CimCode::typeMismatch,
                                       "property 'Speed' of an instance of 'T_Fan': 300 is out "
                                       "of range for uint8 (0 to 255)"}));
    other = _fan;
    other.properties.push_back({"ID", Value::string("2"), {}});
    EXPECT_EQ(refusal(other), (Refusal{CimCode::invalidParameter,
                                       "property 'ID' of an instance of 't_fan' is given twice"}));
    other = _fan;
    other.set("ID", Value::null(CimType::string));
    EXPECT_EQ(refusal(other), (Refusal{CimCode::invalidParameter,
                                       "an instance of 'T_Fan' has no value for its key 'ID'"}));
}

TEST_F(InstanceConformer, ConformsTheKeysOfReferencesAllTheWayDown) {
    _mof.read(R"(instance of T_Meta {
        LINK = "t_link.LEFT=\"t_fan.id=\\\"1\\\"\",right=\"T_FAN.ID=\\\"2\\\"\"";
        Fan = "T_Fan.ID=\"3\"";
    };)");
    const ObjectPath& path = _mof.nameSpace().instances().back().path;
    const auto& link = **path.findKey("Link")->get<std::shared_ptr<const ObjectPath>>();
    EXPECT_EQ(link.className, "T_Link");
    EXPECT_EQ(link.keys[0].name, "Left");
    ASSERT_EQ(link.keys[0].value.type(), CimType::reference);
    const auto& left = **link.keys[0].value.get<std::shared_ptr<const ObjectPath>>();
    EXPECT_EQ(left.className, "T_Fan");
    EXPECT_EQ(left.keys[0].name, "ID");
}

TEST_F(InstanceConformer, ConformsPathsOfKnownClassesOnly) {
    const NameSpace& nameSpace = _mof.nameSpace();
    ObjectPath path{"", "", "NOPE", {{"x", Value::string("1")}}};
    EXPECT_EQ(nameSpace.conformPath(path).className, "NOPE");
    path.className = "T_FAN";
    EXPECT_THROW(nameSpace.conformPath(path), CimError);
    path.nameSpace = "elsewhere";
    EXPECT_EQ(nameSpace.conformPath(path).className, "T_FAN");
    path.nameSpace = "/ROOT/test";
    path.keys[0].name = "id";
    EXPECT_EQ(nameSpace.conformPath(path).className, "T_Fan");
    EXPECT_EQ(nameSpace.conformPath(path).keys[0].name, "ID");
    path.keys[0] = {"Speed", Value::unsignedInteger(CimType::uint8, 1)};
    EXPECT_THROW(nameSpace.conformPath(path), CimError);  // a property, but no key
}

}  // namespace
}  // namespace cimhost
