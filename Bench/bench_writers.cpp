// What a writer adds to the pauses that the protocol imposes: from its call to its result on the main thread,
// less the time that the transfer thread slept in between. A line for each writer: its name and the median in
// microseconds; script/bench holds it to a limit.

#include "Core/Device/DeviceDefaults.h"
#include "Core/HID/DeviceManager.h"
#include "Platform/Linux/LinuxPlatform.h"
#include "Platform/Qt/SettingsUserDefaults.h"
#include "Platform/Simulated/SimulatedPlatform.h"

#include <QCoreApplication>
#include <QTemporaryDir>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <functional>
#include <vector>

namespace kelmoth {
namespace {

using std::chrono::steady_clock;

/// Sleeps as the program does, and knows how long it really slept.
class CountingSleeper : public Sleeper {
public:
    explicit CountingSleeper(std::shared_ptr<Sleeper> sleeper) : m_sleeper(std::move(sleeper)) {}
    void sleep(std::chrono::microseconds duration) override
    {
        const auto begin = steady_clock::now();
        m_sleeper->sleep(duration);
        m_slept = m_slept.load() + (steady_clock::now() - begin); // only the transfer thread writes
    }
    steady_clock::duration slept() const { return m_slept; }

private:
    std::shared_ptr<Sleeper> m_sleeper;
    std::atomic<steady_clock::duration> m_slept{};
};

struct Writer {
    const char *name;
    std::function<QCoro::Task<bool>(DeviceManager &, int round)> run;
};

const std::vector<Writer> &writers()
{
    static const std::vector<Writer> all{
        {"setDPI", [](DeviceManager &manager, int round) { return manager.setDPI(800 + 100 * round, 1); }},
        {"setDPIStage", [](DeviceManager &manager, int round) { return manager.setDPIStage(round % 5); }},
        {"setRGB",
         [](DeviceManager &manager, int round) {
             const auto channel = static_cast<std::uint8_t>(round);
             const RGBSetting setting{RGBEffect::staticColor, {channel, 0, 0}, std::nullopt, 0.5, 0.5};
             return manager.setRGB(RGBZone::logo, setting);
         }},
        {"setButtonMapping",
         [](DeviceManager &manager, int round) {
             return manager.setButtonMapping(MouseButton::forward, ButtonAction::dpiChange(2 + round % 5), 3,
                                             false);
         }},
        {"setLiftOff", [](DeviceManager &manager, int round) { return manager.setLiftOff(round % 3); }},
    };
    return all;
}

/// Microseconds; negative when the mouse did not take the change.
double overhead(const Writer &writer, DeviceManager &manager, const CountingSleeper &sleeper, int round)
{
    const auto sleptBefore = sleeper.slept();
    const auto begin = steady_clock::now();
    const bool isDone = QCoro::waitFor(writer.run(manager, round));
    const auto took = steady_clock::now() - begin - (sleeper.slept() - sleptBefore);
    return isDone ? std::chrono::duration<double, std::micro>(took).count() : -1.0;
}

int run()
{
    constexpr int rounds = 21;
    const QTemporaryDir home;
    auto machine = simulatedMachine("basilisk-v3");
    auto platform = linuxPlatform();
    const auto sleeper = std::make_shared<CountingSleeper>(platform.sleeper);
    platform.log = nullptr;
    platform.sleeper = sleeper;
    platform.hid = machine->hid;
    platform.usb = machine->usb;
    platform.userDefaults = std::make_shared<SettingsUserDefaults>(home.filePath(QStringLiteral("d.ini")));
    HIDMonitor monitor(platform.hid, platform.usb, platform.sleeper);
    ToastManager toasts;
    DeviceManager manager(monitor, toasts, platform.userDefaults);
    monitor.startMonitoring();
    while (!manager.isConnected() || manager.isSyncing() || !manager.liftOffLevel()) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    for (const auto &writer : writers()) {
        std::vector<double> times;
        for (int round = 0; round < rounds; ++round) {
            times.push_back(overhead(writer, manager, *sleeper, round));
        }
        std::ranges::sort(times);
        if (times.front() < 0) {
            std::printf("%s failed\n", writer.name);
            return 1;
        }
        std::printf("%s %.0f\n", writer.name, times[rounds / 2]);
    }
    return 0;
}

} // namespace
} // namespace kelmoth

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    return kelmoth::run();
}
