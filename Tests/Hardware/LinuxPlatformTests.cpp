#include "Platform/Linux/LinuxPlatform.h"

#include <gmock/gmock.h>

#include <csignal>
#include <sys/time.h>

namespace kelmoth {
namespace {

TEST(LinuxPlatform, WritesEachLineAsOneHarmlessLine)
{
    testing::internal::CaptureStderr();
    linuxPlatform().log->write("✅ %s\x1B[2J\nforged \xFF");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "✅ %s␛[2J␊forged \xEF\xBF\xBD\n");
}

TEST(LinuxPlatform, SleepsItsTimeWhateverSignalsCome)
{
    struct ::sigaction ignore{};
    ignore.sa_handler = [](int) {};
    ASSERT_EQ(::sigaction(SIGALRM, &ignore, nullptr), 0);
    const ::itimerval often{.it_interval = {0, 2000}, .it_value = {0, 2000}};
    const ::itimerval never{};
    ASSERT_EQ(::setitimer(ITIMER_REAL, &often, nullptr), 0);
    const auto start = std::chrono::steady_clock::now();
    linuxPlatform().sleeper->sleep(std::chrono::milliseconds{30});
    const auto slept = std::chrono::steady_clock::now() - start;
    ASSERT_EQ(::setitimer(ITIMER_REAL, &never, nullptr), 0);
    EXPECT_GE(slept, std::chrono::milliseconds{30});
}

} // namespace
} // namespace kelmoth
