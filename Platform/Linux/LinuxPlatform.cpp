#include "Platform/Linux/LinuxPlatform.h"

#include "Platform/Linux/LinuxHID.h"
#include "Platform/Linux/LinuxUSB.h"

#include <cerrno>
#include <ctime>
#include <unistd.h>

namespace kelmoth {

void UsleepSleeper::sleep(std::chrono::microseconds duration)
{
    using namespace std::chrono;
    ::timespec now{};
    ::clock_gettime(CLOCK_MONOTONIC, &now);
    const auto until = seconds(now.tv_sec) + nanoseconds(now.tv_nsec) + nanoseconds(duration);
    const auto whole = duration_cast<seconds>(until);
    const ::timespec end{.tv_sec = static_cast<std::time_t>(whole.count()),
                         .tv_nsec = static_cast<long>((until - whole).count())};
    while (::clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &end, nullptr) == EINTR) {
    }
}

void StderrLog::write(std::string_view line)
{
    std::string text = printable(line);
    text.push_back('\n');
    std::string_view rest = text;
    while (!rest.empty()) {
        const auto written = ::write(STDERR_FILENO, rest.data(), rest.size());
        if (written < 0 && errno != EINTR) {
            return; // standard error fails
        }
        rest.remove_prefix(written < 0 ? 0 : static_cast<std::size_t>(written));
    }
}

Platform linuxPlatform()
{
    auto sleeper = std::make_shared<UsleepSleeper>();
    auto nodes = std::make_shared<HidrawNodes>(sleeper);
    Platform platform;
    platform.log = std::make_shared<StderrLog>();
    platform.sleeper = sleeper;
    platform.hid = std::make_shared<LinuxHIDService>(nodes);
    platform.usb = std::make_shared<LinuxUSBService>(nodes, sleeper);
    return platform;
}

} // namespace kelmoth
