#pragma once

#include "Platform/Platform.h"

namespace kelmoth {

/// Sleeps on the monotonic clock; a signal does not cut the sleep short.
class UsleepSleeper final : public Sleeper {
public:
    void sleep(std::chrono::microseconds duration) override;
};

/// One write to standard error for each line, so that lines of several threads and processes do not mix.
class StderrLog final : public Log {
public:
    void write(std::string_view line) override;
};

/// This system's log, sleeper, HID and USB; the user's defaults and the bundle are left to the caller.
Platform linuxPlatform();

} // namespace kelmoth
