#pragma once

#include "Platform/UserDefaults.h"

#include <QString>
#include <QThreadPool>

#include <chrono>
#include <map>
#include <memory>
#include <optional>
#include <string>

namespace kelmoth {

/// Preferences in an INI file that only its owner can read. Programs may share the file: each writes only the
/// values set through it, and replaces the file atomically. Anything but a regular file of this user, and a
/// file that is too large, is left alone; values then last as long as the object.
class SettingsUserDefaults : public UserDefaults {
public:
    /// A missing or unusable file reads as empty. `longestWait` is how long `flush` waits for the disk.
    explicit SettingsUserDefaults(const QString &path,
                                  std::chrono::milliseconds longestWait = std::chrono::seconds{4});
    /// Waits for pending writes, as `flush` does.
    ~SettingsUserDefaults() override;

    std::int64_t integerForKey(std::string_view key) const override;
    std::optional<std::string> dataForKey(std::string_view key) const override;
    bool hasObjectForKey(std::string_view key) const override;
    void setInteger(std::string_view key, std::int64_t value) override;
    void setData(std::string_view key, std::string data) override;
    void removeObject(std::string_view key) override;
    std::optional<std::string> flush() override;

private:
    /// Identifies a version of the file.
    struct Stamp {
        std::int64_t inode = 0;
        std::int64_t size = 0;
        std::int64_t modified = 0; ///< nanoseconds

        bool operator==(const Stamp &) const = default;
    };

    void reload() const;
    std::optional<Stamp> stamp() const;
    std::optional<std::string> text(std::string_view key) const;
    void set(std::string_view key, std::string value);
    void store(std::string_view key, std::optional<std::string> value);

    const std::string m_path;
    /// The file's values and those set since; values that are neither text nor number are absent.
    mutable std::map<std::string, std::optional<std::string>, std::less<>> m_values;
    mutable std::optional<Stamp> m_stamp;
    struct Writes;
    std::shared_ptr<Writes> m_writes;
    const std::chrono::milliseconds m_longestWait;
    std::unique_ptr<QThreadPool> m_writer; ///< one thread: the disk or another program may block it
};

} // namespace kelmoth
