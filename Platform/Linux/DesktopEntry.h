#pragma once

#include <QByteArray>
#include <QString>

#include <memory>
#include <optional>
#include <string>

// NOLINTNEXTLINE(bugprone-reserved-identifier): glib's own name
struct _GKeyFile;

namespace kelmoth {

/// A desktop entry file, as the autostart folder holds them. Such files come from anywhere.
class DesktopEntry {
public:
    /// None for what is no file of a sensible size, or holds no entry. Does not wait, whatever is there.
    static std::optional<DesktopEntry> read(const QString &path);

    /// The text of an entry that starts a program at login.
    static QByteArray autostarting(const QString &programPath);

    /// Whether it says anything of a program to start.
    bool namesAProgram() const;

    /// Whether there is a program to start, and it is there.
    bool startsAProgram() const;

    /// Whether the user has said no, by any of the marks that desktops leave.
    bool isSwitchedOff() const;

private:
    struct Deleter {
        void operator()(_GKeyFile *file) const;
    };
    using KeyFile = std::unique_ptr<_GKeyFile, Deleter>;

    explicit DesktopEntry(KeyFile file) : m_file(std::move(file)) {}

    /// The text under a key, escapes undone; none when it has none.
    std::optional<std::string> text(const char *key) const;
    std::optional<bool> truth(const char *key) const;

    KeyFile m_file;
};

} // namespace kelmoth
