#pragma once

#include <string>

#include "modeldb/engine/statement.h"

struct sqlite3;

namespace modeldb {

/// Decides, while SQLite compiles a statement, whether its text may do what it says. What is not
/// expressly allowed to the statement's author is refused.
class Authorizer {
 public:
  void install(sqlite3* handle);

  /// Who wrote the statement that is compiled, or compiled anew while it runs, from here on.
  void begin(Trust trust) {
    trust_ = trust;
    refused_.clear();
    lacked_memory_ = false;
  }

  /// Whether rows are put back as they were, with what triggers did to them. Whatever a trigger of
  /// a statement that is compiled meanwhile would read is NULL, so that it finds nothing to do.
  void set_replaying(bool is_replaying) { is_replaying_ = is_replaying; }

  /// What the statement wanted to do and may not, such as "change the schema"; empty when nothing
  /// was refused.
  [[nodiscard]] const std::wstring& refused() const { return refused_; }
  [[nodiscard]] bool has_refused() const { return lacked_memory_ || !refused_.empty(); }
  /// Whether there was no memory to decide with, so that the statement was refused unseen.
  [[nodiscard]] bool lacked_memory() const { return lacked_memory_; }

 private:
  static int decide(void* self, int action, const char* first, const char* second,
                    const char* database, const char* trigger);
  [[nodiscard]] bool allows(int action, const char* first, const char* second);

  Trust trust_ = Trust::kRead;
  bool is_replaying_ = false;
  std::wstring refused_;
  bool lacked_memory_ = false;
};

}  // namespace modeldb
