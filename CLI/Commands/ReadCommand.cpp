#include "CLI/MouseCommand.h"
#include "CLI/Reports/ReadReport.h"

namespace kelmoth {

namespace {

/// Shows the settings that a mouse reports.
class ReadCommand : public MouseCommand {
public:
    ReadCommand()
        : MouseCommand(
              {"read", "Show every setting as the mouse itself reports it",
               "Settings that the mouse does not answer for are left out, and the exit status is 1."},
              Need::reading)
    {
    }

    QCoro::Task<std::optional<Failure>> work(Mouse *mouse) override
    {
        auto &session = *mouse->session;
        std::optional<Failure> failure;
        const bool isThere =
            co_await readBattery(&mouse->listed, &session.monitor(), QDeadlineTimer(QDeadlineTimer::Forever));
        if (!isThere) {
            failure = {Failure::Code::unplugged,
                       "the " + mouse->device().name() + " was unplugged while it was read"};
            co_return failure;
        }
        if (session.options().json) {
            session.output().printJSON(readingJSON(*mouse));
        } else {
            session.output().print(renderReading(*mouse));
        }
        if (const auto unanswered = unansweredWords(*mouse); !unanswered.empty()) {
            failure = {Failure::Code::noAnswer, "the mouse did not answer for " + joined(unanswered)};
        }
        co_return failure;
    }
};

} // namespace

constinit const CommandFactory readCommand = [] { return CommandPointer(new ReadCommand); };

} // namespace kelmoth
