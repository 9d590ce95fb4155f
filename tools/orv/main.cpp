// orv.exe: the tools at the terminal.

#include <fcntl.h>
#include <io.h>
#include <windows.h>

#include <cstdio>
#include <exception>
#include <iostream>
#include <string>
#include <vector>

#include "com/error.h"
#include "com/sentence.h"
#include "tools/content/shown_text.h"
#include "tools/orv/arguments.h"
#include "tools/orv/command.h"
#include "tools/orv/exit_status.h"
#include "tools/orv/standard_output.h"
#include "tools/orv/system_path.h"
#include "tools/text/utf8.h"
#include "version.h"

namespace orv {
namespace {

/// Texts are UTF-8 wherever they go, with line ends of one character: the same bytes on a terminal,
/// in a file and in a pipe.
void use_utf8() {
  SetConsoleOutputCP(CP_UTF8);
  _setmode(_fileno(stdout), _O_BINARY);
  _setmode(_fileno(stderr), _O_BINARY);
}

/// The thread's use of COM, which ends after everything else.
struct Apartment {
  Apartment() { com::check(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED)); }
  ~Apartment() { CoUninitialize(); }
};

void describe(CLI::App& program) {
  program.set_version_flag("--version", "orv " ORV_VERSION_TEXT);
  // A path may begin with a slash.
  program.allow_windows_style_options(false);
  program.require_subcommand(1);
  program.set_help_all_flag("--help-all", "Print the help of all commands and exit");
  program.footer(
      "\n'orv COMMAND --help' tells what a command does, with an example.\n"
      "\n"
      "Exit status: 0 done; 1 it could not be done, and files and model are as before;\n"
      "2 the arguments were not understood; 3 done, and something was found.");
}

std::string words_of(const com::Error& error) {
  const std::string sentence = text::to_utf8(com::sentence_of(error));
  if (!sentence.empty()) return sentence;
  char number[16];
  std::snprintf(number, sizeof number, "0x%08lX", static_cast<unsigned long>(error.result()));
  return "The system reports the error " + std::string(number) + ".";
}

/// What was printed before the failure comes out first, if it can.
ExitStatus fail_with(const std::string& sentence) {
  try {
    std::cout.flush();
  } catch (...) {
    // The failure at hand is told, whatever became of the output.
  }
  std::cout.exceptions(std::ios::goodbit);
  std::cerr << "orv: " << content::without_controls(with_system_paths(sentence)) << '\n';
  return kFailed;
}

/// The library would only say that a command is missing.
bool names_no_command(const CLI::App& program, const std::vector<std::string>& arguments) {
  if (arguments.empty() || arguments.front().starts_with('-')) return false;
  return program
      .get_subcommands([&](const CLI::App* each) { return each->check_name(arguments.front()); })
      .empty();
}

ExitStatus parse_and_run(CLI::App& program, const std::vector<std::string>& arguments) {
  if (names_no_command(program, arguments)) {
    std::cerr << "orv: there is no command \"" << arguments.front()
              << "\"; 'orv --help' lists them.\n";
    return kWrongUsage;
  }
  const Apartment apartment;
  try {
    // From the last to the first.
    program.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));
    return kDone;
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() == 0) return program.exit(error) == 0 ? kDone : kWrongUsage;
    std::cerr << "orv: " << content::without_controls(fault_of(program, error)) << '\n';
    return kWrongUsage;
  } catch (const EndWith& end) {
    return end.status;
  } catch (const com::Error& error) {
    return fail_with(words_of(error));
  } catch (const std::bad_alloc&) {
    return fail_with("There is not enough memory.");
  } catch (const std::exception& error) {
    return fail_with(error.what());
  }
}

/// As parse_and_run, with what it printed out of the house.
ExitStatus run_and_print(CLI::App& program, const std::vector<std::string>& arguments) {
  const StandardOutput output(std::cout);
  try {
    const ExitStatus status = parse_and_run(program, arguments);
    std::cout.flush();
    return status;
  } catch (const ReaderGone&) {
    return kReaderGone;
  } catch (const std::exception& error) {
    return fail_with(error.what());
  }
}

}  // namespace
}  // namespace orv

int wmain(int count, wchar_t** words) {
  orv::use_utf8();
  CLI::App program("Nodal loads and constraints of finite-element models, at the terminal.", "orv");
  orv::describe(program);
  orv::Command::add_all(program);
  std::vector<std::string> arguments;
  for (int i = 1; i < count; ++i) arguments.push_back(text::to_utf8(words[i]));
  return orv::run_and_print(program, arguments);
}
