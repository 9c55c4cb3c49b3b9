#include "CLI/SetCommand.h"

#include "CLI/BatteryReadings.h"
#include "CLI/FullRead.h"
#include "CLI/MouseSummary.h"
#include "CLI/ReadReport.h"
#include "CLI/Session.h"

#include <CLI/CLI.hpp>
#include <QCoroFuture>

namespace kelmoth {

namespace {

/// Reads the mouse and writes the change, with nobody else changing anything meanwhile. The failure when the
/// mouse does not hold the change now, or the disk does not.
QCoro::Task<std::optional<Failure>> change(Session *session, RazerDevice device, SettingChange *change)
{
    ChangeLock lock;
    auto failure = co_await readToChange(session, device, &lock);
    if (failure) {
        co_return failure;
    }
    auto &manager = session->manager();
    if (change->isBlind(manager.unanswered())) {
        failure = {ExitStatus::failed,
                   "the mouse did not say what its " + std::string(change->name()) +
                       " settings are: nothing was changed",
                   true};
        co_return failure;
    }
    if (auto misfit = change->misfit(manager.deviceState())) {
        failure = {ExitStatus::usage, *std::move(misfit)};
        co_return failure;
    }
    const bool isDone = co_await change->apply(manager);
    failure = session->flushDefaults();
    if (!isDone) {
        failure = {ExitStatus::failed, session->refusal(device), true};
    }
    co_return failure;
}

} // namespace

std::string_view SetCommand::details() const
{
    return R"(Writes to the first mouse that can be configured, or the one chosen with --product.
The mouse is read first, and what it took is saved. With --json all settings are
printed as "kelmothctl read --json" does. A word that the model does not know is
answered with those that it does. When the mouse took the change, but it could not be
saved, the exit status is 5.

Example:
  kelmothctl set dpi 1600 --stage 3
  kelmothctl set light logo --effect static --color ff0000 --brightness 50
  kelmothctl set button back keyPress:ctrl+z)";
}

void SetCommand::declare(CLI::App &parser)
{
    parser.require_subcommand(0, 1);
    for (const auto &each : m_changes) {
        auto *word = parser.add_subcommand(std::string(each->name()), std::string(each->summary()));
        word->fallthrough();
        word->group("Settings");
        each->declare(*word);
        word->final_callback([this, &each] { m_change = each.get(); });
    }
}

QCoro::Task<ExitStatus> SetCommand::run(Session *session)
{
    auto &output = session->output();
    const auto choice = chooseMouse(session->monitor(), session->options().productID);
    if (const auto *none = std::get_if<Failure>(&choice)) {
        co_return session->report(*none);
    }
    const MouseSummary mouse = std::get<MouseSummary>(choice);
    const auto objection = m_change->objection(mouse.device);
    if (objection) {
        co_return session->report({ExitStatus::usage, *objection});
    }
    const auto failure = co_await change(session, mouse.device, m_change);
    if (failure) {
        session->report(*failure);
    }
    const auto status = failure ? failure->status : ExitStatus::done;
    if (status != ExitStatus::done && status != ExitStatus::notSaved) {
        co_return status;
    }
    const auto &manager = session->manager();
    if (!session->options().json) {
        output.print(m_change->outcome(manager) + '\n');
        co_return status;
    }
    auto unanswered = manager.unanswered();
    m_change->settle(unanswered);
    const auto reading = answeredSettings(manager, unanswered);
    const BatteryReadings battery(session->monitor(), {mouse});
    co_await battery.finished();
    const auto mice = relisted({mouse}, session->monitor());
    output.printJSON(readingJSON(mice.empty() ? mouse : mice.front(), reading));
    co_return status;
}

} // namespace kelmoth
