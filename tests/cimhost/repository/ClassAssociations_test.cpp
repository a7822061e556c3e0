#include "cimhost/repository/ClassAssociations.h"

#include "cimhost/repository/CimError.h"
#include "tests/cimhost/mof/MofText.h"

#include <gtest/gtest.h>

namespace cimhost {
namespace {

using test::MofText;
using test::namesOf;
using Names = std::vector<std::string>;

class ClassAssociations : public testing::Test {
protected:
    ClassAssociations() {
        _mof.read(
            "class Element {}; class System : Element {}; class Server : System {};"
            "class Device : Element {}; class Fan : Device {}; class Chassis : Element {};"
            "[Association, Abstract] class Component { Element REF Group; Element REF Part; };"
            "[Association] class SystemDevice : Component { System REF Group; Device REF Part; };"
            "[Association] class Packaging { Chassis REF Outside; System REF Inside; };"
            "[Association] class Twins { Fan REF One; Fan REF Two; };"
            "[Association] class Lost { Fan REF Fan; NotDefined REF Far; };");
    }

    Names associated(std::string_view name, const ClassAssociationFilter& filter = {}) {
        return namesOf(associatedClasses(_mof.nameSpace(), name, filter));
    }
    Names referencing(std::string_view name, std::string_view result = {},
                      std::string_view role = {}) {
        return namesOf(referencingClasses(_mof.nameSpace(), name, result, role));
    }
    MofText _mof;
};

TEST_F(ClassAssociations, AReferenceToAnAncestorCounts) {
    EXPECT_EQ(referencing("server"), (Names{"Component", "SystemDevice", "Packaging"}));
    EXPECT_EQ(referencing("Chassis"), (Names{"Component", "Packaging"}));
    EXPECT_EQ(referencing("Fan"), (Names{"Component", "SystemDevice", "Twins", "Lost"}));
}

TEST_F(ClassAssociations, AReferenceToASubclassDoesNot) {
    EXPECT_EQ(referencing("Element"), (Names{"Component"}));
    EXPECT_EQ(referencing("Device"), (Names{"Component", "SystemDevice"}));
}

TEST_F(ClassAssociations, ReferencesAreFilteredByClassAndRole) {
    EXPECT_EQ(referencing("Server", "COMPONENT"), (Names{"Component", "SystemDevice"}));
    EXPECT_EQ(referencing("Server", "SystemDevice"), (Names{"SystemDevice"}));
    EXPECT_EQ(referencing("Server", "", "inside"), (Names{"Packaging"}));
    EXPECT_EQ(referencing("Server", "", "Part"), (Names{"Component"}));
    EXPECT_TRUE(referencing("Server", "Packaging", "Outside").empty());
}

TEST_F(ClassAssociations, LeadToTheClassAtTheOtherEnd) {
    EXPECT_EQ(associated("Server"), (Names{"Element", "Device", "Chassis"}));
    EXPECT_EQ(associated("Chassis"), (Names{"Element", "System"}));
}

TEST_F(ClassAssociations, MayLeadBackToTheClassItself) {
    EXPECT_EQ(associated("Fan", {.associationClass = "Twins"}), (Names{"Fan"}));
    EXPECT_EQ(associated("Fan", {.associationClass = "Twins", .role = "One", .resultRole = "One"}),
              Names{});
}

TEST_F(ClassAssociations, AreFilteredByAssociationClassWithItsSubclasses) {
    EXPECT_EQ(associated("Server", {.associationClass = "Component"}),
              (Names{"Element", "Device"}));
    EXPECT_EQ(associated("Server", {.associationClass = "systemdevice"}), (Names{"Device"}));
}

TEST_F(ClassAssociations, AreFilteredByResultClassFromBothSides) {
    EXPECT_EQ(associated("Server", {.resultClass = "Element"}),
              (Names{"Element", "Device", "Chassis"}));
    EXPECT_EQ(associated("Server", {.resultClass = "Fan"}), (Names{"Fan"}));
    EXPECT_EQ(associated("Chassis", {.associationClass = "Packaging", .resultClass = "Server"}),
              (Names{"Server"}));
    EXPECT_EQ(associated("Chassis", {.associationClass = "Packaging", .resultClass = "Fan"}),
              Names{});
}

TEST_F(ClassAssociations, AreFilteredByRoles) {
    EXPECT_EQ(associated("Server", {.role = "INSIDE"}), (Names{"Chassis"}));
    EXPECT_EQ(associated("Server", {.resultRole = "outside"}), (Names{"Chassis"}));
    EXPECT_EQ(associated("Server", {.role = "Outside"}), Names{});
    EXPECT_EQ(associated("Server", {.role = "Nope"}), Names{});
}

TEST_F(ClassAssociations, LeaveOutClassesThatAreNotKnown) {
    EXPECT_EQ(associated("Fan", {.associationClass = "Lost"}), Names{});
    EXPECT_TRUE(associated("Nope").empty());
    EXPECT_TRUE(referencing("Nope").empty());
}

TEST_F(ClassAssociations, RefuseFiltersThatAreNotKnown) {
    const auto code = [](auto query) {
        try {
            query();
        } catch (const CimError& error) {
            return error.code();
        }
        return CimCode{};
    };
    EXPECT_EQ(code([&] { associated("Fan", {.associationClass = "Nope"}); }),
              CimCode::invalidParameter);
    EXPECT_EQ(code([&] { associated("Fan", {.resultClass = "Nope"}); }), CimCode::invalidParameter);
    EXPECT_EQ(code([&] { referencing("Fan", "Nope"); }), CimCode::invalidParameter);
}

}  // namespace
}  // namespace cimhost
