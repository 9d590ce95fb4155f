#pragma once

namespace orv {

/// What the program ends with; docs/command-line.md tells users.
enum ExitStatus {
  kDone = 0,
  kFailed = 1,        ///< a sentence is on standard error, files and model are as before
  kWrongUsage = 2,    ///< the arguments were not understood
  kReaderGone = 141,  ///< nobody reads what it prints; a shell reports SIGPIPE so
  kFindings = 3,      ///< done, and something was found that needs to be looked at
};

/// Thrown by a command that has done its work and ends the program with another status than kDone.
struct EndWith {
  ExitStatus status;
};

}  // namespace orv
