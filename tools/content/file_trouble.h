#pragma once

#include <filesystem>
#include <string>

/// Why a file could not be opened, as a sentence that names its full path: users may be in another
/// folder than they think. For after the attempt; nothing else would know what the system allows.
namespace content {

/// Whether Windows takes the path for a device: nul.inp is one in every folder.
bool is_device(const std::filesystem::path& path);

std::string why_not_read(const std::filesystem::path& path);
std::string why_not_written(const std::filesystem::path& path);

}  // namespace content
