// Benchmarks of the registered modules. They print ratios of times that were measured in one run.

#include <windows.h>

#include <cstdlib>
#include <cstring>

#include "bench/sections.h"
#include "bench/server.h"
#include "com/bstr.h"
#include "com/error.h"

namespace {

constexpr char kUsage[] =
    "orv_bench [SECTION] [--collection N] [--saved N]\n"
    "\n"
    "  SECTION         text, late-binding, creation, memory, collections, database-save,\n"
    "                  database-load, history or bulk, or a part of a name, such as database; "
    "all unless told;\n"
    "                  with a server, which ./dev bench starts, team alone\n"
    "  --collection N  size of the largest collection (1000000); smaller by tenths down to 10000\n"
    "  --saved N       number of forces to compare with SQLite or ODBC alone (100000)\n";

struct Section {
  std::string_view name;
  void (*run)(const bench::Options&);
  bool is_on_server = false;
};

constexpr Section kSections[] = {
    {"text", bench::run_text},
    {"late-binding", bench::run_late_binding},
    {"creation", bench::run_creation},
    {"memory", bench::run_memory},
    {"collections", bench::run_collections},
    {"database-save", bench::run_saving},
    {"database-load", bench::run_loading},
    {"history", bench::run_history},
    {"bulk", bench::run_bulk},
    {"team", bench::run_team, true},
};

[[noreturn]] void stop_with_usage() {
  std::fputs(kUsage, stderr);
  std::exit(2);
}

bench::Options read_options(int count, char** arguments) {
  bench::Options options;
  for (int index = 1; index < count; ++index) {
    const std::string_view argument = arguments[index];
    long* const number = argument == "--collection" ? &options.largest_collection
                         : argument == "--saved"    ? &options.saved_forces
                                                    : nullptr;
    if (number) {
      if (++index < count) *number = std::atol(arguments[index]);
      if (*number <= 0) stop_with_usage();
    } else if (argument.starts_with('-')) {
      stop_with_usage();
    } else {
      options.filter = argument;
    }
  }
  return options;
}

void run_sections(const bench::Options& options) {
  for (const Section& section : kSections) {
    if (section.name.find(options.filter) == std::string_view::npos) continue;
    if (section.is_on_server != bench::has_server()) continue;
    section.run(options);
    std::fflush(stdout);
  }
}

void report(const com::Error& error) {
  com::Bstr description;
  if (error.info()) error.info()->GetDescription(description.put());
  std::fprintf(stderr, "A call failed with 0x%08lX. %ls\n", error.result(),
               description ? description.get() : L"");
}

}  // namespace

int main(int count, char** arguments) {
  const bench::Options options = read_options(count, arguments);
  CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
  int status = EXIT_SUCCESS;
  try {
    run_sections(options);
  } catch (const com::Error& error) {
    report(error);
    status = EXIT_FAILURE;
  }
  CoUninitialize();
  return status;
}
