#include "CLI/Mice.h"
#include "CLI/Reports/DoctorReport.h"
#include "CLI/UdevRule.h"

#include <CLI/CLI.hpp>

namespace kelmoth {

namespace {

/// `done` when a mouse can be configured, `noPermission` when one could but for the access right.
ExitStatus verdictOf(const Examination &examination)
{
    using Kind = DoctorProblem::Kind;
    const auto canConfigure = [](const auto &node) { return node.takesCommands && node.access == 0; };
    if (std::ranges::any_of(examination.hidNodes, canConfigure)) {
        return ExitStatus::done;
    }
    const auto &problems = examination.problems;
    return std::ranges::find(problems, Kind::noAccess, &DoctorProblem::kind) == problems.end()
               ? ExitStatus::noMouse
               : ExitStatus::noPermission;
}

/// Shows what stands between this user and the mouse.
class DoctorCommand : public Command {
public:
    DoctorCommand()
        : Command({"doctor", "Show what stands between you and the mouse, and the remedy",
                   R"(Looks at device nodes, permissions, the udev rule and drivers. Sends nothing to a
mouse and changes nothing. The exit status is 0 when a mouse can be configured.

Example:
  kelmothctl doctor)"})
    {
    }

    void declare(CLI::App &parser) override
    {
        parser.add_flag("--udev-rule", m_wantsRule, "Print the udev rule that gives access to the mice");
    }

    QCoro::Task<ExitStatus> run(Session *session) override
    {
        auto &output = session->output();
        if (m_wantsRule) {
            output.print(udevRule);
            co_return ExitStatus::done;
        }
        // Simulated mice have nothing of this system between them and the user, and it is not looked at: what
        // it would show is not what the other commands are given.
        Diagnosis diagnosis{{}, session->options().simulate.has_value()};
        if (diagnosis.isSimulated) {
            const auto choice = chooseMouse(session);
            const auto *none = std::get_if<Failure>(&choice);
            diagnosis.verdict = none ? statusOf(*none) : ExitStatus::done;
        } else {
            DoctorScope scope{{}, session->options().productID};
            for (const auto &model : basiliskModels()) {
                scope.supported.push_back(rawValue(model.productID));
            }
            diagnosis.examination = examine(scope);
            diagnosis.verdict = verdictOf(diagnosis.examination);
        }
        if (session->options().json) {
            output.printJSON(diagnosisJSON(diagnosis));
        } else {
            output.print(renderDiagnosis(diagnosis, session->terminal()));
        }
        co_return diagnosis.verdict;
    }

private:
    bool m_wantsRule = false;
};

} // namespace

std::unique_ptr<Command> doctorCommand()
{
    return std::make_unique<DoctorCommand>();
}

} // namespace kelmoth
