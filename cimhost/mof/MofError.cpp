#include "cimhost/mof/MofError.h"

#include <utility>

namespace cimhost {

MofError::MofError(std::string file, std::size_t line, std::size_t column,
                   const std::string& message)
    : std::runtime_error(file + ":" + std::to_string(line) + ":" + std::to_string(column) + ": " +
                         message),
      _file(std::move(file)),
      _line(line),
      _column(column) {}

void failAt(const MofPosition& position, const std::string& message) {
    throw MofError(*position.file, position.line, position.column, message);
}

}  // namespace cimhost
