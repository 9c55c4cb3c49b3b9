#include "CLI/ReadCommand.h"

#include "CLI/BatteryReadings.h"
#include "CLI/FullRead.h"
#include "CLI/MouseSummary.h"
#include "CLI/ReadReport.h"
#include "CLI/Session.h"
#include "CLI/Words.h"

#include <QCoroFuture>

namespace kelmoth {

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
    if (const auto *none = std::get_if<Failure>(&choice)) {
        co_return session->report(*none);
    }
    std::vector mice{std::get<MouseSummary>(choice)};
    const RazerDevice device = mice.front().device;

    const BatteryReadings battery(monitor, mice);
    const auto failure = co_await readFully(session, device);
    if (failure) {
        co_return session->report(*failure);
    }
    const auto &manager = session->manager();
    const auto reading = answeredSettings(manager, manager.unanswered());
    co_await battery.finished();
    mice = relisted(std::move(mice), monitor);
    if (mice.empty()) {
        co_return session->report(
            {ExitStatus::failed, "the " + device.name() + " was unplugged while it was read", true});
    }
    const auto &mouse = mice.front();
    auto unanswered = reading.unanswered.words();
    if (mouse.device.capabilities().hasBattery && !mouse.device.batteryLevel) {
        unanswered.emplace_back("battery");
    }
    if (session->options().json) {
        output.printJSON(readingJSON(mouse, reading));
    } else {
        output.print(renderReading(mouse, reading, session->terminal()));
    }
    if (!unanswered.empty()) {
        co_return session->report(
            {ExitStatus::failed, "the mouse did not answer for " + joined(unanswered), true});
    }
    co_return ExitStatus::done;
}

} // namespace kelmoth
