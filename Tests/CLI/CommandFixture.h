#pragma once

#include "CLI/Session.h"
#include "Platform/Simulated/SimulatedPlatform.h"
#include "Tests/Core/RecordedLog.h"
#include "Tests/Manager/MemoryDefaults.h"
#include "Tests/Simulated/ManualTime.h"

#include <QCoreApplication>
#include <QCoroTask>
#include <QTemporaryFile>
#include <gmock/gmock.h>

namespace kelmoth {

/// A file for a program to write to.
class OutputFile : public QTemporaryFile {
public:
    OutputFile() { EXPECT_TRUE(open()); }
    std::string text() { return seek(0) ? readAll().toStdString() : "?"; }
};

/// Commands on simulated mice, in a time that nobody has to wait for.
class CommandTest : public testing::Test {
protected:
    using Kind = SimulatedFault::Kind;
    using JSON = nlohmann::ordered_json;

    CommandTest() { qputenv("XDG_RUNTIME_DIR", qgetenv("HOME")); }
    ~CommandTest() override { Platform::setCurrent({}); }

    SimulatedMouse &plugIn(std::string_view model)
    {
        mice.push_back(std::make_shared<SimulatedMouse>(*SimulatedModel::named(model), time->clock()));
        return *mice.back();
    }
    SimulatedMouse &plugInOnly(std::string_view model)
    {
        mice.clear();
        return plugIn(model);
    }

    struct Result {
        ExitStatus status;
        std::string output;
        std::string complaints;

        /// The output as the one JSON document that it has to be.
        JSON json() const { return JSON::parse(output); }
    };

    /// Runs a line of words as the program gets them. What makes no sense is a complaint.
    Result run(const std::string &line)
    {
        const auto words = QByteArray::fromStdString("kelmothctl " + line).trimmed().split(' ');
        const std::vector<const char *> arguments(words.begin(), words.end());
        const auto commands = allCommands();
        const auto parsed = parseArguments(static_cast<int>(arguments.size()), arguments.data(), commands);
        if (const auto *error = std::get_if<UsageError>(&parsed)) {
            return {ExitStatus::usage, {}, error->message};
        }
        const auto &invocation = std::get<Invocation>(parsed);
        OutputFile standardOutput;
        OutputFile standardError;
        Output output(standardOutput.handle(), standardError.handle());
        const auto machine = simulatedMachine(mice);
        auto status = ExitStatus::failed;
        {
            Platform platform;
            platform.log = log;
            platform.userDefaults = defaults;
            platform.sleeper = time;
            platform.hid = machine.hid;
            platform.usb = machine.usb;
            Session session(invocation.options, platform, &output);
            status = QCoro::waitFor(invocation.command->run(&session));
        }
        QCoreApplication::processEvents();
        output.showComplaints();
        return {status, standardOutput.text(), standardError.text()};
    }

    std::shared_ptr<ManualTime> time = std::make_shared<ManualTime>();
    std::shared_ptr<RecordedLog> log = RecordedLog::install();
    std::shared_ptr<MemoryDefaults> defaults = std::make_shared<MemoryDefaults>();
    std::vector<std::shared_ptr<SimulatedMouse>> mice;
};

} // namespace kelmoth
