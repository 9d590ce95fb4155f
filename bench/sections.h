#pragma once

#include "bench/harness.h"

namespace bench {

// Each prints one section of the table.
void run_text(const Options& options);
void run_late_binding(const Options& options);
void run_creation(const Options& options);
void run_memory(const Options& options);
void run_collections(const Options& options);
void run_saving(const Options& options);
void run_loading(const Options& options);
void run_history(const Options& options);
void run_bulk(const Options& options);
void run_team(const Options& options);

}  // namespace bench
