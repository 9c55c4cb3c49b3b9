#include "CLI/ExportCommand.h"

#include "CLI/FullRead.h"
#include "CLI/MouseSummary.h"
#include "CLI/Session.h"
#include "CLI/SettingsFile.h"
#include "CLI/Words.h"
#include "Platform/RegularFile.h"

#include <CLI/CLI.hpp>

namespace kelmoth {

namespace {

std::optional<std::string> named(const std::string &path, const std::optional<std::string> &obstacle)
{
    return obstacle ? std::optional(path + ": " + *obstacle) : std::nullopt;
}

} // namespace

std::string_view ExportCommand::details() const
{
    return R"(Writes to standard output when no file is named. When the mouse does not answer for
all of its settings nothing is written, and the exit status is 1; the lift-off
distance alone may be left out.

Example:
  kelmothctl export basilisk.json)";
}

void ExportCommand::declare(CLI::App &parser)
{
    parser.add_option("FILE", m_file, "The file to write, or - for standard output")->option_text(" ");
}

QCoro::Task<ExitStatus> ExportCommand::run(Session *session)
{
    auto &output = session->output();
    const auto choice = chooseMouse(session->monitor(), session->options().productID);
    if (const auto *none = std::get_if<Failure>(&choice)) {
        co_return session->report(*none);
    }
    const bool isStandardOutput = m_file == "-";
    // Not after a second of reading.
    if (const auto why = isStandardOutput ? std::nullopt : named(m_file, obstacleToWriting(m_file))) {
        co_return session->report({ExitStatus::failed, *why});
    }
    const RazerDevice device = std::get<MouseSummary>(choice).device;
    const auto failure = co_await readFully(session, device);
    if (failure) {
        co_return session->report(*failure);
    }
    const auto &manager = session->manager();
    auto needed = manager.unanswered();
    needed.liftOff = false; // the file can do without
    if (!needed.empty()) {
        co_return session->report(
            {ExitStatus::failed,
             "the mouse did not answer for " + joined(manager.unanswered().words()) + ": nothing was written",
             true});
    }
    // What a mouse says is finite: it has a stored form.
    const auto text = encode(SettingsFile{manager.deviceState(), manager.liftOffLevel()}).value() + '\n';
    if (!manager.liftOffLevel()) {
        output.complain("the mouse did not answer for lift-off distance: it is left out");
    }
    if (isStandardOutput) {
        output.print(text);
        co_return ExitStatus::done;
    }
    if (const auto why = named(m_file, writeNamedFile(m_file, text))) {
        co_return session->report({ExitStatus::failed, *why});
    }
    co_return ExitStatus::done;
}

} // namespace kelmoth
