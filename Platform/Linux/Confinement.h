#pragma once

#include <optional>
#include <string>
#include <vector>

namespace kelmoth {

/// File access that a confined process keeps. All other access is denied, also to root; missing paths are
/// ignored. A right covers what the path resolves to at the time of confinement, and everything below it.
struct FileRights {
    std::vector<std::string> readable; ///< read files, list directories
    std::vector<std::string> usable;   ///< also write to files and devices that are there
    std::vector<std::string> own;      ///< also make, rename and remove files, directories and sockets
};

/// Ways in which a confined process may connect to others. Sockets with a path are always allowed.
struct Contacts {
    bool byNetwork = false;        ///< by TCP
    bool byAbstractSocket = false; ///< by abstract Unix sockets
};

/// The kernel's Landlock ABI version, from 1; 0 when it is missing or disabled. Any thread.
int landlockVersion();

/// Confines this thread, and the threads and processes that it starts from now on, permanently: to these
/// rights and contacts, and to signals among themselves; it can execute no program and gain no privileges
/// (set-user-ID). TCP is restricted from ABI version 4 on, abstract sockets and signals from 6 on. Open files
/// stay usable. None on success, else the reason in English.
std::optional<std::string> confine(const FileRights &rights, const Contacts &contacts);

} // namespace kelmoth
