#pragma once

#include <io.h>
#include <windows.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

// Measurements that are compared with each other are taken in turn, round by round, so that a
// machine that slows down or speeds up meanwhile does so for all of them. What is reported are
// medians over the rounds; ratios are formed within a round.

namespace bench {

/// What the command line asks for.
struct Options {
  std::string_view filter;  // part of a section's name; empty for all
  long largest_collection = 1'000'000;
  long saved_forces = 100'000;
};

/// Does its work once more; returns the nanoseconds per unit of it.
using Measurement = std::function<double()>;

template <class Work>
double nanoseconds(Work&& work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double, std::nano>(std::chrono::steady_clock::now() - start).count();
}

/// Processor time that the process has spent in its own code, in nanoseconds: without that of the
/// system, which clears fresh memory and writes files. It moves in steps of some milliseconds.
inline double own_nanoseconds() {
  constexpr double kNanosecondsOfUnit = 100;
  FILETIME created, ended, in_system, own;
  GetProcessTimes(GetCurrentProcess(), &created, &ended, &in_system, &own);
  const ULARGE_INTEGER units{{own.dwLowDateTime, own.dwHighDateTime}};
  return static_cast<double>(units.QuadPart) * kNanosecondsOfUnit;
}

/// Nanoseconds for each of `count` units of one piece of work.
template <class Work>
double nanoseconds_each(long count, Work&& work) {
  return nanoseconds(work) / static_cast<double>(count);
}

/// The operation, `count` times in a row; the unit is one operation.
template <class Operation>
Measurement repeat(long count, Operation operation) {
  return [=]() mutable {
    return nanoseconds_each(count, [&] {
      for (long done = 0; done < count; ++done) operation();
    });
  };
}

/// Shows on a terminal what is under way; the table on the standard output stays clean.
inline void show_progress(std::string_view what) {
  if (!_isatty(_fileno(stderr))) return;
  std::fprintf(stderr, "\r%-78.*s\r", static_cast<int>(what.size()), what.data());
}

inline double median(std::vector<double> values) {
  std::ranges::sort(values);
  const std::size_t middle = values.size() / 2;
  return values.size() % 2 != 0 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

/// What several measurements gave, round by round.
class Samples {
 public:
  /// `round` takes every measurement once.
  Samples(std::string_view what, int rounds, const std::function<std::vector<double>()>& round) {
    for (int number = 1; number <= rounds; ++number) {
      show_progress(std::string(what) + ", round " + std::to_string(number));
      rounds_.push_back(round());
    }
    show_progress("");
  }
  Samples(std::string_view what, int rounds, const std::vector<Measurement>& measurements)
      : Samples(what, rounds, [&] {
          std::vector<double> values;
          for (const Measurement& measurement : measurements) values.push_back(measurement());
          return values;
        }) {}

  [[nodiscard]] double time(std::size_t measurement) const {
    return median_of([=](const std::vector<double>& round) { return round[measurement]; });
  }
  [[nodiscard]] double ratio(std::size_t measurement, std::size_t to) const {
    return median_of(
        [=](const std::vector<double>& round) { return round[measurement] / round[to]; });
  }

 private:
  template <class Pick>
  [[nodiscard]] double median_of(Pick pick) const {
    std::vector<double> values;
    std::ranges::transform(rounds_, std::back_inserter(values), pick);
    return median(std::move(values));
  }

  std::vector<std::vector<double>> rounds_;
};

// The table.

inline constexpr double kNothingWanted = 0;

inline void print_heading(std::string_view title) {
  std::printf("\n%-52.*s %9s %9s %7s %7s\n", static_cast<int>(title.size()), title.data(), "ns",
              "other ns", "ratio", "wanted");
}

/// A measurement beside another, and the ratio that is wanted at most.
inline void print_pair(std::string_view name, const Samples& samples, std::size_t first,
                       std::size_t other, double wanted = kNothingWanted) {
  std::printf("  %-50.*s %9.0f %9.0f %7.2f", static_cast<int>(name.size()), name.data(),
              samples.time(first), samples.time(other), samples.ratio(first, other));
  if (wanted != kNothingWanted) std::printf(" %7.2f", wanted);
  std::printf("\n");
}

/// The first measurement beside another.
inline void print_comparison(std::string_view name, const Samples& samples, std::size_t other,
                             double wanted = kNothingWanted) {
  print_pair(name, samples, 0, other, wanted);
}

/// Measures both in turn and prints the first beside the second.
inline void compare(std::string_view name, double wanted, const Measurement& first,
                    const Measurement& second, int rounds = 21) {
  print_comparison(name, Samples(name, rounds, {first, second}), 1, wanted);
}

}  // namespace bench
