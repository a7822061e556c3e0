#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>

namespace cimhost {

/// Where and why MOF text was refused. what() reads "file:line:column: message".
class MofError : public std::runtime_error {
public:
    MofError(std::string file, std::size_t line, std::size_t column, const std::string& message);

    const std::string& file() const noexcept { return _file; }
    std::size_t line() const noexcept { return _line; }      ///< counted from 1
    std::size_t column() const noexcept { return _column; }  ///< counted from 1, in bytes

private:
    std::string _file;
    std::size_t _line;
    std::size_t _column;
};

/// A place in a text of MOF. The file's name belongs to the compilation and outlives every
/// position.
struct MofPosition {
    const std::string* file = nullptr;
    std::size_t line = 1;
    std::size_t column = 1;
};

[[noreturn]] void failAt(const MofPosition& position, const std::string& message);

}  // namespace cimhost
