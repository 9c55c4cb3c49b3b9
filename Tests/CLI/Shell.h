#pragma once

#include <QFileInfo>
#include <QProcess>
#include <QProcessEnvironment>
#include <gtest/gtest.h>

#include <functional>
#include <string>

namespace kelmoth {

/// The built kelmothctl.
inline const QString program = QStringLiteral(KELMOTHCTL);

constexpr int waitTimeout = 60'000; // milliseconds

/// How a process ended, and what it wrote.
struct Ending {
    int status = -1;
    std::string output;
    std::string error;
};

/// Runs a line of the shell, in which $1 and so on are the arguments and "kelmothctl" is the built program.
/// As long as it runs, `meanwhile` is called every second, and says whether to go on waiting.
inline Ending shell(const std::string &line, const QStringList &arguments = {},
                    const std::function<bool()> &meanwhile = {})
{
    auto environment = QProcessEnvironment::systemEnvironment();
    const auto path = QStringLiteral("PATH");
    environment.insert(path, QFileInfo(program).path() + QLatin1Char(':') + environment.value(path));
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(QStringLiteral("bash"),
                  QStringList{QStringLiteral("-c"),
                              QString::fromStdString("unset NO_COLOR COLORTERM TERM; " + line), path} +
                      arguments);
    process.closeWriteChannel();
    while (meanwhile && !process.waitForFinished(1000) && meanwhile()) {
    }
    EXPECT_TRUE(process.state() == QProcess::NotRunning || process.waitForFinished(waitTimeout));
    EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
    return {process.exitCode(), process.readAllStandardOutput().toStdString(),
            process.readAllStandardError().toStdString()};
}

} // namespace kelmoth
