#include "CLI/Mice.h"
#include "CLI/Reports/DoctorReport.h"

#include <CLI/CLI.hpp>

namespace kelmoth {

namespace {

/// Shows what keeps this user from configuring the mouse.
class DoctorCommand : public Command {
public:
    DoctorCommand()
        : Command({"doctor", "Show what stands between you and the mouse, and the remedy",
                   "Sends nothing to a mouse and changes nothing. The exit status is 0 when one can be "
                   "configured."})
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
        // Simulated mice do not depend on this system, so do not examine it: it would not show the mice of
        // the other commands.
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
            const bool isDenied = diagnosis.examination.has(DoctorProblem::Kind::noAccess);
            diagnosis.verdict = isDenied ? ExitStatus::noPermission : ExitStatus::noMouse;
            if (diagnosis.examination.canConfigure()) {
                diagnosis.verdict = ExitStatus::done;
            }
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

constinit const CommandFactory doctorCommand = [] { return CommandPointer(new DoctorCommand); };

} // namespace kelmoth
