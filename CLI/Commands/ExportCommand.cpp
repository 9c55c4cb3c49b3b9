#include "CLI/MouseCommand.h"
#include "CLI/Reports/ReadReport.h"
#include "Core/Device/SettingsFile.h"
#include "Platform/RegularFile.h"

#include <CLI/CLI.hpp>

namespace kelmoth {

namespace {

/// Writes the settings of a mouse into a file.
class ExportCommand : public MouseCommand {
public:
    ExportCommand()
        : MouseCommand(
              {"export", "Write the settings of a mouse into a file",
               "When the mouse does not answer for all but the lift-off distance nothing is written."},
              Need::reading)
    {
    }

    void declare(CLI::App &parser) override
    {
        parser.add_option("FILE", m_file, "The file to write, or - for standard output")->option_text(" ");
    }

protected:
    /// Fail before reading the mouse, which takes a second.
    std::optional<Failure> objection(Mouse *) override
    {
        return m_file == "-" ? std::nullopt : failureOf(obstacleToWriting(m_file));
    }

    QCoro::Task<std::optional<Failure>> work(Mouse *mouse) override
    {
        auto &output = mouse->session->output();
        const auto &reading = mouse->reading;
        std::optional<Failure> failure;
        auto needed = reading.unanswered;
        needed.liftOff = false; // optional in the file
        if (!needed.empty()) {
            auto words = unansweredWords(*mouse);
            std::erase(words, "battery");
            failure = {Failure::Code::noAnswer,
                       "the mouse did not answer for " + joined(words) + ": nothing was written"};
            co_return failure;
        }
        // Values from a mouse are finite, so they can be encoded.
        const auto text = encode(SettingsFile{reading.state, reading.liftOffLevel}).value() + '\n';
        if (!reading.liftOffLevel) {
            output.complain("the mouse did not answer for lift-off distance: it is left out");
        }
        if (m_file == "-") {
            output.print(text);
        } else {
            failure = failureOf(writeNamedFile(m_file, text));
        }
        co_return failure;
    }

private:
    std::optional<Failure> failureOf(const std::optional<std::string> &obstacle) const
    {
        return obstacle ? std::optional(Failure{Failure::Code::failed, m_file + ": " + *obstacle})
                        : std::nullopt;
    }

    std::string m_file = "-"; ///< "-" stands for standard output
};

} // namespace

constinit const CommandFactory exportCommand = [] { return CommandPointer(new ExportCommand); };

} // namespace kelmoth
