#pragma once

#include "CLI/Command.h"

#include <string>

namespace kelmoth {

/// Writes the settings of a mouse in their stored form.
class ExportCommand : public Command {
public:
    std::string_view name() const override { return "export"; }
    std::string_view summary() const override { return "Write the settings of a mouse into a file"; }
    std::string_view details() const override;
    void declare(CLI::App &parser) override;
    QCoro::Task<ExitStatus> run(Session *session) override;

private:
    std::string m_file = "-"; ///< "-" stands for standard output
};

} // namespace kelmoth
