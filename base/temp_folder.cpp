#include "base/temp_folder.h"

#include <chrono>
#include <filesystem>
#include <random>

#include "base/path.h"

namespace nv {

std::optional<std::string> MakeTemporaryFolder(std::string_view prefix) {
  std::error_code error;
  const std::filesystem::path base = std::filesystem::temp_directory_path(error);
  if (error) return std::nullopt;
  std::mt19937_64 random(
      static_cast<unsigned long long>(std::chrono::steady_clock::now().time_since_epoch().count()) ^
      std::random_device{}());
  // create_directory makes the folder only when no folder of that name is there, so a name
  // another process took is passed over.
  for (int attempt = 0; attempt < 100; ++attempt) {
    const std::filesystem::path path =
        base / (std::string(prefix) + std::to_string(random() % 1000000000));
    if (std::filesystem::create_directory(path, error)) {
      return WithTrailingSeparator(path.string());
    }
  }
  return std::nullopt;
}

int RemoveStaleFolders(const std::string& folder, std::string_view prefix, std::chrono::hours age) {
  std::error_code error;
  const auto now = std::filesystem::file_time_type::clock::now();
  int removed = 0;
  for (std::filesystem::directory_iterator it(folder, error), end; !error && it != end;
       it.increment(error)) {
    const std::string name = it->path().filename().string();
    if (!name.starts_with(prefix) || !it->is_directory(error)) continue;
    const auto changed = std::filesystem::last_write_time(it->path(), error);
    if (error || now - changed < age) {
      error.clear();
      continue;
    }
    std::error_code ignored;
    if (std::filesystem::remove_all(it->path(), ignored) > 0 && !ignored) ++removed;
  }
  return removed;
}

int RemoveStaleTemporaryFolders(std::string_view prefix, std::chrono::hours age) {
  std::error_code error;
  const std::filesystem::path base = std::filesystem::temp_directory_path(error);
  return error ? 0 : RemoveStaleFolders(base.string(), prefix, age);
}

}  // namespace nv
