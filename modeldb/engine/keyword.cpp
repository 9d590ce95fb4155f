#include "modeldb/engine/keyword.h"

#include <algorithm>
#include <array>
#include <span>

#include "modeldb/base/ascii.h"

namespace modeldb {
namespace {

struct Entry {
  std::wstring_view word;
  Keyword keyword;
};

/// By length, so that a name is compared with the few words that are as long as it is.
constexpr auto kEntries = std::to_array<Entry>({
    {L"AS", Keyword::kAs},
    {L"ON", Keyword::kOn},
    {L"OR", Keyword::kOr},
    {L"AND", Keyword::kAnd},
    {L"SET", Keyword::kSet},
    {L"FROM", Keyword::kFrom},
    {L"FULL", Keyword::kFull},
    {L"JOIN", Keyword::kJoin},
    {L"LEFT", Keyword::kLeft},
    {L"WITH", Keyword::kWith},
    {L"BEGIN", Keyword::kBegin},
    {L"CROSS", Keyword::kCross},
    {L"GROUP", Keyword::kGroup},
    {L"INNER", Keyword::kInner},
    {L"LIMIT", Keyword::kLimit},
    {L"ORDER", Keyword::kOrder},
    {L"OUTER", Keyword::kOuter},
    {L"RIGHT", Keyword::kRight},
    {L"UNION", Keyword::kUnion},
    {L"USING", Keyword::kUsing},
    {L"WHERE", Keyword::kWhere},
    {L"COMMIT", Keyword::kCommit},
    {L"DELETE", Keyword::kDelete},
    {L"EXCEPT", Keyword::kExcept},
    {L"HAVING", Keyword::kHaving},
    {L"INSERT", Keyword::kInsert},
    {L"SELECT", Keyword::kSelect},
    {L"UPDATE", Keyword::kUpdate},
    {L"VALUES", Keyword::kValues},
    {L"WINDOW", Keyword::kWindow},
    {L"INDEXED", Keyword::kIndexed},
    {L"NATURAL", Keyword::kNatural},
    {L"ROLLBACK", Keyword::kRollback},
    {L"INTERSECT", Keyword::kIntersect},
    {L"RETURNING", Keyword::kReturning},
    {L"TRANSACTION", Keyword::kTransaction},
});

constexpr std::size_t length_of(const Entry& entry) { return entry.word.size(); }
static_assert(std::ranges::is_sorted(kEntries, {}, length_of));

constexpr std::size_t kLongest = kEntries.back().word.size();

/// Where the words of each length begin; one more, for the end of the last.
constexpr auto kStarts = [] {
  std::array<std::size_t, kLongest + 2> starts{};
  for (std::size_t length = 0; length < starts.size(); ++length) {
    starts[length] = std::ranges::lower_bound(kEntries, length, {}, length_of) - kEntries.begin();
  }
  return starts;
}();

}  // namespace

Keyword keyword_of(std::wstring_view word) {
  if (word.size() > kLongest) return Keyword::kNone;
  for (std::size_t i = kStarts[word.size()]; i < kStarts[word.size() + 1]; ++i) {
    if (same_name(kEntries[i].word, word)) return kEntries[i].keyword;
  }
  return Keyword::kNone;
}

}  // namespace modeldb
