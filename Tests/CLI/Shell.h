#pragma once

#include <QFileInfo>
#include <QProcess>
#include <QProcessEnvironment>
#include <gtest/gtest.h>

#include <string>

namespace kelmoth {

/// The built kelmothctl.
inline const QString program = QStringLiteral(KELMOTHCTL);

constexpr int patience = 60'000; // milliseconds

/// How a process ended, and what it wrote.
struct Ending {
    int status = -1;
    std::string output;
    std::string error;
};

/// Runs a line of the shell, in which $1 and so on are the arguments and "kelmothctl" is the built program.
inline Ending shell(const std::string &line, const QStringList &arguments = {})
{
    auto environment = QProcessEnvironment::systemEnvironment();
    for (const auto *name : {"NO_COLOR", "COLORTERM", "TERM"}) {
        environment.remove(QString::fromLatin1(name));
    }
    const auto path = QStringLiteral("PATH");
    environment.insert(path, QFileInfo(program).path() + QLatin1Char(':') + environment.value(path));
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(QStringLiteral("bash"),
                  QStringList{QStringLiteral("-c"), QString::fromStdString(line), path} + arguments);
    process.closeWriteChannel();
    EXPECT_TRUE(process.waitForFinished(patience));
    EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
    return {process.exitCode(), process.readAllStandardOutput().toStdString(),
            process.readAllStandardError().toStdString()};
}

/// The next line that a process writes, without its end.
inline std::string nextLine(QProcess &process)
{
    while (!process.canReadLine()) {
        if (!process.waitForReadyRead(patience)) {
            ADD_FAILURE() << "no line";
            return {};
        }
    }
    return process.readLine().trimmed().toStdString();
}

} // namespace kelmoth
