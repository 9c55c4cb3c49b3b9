#pragma once

#include <string_view>
#include <unistd.h>
#include <utility>

namespace kelmoth {

/// Owns an open file. -1 stands for none.
class FileDescriptor {
public:
    FileDescriptor() = default;
    explicit FileDescriptor(int fd) : m_fd(fd) {}
    FileDescriptor(FileDescriptor &&other) noexcept : m_fd(std::exchange(other.m_fd, -1)) {}
    FileDescriptor &operator=(FileDescriptor &&other) noexcept
    {
        std::swap(m_fd, other.m_fd);
        return *this;
    }
    ~FileDescriptor()
    {
        if (m_fd >= 0) {
            ::close(m_fd);
        }
    }

    explicit operator bool() const { return m_fd >= 0; }
    int get() const { return m_fd; }

private:
    int m_fd = -1;
};

/// Writes all of `text`; blocks while the descriptor cannot take more. 0, or errno. Any thread.
int writeAll(int descriptor, std::string_view text);

} // namespace kelmoth
