#pragma once

#include <filesystem>

namespace CLI {
class App;
}

namespace cimhost {

class SchemaOptions;

/// Adds --project FILE to a command, which must be done before its other options are added. The
/// file, cimhost.toml by custom, has the options of the command line as keys, without the dashes,
/// and the table `schema`: MOF files by namespace. Paths are relative to the file. What the command
/// line has wins over the file; lists get both, the command line's entries first, its MOF files
/// last. Keys of other commands alone are passed over.
///
/// Command, schema and `file`, which becomes the name of the file, outlive the parsing, which
/// throws UsageError `file:line: reason` for what the file has wrong.
void addProjectOption(CLI::App& command, SchemaOptions& schema, std::filesystem::path& file);

}  // namespace cimhost
