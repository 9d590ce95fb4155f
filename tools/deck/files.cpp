#include "tools/deck/files.h"

#include <filesystem>
#include <fstream>

#include "tools/content/file_trouble.h"

namespace deck {
namespace {

namespace fs = std::filesystem;

fs::path path_of(const std::string& utf8) { return {std::u8string(utf8.begin(), utf8.end())}; }

std::string read_file(const fs::path& path) {
  std::error_code error;
  const bool is_file = fs::is_regular_file(path, error) && !content::is_device(path);
  const auto size = is_file ? fs::file_size(path, error) : 0;
  std::ifstream file;
  if (is_file) file.open(path, std::ios::binary);
  if (error || !file.is_open()) throw CannotOpen(content::why_not_read(path));
  std::string bytes(static_cast<std::size_t>(size), '\0');
  file.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  if (file.bad()) throw CannotOpen(content::why_not_read(path));
  bytes.resize(static_cast<std::size_t>(file.gcount()));
  return bytes;
}

}  // namespace

OpenFile files_beside(const std::string& deck_path) {
  return [folder = path_of(deck_path).parent_path(), deck_path](const std::string& path) {
    return path == deck_path ? read_file(path_of(path)) : read_file(folder / path_of(path));
  };
}

}  // namespace deck
