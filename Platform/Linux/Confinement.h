#pragma once

#include <optional>
#include <string>
#include <vector>

namespace kelmoth {

/// What a confined process may still do to files. Everything else is refused, whoever its user is; a path
/// that does not exist is left out. Rights hold for what a path leads to when the process is confined, and
/// for everything below.
struct FileRights {
    std::vector<std::string> readable; ///< read files, list directories
    std::vector<std::string> usable;   ///< also write to files and devices that are there
    std::vector<std::string> own;      ///< also make, rename and remove files, directories and sockets
};

/// By what a confined process reaches others; never closed is what has a file's name.
struct Contacts {
    bool byNetwork = false;        ///< by TCP
    bool byAbstractSocket = false; ///< by sockets whose name is no file's
};

/// How far the kernel's Landlock goes: the version of its interface, 1 and up; 0 when it is missing or
/// switched off. Any thread.
int landlockVersion();

/// Confines this thread, and the threads and processes that it starts from now on, until their ends: to these
/// rights and contacts, to signals among themselves, to running no other program, and to no new privileges,
/// as set-user-ID programs would give; contacts from version 4 (TCP) and 6 on, signals from 6 on. What is
/// open stays usable. None on success, else an English text that says why it is not confined.
std::optional<std::string> confine(const FileRights &rights, const Contacts &contacts);

} // namespace kelmoth
