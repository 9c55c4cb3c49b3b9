#pragma once

#include "CLI/Command.h"
#include "CLI/SettingChange.h"

namespace kelmoth {

/// Changes one setting of a mouse.
class SetCommand : public Command {
public:
    std::string_view name() const override { return "set"; }
    std::string_view summary() const override { return "Change one setting of a mouse"; }
    std::string_view details() const override;
    void declare(CLI::App &parser) override;
    QCoro::Task<ExitStatus> run(Session *session) override;

private:
    SettingChanges m_changes = allSettingChanges();
    SettingChange *m_change = nullptr; ///< the one that the command line asks for
};

} // namespace kelmoth
