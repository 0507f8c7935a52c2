// The clock and the sleep of the whole program, behind replaceable functions so
// that tests can set the time and make waits instant.
#pragma once

#include <cstdint>
#include <ctime>

using comClockFunc = void (*)(timespec* now);
using comSleepFunc = void (*)(unsigned seconds);

// Current wall-clock time (CLOCK_REALTIME unless replaced).
void comClockNow(timespec* now);
// Waits the given seconds (sleep(3) unless replaced).
void comSleep(unsigned seconds);

// Replace the clock or the sleep; nullptr restores the real one. Returns the previous.
comClockFunc comSetClockFunction(comClockFunc fn);
comSleepFunc comSetSleepFunction(comSleepFunc fn);
