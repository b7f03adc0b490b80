// Files and folders as the store uses them: an open file with reads and writes at
// positions, and the few folder operations of a company's files. Everything above base/
// reaches the file system through here (and file_util.h, lock_file.h), so that a second
// platform is one more implementation of these two headers.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace nv {

// An open file; closed when destroyed. Moves, never copies: it owns its handle.
class File {
 public:
  enum class Mode {
    kRead,          // an existing file, for reading
    kReadWrite,     // an existing file, for reading and writing
    kCreate,        // created, or truncated when it exists; reading and writing
    kOpenOrCreate,  // created when missing, kept when it exists; reading and writing
    kAppend,        // created when missing; every write goes to the end, in one piece
  };

  File() = default;
  // A destructor has nobody to tell; callers that care close first.
  ~File() { static_cast<void>(Close()); }
  File(File&& other) noexcept : handle_(other.handle_) { other.handle_ = -1; }
  File& operator=(File&& other) noexcept;
  File(const File&) = delete;
  File& operator=(const File&) = delete;

  // The file at `path` in `mode`, or an empty optional; *missing (when given) tells
  // whether that was because the file or its folder does not exist.
  static std::optional<File> Open(const std::string& path, Mode mode, bool* missing = nullptr);

  bool is_open() const { return handle_ >= 0; }
  // Exactly `count` bytes at `offset`; false on an error or at the end of the file.
  [[nodiscard]] bool ReadAt(uint64_t offset, void* buffer, size_t count) const;
  // Up to `count` bytes at `offset`: the number read (fewer at the end), or -1.
  [[nodiscard]] int64_t ReadSomeAt(uint64_t offset, void* buffer, size_t count) const;
  [[nodiscard]] bool WriteAt(uint64_t offset, const void* buffer, size_t count);
  // Writes at the end (kAppend: the system puts each call's bytes together at the end,
  // so that lines of several writers never interleave).
  [[nodiscard]] bool Append(std::string_view bytes);
  // The file's bytes reach the disk before this returns true.
  [[nodiscard]] bool Sync();
  // Size in bytes; nullopt when it cannot be told.
  std::optional<uint64_t> Size() const;
  // 0, or -1 when the system reported an error on closing. Closing a closed file does
  // nothing and gives 0.
  [[nodiscard]] int Close();

  // The system's handle, for the lock files built on it (base/lock_file.h).
  int handle() const { return handle_; }

 private:
  explicit File(int handle) : handle_(handle) {}
  int handle_ = -1;
};

[[nodiscard]] bool PathExists(const std::string& path);
[[nodiscard]] bool IsFolder(const std::string& path);
// True when both paths name the same existing file (a doubled separator, a link, another
// spelling of it).
[[nodiscard]] bool SameFile(const std::string& a, const std::string& b);

// Names of the entries of `folder` ("" is the current folder), without "." and "..";
// empty when it cannot be read.
std::vector<std::string> ListFolder(const std::string& folder);

// Makes one folder; false when it exists already or cannot be made.
[[nodiscard]] bool MakeFolder(const std::string& path);
// Copies a file's bytes to `to`, replacing a file there.
[[nodiscard]] bool CopyFileBytes(const std::string& from, const std::string& to);
// Renames a file or folder; a file at `to` is replaced.
[[nodiscard]] bool RenamePath(const std::string& from, const std::string& to);
// Removes a file; true also when there was none.
[[nodiscard]] bool RemoveFile(const std::string& path);
// Removes a folder only when it is empty; false otherwise, or when it cannot be removed.
[[nodiscard]] bool RemoveEmptyFolder(const std::string& path);
// Removes a file, or a folder with everything in it; true also when there was none.
[[nodiscard]] bool RemoveAll(const std::string& path);
// The folder's entries (a new or removed name) reach the disk before this returns true.
[[nodiscard]] bool SyncFolder(const std::string& folder);

}  // namespace nv
