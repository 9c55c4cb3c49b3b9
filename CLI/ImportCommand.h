#pragma once

#include "CLI/Command.h"

#include <string>

namespace kelmoth {

/// Gives a mouse the settings of a file.
class ImportCommand : public Command {
public:
    std::string_view name() const override { return "import"; }
    std::string_view summary() const override { return "Give a mouse the settings of a file"; }
    std::string_view details() const override;
    void declare(CLI::App &parser) override;
    QCoro::Task<ExitStatus> run(Session *session) override;

private:
    std::string m_file; ///< "-" stands for standard input
};

} // namespace kelmoth
