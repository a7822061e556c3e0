#pragma once

#include "cimhost/mof/MofReader.h"

#include <string>
#include <string_view>
#include <vector>

namespace cimhost::test {

/// Qualifier declarations that the tests' classes use, on one line.
extern const std::string qualifiers;

/// A repository that texts are read into, all in the namespace "root/test".
class MofText {
public:
    MofText();

    /// Reads the text as file "t.mof". Throws as the reader does.
    void read(std::string_view text);

    /// What the reader says when it refuses the text; empty when it takes it.
    std::string errorOf(std::string_view text);

    NameSpace& nameSpace() { return *_repository.find("root/test"); }
    Repository& repository() { return _repository; }
    const Class& classOf(std::string_view name);
    const PropertyDefinition& property(std::string_view className, std::string_view name);
    const MethodDefinition& method(std::string_view className, std::string_view name);

    /// The default value of a property that is declared so: `uint8 P = <literal>`.
    Value defaultOf(const std::string& declaration);

private:
    Repository _repository;
    int _classCount = 0;
};

/// The names of classes, in their order.
std::vector<std::string> namesOf(const std::vector<const Class*>& classes);

}  // namespace cimhost::test
