#pragma once

namespace bench {

/// Prints how many round trips saving and loading take, and how long they take through a network.
void print_round_trips();

}  // namespace bench
