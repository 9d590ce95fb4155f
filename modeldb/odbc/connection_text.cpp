#include "modeldb/odbc/connection_text.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <utility>
#include <vector>

#include "modeldb/base/ascii.h"
#include "modeldb/base/failure.h"

namespace modeldb {
namespace {

/// A keyword and its value, as it stands there, in braces or not.
struct Setting {
  std::wstring_view name;
  std::wstring_view value;
};

constexpr std::wstring_view kShown[] = {L"Driver",   L"DSN",        L"FileDSN",
                                        L"Server",   L"Servername", L"Port",
                                        L"Database", L"Uid",        L"Username"};

/// A statement that fails is undone alone (Protocol); prepared statements are the server's own; the
/// truth comes as a bit; texts stay as they are, however long.
constexpr std::pair<std::wstring_view, std::wstring_view> kOwn[] = {
    {L"Protocol", L"7.4-2"},          {L"UseServerSidePrepare", L"1"},
    {L"BoolsAsChar", L"0"},           {L"LFConversion", L"0"},
    {L"UseDeclareFetch", L"0"},       {L"TextAsLongVarchar", L"1"},
    {L"UnknownsAsLongVarchar", L"0"}, {L"ReadOnly", L"0"},
    {L"UpdatableCursors", L"0"}};

[[noreturn]] void refuse() {
  // The text may hold a password, so that it is not repeated.
  fail(kCannotOpenFile,
       L"What follows \"odbc:\" is no connection string. Give keywords and values, such as "
       L"\"odbc:Driver={PostgreSQL Unicode};Server=host;Database=bridge;Uid=anna;Pwd=...\", or "
       L"\"odbc:DSN=bridge\".");
}

std::wstring_view trimmed(std::wstring_view text) {
  constexpr std::wstring_view kBlanks = L" \t\r\n";
  const auto first = text.find_first_not_of(kBlanks);
  if (first == std::wstring_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

/// The length of the value that `text` begins with: up to a semicolon, or all of what is in braces,
/// where a closing one is doubled.
std::size_t length_of_value(std::wstring_view text) {
  const auto first = text.find_first_not_of(L" \t");
  if (first == std::wstring_view::npos || text[first] != L'{') {
    return std::min(text.find(L';'), text.size());
  }
  for (auto end = first + 1; end < text.size(); ++end) {
    if (text[end] != L'}') continue;
    if (end + 1 < text.size() && text[end + 1] == L'}') {
      ++end;
      continue;
    }
    const auto rest = text.substr(end + 1);
    const auto semicolon = std::min(rest.find(L';'), rest.size());
    if (!trimmed(rest.substr(0, semicolon)).empty()) refuse();
    return end + 1 + semicolon;
  }
  refuse();
}

std::vector<Setting> settings_of(std::wstring_view text) {
  std::vector<Setting> settings;
  while (!trimmed(text).empty()) {
    const auto equals = text.find(L'=');
    if (equals == std::wstring_view::npos) refuse();
    const auto name = trimmed(text.substr(0, equals));
    if (name.empty() || name.find_first_of(L";{}") != std::wstring_view::npos) refuse();
    text.remove_prefix(equals + 1);
    const auto length = length_of_value(text);
    settings.push_back({name, trimmed(text.substr(0, length))});
    text.remove_prefix(std::min(length + 1, text.size()));
  }
  if (settings.empty()) refuse();
  return settings;
}

/// What a setting says: its value without the braces around it.
std::wstring meaning_of(std::wstring_view value) {
  if (!value.starts_with(L'{')) return std::wstring(value);
  std::wstring meaning;
  for (std::size_t i = 1; i + 1 < value.size(); ++i) {
    meaning += value[i];
    if (value[i] == L'}') ++i;  // the other of two
  }
  return meaning;
}

/// An address of another kind may hold a password, and would be shown with it.
void require_no_address(std::wstring_view name, const std::wstring& meaning) {
  std::wstring text(meaning);
  std::ranges::transform(text, text.begin(), folded);
  const bool is_server = same_name(name, L"Server") || same_name(name, L"Servername");
  const bool has_user = is_server && text.find(L'@', 1) != std::wstring::npos;
  const bool is_address = std::ranges::any_of(
      std::array{L"://", L"password", L"pwd"},
      [&](const wchar_t* sign) { return text.find(sign) != std::wstring::npos; });
  if (!has_user && !is_address) return;
  fail(
      kCannotOpenFile,
      L"The value of " + std::wstring(name) +
          L" in the connection string is no plain name. It is not repeated here, since it may hold "
          L"a password. Give Server, Port, Database, Uid and Pwd, each by itself.");
}

void append(std::wstring& text, std::wstring_view name, std::wstring_view value) {
  text.append(name).append(L"=").append(value).append(L";");
}

}  // namespace

void require_no_connection_text(std::wstring_view location) {
  std::wstring text(location);
  std::ranges::transform(text, text.begin(), folded);
  for (const auto* const sign : {L"pwd=", L"password=", L"driver=", L"dsn=", L"://"}) {
    if (text.find(sign) == std::wstring::npos) continue;
    fail(kCannotOpenFile,
         L"The location is no path of a file, and that of a server begins with \"odbc:\", followed "
         L"by a connection string. It is not repeated here, since it may hold a password. Correct "
         L"its beginning.");
  }
}

ConnectionText read_connection_text(std::wstring_view location) {
  const auto given = location.substr(kOdbcPrefix.size());
  if (given.find(L'\0') != std::wstring_view::npos) refuse();
  bool is_told_elsewhere = false;  // whether to encrypt
  ConnectionText result{
      .complete = {}, .shown = std::wstring(kOdbcPrefix), .driver = {}, .source = {}};
  for (const auto& [name, value] : settings_of(given)) {
    const auto is_name = [&](std::wstring_view known) { return same_name(known, name); };
    if (std::ranges::any_of(kOwn, [&](const auto& own) { return is_name(own.first); })) continue;
    append(result.complete, name, value);
    is_told_elsewhere |= is_name(L"SSLmode") || is_name(L"DSN") || is_name(L"FileDSN");
    if (!std::ranges::any_of(kShown, is_name)) continue;
    const std::wstring meaning = meaning_of(value);
    require_no_address(name, meaning);
    append(result.shown, name, value);
    if (is_name(L"Driver")) result.driver = meaning;
    if (is_name(L"DSN")) result.source = meaning;
  }
  for (const auto& [name, value] : kOwn) append(result.complete, name, value);
  // The driver would not even try to, and a server that asks for it would refuse to talk.
  if (!is_told_elsewhere) append(result.complete, L"SSLmode", L"prefer");
  return result;
}

}  // namespace modeldb
