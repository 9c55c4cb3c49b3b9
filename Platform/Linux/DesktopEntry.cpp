#include "Platform/Linux/DesktopEntry.h"

#include "Platform/RegularFile.h"

#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

#include <algorithm>
#include <glib.h>
#include <vector>

namespace kelmoth {

namespace {

constexpr const char *group = G_KEY_FILE_DESKTOP_GROUP;
constexpr std::size_t largestFile = 65'536;

/// One argument of an Exec line, quoted.
std::string quoted(const std::string &argument)
{
    std::string text = "\"";
    for (const char character : argument) {
        if (std::string_view("\"`$\\").find(character) != std::string_view::npos) {
            text += '\\';
        }
        text += character;
        if (character == '%') {
            text += character; // a single % begins a field code
        }
    }
    return text + '"';
}

/// The Exec line that starts a program. Some launchers look up its first word before they unescape "%%".
std::string command(const std::string &program)
{
    return (program.find('%') == std::string::npos ? "" : "env ") + quoted(program);
}

/// Escapes a value for the file. (GLib does not escape tabs within a text; the format requires it.)
std::string escaped(const std::string &text)
{
    std::string result;
    for (const char character : text) {
        switch (character) {
        case '\\':
            result += R"(\\)";
            break;
        case '\n':
            result += R"(\n)";
            break;
        case '\t':
            result += R"(\t)";
            break;
        case '\r':
            result += R"(\r)";
            break;
        default:
            result += character;
        }
    }
    return result;
}

/// The program of an Exec line, unquoted: its first word, or the one that "env" starts. None for a malformed
/// line.
std::optional<QString> programOf(const std::string &exec)
{
    int count = 0;
    char **words = nullptr;
    if (g_shell_parse_argv(exec.c_str(), &count, &words, nullptr) == FALSE) {
        return std::nullopt;
    }
    const std::vector<std::string> arguments(words, words + count);
    g_strfreev(words);
    auto word = arguments.begin();
    if (*word == "env") {
        const auto isVariable = [](const auto &each) { return each.find('=') != std::string::npos; };
        word = std::find_if_not(word + 1, arguments.end(), isVariable);
    }
    if (word == arguments.end()) {
        return std::nullopt;
    }
    auto program = QFile::decodeName(word->c_str());
    return program.replace(QStringLiteral("%%"), QStringLiteral("%"));
}

bool isExecutable(const QString &program)
{
    return !program.isEmpty() && !QStandardPaths::findExecutable(program).isEmpty();
}

} // namespace

void DesktopEntry::Deleter::operator()(_GKeyFile *file) const
{
    g_key_file_unref(file);
}

std::optional<DesktopEntry> DesktopEntry::read(const QString &path)
{
    const auto text =
        readRegularFile(QFile::encodeName(path).toStdString(), largestFile, {.followsLink = true});
    KeyFile keys(g_key_file_new());
    if (!text ||
        g_key_file_load_from_data(keys.get(), text->data(), text->size(), G_KEY_FILE_NONE, nullptr) ==
            FALSE ||
        g_key_file_has_group(keys.get(), group) == FALSE) {
        return std::nullopt;
    }
    return DesktopEntry(std::move(keys));
}

QByteArray DesktopEntry::autostarting(const QString &programPath)
{
    const KeyFile keys(g_key_file_new());
    const auto set = [&keys](const char *key, const std::string &value) {
        g_key_file_set_value(keys.get(), group, key, escaped(value).c_str());
    };
    set("Type", "Application");
    set("Name", "Kelmoth");
    set("Comment", "Configures mice of the Razer Basilisk V3 family");
    set("Comment[pl]", "Konfiguruje myszy z rodziny Razer Basilisk V3");
    set("Icon", "com.kelmoth.app");
    set("Exec", command(QFile::encodeName(programPath).toStdString()));
    set("Terminal", "false");
    set("StartupNotify", "false");
    set("X-GNOME-Autostart-enabled", "true"); // some desktops cannot disable an entry without it
    gsize length = 0;
    char *data = g_key_file_to_data(keys.get(), &length, nullptr);
    QByteArray result(data, static_cast<qsizetype>(length));
    g_free(data);
    return result;
}

std::optional<std::string> DesktopEntry::text(const char *key) const
{
    char *value = g_key_file_get_string(m_file.get(), group, key, nullptr);
    if (value == nullptr) {
        return std::nullopt;
    }
    std::string result = value;
    g_free(value);
    return result;
}

std::optional<bool> DesktopEntry::truth(const char *key) const
{
    GError *error = nullptr;
    const bool value = g_key_file_get_boolean(m_file.get(), group, key, &error) != FALSE;
    if (error != nullptr) {
        g_error_free(error);
        return std::nullopt;
    }
    return value;
}

bool DesktopEntry::namesAProgram() const
{
    return text("Exec") || text("TryExec");
}

bool DesktopEntry::startsAProgram() const
{
    const auto exec = text("Exec");
    const auto program = exec ? programOf(*exec) : std::nullopt;
    if (text("Type") != "Application" || !program || !isExecutable(*program)) {
        return false;
    }
    const auto condition = text("TryExec");
    return !condition || isExecutable(QFile::decodeName(condition->c_str()));
}

bool DesktopEntry::isSwitchedOff() const
{
    return truth("Hidden") == true || truth("X-GNOME-Autostart-enabled") == false ||
           truth("X-MATE-Autostart-enabled") == false;
}

} // namespace kelmoth
