#pragma once

#include "CLI/Command.h"

namespace kelmoth {

/// Shows what stands between this user and the mouse.
class DoctorCommand : public Command {
public:
    std::string_view name() const override { return "doctor"; }
    std::string_view summary() const override
    {
        return "Show what stands between you and the mouse, and the remedy";
    }
    std::string_view details() const override;
    QCoro::Task<ExitStatus> run(Session *session) override;
};

} // namespace kelmoth
