#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

/// A small file that is only ever there as a whole.
namespace cimhost {

/// Nothing when there is no such file. Throws std::runtime_error that names the file when it cannot
/// be read or has more than 16 MiB.
std::optional<std::string> readWholeFile(const std::filesystem::path& file);

/// Puts the text in the file's place, for its owner's eyes (0600): it is written to a new file
/// beside it, whose name nobody can foresee and wait for, brought to the disk and renamed, so that
/// a crash leaves the one or the other. Throws
/// std::runtime_error that names the file, also for more than readWholeFile reads; the old one is
/// as it was then.
void replaceFile(const std::filesystem::path& file, std::string_view text);

}  // namespace cimhost
