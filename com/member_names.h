#pragma once

#include <windows.h>

#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace com {

/// Dispatch identifiers of an interface's members that were asked for by name before. The platform
/// compares one name after the other by the rules of a language, which takes most of the time of a
/// late-bound call.
class MemberNames {
 public:
  /// Empty when the name was not asked for before. The case of Latin letters does not count.
  [[nodiscard]] std::optional<DISPID> find(std::wstring_view name) const {
    const auto found = ids_.find(name);
    return found == ids_.end() ? std::nullopt : std::optional(found->second);
  }

  void remember(std::wstring_view name, DISPID id) { ids_.emplace(name, id); }

 private:
  struct IsBefore {
    using is_transparent = void;
    bool operator()(std::wstring_view left, std::wstring_view right) const;
  };

  std::map<std::wstring, DISPID, IsBefore> ids_;
};

}  // namespace com
