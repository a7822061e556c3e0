#pragma once

#include <stdexcept>
#include <string>

namespace cimhost {

/// Why a text is no CIM-XML document.
class XmlError : public std::runtime_error {
public:
    enum class Kind {
        notWellFormed,  ///< not XML
        notValid,       ///< XML, but not as the grammar wants it, with a DTD, or beyond a limit
    };

    XmlError(Kind kind, const std::string& message) : std::runtime_error(message), _kind(kind) {}

    Kind kind() const noexcept { return _kind; }

private:
    Kind _kind;
};

}  // namespace cimhost
