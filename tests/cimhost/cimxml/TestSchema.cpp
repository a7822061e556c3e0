#include "tests/cimhost/cimxml/TestSchema.h"

#include "cimhost/mof/MofReader.h"

namespace cimhost {
namespace {

constexpr std::string_view qualifiers = R"(
Qualifier Abstract : boolean = false, Scope(class, association, indication), Flavor(Restricted);
Qualifier Association : boolean = false, Scope(association), Flavor(DisableOverride);
Qualifier Deprecated : string[], Scope(any), Flavor(Restricted);
Qualifier Description : string = null, Scope(any), Flavor(Translatable);
Qualifier EmbeddedInstance : string = null, Scope(property, method, parameter);
Qualifier EmbeddedObject : boolean = false, Scope(property, method, parameter), Flavor(DisableOverride);
Qualifier In : boolean = true, Scope(parameter), Flavor(DisableOverride);
Qualifier Key : boolean = false, Scope(property, reference), Flavor(DisableOverride);
Qualifier MaxValue : sint64 = null, Scope(property, method, parameter);
Qualifier Out : boolean = false, Scope(parameter), Flavor(DisableOverride);
Qualifier Override : string = null, Scope(property, reference, method), Flavor(Restricted);
Qualifier Static : boolean = false, Scope(property, method), Flavor(DisableOverride);
Qualifier ValueMap : string[], Scope(property, method, parameter);
)";

constexpr std::string_view classes = R"(
[Abstract, Description("Whatever there is")]
class TEST_Element {
    [Key] string Id;
    [Description("Says \"<how many>\" & more"), MaxValue(9)] uint32 Count = 5;
    [Deprecated{"TEST_Element.Count"}] uint8 Old;
    [Static] uint32 Reset([In, Description("Hard?")] boolean Hard, [In(false), Out] string Text);
    sint32 Touch();
};

class TEST_Settings { uint16 Level; string Name; };

class TEST_Fan : TEST_Element {
    [Override("Count"), Description("Blades")] uint32 Count = 3;
    uint16 Speeds[];
    string Fixed[4] = {"a", "b"};
    boolean Running;
    [EmbeddedInstance("TEST_Settings")] string Settings;
    [EmbeddedObject] string Anything;
    uint32 Spin([In] uint16 Speed, [In] string Names[], [In] TEST_Element REF Near,
                [In] TEST_Element REF All[], [In, Out, EmbeddedInstance("TEST_Settings")] string Settings,
                [In(false), Out] uint64 Total);
};

class TEST_Pump : TEST_Element { real32 Flow; };

[Association] class TEST_Link {
    [Key] TEST_Element REF Antecedent;
    [Key] TEST_Element REF Dependent;
    string Note;
};

[Association] class TEST_SpecialLink : TEST_Link { uint8 Weight; };

class TEST_Keys {
    [Key] uint8 Small;
    [Key] sint64 Signed;
    [Key] boolean Flag;
    [Key] datetime When;
    [Key] char16 Letter;
};

class TEST_Only { string Name; };

[Association] class TEST_Values {
    [Key] string Id;
    boolean B; char16 C; uint8 U8; uint16 U16; uint32 U32; uint64 U64;
    sint8 S8; sint16 S16; sint32 S32; sint64 S64; real32 R32; real64 R64;
    string S; datetime D; TEST_Element REF R; TEST_Element REF Q;
    boolean BA[]; char16 CA[]; uint8 U8A[]; sint64 S64A[]; real64 R64A[]; string SA[]; datetime DA[];
    [EmbeddedInstance("TEST_Settings")] string E;
    [EmbeddedInstance("TEST_Settings")] string EA[];
};
)";

constexpr std::string_view otherClasses = R"(
class TEST_Foreign { [Key] uint32 Number; };
)";

}  // namespace

void fillTestSchema(Repository& repository) {
    MofReader reader(repository, "root/test");
    reader.readText(qualifiers, "qualifiers");
    reader.readText(classes, "classes");
    MofReader other(repository, "root/other");
    other.readText(qualifiers, "qualifiers");
    other.readText(otherClasses, "other classes");
}

}  // namespace cimhost
