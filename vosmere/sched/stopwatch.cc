// CTimeTest, a stopwatch.
#include "vosmere/sched/stopwatch.h"

#include "vosmere/platform/internal/clock.h"
#include "vosmere/platform/trace.h"

namespace vosmere {
namespace {

double Now() {
  const ClockMoment now = ClockNow();
  return now.seconds + now.milliseconds * 0.001;
}

}  // namespace

CTimeTest::~CTimeTest() = default;

void CTimeTest::SetStart() {
  start_ = Now();
}

double CTimeTest::GetEndSeconds() const {
  return Now() - start_;
}

double CTimeTest::OnStop(const WChar* label) const {
  const double elapsed = GetEndSeconds();
  Trace("%s  --- Time Spend=%8.3f\n", label, elapsed);
  return elapsed;
}

}  // namespace vosmere
