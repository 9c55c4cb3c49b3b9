#pragma once

#include "CLI/Command.h"

namespace kelmoth {

/// Shows what a mouse says about its settings.
class ReadCommand : public Command {
public:
    std::string_view name() const override { return "read"; }
    std::string_view summary() const override { return "Show every setting as the mouse itself reports it"; }
    std::string_view details() const override;
    QCoro::Task<ExitStatus> run(Session *session) override;
};

} // namespace kelmoth
