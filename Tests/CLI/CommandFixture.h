#pragma once

#include "CLI/Session.h"
#include "Platform/Simulated/SimulatedPlatform.h"
#include "Tests/CLI/MemoryFile.h"
#include "Tests/Core/RecordedLog.h"
#include "Tests/Manager/MemoryDefaults.h"
#include "Tests/Simulated/ManualTime.h"

#include <QCoreApplication>
#include <QCoroTask>
#include <gmock/gmock.h>

namespace kelmoth {

/// Commands on simulated mice, in a time that nobody has to wait for.
class CommandTest : public testing::Test {
protected:
    CommandTest() { qputenv("XDG_RUNTIME_DIR", qgetenv("HOME")); }
    ~CommandTest() override { Platform::setCurrent({}); }

    SimulatedMouse &plugIn(std::string_view model)
    {
        mice.push_back(std::make_shared<SimulatedMouse>(*SimulatedModel::named(model), time->clock()));
        return *mice.back();
    }

    Platform platform()
    {
        auto machine = simulatedMachine(mice);
        Platform platform;
        platform.log = log;
        platform.userDefaults = defaults;
        platform.sleeper = time;
        platform.hid = std::move(machine.hid);
        platform.usb = std::move(machine.usb);
        return platform;
    }

    struct Result {
        ExitStatus status;
        std::string output;
        std::string complaints;

        /// The output as the one JSON document that it has to be.
        nlohmann::ordered_json json() const { return nlohmann::ordered_json::parse(output); }
    };

    template <class Verb> Result run(Options options = {})
    {
        Verb command;
        return run(command, std::move(options));
    }

    /// Runs a line of words as the program gets them. What makes no sense is a complaint.
    Result runLine(const std::string &line)
    {
        const auto words = QString::fromStdString("kelmothctl " + line).split(QLatin1Char(' '));
        std::vector<std::string> texts;
        std::vector<const char *> arguments;
        for (const auto &word : words) {
            texts.push_back(word.toStdString());
        }
        for (const auto &text : texts) {
            arguments.push_back(text.c_str());
        }
        const auto commands = allCommands();
        const auto parsed = parseArguments(static_cast<int>(arguments.size()), arguments.data(), commands);
        if (const auto *error = std::get_if<UsageError>(&parsed)) {
            return {ExitStatus::usage, {}, error->message};
        }
        const auto &invocation = std::get<Invocation>(parsed);
        return run(*invocation.command, invocation.options);
    }

    Result run(Command &command, Options options)
    {
        const MemoryFile standardOutput;
        const MemoryFile standardError;
        Output output(standardOutput.descriptor(), standardError.descriptor());
        auto status = ExitStatus::failed;
        {
            Session session(std::move(options), platform(), &output);
            status = QCoro::waitFor(command.run(&session));
        }
        QCoreApplication::processEvents();
        output.showComplaints();
        return {status, standardOutput.text(), standardError.text()};
    }

    static Options asJSON() { return {.json = true}; }

    std::shared_ptr<ManualTime> time = std::make_shared<ManualTime>();
    std::shared_ptr<RecordedLog> log = RecordedLog::install();
    std::shared_ptr<MemoryDefaults> defaults = std::make_shared<MemoryDefaults>();
    std::vector<std::shared_ptr<SimulatedMouse>> mice;
};

} // namespace kelmoth
