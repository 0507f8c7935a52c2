// Real clock and sleep, replaceable for tests.
#include "base/comClock.h"

#include <unistd.h>

namespace {

void RealClock(timespec* now) { clock_gettime(CLOCK_REALTIME, now); }

void RealSleep(unsigned seconds) {
    while (seconds > 0) seconds = ::sleep(seconds);
}

comClockFunc g_clock = RealClock;
comSleepFunc g_sleep = RealSleep;

}  // namespace

void comClockNow(timespec* now) { g_clock(now); }

void comSleep(unsigned seconds) { g_sleep(seconds); }

comClockFunc comSetClockFunction(comClockFunc fn) {
    comClockFunc old = g_clock;
    g_clock = fn ? fn : RealClock;
    return old;
}

comSleepFunc comSetSleepFunction(comSleepFunc fn) {
    comSleepFunc old = g_sleep;
    g_sleep = fn ? fn : RealSleep;
    return old;
}
