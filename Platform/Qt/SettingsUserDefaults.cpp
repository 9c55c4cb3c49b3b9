#include "Platform/Qt/SettingsUserDefaults.h"

#include "Platform/Log.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSettings>

#include <charconv>
#include <sys/stat.h>

namespace kelmoth {

namespace {

/// A file of ours has some kilobytes. To read a larger one would hold up the main thread.
constexpr std::int64_t largestFile = std::int64_t{1024} * 1024;

constexpr int longestWaitAtExit = 2000; // milliseconds

constexpr auto ownerOnly = QFile::ReadOwner | QFile::WriteOwner;

QString qtText(std::string_view text)
{
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

std::optional<std::int64_t> wholeNumber(const std::string &text)
{
    std::int64_t value = 0;
    const auto *const end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, value);
    return result.ec == std::errc() && result.ptr == end ? std::optional(value) : std::nullopt;
}

/// Makes sure that the file is there and that nobody else can read it. A file that replaces it inherits
/// its permissions.
void protect(const QString &path)
{
    const auto directory = QFileInfo(path).path();
    if (!QFileInfo::exists(directory) && QDir().mkpath(directory)) {
        QFile::setPermissions(directory, ownerOnly | QFile::ExeOwner);
    }
    QFile file(path);
    if (file.open(QIODevice::WriteOnly | QIODevice::NewOnly, ownerOnly)) {
        return;
    }
    if (file.exists() && file.permissions() != ownerOnly) {
        file.setPermissions(ownerOnly);
    }
}

void reportLoss(const QString &path)
{
    log("⚠️ Settings could not be saved: %s", qUtf8Printable(path));
}

/// No value: the key is taken away. Whether the disk now holds that; what it does not, the next write brings
/// along.
bool write(const QString &path, const QString &key, const std::optional<QString> &value)
{
    protect(path);
    QSettings settings(path, QSettings::IniFormat);
    if (value) {
        settings.setValue(key, *value);
    } else {
        settings.remove(key);
    }
    settings.sync();
    if (settings.status() == QSettings::AccessError) {
        reportLoss(path);
        return false;
    }
    return true;
}

} // namespace

SettingsUserDefaults::SettingsUserDefaults(QString path)
    : m_path(std::move(path)), m_writer(std::make_unique<QThreadPool>())
{
    m_writer->setObjectName(QStringLiteral("com.kelmoth.defaults"));
    m_writer->setMaxThreadCount(1);
}

SettingsUserDefaults::~SettingsUserDefaults()
{
    SettingsUserDefaults::flush();
}

void SettingsUserDefaults::flush()
{
    if (m_writer && !m_writer->waitForDone(longestWaitAtExit)) {
        reportLoss(m_path);
        (void)m_writer.release(); // ends with the process, which must not wait for it any longer
    }
}

std::optional<SettingsUserDefaults::Stamp> SettingsUserDefaults::stamp() const
{
    struct stat info{};
    if (::stat(QFile::encodeName(m_path).constData(), &info) != 0) {
        return std::nullopt;
    }
    return Stamp{static_cast<std::int64_t>(info.st_ino), info.st_size,
                 info.st_mtim.tv_sec * std::int64_t{1'000'000'000} + info.st_mtim.tv_nsec};
}

/// Reads the file when it is not the one that was read last.
void SettingsUserDefaults::look() const
{
    // The library, too, keeps what it could not write, and would try again here before it reads.
    if (m_writes->pending > 0 || m_writes->isUnsaved) {
        return;
    }
    const auto now = stamp();
    if (now == m_stamp) {
        return;
    }
    m_stamp = now;
    m_values.clear();
    if (!now || now->size > largestFile) {
        return;
    }
    const QSettings settings(m_path, QSettings::IniFormat);
    for (const QString &key : settings.allKeys()) {
        const auto value = settings.value(key);
        m_values[key.toStdString()] = value.typeId() == QMetaType::QString
                                          ? std::optional(value.toString().toStdString())
                                          : std::nullopt;
    }
}

std::optional<std::string> SettingsUserDefaults::text(std::string_view key) const
{
    look();
    const auto found = m_values.find(key);
    return found == m_values.end() ? std::nullopt : found->second;
}

std::int64_t SettingsUserDefaults::integerForKey(std::string_view key) const
{
    const auto value = text(key);
    return value ? wholeNumber(*value).value_or(0) : 0;
}

std::optional<std::string> SettingsUserDefaults::dataForKey(std::string_view key) const
{
    auto value = text(key);
    return value && !wholeNumber(*value) ? std::move(value) : std::nullopt;
}

bool SettingsUserDefaults::hasObjectForKey(std::string_view key) const
{
    look();
    return m_values.contains(key);
}

void SettingsUserDefaults::setInteger(std::string_view key, std::int64_t value)
{
    set(key, std::to_string(value));
}

void SettingsUserDefaults::setData(std::string_view key, std::string data)
{
    set(key, std::move(data));
}

void SettingsUserDefaults::set(std::string_view key, std::string value)
{
    look(); // what is set from here on stands over what the file holds now
    m_values[std::string(key)] = value;
    store(key, value);
}

void SettingsUserDefaults::removeObject(std::string_view key)
{
    look();
    const auto found = m_values.find(key);
    if (found == m_values.end()) {
        return;
    }
    m_values.erase(found);
    store(key, std::nullopt);
}

/// Brings a value, or that there is none, to the disk.
void SettingsUserDefaults::store(std::string_view key, const std::optional<std::string> &value)
{
    if (!m_writer) {
        reportLoss(m_path);
        return;
    }
    ++m_writes->pending;
    auto text = value ? std::optional(qtText(*value)) : std::nullopt;
    m_writer->start([path = m_path, name = qtText(key), text = std::move(text), writes = m_writes] {
        writes->isUnsaved = !write(path, name, text);
        --writes->pending;
    });
}

} // namespace kelmoth
