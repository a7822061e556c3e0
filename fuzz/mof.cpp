// MOF: a text is read, or refused with a place in it.
#include "cimhost/mof/MofReader.h"
#include "cimhost/repository/Names.h"
#include "fuzz/Require.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace {

/// What texts may build on; read before each of them, hence no more than that.
constexpr std::string_view schema = R"(
Qualifier Key : boolean = false, Scope(property, reference), Flavor(DisableOverride);
Qualifier Association : boolean = false, Scope(association), Flavor(DisableOverride);
Qualifier EmbeddedInstance : string = null, Scope(property, method, parameter);
Qualifier Description : string = null, Scope(any), Flavor(Translatable);
Qualifier MaxValue : sint64 = null, Scope(property);
Qualifier In : boolean = true, Scope(parameter);
Qualifier Out : boolean = false, Scope(parameter);
class TEST_Settings { uint16 Level; };
class TEST_Pump {
    [Key] string Id; uint32 Count; real32 Flow; uint16 Speeds[];
    [EmbeddedInstance("TEST_Settings")] string Settings;
};
[Association] class TEST_Link { [Key] TEST_Pump REF Antecedent; [Key] TEST_Pump REF Dependent; };
class TEST_Keys {
    [Key] uint8 Small; [Key] sint64 Signed; [Key] boolean Flag; [Key] datetime When; [Key] char16 Letter;
};
)";

/// Includes would read files of the machine that fuzzes.
bool mayInclude(std::string_view text) {
    for (std::size_t at = 0; (at = text.find_first_of("iI", at)) != std::string_view::npos; ++at) {
        if (cimhost::equalNames(text.substr(at, 7), "include")) return true;
    }
    return false;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    if (mayInclude(text)) return 0;
    cimhost::Repository repository;
    cimhost::MofReader reader(repository, "root/test");
    reader.readText(schema, "schema");
    try {
        reader.readText(text, "text");
    } catch (const cimhost::MofError& error) {
        require(error.line() >= 1 && error.column() >= 1, "a refusal names a place");
    }
    return 0;
}
