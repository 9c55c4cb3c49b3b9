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

/// A file of ours has some kilobytes. To read a larger one would hold up the main thread.
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

/// Values under their keys; a key without one is to be taken away.
using Changes = std::map<std::string, std::optional<std::string>, std::less<>>;

void makePrivateDirectory(const std::filesystem::path &directory)
{
    std::error_code ignored; // what is written there says it
    std::filesystem::create_directories(directory.parent_path(), ignored);
    ::mkdir(directory.c_str(), S_IRWXU);
}

std::optional<std::string> readOwn(const std::string &path, std::string *obstacle)
{
    auto text = readRegularFile(path, largestFile, {.isOwn = true}, obstacle);
    *obstacle = path + ": " + *obstacle;
    return text;
}

/// Brings the changes into the file, while no other program does that. None when the disk holds them.
std::optional<std::string> save(const std::string &path, const Changes &changes)
{
    makePrivateDirectory(std::filesystem::path(path).parent_path());
    std::string obstacle;
    const auto lockPath = path + ".flock"; // QLockFile would take a lasting ".lock" for one that is held
    const auto lock = openRegularFile(lockPath, O_RDWR | O_CREAT, {.isOwn = true}, &obstacle);
    if (!lock) {
        return lockPath + ": " + obstacle;
    }
    while (::flock(lock.get(), LOCK_EX) != 0 &&
           errno == EINTR) { // a file system that knows no locks has none
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

/// What the writing thread works on, which the disk may keep beyond the object's end. While there are writes
/// still to come, or one that failed, the file is not looked at: what is set is newer.
struct SettingsUserDefaults::Writes {
    std::atomic<int> pending = 0;
    std::atomic<bool> isUnsaved = false; ///< the last one failed
    Changes owed;                        ///< what the disk does not hold yet; on the writing thread

    /// Logs what stands in the way, once for as long as it does.
    void report(const char *line, const std::string &why)
    {
        const std::scoped_lock guard(m_mutex);
        if (std::exchange(m_obstacle, why) != why) {
            log(line, why.c_str());
        }
    }
    void reportWell()
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
        (void)m_writer.release(); // ends with the process, which must not wait for it any longer
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

/// Reads the file when it is not the one that was read last. Where it cannot be, what is known holds on.
void SettingsUserDefaults::look() const
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
    store(key, std::move(value));
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
void SettingsUserDefaults::store(std::string_view key, std::optional<std::string> value)
{
    if (!m_writer) {
        return; // as was said when it was given up
    }
    ++m_writes->pending;
    m_writer->start([path = m_path, name = std::string(key), text = std::move(value), writes = m_writes] {
        writes->owed[name] = text;
        if (const auto why = save(path, writes->owed)) {
            writes->isUnsaved = true;
            writes->report(notSaved, *why);
        } else {
            writes->isUnsaved = false;
            writes->owed.clear();
            writes->reportWell();
        }
        --writes->pending;
    });
}

} // namespace kelmoth
