#pragma once

#include <string>

namespace PYL {

/// What a store's file is to hold after a rewrite, kept beside it ("<file>.rewrite") while the file
/// itself is cut short and written again: a process that is killed meanwhile, a power cut or a full
/// disk loses nothing. The copy is on the disk, whole, before keep() returns. Nothing throws but
/// the constructor; a failure is errno.
///
/// The process that keeps a copy holds a lock on it (flock(2)) until this object ends: a copy that
/// is locked belongs to a rewrite that is running, and nobody else takes it or replaces it. Nobody
/// waits for the lock either: who finds it held is told EWOULDBLOCK.
class StoreRewrite {
public:
    explicit StoreRewrite(const std::string& file)
        : _file(file),
          _directory(file.substr(0, file.rfind('/') + 1)),
          _copy(file + ".rewrite"),
          _unfinished(file + ".rewrite.new") {}
    ~StoreRewrite();
    StoreRewrite(const StoreRewrite&) = delete;
    StoreRewrite& operator=(const StoreRewrite&) = delete;

    /// Keeps the content, with the mode and the owner of the open file. False when it could not be
    /// kept.
    bool keep(const std::string& content, int openFile) noexcept;

    /// Puts the kept content in the place of the file, be it of this rewrite or of one that did not
    /// come to its end. False when it could not; errno is ENOENT when none was kept and EWOULDBLOCK
    /// when the rewrite is still running.
    bool restore() noexcept;

    /// The file is whole: the copy is not needed any more. False when it is still there: the next
    /// store that is opened will take it.
    bool drop() noexcept;

private:
    bool _place(const std::string& content, int openFile) noexcept;
    bool _syncDirectory() noexcept;

    std::string _file;
    std::string _directory;
    std::string _copy;
    std::string _unfinished;  // not a copy yet: an earlier one that was not finished is replaced
    int _locked = -1;         // the descriptor of the copy that is ours
};

/// As open(2), but for the owner alone, not passed on to children, and again when interrupted.
int openFile(const std::string& path, int flags) noexcept;

/// Writes the whole text at the offset. False when it could not; errno says why, and some of it may
/// stand in the file.
bool writeAt(int descriptor, const std::string& text, long offset) noexcept;

/// Writes the whole text from the start, has it on the disk, and closes. False when one of these
/// could not be done; errno says why.
bool writeAndClose(int descriptor, const std::string& text) noexcept;

}  // namespace PYL
