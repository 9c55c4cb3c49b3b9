#include "CLI/WatchCommand.h"

#include "CLI/MouseWatch.h"

#include <QCoroFuture>

namespace kelmoth {

std::string_view WatchCommand::details() const
{
    return R"(Writes one line for each change, beginning with the mice that are attached, until
it is interrupted. With --json each line is an object.

Example:
  kelmothctl watch --json | jq --unbuffered -r '.event')";
}

QCoro::Task<ExitStatus> WatchCommand::run(Session *session)
{
    const MouseWatch watch(session);
    if (!watch.isWatching()) {
        co_return session->report({ExitStatus::failed, "the system does not tell of mice that come and go"});
    }
    co_await watch.finished();
    co_return ExitStatus::done;
}

} // namespace kelmoth
