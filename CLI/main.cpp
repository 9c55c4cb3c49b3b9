#include "CLI/Arguments.h"
#include "CLI/Session.h"
#include "Platform/DiagnosticLog.h"
#include "Platform/Linux/LinuxPlatform.h"
#include "Platform/Linux/StandardStreams.h"
#include "Platform/Qt/QtPlatform.h"
#include "Platform/Simulated/SimulatedPlatform.h"

#include <QCoreApplication>

#include <array>
#include <csignal>
#include <system_error>
#include <unistd.h>

namespace kelmoth {

namespace {

void forwardQtMessage(QtMsgType, const QMessageLogContext &, const QString &message)
{
    log("%s", qUtf8Printable(message));
}

/// The platform: this system, or simulated mice. None when the list of simulated mice is invalid, with the
/// reason in `failure`.
std::optional<Platform> composePlatform(const Options &options, std::shared_ptr<Log> log,
                                        std::string *failure)
{
    auto platform = linuxPlatform();
    // No bundle: output is always English, for programs that read it.
    platform.userDefaults = settingsUserDefaults(std::chrono::seconds{20}); // for a busy disk
    platform.log = std::move(log);
    if (options.simulate && !simulateMice(*options.simulate, platform, failure)) {
        return std::nullopt;
    }
    return platform;
}

ExitStatus runCommand(const Invocation &invocation, Output &output)
{
    const auto diagnostics = std::make_shared<DiagnosticLog>(STDERR_FILENO, invocation.options.verbose);
    qInstallMessageHandler(forwardQtMessage);
    std::string obstacle;
    const auto platform = composePlatform(invocation.options, diagnostics, &obstacle);
    if (!platform) {
        const Failure failure{Failure::Code::usage, obstacle, "Try \"kelmothctl --help\"."};
        output.fail(failure, invocation.options.json);
        return statusOf(failure);
    }
    Platform::setCurrent(*platform);
    auto status = ExitStatus::failed;
    bool hasMouseFailed = false;
    {
        Session session(invocation.options, *platform, &output);
        status = QCoro::waitFor(invocation.command->run(&session));
        hasMouseFailed = session.hasMouseFailed();
    }
    // Let coroutines that still wait for the mouse end and release their resources.
    QCoreApplication::processEvents();
    platform->userDefaults->flush();
    if (hasMouseFailed) {
        diagnostics->show();
    }
    return status;
}

/// The words for the mouse that would be configured; those of all models without one.
Vocabulary attachedVocabulary(const Options &options, Output &output)
{
    std::string obstacle;
    const auto platform =
        composePlatform(options, std::make_shared<DiagnosticLog>(STDERR_FILENO, false), &obstacle);
    if (!platform) {
        return Vocabulary::ofAll();
    }
    Platform::setCurrent(*platform);
    Session session(options, *platform, &output);
    const auto device = DeviceManager::preferredDevice(session.devices());
    return device ? Vocabulary::of(*device) : Vocabulary::ofAll();
}

ExitStatus run(int argc, char **argv, Output &output)
{
    int count = 1;
    std::string name = "kelmothctl";
    std::array<char *, 2> names{name.data(), nullptr};
    const QCoreApplication application(count, names.data());
    const auto commands = allCommands();
    const auto vocabulary = [&output](const Options &options) { return attachedVocabulary(options, output); };
    const auto parsed = parseArguments(argc, argv, commands, vocabulary);
    if (const auto *failure = std::get_if<Failure>(&parsed)) {
        output.fail(*failure, asksForJSON(argc, argv));
        return statusOf(*failure);
    }
    if (const auto *information = std::get_if<Information>(&parsed)) {
        output.print(information->text);
        return ExitStatus::done;
    }
    return runCommand(std::get<Invocation>(parsed), output);
}

} // namespace

} // namespace kelmoth

int main(int argc, char **argv)
{
    using namespace kelmoth;

    reserveStandardStreams();
    // Termination signals end the program at once, whatever it waits for: output is unbuffered, the kernel
    // releases the locks, and at most the current transfer is completed. A closed reader is detected by a
    // failing write.
    std::signal(SIGPIPE, SIG_IGN);
    Output output(STDOUT_FILENO, STDERR_FILENO);
    auto status = run(argc, argv, output);
    if (output.error() != 0 && !output.isReaderGone()) {
        output.complain("cannot write the output: " + std::generic_category().message(output.error()));
        status = ExitStatus::failed;
    }
    output.showComplaints();
    return static_cast<int>(status);
}
