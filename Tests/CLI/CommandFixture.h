#pragma once

#include "CLI/Session.h"
#include "Platform/Simulated/SimulatedPlatform.h"
#include "Tests/CLI/MemoryFile.h"
#include "Tests/Core/RecordedLog.h"
#include "Tests/Simulated/ManualTime.h"

#include <QCoreApplication>
#include <QCoroTask>
#include <gmock/gmock.h>

namespace kelmoth {

/// Commands on simulated mice, in a time that nobody has to wait for.
class CommandTest : public testing::Test {
protected:
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
        const MemoryFile standardOutput;
        const MemoryFile standardError;
        Output output(standardOutput.descriptor(), standardError.descriptor());
        auto status = ExitStatus::failed;
        {
            Session session(options, platform(), &output);
            Verb command;
            status = QCoro::waitFor(command.run(&session));
        }
        QCoreApplication::processEvents();
        output.showComplaints();
        return {status, standardOutput.text(), standardError.text()};
    }

    static Options asJSON() { return {.json = true}; }

    std::shared_ptr<ManualTime> time = std::make_shared<ManualTime>();
    std::shared_ptr<RecordedLog> log = RecordedLog::install();
    std::vector<std::shared_ptr<SimulatedMouse>> mice;
};

} // namespace kelmoth
