#include "App/Sandbox.h"

#include "Platform/Linux/Confinement.h"
#include "Platform/Linux/SystemCallFilter.h"
#include "Platform/Qt/QtPlatform.h"
#include "Platform/RegularFile.h"

#include <QStandardPaths>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <string_view>
#include <sys/socket.h>
#include <sys/un.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace kelmoth {

namespace {

namespace fs = std::filesystem;

/// Root directories with private or temporary files; the others are readable.
constexpr std::array<std::string_view, 8> privateDirectories{"/home", "/root", "/media", "/mnt",
                                                             "/srv",  "/tmp",  "/dev",   "/lost+found"};

/// Readable in the user's home: fonts, themes, and the keys to the display and the session manager.
constexpr std::array readableInHome{".fonts",
                                    ".fonts.conf",
                                    ".icons",
                                    ".themes",
                                    ".gtkrc-2.0",
                                    ".Xauthority",
                                    ".XCompose",
                                    ".Xdefaults",
                                    ".ICEauthority",
                                    ".local/share/fonts",
                                    ".local/share/icons"};
constexpr std::array readableInDataDirectory{"fonts", "icons", "themes", "color-schemes", "mime"};

/// Environment variables with further paths, separated by colons, that the toolkit and its libraries read.
constexpr std::array variables{
    "XAUTHORITY",      "ICEAUTHORITY",     "QT_PLUGIN_PATH",  "QT_QPA_PLATFORM_PLUGIN_PATH",
    "QML_IMPORT_PATH", "QML2_IMPORT_PATH", "LD_LIBRARY_PATH", "XDG_DATA_DIRS",
    "XDG_CONFIG_DIRS", "XCURSOR_PATH",     "FONTCONFIG_PATH", "FONTCONFIG_FILE"};

std::string_view variable(const char *name)
{
    const char *value = std::getenv(name);
    return value ? value : "";
}

fs::path location(QStandardPaths::StandardLocation which)
{
    return QStandardPaths::writableLocation(which).toStdString();
}

/// Creates a private directory if possible and returns its path.
std::string made(const fs::path &directory)
{
    std::error_code ignored;
    fs::create_directories(directory.parent_path(), ignored);
    if (fs::create_directory(directory, ignored)) {
        fs::permissions(directory, fs::perms::owner_all, ignored);
    }
    return directory;
}

std::vector<std::string> readablePaths()
{
    std::vector<std::string> paths;
    std::error_code ignored;
    for (const auto &entry : fs::directory_iterator("/", ignored)) {
        if (std::ranges::find(privateDirectories, entry.path().native()) == privateDirectories.end()) {
            paths.push_back(entry.path());
        }
    }
    const auto home = location(QStandardPaths::HomeLocation);
    for (const auto *name : readableInHome) {
        paths.push_back(home / name);
    }
    for (const auto *name : readableInDataDirectory) {
        paths.push_back(location(QStandardPaths::GenericDataLocation) / name);
    }
    paths.push_back(location(QStandardPaths::GenericConfigLocation));
    paths.push_back(fs::read_symlink("/proc/self/exe", ignored));
    for (const auto *name : variables) {
        const auto list = variable(name);
        for (std::size_t begin = 0; begin < list.size();) {
            const auto end = std::min(list.find(':', begin), list.size());
            paths.emplace_back(list.substr(begin, end - begin));
            begin = end + 1;
        }
    }
    return paths;
}

FileRights rightsOfTheProgram(const std::string &identifier, const std::string &lockFileName)
{
    const auto lock = location(QStandardPaths::GenericDataLocation) / lockFileName;
    made(lock.parent_path());
    // Create it now: a right to create this file would cover all files of a shared directory.
    const auto lockFile = openRegularFile(lock, O_RDWR | O_CREAT);
    FileRights rights{.readable = readablePaths(),
                      .usable = {"/dev", lockFile ? lock.string() : ""},
                      .own = {made(settingsDirectory().toStdString()),
                              made(location(QStandardPaths::GenericCacheLocation) / "fontconfig")}};
    if (!variable("XDG_RUNTIME_DIR").empty()) {
        const fs::path runtime(variable("XDG_RUNTIME_DIR"));
        const auto temporary = made(runtime / identifier);
        rights.own.push_back(temporary);
        rights.own.push_back(runtime / "dconf"); // the toolkit reads changed GNOME settings there
        ::setenv("TMPDIR", temporary.c_str(), 1);
    }
    return rights;
}

/// Whether the display or the session bus is reached over the network.
bool usesNetwork()
{
    const auto display = variable("DISPLAY");
    const bool isDisplayHere = display.empty() || display.starts_with(':') || display.starts_with("unix") ||
                               display.starts_with('/');
    return !isDisplayHere || variable("DBUS_SESSION_BUS_ADDRESS").find("tcp:") != std::string_view::npos;
}

/// Whether the X server of the display listens on an abstract socket. The client library tries that first,
/// and a refusal is fatal.
bool isDisplayAbstract()
{
    const auto display = variable("DISPLAY");
    const auto number = display.substr(display.rfind(':') + 1);
    const auto name = "/tmp/.X11-unix/X" + std::string(number.substr(0, number.find('.')));
    ::sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const auto length = name.copy(&address.sun_path[1], sizeof address.sun_path - 1);
    const FileDescriptor end(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    return ::connect(end.get(), reinterpret_cast<::sockaddr *>(&address),
                     static_cast<::socklen_t>(offsetof(::sockaddr_un, sun_path) + 1 + length)) == 0 ||
           errno != ECONNREFUSED;
}

/// Whether the display, a bus or the input method may be reached through an abstract socket.
bool usesAbstractSockets()
{
    constexpr std::array addresses{"DBUS_SESSION_BUS_ADDRESS", "AT_SPI_BUS_ADDRESS", "IBUS_ADDRESS"};
    const auto isAbstract = [](const char *name) {
        return variable(name).find("abstract=") != std::string_view::npos;
    };
    // The address of IBus is in a file that it writes when it starts.
    return isDisplayAbstract() || std::ranges::any_of(addresses, isAbstract) ||
           variable("QT_IM_MODULE") == "ibus";
}

/// Applies all restrictions. None on success, else the reason.
std::optional<std::string> confineProgram(const FileRights &rights)
{
    auto failure = confine(rights, {.byNetwork = usesNetwork(), .byAbstractSocket = usesAbstractSockets()});
    if (const auto other = filterSystemCalls(usesNetwork())) {
        failure = (failure ? *failure + "; " : "") + "system calls: " + *other;
    }
    return failure;
}

} // namespace

Sandbox::Sandbox(const std::string &identifier, const std::string &lockFileName, const QString &programPath)
    : m_helper([programPath](char request) {
          return performAutostart(static_cast<AutostartRequest>(request), programPath);
      }),
      m_failure(confineProgram(rightsOfTheProgram(identifier, lockFileName)))
{
}

void Sandbox::askForAutostart(AutostartRequest request, AutostartLoginItem::Answer answer)
{
    m_helper.ask(static_cast<char>(request), std::move(answer));
}

} // namespace kelmoth
