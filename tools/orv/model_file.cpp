#include "tools/orv/model_file.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <string_view>

#include "com/bstr.h"
#include "com/error.h"
#include "tools/orv/objects.h"
#include "tools/text/failure.h"
#include "tools/text/file.h"
#include "tools/text/utf8.h"

namespace orv {
namespace {

/// A model on a server; whether it is there the module finds out.
bool is_on_server(const std::string& location) {
  constexpr std::string_view kPrefix = "odbc:";
  return std::ranges::equal(location.substr(0, kPrefix.size()), kPrefix, {},
                            [](unsigned char c) { return std::tolower(c); });
}

bool is_there(const std::string& path) {
  if (is_on_server(path)) return true;
  std::error_code error;
  return std::filesystem::exists(text::path_of(path), error);
}

}  // namespace

ModelFile::ModelFile() : object_(create<::ModelDatabase, IModelDatabaseFile>()) {}

void ModelFile::attach(const std::string& path) {
  com::check(object_->Open(com::Bstr(text::to_wide(path)).get()), object_);
}

ModelFile ModelFile::open(const std::string& path) {
  if (!is_there(path)) {
    if (path.find('=') != std::string::npos || path.find("://") != std::string::npos) {
      text::fail(text::kCannotReadFile,
                 "There is no model of that name. It is not repeated here, since it may hold a "
                 "password: a model on a server is \"odbc:\" and a connection string.");
    }
    text::fail(text::kCannotReadFile,
               "There is no model \"" + path + "\". 'orv import' makes one from a deck.");
  }
  std::error_code error;
  if (std::filesystem::file_size(text::path_of(path), error) == 0 && !error) {
    // It would become a model, by a command that only reads.
    text::fail(
        text::kCannotReadFile,
        "The file \"" + path + "\" is empty, and no model. 'orv import' makes one from a deck.");
  }
  ModelFile file;
  file.attach(path);
  return file;
}

ModelFile ModelFile::open_or_make(const std::string& path) {
  ModelFile file;
  // Before it is opened: what a full disk leaves of it is removed, too.
  if (!is_there(path)) file.made_ = path;
  file.attach(path);
  return file;
}

ModelFile::~ModelFile() {
  if (!object_) return;  // moved from
  object_->Close();
  if (made_.empty()) return;
  std::error_code ignored;
  std::filesystem::remove(text::path_of(made_), ignored);
}

}  // namespace orv
