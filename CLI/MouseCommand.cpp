#include "CLI/MouseCommand.h"

#include "Platform/Linux/ChangeLock.h"

namespace kelmoth {

std::optional<Failure> Mouse::failureOf(const WriteResult &result) const
{
    using Kind = WriteResult::Kind;
    if (result.isDone()) {
        return std::nullopt;
    }
    if (result.kind == Kind::unplugged || isGone(device(), session->monitor())) {
        return Failure{Failure::Code::unplugged,
                       "the " + device().name() + " was unplugged while it was changed"};
    }
    return Failure{result.kind == Kind::noAnswer ? Failure::Code::noAnswer : Failure::Code::refused,
                   result.message.empty() ? "the mouse did not take the change" : result.message};
}

QCoro::Task<ExitStatus> MouseCommand::run(Session *session)
{
    auto failure = prepare();
    if (!failure) {
        auto choice = chooseMouse(session);
        if (auto *none = std::get_if<Failure>(&choice)) {
            failure = std::move(*none);
        } else {
            Mouse mouse{session, std::get<ListedMouse>(std::move(choice))};
            failure = co_await perform(&mouse);
        }
    }
    co_return failure ? session->report(*failure) : ExitStatus::done;
}

QCoro::Task<std::optional<Failure>> MouseCommand::perform(Mouse *mouse)
{
    auto failure = objection(mouse);
    ChangeLock lock;
    if (!failure && m_need == Need::changing) {
        if (const auto obstacle = co_await lock.take()) {
            failure = Failure{Failure::Code::failed, *obstacle};
        }
    }
    if (!failure && m_need != Need::none) {
        const auto reading = co_await mouse->session->manager().firstReading();
        const auto name = "the " + mouse->device().name();
        if (!reading || isGone(mouse->device(), mouse->session->monitor())) {
            failure = Failure{Failure::Code::unplugged, name + " was unplugged while it was read"};
        } else if (!reading->anyAnswer) {
            failure = Failure{Failure::Code::noAnswer, name + " does not answer",
                              "Move the mouse, or switch it on, and try again."};
        } else {
            mouse->reading = *reading;
            mouse->reading.state = reading->answered();
        }
    }
    if (!failure) {
        failure = co_await work(mouse);
    }
    co_return failure;
}

} // namespace kelmoth
