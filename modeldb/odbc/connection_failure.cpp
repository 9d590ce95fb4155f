#include "modeldb/odbc/connection_failure.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <vector>

#include "modeldb/base/ascii.h"
#include "modeldb/base/failure.h"

namespace modeldb {
namespace {

/// What is said of a message that has these words.
struct Reason {
  std::wstring_view words;
  std::wstring_view sentence;
};

constexpr std::wstring_view kNoOneThere =
    L"no server answers at that address. Check Server and Port, that the server runs, and that it "
    L"listens on the network.";

/// The driver has one state for all of it, so that the words decide, which are those of
/// PostgreSQL's client library and server in English; the first that fits counts.
constexpr Reason kReasons[] = {
    {L"pg_hba.conf",
     L"the server's pg_hba.conf has no line that lets this user into that database from this "
     L"machine, or only with SSLmode=require. Have one added."},
    {L"no password supplied",
     L"the server asks for a password, and was given none. Add Pwd, or a line for the server to "
     L"the "
     L"user's password file."},
    {L"authentication failed",
     L"the server refuses the user or the password. Correct Uid and Pwd."},
    {L"not permitted to log in",
     L"the server does not let this user log in. Have the owner of the server allow it (LOGIN)."},
    {L"too many connections for",
     L"this user, or the database, has as many connections as it may have. Close one, or have more "
     L"allowed."},
    {L"not currently accepting connections",
     L"the database lets nobody in at present. Ask the owner of the server."},
    {L"permission denied for database",
     L"this user may not connect to the database. Have the right granted (CONNECT)."},
    {L"role \"", L"the server knows no such user. Correct Uid, or have the user made first."},
    {L"database \"", L"the server has no such database. Correct Database, or have it made first."},
    {L"translate host name", L"there is no machine of the name that Server gives. Correct Server."},
    {L"connection option \"port\"", L"Port is to be a whole number. Correct it."},
    {L"invalid port number", L"Port is to be a number from 1 to 65535. Correct it."},
    {L"SSL",
     L"what SSLmode asks for, and how the server or its certificate is set up, do not go together. "
     L"Change one of them."},
    {L"onnection refused", kNoOneThere},
    {L"timeout expired", kNoOneThere},
    {L"timed out", kNoOneThere},
    {L"No route to host", kNoOneThere},
    {L"unreachable", kNoOneThere},
    {L"connection slots", L"the server has no connection left. Try again later."},
    {L"too many", L"the server has no connection left. Try again later."},
    {L"starting up", L"the server is just starting. Try again in a moment."},
    {L"shutting down", L"the server is being stopped. Try again later."},
};
constexpr std::wstring_view kUnknown =
    L"the server cannot be reached, or refuses the user, the password or the database. Check that "
    L"it runs, and the connection string.";

std::vector<std::wstring> installed_drivers(const EnvironmentHandle& environment) {
  std::vector<std::wstring> names;
  std::array<SQLWCHAR, 256> name{};
  std::array<SQLWCHAR, 1024> attributes{};
  for (SQLUSMALLINT which = SQL_FETCH_FIRST;; which = SQL_FETCH_NEXT) {
    const SQLRETURN result = DriverManager::instance().SQLDriversW(
        environment.get(), which, name.data(), name.size(), nullptr, attributes.data(),
        attributes.size(), nullptr);
    if (!SQL_SUCCEEDED(result)) return names;
    names.emplace_back(name.data());
  }
}

std::wstring listed(const std::vector<std::wstring>& names) {
  std::wstring list;
  for (const std::wstring& name : names) list += (list.empty() ? L"" : L", ") + quoted(name);
  return list;
}

/// What is wrong on this machine: nothing was sent yet.
std::wstring about_driver(const ConnectionText& text, const EnvironmentHandle& environment) {
  if (text.driver.empty() && text.source.empty()) {
    return L"neither an ODBC driver nor a data source is named. Give Driver or DSN.";
  }
  if (text.driver.empty()) {
    return L"its data source " + quoted(text.source) +
           L" is not among those of this machine and user, or its driver cannot be loaded. Have it "
           L"set up, or give Driver, Server and Database.";
  }
  const auto names = installed_drivers(environment);
  if (std::ranges::any_of(names, [&](const auto& name) { return same_name(name, text.driver); })) {
    return L"its ODBC driver " + quoted(text.driver) +
           L" cannot be loaded. Install it anew, for programs of as many bits as this one has.";
  }
  return L"there is no ODBC driver " + quoted(text.driver) + L" on this machine. " +
         (names.empty() ? L"None is installed. Install PostgreSQL's."
                        : L"Installed are " + listed(names) + L". Correct Driver.");
}

}  // namespace

void fail_to_connect(const Diagnosis& diagnosis, const ConnectionText& text,
                     const EnvironmentHandle& environment) {
  const std::wstring model = L"The model " + quoted(text.shown) + L" cannot be opened: ";
  if (diagnosis.is_of_class(L"IM") || diagnosis.is(L"01000")) {
    fail(kCannotOpenFile, model + about_driver(text, environment));
  }
  const auto* const reason = std::ranges::find_if(kReasons, [&](const Reason& known) {
    return diagnosis.message.find(known.words) != std::wstring::npos;
  });
  fail(kCannotOpenFile,
       model + std::wstring(reason == std::end(kReasons) ? kUnknown : reason->sentence));
}

}  // namespace modeldb
