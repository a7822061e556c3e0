#include "cimhost/cimxml/Parameters.h"

#include "cimhost/repository/CimError.h"
#include "tests/cimhost/cimxml/Requests.h"
#include "tests/support/Thrown.h"

#include <gtest/gtest.h>

namespace cimhost {
namespace {

constexpr ParameterSet allowed{Parameter::className, Parameter::localOnly, Parameter::propertyList,
                               Parameter::role};

/// Holds the document that the parameters look into.
class Given {
public:
    explicit Given(const std::string& parameters)
        : _document(intrinsicRequest("Op", parameters), {Tag::cim}),
          _parameters(*_document.root().firstChild()->firstChild()->firstChild(), allowed) {}

    const Parameters* operator->() const { return &_parameters; }

private:
    XmlDocument _document;
    Parameters _parameters;
};

std::string list(std::string_view inside) {
    return parameter("PropertyList", "<VALUE.ARRAY>" + std::string(inside) + "</VALUE.ARRAY>");
}

TEST(Parameters, TakeTheirDefaultWhenAbsentOrWithoutValue) {
    for (const std::string& given :
         {std::string(),
          parameter("LocalOnly", "") + parameter("Role", "") + parameter("ClassName", "")}) {
        const Given parameters(given);
        EXPECT_TRUE(parameters->boolean(Parameter::localOnly, true));
        EXPECT_FALSE(parameters->boolean(Parameter::localOnly, false));
        EXPECT_EQ(parameters->text(Parameter::role), "");
        EXPECT_EQ(parameters->className(Parameter::className), "");
        EXPECT_EQ(parameters->propertyList(), std::nullopt);
    }
}

TEST(Parameters, AreFoundByNameInAnyCaseAndOrder) {
    const Given parameters(parameter("rOLE", "<VALUE>Near</VALUE>") +
                           parameter("LOCALONLY", "<VALUE>FALSE</VALUE>") +
                           parameter("classname", "<CLASSNAME NAME='C'/>"));
    EXPECT_EQ(parameters->text(Parameter::role), "Near");
    EXPECT_FALSE(parameters->boolean(Parameter::localOnly, true));
    EXPECT_EQ(parameters->requiredClassName(Parameter::className), "C");
}

TEST(Parameters, RefuseUnknownOnes) {
    EXPECT_EQ(errorOf([] { Given(parameter("Nope", "<VALUE/>")); }), "4: Op has no parameter Nope");
    EXPECT_EQ(errorOf([] { Given(parameter("Query", "<VALUE/>")); }),
              "4: Op has no parameter Query");
    EXPECT_EQ(errorOf([] { Given(parameter("", "")); }), "4: Op has no parameter ");
}

TEST(Parameters, RefuseDuplicates) {
    EXPECT_EQ(errorOf([] { Given(parameter("Role", "<VALUE/>") + parameter("ROLE", "<VALUE/>")); }),
              "4: parameter ROLE is given more than once");
    EXPECT_EQ(errorOf([] { Given(parameter("Role", "") + parameter("Role", "")); }),
              "4: parameter Role is given more than once");
}

TEST(Parameters, RefuseMissingOnes) {
    EXPECT_EQ(errorOf([] { Given("")->requiredClassName(Parameter::className); }),
              "4: parameter ClassName is missing");
    EXPECT_EQ(errorOf([] { Given(parameter("Role", ""))->requiredText(Parameter::role); }),
              "4: parameter Role is missing");
}

TEST(Parameters, RefuseValuesOfAnotherKind) {
    EXPECT_EQ(
        errorOf([] {
            Given(parameter("ClassName", "<VALUE>C</VALUE>"))->className(Parameter::className);
        }),
        "4: parameter ClassName cannot be a VALUE");
    EXPECT_EQ(errorOf([] {
                  Given(parameter("LocalOnly", "<VALUE>maybe</VALUE>"))
                      ->boolean(Parameter::localOnly, true);
              }),
              "4: parameter LocalOnly is neither true nor false");
    EXPECT_EQ(errorOf([] {
                  Given(parameter("LocalOnly", "<CLASSNAME NAME='C'/>"))
                      ->boolean(Parameter::localOnly, true);
              }),
              "4: parameter LocalOnly cannot be a CLASSNAME");
    EXPECT_EQ(errorOf([] { Given(parameter("Role", "<VALUE.ARRAY/>"))->text(Parameter::role); }),
              "4: parameter Role cannot be a VALUE.ARRAY");
    EXPECT_EQ(errorOf([] { Given(parameter("PropertyList", "<VALUE>p</VALUE>"))->propertyList(); }),
              "4: parameter PropertyList cannot be a VALUE");
    EXPECT_EQ(errorOf([] { Given(list("<VALUE.NULL/>"))->propertyList(); }),
              "4: parameter PropertyList holds NULL");
}

TEST(Parameters, ReadBooleansInAnyCase) {
    for (const std::string text : {"true", "TRUE", "True"}) {
        EXPECT_TRUE(Given(parameter("LocalOnly", "<VALUE>" + text + "</VALUE>"))
                        ->boolean(Parameter::localOnly, false));
    }
}

TEST(Parameters, TellAnEmptyPropertyListFromNone) {
    EXPECT_EQ(Given(list(""))->propertyList(), std::vector<std::string>());
    EXPECT_EQ(Given(parameter("PropertyList", "<VALUE.ARRAY/>"))->propertyList(),
              std::vector<std::string>());
    EXPECT_EQ(Given(parameter("PropertyList", ""))->propertyList(), std::nullopt);
    EXPECT_EQ(Given(list("<VALUE>b</VALUE><VALUE>A</VALUE><VALUE>a</VALUE><VALUE>B</VALUE>"))
                  ->propertyList(),
              (std::vector<std::string>{"b", "A"}));
}

TEST(Parameters, BoundThePropertyList) {
    std::string names;
    for (int i = 0; i < 1024; ++i) names += "<VALUE>p" + std::to_string(i) + "</VALUE>";
    EXPECT_EQ(Given(list(names + names))->propertyList()->size(), 1024U);
    EXPECT_EQ(errorOf([&] { Given(list(names + "<VALUE>q</VALUE>"))->propertyList(); }),
              "4: parameter PropertyList is too long");
}

}  // namespace
}  // namespace cimhost
