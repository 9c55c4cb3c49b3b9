#pragma once

#include <QByteArray>
#include <QString>

#include <memory>
#include <optional>
#include <string>

// NOLINTNEXTLINE(bugprone-reserved-identifier): glib's own name
struct _GKeyFile;

namespace kelmoth {

/// A desktop entry file of the autostart directory. Its content is untrusted.
class DesktopEntry {
public:
    /// None for anything but a regular file of limited size with an entry. Never blocks.
    static std::optional<DesktopEntry> read(const QString &path);

    /// The text of an entry that starts a program at login.
    static QByteArray autostarting(const QString &programPath);

    /// Whether it has an Exec line.
    bool namesAProgram() const;

    /// Whether the program of its Exec line exists.
    bool startsAProgram() const;

    /// Whether it is disabled, by any of the keys that desktops use.
    bool isSwitchedOff() const;

private:
    struct Deleter {
        void operator()(_GKeyFile *file) const;
    };
    using KeyFile = std::unique_ptr<_GKeyFile, Deleter>;

    explicit DesktopEntry(KeyFile file) : m_file(std::move(file)) {}

    /// The unescaped value of a key; none without one.
    std::optional<std::string> text(const char *key) const;
    std::optional<bool> truth(const char *key) const;

    KeyFile m_file;
};

} // namespace kelmoth
