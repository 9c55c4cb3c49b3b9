#include "CLI/ReadCommand.h"

#include "CLI/BatteryReadings.h"
#include "CLI/MouseSummary.h"
#include "CLI/ReadReport.h"
#include "CLI/Session.h"
#include "CLI/Words.h"
#include "Core/Device/DeviceDefaults.h"
#include "Core/HID/DeviceReader.h"

#include <QCoroFuture>

namespace kelmoth {

namespace {

/// What a reading starts from: the settings that the mouse cannot be asked for, and none of those that it
/// can, so that nothing passes for an answer that was none.
DeviceState unreadState(const RazerDevice &device)
{
    auto state = createDefaultState(device);
    state.dpiStages.clear();
    state.currentDPIStage = 0;
    state.rgbSettings.clear();
    state.buttonMappings.clear();
    return state;
}

} // namespace

std::string_view ReadCommand::details() const
{
    return R"(Reads the first mouse that can be configured, or the one chosen with --product.
Settings that the mouse does not answer for are left out, and the exit status is 1.

Example:
  kelmothctl read --product 0x00aa --json)";
}

QCoro::Task<ExitStatus> ReadCommand::run(Session *session)
{
    auto &output = session->output();
    auto &monitor = session->monitor();
    const auto choice = chooseMouse(monitor, session->options().productID);
    if (const auto *none = std::get_if<NoMouse>(&choice)) {
        output.complain(none->message);
        co_return none->status;
    }
    std::vector mice{std::get<MouseSummary>(choice)};
    const RazerDevice device = mice.front().device;

    const BatteryReadings battery(monitor, mice);
    auto reading = co_await readDevice(&monitor, device, unreadState(device), true);
    co_await battery.finished();
    mice = relisted(std::move(mice), monitor);
    if (mice.empty()) {
        output.complain("the " + device.name() + " was unplugged while it was read");
        co_return ExitStatus::failed;
    }
    const auto &mouse = mice.front();
    if (!reading.anyAnswer) {
        output.complain("the " + mouse.device.name() + " does not answer");
        co_return ExitStatus::failed;
    }
    if (mouse.device.capabilities().hasBattery && !mouse.device.batteryLevel) {
        reading.unanswered.emplace_back("battery");
    }
    if (session->options().json) {
        output.printJSON(readingJSON(mouse, reading));
    } else {
        output.print(renderReading(mouse, reading, session->terminal()));
    }
    if (!reading.unanswered.empty()) {
        output.complain("the mouse did not answer for " + joined(reading.unanswered));
        co_return ExitStatus::failed;
    }
    co_return ExitStatus::done;
}

} // namespace kelmoth
