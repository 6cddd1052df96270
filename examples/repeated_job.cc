// Runs a job periodically, as long as its handle exists.
//
// Prints: tick tick tick
#include <future>
#include <iostream>

#include "vosmere/cpp.h"

using namespace vosmere;
using namespace std::chrono_literals;

int main() {
  int ticks = 0;
  std::promise<void> enough;
  Scheduler scheduler;
  const Job job = scheduler.Every(10ms, [&] {
    if (ticks == 3) return;
    std::cout << "tick " << std::flush;
    if (++ticks == 3) enough.set_value();
  });
  enough.get_future().wait();
}
