#include "CLI/Arguments.h"
#include "CLI/Composition.h"
#include "CLI/DiagnosticLog.h"
#include "CLI/Output.h"
#include "CLI/Session.h"
#include "Platform/Linux/StandardStreams.h"

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

ExitStatus rejectUsage(const std::string &message, Output &output)
{
    output.complain(message + "\nTry \"kelmothctl --help\".");
    return ExitStatus::usage;
}

ExitStatus runCommand(const Invocation &invocation, Output &output)
{
    const auto diagnostics = std::make_shared<DiagnosticLog>(STDERR_FILENO, invocation.options.verbose);
    qInstallMessageHandler(forwardQtMessage);
    int argc = 1;
    std::string name = "kelmothctl";
    std::array<char *, 2> argv{name.data(), nullptr};
    const QCoreApplication application(argc, argv.data());

    std::string failure;
    const auto platform = composePlatform(invocation.options, diagnostics, &failure);
    if (!platform) {
        return rejectUsage(failure, output);
    }
    Platform::setCurrent(*platform);
    auto status = ExitStatus::failed;
    bool hasMouseFailed = false;
    {
        Session session(invocation.options, *platform, &output);
        status = QCoro::waitFor(invocation.command->run(&session));
        hasMouseFailed = session.hasMouseFailed();
    }
    // Whoever still waited for the mouse learns now that it is over, and lets go of what it holds.
    QCoreApplication::processEvents();
    platform->userDefaults->flush();
    if (hasMouseFailed) {
        diagnostics->show();
    }
    return status;
}

ExitStatus run(int argc, char **argv, Output &output)
{
    const auto commands = allCommands();
    const auto parsed = parseArguments(argc, argv, commands);
    if (const auto *error = std::get_if<UsageError>(&parsed)) {
        return rejectUsage(error->message, output);
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
    // Signals that end a program end this one as it stands, whatever it waits for: each line of output is out
    // when it is written, and the kernel gives back the lock and lets no more than the transfer under way
    // end. A reader that goes away is noticed by the write that fails.
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
