#include "cimhost/server/ConsoleClasses.h"

#include "cimhost/mof/MofReader.h"

#include <console_classes.h>

#include <string>

namespace cimhost {
namespace {

constexpr const char* ownNameSpace = "root/cimhost";

}  // namespace

void addConsoleClasses(Repository& repository) {
    const NameSpace& nameSpace = repository.make(ownNameSpace);
    MofReader reader(repository, ownNameSpace);
    const bool hasQualifiers = !nameSpace.qualifiers().empty();
    for (const auto& [name, text] : consoleClasses) {
        const bool isThere =
            name == "qualifiers" ? hasQualifiers : nameSpace.findClass(name) != nullptr;
        if (!isThere) reader.readText(text, std::string(name) + ".mof");
    }
}

}  // namespace cimhost
