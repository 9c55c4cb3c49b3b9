#pragma once

#include "CLI/Command.h"

namespace kelmoth {

/// Shows attach, detach and battery changes as they happen.
class WatchCommand : public Command {
public:
    std::string_view name() const override { return "watch"; }
    std::string_view summary() const override
    {
        return "Show attach, detach and battery changes as they happen";
    }
    std::string_view details() const override;
    QCoro::Task<ExitStatus> run(Session *session) override;
};

} // namespace kelmoth
