// Runs a job periodically, as long as its handle exists.
//
// Prints: tick tick tick
#include <iostream>
#include <semaphore>

#include "vosmere/cpp.h"

using namespace vosmere;
using namespace std::chrono_literals;

int main() {
  std::counting_semaphore<> ticks(0);
  Scheduler scheduler;
  const Job job = scheduler.Every(10ms, [&] {
    std::cout << "tick " << std::flush;
    ticks.release();
  });
  for (int i = 0; i < 3; ++i) ticks.acquire();
}
