#pragma once

#include "CLI/Session.h"
#include "Tests/Manager/SimulatedMachineTest.h"

#include <QCoreApplication>
#include <QCoroTask>
#include <QTemporaryFile>

namespace kelmoth {

/// A file for a program to write to.
class OutputFile : public QTemporaryFile {
public:
    OutputFile() { EXPECT_TRUE(open()); }
    std::string text() { return seek(0) ? readAll().toStdString() : "?"; }
};

/// Commands on simulated mice.
class CommandTest : public SimulatedMachineTest {
protected:
    using JSON = nlohmann::ordered_json;

    CommandTest() { qputenv("XDG_RUNTIME_DIR", qgetenv("HOME")); }

    SimulatedMouse &plugInOnly(const std::string &model)
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
        auto status = ExitStatus::failed;
        {
            Session session(invocation.options, platform(), &output);
            status = QCoro::waitFor(invocation.command->run(&session));
        }
        QCoreApplication::processEvents();
        output.showComplaints();
        return {status, standardOutput.text(), standardError.text()};
    }
};

} // namespace kelmoth
