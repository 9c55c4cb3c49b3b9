#include "Platform/Linux/DBusSession.h"

#include "Platform/Linux/RunningProcess.h"

#include <QDBusReply>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

#include <utility>

namespace kelmoth {

namespace {

const auto busService = QStringLiteral("org.freedesktop.DBus");
const auto busPath = QStringLiteral("/org/freedesktop/DBus");

constexpr int busTimeout = 2000; // milliseconds
constexpr uint doNotQueue = 4;   // DBUS_NAME_FLAG_DO_NOT_QUEUE

QString text(std::string_view utf8)
{
    return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

/// Object path of the signals about a program: its identifier with slashes.
QString pathOf(const QString &bundleIdentifier)
{
    return QLatin1Char('/') + QString(bundleIdentifier).replace(QLatin1Char('.'), QLatin1Char('/'));
}

QDBusMessage busCall(const QString &method, const QVariantList &arguments)
{
    auto call = QDBusMessage::createMethodCall(busService, busPath, busService, method);
    call.setArguments(arguments);
    return call;
}

} // namespace

QString sessionBusAddress()
{
    auto named = qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS");
    if (!named.isEmpty()) {
        return named;
    }
    const auto directory = qEnvironmentVariable("XDG_RUNTIME_DIR");
    const auto socket = directory + QStringLiteral("/bus");
    return !directory.isEmpty() && QFileInfo::exists(socket) ? QStringLiteral("unix:path=") + socket
                                                             : QString();
}

DBusSession::DBusSession(QDBusConnection bus, const QString &bundleIdentifier)
    : m_bundleIdentifier(bundleIdentifier), m_bus(std::move(bus))
{
    // Subscribe before the name is taken, so that no notification is missed.
    m_bus.connect(QString(), pathOf(bundleIdentifier), bundleIdentifier, QString(), this,
                  SLOT(receive(QDBusMessage)));
    m_bus.connect(QString(), QStringLiteral("/org/freedesktop/DBus/Local"),
                  QStringLiteral("org.freedesktop.DBus.Local"), QStringLiteral("Disconnected"), this,
                  SLOT(end()));
}

DBusSession::~DBusSession()
{
    m_endHandler = nullptr;
}

std::vector<RunningApplication> DBusSession::runningApplications(std::string_view bundleIdentifier) const
{
    const QDBusReply<uint> process =
        m_bus.call(busCall(QStringLiteral("GetConnectionUnixProcessID"), {text(bundleIdentifier)}),
                   QDBus::Block, busTimeout);
    if (!process.isValid() || process.value() == 0) {
        return {};
    }
    return {{.processIdentifier = process.value(), .isTerminated = hasEnded(process.value())}};
}

void DBusSession::observe(std::string_view name, std::string_view object, std::function<void()> handler)
{
    m_observed = {text(name), text(object)};
    m_handler = std::move(handler);
    callBus(QStringLiteral("RequestName"), {m_observed.second, doNotQueue});
    if (std::exchange(m_early, {}) == m_observed) {
        m_handler();
    }
}

void DBusSession::removeObserver()
{
    if (m_handler) {
        m_handler = nullptr;
        callBus(QStringLiteral("ReleaseName"), {m_observed.second});
    }
}

void DBusSession::post(std::string_view name, std::string_view object)
{
    const auto whole = text(name);
    const auto dot = whole.lastIndexOf(QLatin1Char('.'));
    auto signal = QDBusMessage::createSignal(pathOf(text(object)), whole.left(dot), whole.mid(dot + 1));
    signal << text(object);
    m_bus.send(signal);
    // The bus works in order: once it answers, it has the signal, even if this process then exits.
    m_bus.call(busCall(QStringLiteral("GetId"), {}), QDBus::Block, busTimeout);
}

std::string DBusSession::applicationSupportDirectory() const
{
    const auto directory = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    return !directory.isEmpty() && QDir().mkpath(directory) ? QFile::encodeName(directory).toStdString()
                                                            : std::string();
}

void DBusSession::callBus(const QString &method, const QVariantList &arguments)
{
    m_bus.asyncCall(busCall(method, arguments));
}

/// Any process on the bus can send signals: ignore all but those that this program would send.
void DBusSession::receive(const QDBusMessage &message)
{
    const auto arguments = message.arguments();
    if (message.service() == m_bus.baseService() || arguments.size() != 1 ||
        arguments.first() != QVariant(m_bundleIdentifier)) {
        return;
    }
    const Notification notification{message.interface() + QLatin1Char('.') + message.member(),
                                    m_bundleIdentifier};
    if (!m_handler) {
        m_early = notification;
    } else if (notification == m_observed) {
        m_handler();
    }
}

void DBusSession::end()
{
    if (m_endHandler) {
        m_endHandler();
    }
}

} // namespace kelmoth
