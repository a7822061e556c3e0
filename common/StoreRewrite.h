#pragma once

#include <string>

namespace PYL {

/// What a store's file is to hold after a rewrite, kept beside it ("<file>.rewrite") while the file
/// itself is cut short and written again: a process that is killed meanwhile, or a full disk, loses
/// nothing. The copy is on the disk, whole, before keep() returns. Nothing throws; a failure is
/// errno.
class StoreRewrite {
public:
    explicit StoreRewrite(std::string const& file)
        : _file(file), _copy(file + ".rewrite"), _unfinished(file + ".rewrite.new") {}

    /// Keeps the content, with the mode and the owner of the open file. False when it could not be
    /// kept.
    bool keep(std::string const& content, int openFile) noexcept;

    /// Puts the kept content in the place of the file. False when it could not; errno is ENOENT
    /// when none was kept.
    bool restore() noexcept;

    /// The file is whole: the copy is not needed any more.
    void drop() noexcept;

private:
    bool _writeUnfinished(std::string const& content, int openFile) noexcept;
    bool _syncDirectory() noexcept;

    std::string _file;
    std::string _copy;
    std::string _unfinished;  // not a copy yet: an earlier one that was not finished is replaced
};

/// Writes the whole text at the offset. False when it could not; errno says why, and some of it may
/// stand in the file.
bool writeAt(int descriptor, std::string const& text, long offset) noexcept;

}  // namespace PYL
