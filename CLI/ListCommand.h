#pragma once

#include "CLI/Command.h"

namespace kelmoth {

/// Shows the attached mice.
class ListCommand : public Command {
public:
    std::string_view name() const override { return "list"; }
    std::string_view summary() const override
    {
        return "Show the attached mice and whether they can be configured";
    }
    std::string_view details() const override;
    QCoro::Task<ExitStatus> run(Session *session) override;
};

} // namespace kelmoth
