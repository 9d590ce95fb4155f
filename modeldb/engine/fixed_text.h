#pragma once

#include <atomic>
#include <cstddef>
#include <string>
#include <utility>

namespace modeldb {

/// The text of a statement that is run over and over, with parameters (?). By its number a database
/// finds the compiled statement without looking for the text.
class FixedText {
 public:
  explicit FixedText(std::wstring text = {}) : text_(std::move(text)) {}

  [[nodiscard]] const std::wstring& text() const { return text_; }
  [[nodiscard]] std::size_t number() const { return number_; }

 private:
  static inline std::atomic<std::size_t> count_ = 0;

  std::wstring text_;
  std::size_t number_ = count_++;
};

}  // namespace modeldb
