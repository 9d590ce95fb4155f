#pragma once

#include <orv_modeldb.h>

#include <string>

#include "com/ptr.h"
#include "tools/model/database.h"

namespace orv {

/// A model that a command works on, open for as long as this lives.
class ModelFile {
 public:
  /// Opens a model that is there; raises, with a sentence, when it is not.
  static ModelFile open(const std::string& path);
  /// Opens the model, and makes it when there is none. What was made is removed at the end unless
  /// keep() was called.
  static ModelFile open_or_make(const std::string& path);
  ModelFile(ModelFile&&) = default;
  ModelFile& operator=(ModelFile&&) = delete;
  ~ModelFile();

  void keep() { made_.clear(); }

  [[nodiscard]] IModelDatabaseFile* object() const { return object_.get(); }
  [[nodiscard]] model::Database database() const { return model::Database(object_.get()); }

 private:
  ModelFile();
  void attach(const std::string& path);

  com::Ptr<IModelDatabaseFile> object_;
  std::string made_;  // path of a file that was not there before
};

}  // namespace orv
