#include "Platform/Qt/SettingsUserDefaults.h"

#include "Platform/Log.h"
#include "Platform/Qt/SettingsText.h"
#include "Platform/RegularFile.h"

#include <QFile>

#include <atomic>
#include <cerrno>
#include <charconv>
#include <fcntl.h>
#include <filesystem>
#include <mutex>
#include <sys/file.h>
#include <sys/stat.h>
#include <system_error>
#include <utility>

namespace kelmoth {

namespace {

/// Our file has some kilobytes. Reading a larger one would block the main thread.
constexpr std::size_t largestFile = std::size_t{1024} * 1024;

constexpr const char *notRead = "⚠️ Settings could not be read: %s";
constexpr const char *notSaved = "⚠️ Settings could not be saved: %s";

std::optional<std::int64_t> wholeNumber(const std::string &text)
{
    std::int64_t value = 0;
    const auto *const end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, value);
    return result.ec == std::errc() && result.ptr == end ? std::optional(value) : std::nullopt;
}

/// Values by key; a key without one is to be removed.
using Changes = std::map<std::string, std::optional<std::string>, std::less<>>;

void makePrivateDirectory(const std::filesystem::path &directory)
{
    std::error_code ignored; // writing there reports it
    std::filesystem::create_directories(directory.parent_path(), ignored);
    ::mkdir(directory.c_str(), S_IRWXU);
}

std::optional<std::string> readOwn(const std::string &path, std::string *obstacle)
{
    auto text = readRegularFile(path, largestFile, {.isOwn = true}, obstacle);
    *obstacle = path + ": " + *obstacle;
    return text;
}

/// Merges the changes into the file under a lock. None once the disk holds them, else the reason.
std::optional<std::string> save(const std::string &path, const Changes &changes)
{
    makePrivateDirectory(std::filesystem::path(path).parent_path());
    std::string obstacle;
    const auto lockPath = path + ".flock"; // QLockFile takes a left-over ".lock" for a held one
    const auto lock = openRegularFile(lockPath, O_RDWR | O_CREAT, {.isOwn = true}, &obstacle);
    if (!lock) {
        return lockPath + ": " + obstacle;
    }
    while (::flock(lock.get(), LOCK_EX) != 0 && errno == EINTR) { // no lock on file systems without locks
    }
    const auto before = readOwn(path, &obstacle);
    if (!before) {
        return obstacle;
    }
    SettingsText text(*before);
    for (const auto &[key, value] : changes) {
        text.set(key, value);
    }
    const auto failure = replaceRegularFile(path, text.text(), {.mode = S_IRUSR | S_IWUSR});
    return failure ? std::optional(path + ": " + *failure) : std::nullopt;
}

} // namespace

/// State of the writing thread, which may outlive the object when the disk blocks. While a write is pending
/// or the last one failed, the file is not read: the values in memory are newer.
struct SettingsUserDefaults::Writes {
    std::atomic<int> pending = 0;
    std::atomic<bool> isUnsaved = false; ///< the last write failed
    Changes unsaved;                     ///< changes not on the disk yet; writing thread only

    /// Logs an obstacle, once until it changes or ends.
    void report(const char *line, const std::string &why)
    {
        const std::scoped_lock guard(m_mutex);
        if (std::exchange(m_obstacle, why) != why) {
            log(line, why.c_str());
        }
    }
    void clearReport()
    {
        const std::scoped_lock guard(m_mutex);
        m_obstacle.clear();
    }
    std::string obstacle()
    {
        const std::scoped_lock guard(m_mutex);
        return m_obstacle;
    }

private:
    std::mutex m_mutex;
    std::string m_obstacle;
};

SettingsUserDefaults::SettingsUserDefaults(const QString &path, std::chrono::milliseconds longestWait)
    : m_path(QFile::encodeName(path).toStdString()),
      m_writes(std::make_shared<Writes>()),
      m_longestWait(longestWait),
      m_writer(std::make_unique<QThreadPool>())
{
    m_writer->setObjectName(QStringLiteral("com.kelmoth.defaults"));
    m_writer->setMaxThreadCount(1);
}

SettingsUserDefaults::~SettingsUserDefaults()
{
    SettingsUserDefaults::flush();
}

std::optional<std::string> SettingsUserDefaults::flush()
{
    if (m_writer && !m_writer->waitForDone(static_cast<int>(m_longestWait.count()))) {
        (void)m_writer.release(); // leaked on purpose: it ends with the process
    }
    if (!m_writer) {
        m_writes->report(notSaved, m_path + ": The disk, or another program, keeps it waiting");
    }
    return m_writer && !m_writes->isUnsaved ? std::nullopt : std::optional(m_writes->obstacle());
}

std::optional<SettingsUserDefaults::Stamp> SettingsUserDefaults::stamp() const
{
    struct stat info{};
    if (::lstat(m_path.c_str(), &info) != 0) {
        return std::nullopt;
    }
    return Stamp{static_cast<std::int64_t>(info.st_ino), info.st_size,
                 info.st_mtim.tv_sec * std::int64_t{1'000'000'000} + info.st_mtim.tv_nsec};
}

/// Reads the file if it has changed. Keeps the known values when that fails.
void SettingsUserDefaults::reload() const
{
    if (m_writes->pending > 0 || m_writes->isUnsaved) {
        return;
    }
    const auto now = stamp();
    if (now == m_stamp) {
        return;
    }
    m_stamp = now;
    std::string obstacle;
    if (const auto text = readOwn(m_path, &obstacle)) {
        m_values = SettingsText(*text).values();
    } else {
        m_writes->report(notRead, obstacle);
    }
}

std::optional<std::string> SettingsUserDefaults::text(std::string_view key) const
{
    reload();
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
    reload();
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
    reload(); // read first: the new value overrides the file's
    m_values[std::string(key)] = value;
    store(key, std::move(value));
}

void SettingsUserDefaults::removeObject(std::string_view key)
{
    reload();
    const auto found = m_values.find(key);
    if (found == m_values.end()) {
        return;
    }
    m_values.erase(found);
    store(key, std::nullopt);
}

/// Writes a value, or its removal, to the disk.
void SettingsUserDefaults::store(std::string_view key, std::optional<std::string> value)
{
    if (!m_writer) {
        return; // already reported by `flush`
    }
    ++m_writes->pending;
    m_writer->start([path = m_path, name = std::string(key), text = std::move(value), writes = m_writes] {
        writes->unsaved[name] = text;
        if (const auto why = save(path, writes->unsaved)) {
            writes->isUnsaved = true;
            writes->report(notSaved, *why);
        } else {
            writes->isUnsaved = false;
            writes->unsaved.clear();
            writes->clearReport();
        }
        --writes->pending;
    });
}

} // namespace kelmoth
