// mock_mouse_host MODEL WIRE-LOG PROGRAM [ARGUMENT...]: runs a program beside a mouse that is mocked at the
// kernel's side, and leaves every request that reached the mouse in WIRE-LOG, a line of hexadecimal digits
// each. A SIGUSR1 pulls the mouse out or plugs it in again. Ends as the program ends. Runs under
// umockdev-wrapper.

#include "Testbed/MockMouse.h"

#include <QCoreApplication>
#include <QFile>
#include <QProcess>

#include <csignal>
#include <iostream>

int main(int argc, char **argv)
{
    using namespace kelmoth;
    const QCoreApplication application(argc, argv);
    auto arguments = QCoreApplication::arguments().mid(1);
    const auto testbed = std::make_shared<MockTestbed>();
    if (arguments.size() < 3 || !umockdev_in_mock_environment()) {
        std::cerr << "usage: umockdev-wrapper mock_mouse_host MODEL WIRE-LOG PROGRAM [ARGUMENT...]\n";
        return 2;
    }
    const auto model = SimulatedModel::named(arguments.takeFirst().toStdString());
    QFile wire(arguments.takeFirst());
    if (!model || !wire.open(QIODevice::WriteOnly)) {
        std::cerr << "mock_mouse_host: no such model, or the log cannot be written\n";
        return 2;
    }
    const auto now = [] {
        return std::chrono::duration_cast<std::chrono::microseconds>(
            std::chrono::steady_clock::now().time_since_epoch());
    };
    MockMouse mouse(testbed, std::make_shared<SimulatedMouse>(*model, now));
    mouse.attach();

    // Pass termination signals on to the program, and outlive it to write the log.
    static qint64 programID = 0;
    QProcess program;
    program.setProcessChannelMode(QProcess::ForwardedChannels);
    const auto name = arguments.takeFirst();
    program.start(name, arguments);
    if (!program.waitForStarted(-1)) {
        return 2;
    }
    programID = program.processId();
    std::signal(SIGTERM, [](int) { kill(static_cast<pid_t>(programID), SIGTERM); });
    static volatile std::sig_atomic_t moves = 0;
    std::signal(SIGUSR1, [](int) { moves = moves + 1; });
    for (int done = 0; !program.waitForFinished(20) && program.state() != QProcess::NotRunning;) {
        if (done < moves) {
            done++ % 2 == 0 ? mouse.detach() : mouse.attach();
        }
    }
    for (const auto &transfer : mouse.mouse().takeTransfers()) {
        if (transfer.isSet) {
            const QByteArray report(reinterpret_cast<const char *>(transfer.bytes.data()),
                                    static_cast<qsizetype>(transfer.bytes.size()));
            wire.write(report.toHex() + '\n');
        }
    }
    return program.exitStatus() == QProcess::NormalExit ? program.exitCode() : 3;
}
