#include "cimhost/mof/MofReader.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace cimhost {
namespace {

class BaseSchema : public testing::Test {
protected:
    BaseSchema() {
        for (const char* const name : {"root/test", "interop"}) {
            MofReader(_repository, name).readFile(PYL_BASE_SCHEMA);
        }
    }

    const NameSpace& nameSpace() const { return _repository.get("root/test"); }

    std::vector<const Class*> classes() const {
        std::vector<const Class*> all;
        for (const Class* const top : nameSpace().subclasses("")) {
            const auto family = nameSpace().withDescendants(top->name);
            all.insert(all.end(), family.begin(), family.end());
        }
        return all;
    }

    std::vector<std::string> keysOf(const char* name) const {
        std::vector<std::string> keys;
        for (const auto& property : nameSpace().findClass(name)->properties) {
            if (property->isKey) keys.push_back(property->name);
        }
        std::sort(keys.begin(), keys.end());
        return keys;
    }

    Repository _repository;
};

using Keys = std::vector<std::string>;

std::size_t lengthOf(const Qualifiers& qualifiers, const char* name) {
    const Qualifier* const qualifier = findQualifier(qualifiers, name);
    const auto* const elements = qualifier ? qualifier->value.get<Value::Array>() : nullptr;
    return elements ? elements->size() : 0;
}

void expectMatchingValues(const Qualifiers& qualifiers, const std::string& element) {
    if (!findQualifier(qualifiers, "Values")) return;
    EXPECT_EQ(lengthOf(qualifiers, "Values"), lengthOf(qualifiers, "ValueMap")) << element;
}

TEST_F(BaseSchema, LoadsIntoEachNamespace) {
    EXPECT_EQ(nameSpace().classCount(), _repository.get("interop").classCount());
    EXPECT_EQ(nameSpace().classCount(), classes().size());
    EXPECT_GT(nameSpace().classCount(), 40U);
}

TEST_F(BaseSchema, EveryElementIsDescribed) {
    for (const Class* const each : classes()) {
        EXPECT_TRUE(findQualifier(each->qualifiers, "Description")) << each->name;
        EXPECT_TRUE(findQualifier(each->qualifiers, "Version")) << each->name;
        for (const auto& property : each->properties) {
            EXPECT_TRUE(findQualifier(property->qualifiers, "Description"))
                << each->name << "." << property->name;
        }
    }
}

TEST_F(BaseSchema, EveryValueMapHasAsManyValues) {
    for (const Class* const each : classes()) {
        for (const auto& property : each->properties) {
            expectMatchingValues(property->qualifiers, each->name + "." + property->name);
        }
        for (const auto& method : each->methods) {
            expectMatchingValues(method->qualifiers, each->name + "." + method->name);
            for (const auto& parameter : method->parameters) {
                expectMatchingValues(parameter.qualifiers, method->name + "." + parameter.name);
            }
        }
    }
}

TEST_F(BaseSchema, EveryReferenceLeadsToAKnownClass) {
    for (const Class* const each : classes()) {
        for (const auto& property : each->properties) {
            if (property->type != CimType::reference) continue;
            EXPECT_TRUE(nameSpace().findClass(property->referenceClass)) << each->name;
        }
    }
}

TEST_F(BaseSchema, KeysAreThoseOfThePublishedSchema) {
    const Keys deviceKeys{"CreationClassName", "DeviceID", "SystemCreationClassName", "SystemName"};
    const Keys serviceKeys{"CreationClassName", "Name", "SystemCreationClassName", "SystemName"};
    EXPECT_EQ(keysOf("CIM_ComputerSystem"), (Keys{"CreationClassName", "Name"}));
    EXPECT_EQ(keysOf("CIM_PCIDevice"), deviceKeys);
    EXPECT_EQ(keysOf("CIM_Chassis"), (Keys{"CreationClassName", "Tag"}));
    EXPECT_EQ(keysOf("CIM_ObjectManager"), serviceKeys);
    EXPECT_EQ(keysOf("CIM_IndicationFilter"), serviceKeys);
    EXPECT_EQ(keysOf("CIM_ListenerDestinationCIMXML"), serviceKeys);
    EXPECT_EQ(keysOf("CIM_Namespace"),
              (Keys{"CreationClassName", "Name", "ObjectManagerCreationClassName",
                    "ObjectManagerName", "SystemCreationClassName", "SystemName"}));
    EXPECT_EQ(keysOf("CIM_SystemDevice"), (Keys{"GroupComponent", "PartComponent"}));
    EXPECT_EQ(keysOf("CIM_ComputerSystemPackage"), (Keys{"Antecedent", "Dependent"}));
    EXPECT_EQ(keysOf("CIM_RegisteredProfile"), (Keys{"InstanceID"}));
    EXPECT_EQ(keysOf("CIM_ElementConformsToProfile"),
              (Keys{"ConformantStandard", "ManagedElement"}));
    EXPECT_EQ(keysOf("CIM_IndicationSubscription"), (Keys{"Filter", "Handler"}));
    EXPECT_EQ(keysOf("CIM_ManagedElement"), Keys{});
}

TEST_F(BaseSchema, SubscriptionsTakeTheOwnerThatClientsSet) {
    const PropertyDefinition* const owner =
        nameSpace().findClass("CIM_IndicationSubscription")->findProperty("Owner");
    ASSERT_NE(owner, nullptr);
    EXPECT_EQ(owner->type, CimType::string);
}

TEST_F(BaseSchema, HierarchiesAreThoseOfThePublishedSchema) {
    EXPECT_TRUE(nameSpace().isA("CIM_PCIDevice", "CIM_PCIController"));
    EXPECT_TRUE(nameSpace().isA("CIM_PCIController", "CIM_Controller"));
    EXPECT_TRUE(nameSpace().isA("CIM_Controller", "CIM_LogicalDevice"));
    EXPECT_TRUE(nameSpace().isA("CIM_ComputerSystem", "CIM_EnabledLogicalElement"));
    EXPECT_TRUE(nameSpace().isA("CIM_Chassis", "CIM_PhysicalPackage"));
    EXPECT_TRUE(nameSpace().isA("CIM_ObjectManager", "CIM_Service"));
    EXPECT_TRUE(nameSpace().isA("CIM_SystemDevice", "CIM_Component"));
    EXPECT_TRUE(nameSpace().isA("CIM_ComputerSystemPackage", "CIM_Dependency"));
    EXPECT_TRUE(nameSpace().isA("CIM_AlertIndication", "CIM_Indication"));
}

TEST_F(BaseSchema, QualifiersHaveTheirStandardFlavors) {
    const auto flavor = [this](const char* name) {
        return nameSpace().findQualifier(name)->flavor;
    };
    EXPECT_FALSE(flavor("Key").overridable);
    EXPECT_TRUE(flavor("Key").toSubclass);
    EXPECT_FALSE(flavor("Abstract").toSubclass);
    EXPECT_FALSE(flavor("Override").toSubclass);
    EXPECT_FALSE(flavor("Version").toSubclass);
    EXPECT_TRUE(flavor("Description").translatable);
    EXPECT_TRUE(flavor("Values").translatable);
    EXPECT_FALSE(flavor("ValueMap").translatable);
    EXPECT_EQ(nameSpace().findQualifier("In")->defaultValue, Value::boolean(true));
}

TEST_F(BaseSchema, AbstractAndConcreteClassesAreToldApart) {
    for (const char* const name : {"CIM_ManagedElement", "CIM_System", "CIM_LogicalDevice",
                                   "CIM_PhysicalFrame", "CIM_Dependency", "CIM_Indication"}) {
        EXPECT_TRUE(nameSpace().findClass(name)->isAbstract) << name;
    }
    for (const char* const name :
         {"CIM_ComputerSystem", "CIM_PCIDevice", "CIM_Chassis", "CIM_SystemDevice",
          "CIM_AlertIndication", "CIM_ObjectManager"}) {
        EXPECT_FALSE(nameSpace().findClass(name)->isAbstract) << name;
    }
}

}  // namespace
}  // namespace cimhost
