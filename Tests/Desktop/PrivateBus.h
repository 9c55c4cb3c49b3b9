#pragma once

#include <QDBusConnection>
#include <QFile>
#include <QProcess>
#include <QString>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace kelmoth {

/// A session bus of a test's own, which starts nothing by itself.
class PrivateBus {
public:
    PrivateBus()
    {
        const auto path = m_directory.filePath(QStringLiteral("bus.conf"));
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("<busconfig><type>session</type><listen>unix:tmpdir=/tmp</listen><auth>EXTERNAL</auth>"
                   "<policy context='default'><allow send_destination='*' eavesdrop='true'/>"
                   "<allow eavesdrop='true'/><allow own='*'/></policy></busconfig>");
        file.close();
        m_daemon.start(QStringLiteral("dbus-daemon"),
                       {QStringLiteral("--nofork"), QStringLiteral("--print-address"),
                        QStringLiteral("--config-file=") + path});
        while (!m_daemon.canReadLine() && m_daemon.waitForReadyRead()) {
        }
        m_address = QString::fromUtf8(m_daemon.readLine()).trimmed();
        EXPECT_FALSE(m_address.isEmpty());
    }
    ~PrivateBus()
    {
        m_daemon.kill();
        m_daemon.waitForFinished();
    }
    PrivateBus(const PrivateBus &) = delete;
    PrivateBus &operator=(const PrivateBus &) = delete;

    QString address() const { return m_address; }

    /// Another connection each time.
    QDBusConnection connect() const
    {
        static int count = 0;
        return QDBusConnection::connectToBus(m_address, QString::number(++count));
    }

private:
    QTemporaryDir m_directory;
    QProcess m_daemon;
    QString m_address;
};

} // namespace kelmoth
