#include "CLI/SettingPlan.h"
#include "Core/Device/DeviceDefaults.h"

#include <CLI/CLI.hpp>

#include <unistd.h>

namespace kelmoth {

namespace {

using Part = SettingStep::Part;

/// Writes the defaults of its model to a mouse.
class ResetCommand : public MouseCommand {
public:
    ResetCommand()
        : MouseCommand(
              {"reset", "Give a mouse the defaults of its model",
               "Each setting that differs is written and reported. Asks first where somebody can be asked."},
              Need::changing)
    {
    }

    void declare(CLI::App &parser) override
    {
        parser.add_option("PART", m_part, "dpi, lighting or buttons")->option_text(" ");
        parser.add_flag("-y,--yes", m_isSure, "Do not ask");
    }

protected:
    std::optional<Failure> prepare() override
    {
        if (!m_part.empty() && !parts.contains(folded(m_part))) {
            return Failure{Failure::Code::usage,
                           noSuchWord("there are", "defaults of", m_part, {"dpi", "lighting", "buttons"})};
        }
        if (!m_isSure && ::isatty(STDIN_FILENO) == 0) {
            return Failure{Failure::Code::usage, "nobody can be asked here: say --yes to reset"};
        }
        return std::nullopt;
    }

    std::optional<Failure> objection(Mouse *mouse) override
    {
        const auto what = m_part.empty() ? "DPI, lighting and buttons" : folded(m_part);
        const auto question = "Reset " + what + " of the " + mouse->device().name() + '?';
        return m_isSure || mouse->session->output().ask(question)
                   ? std::nullopt
                   : std::optional(Failure{Failure::Code::failed, "nothing was reset"});
    }

    QCoro::Task<std::optional<Failure>> work(Mouse *mouse) override
    {
        const SettingsFile defaults{createDefaultState(mouse->device()), std::nullopt};
        auto steps = planSettings(defaults, mouse->reading, mouse->device());
        std::erase_if(steps, [this](const auto &step) {
            const auto wanted = parts.find(folded(m_part));
            return wanted == parts.end() ? step.part == Part::rest : step.part != wanted->second;
        });
        return takeSteps(std::move(steps), mouse);
    }

private:
    static inline const std::map<std::string, Part> parts{
        {"dpi", Part::dpi}, {"lighting", Part::lighting}, {"buttons", Part::buttons}};

    std::string m_part; ///< all of them when empty
    bool m_isSure = false;
};

} // namespace

constinit const CommandFactory resetCommand = [] { return CommandPointer(new ResetCommand); };

} // namespace kelmoth
