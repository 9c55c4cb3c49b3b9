#pragma once

#include <gtest/gtest.h>

#include <string>
#include <sys/mman.h>
#include <unistd.h>

namespace kelmoth {

/// A file that exists only as long as this object.
class MemoryFile {
public:
    MemoryFile() : m_descriptor(::memfd_create("output", MFD_CLOEXEC)) {}
    ~MemoryFile() { ::close(m_descriptor); }
    MemoryFile(const MemoryFile &) = delete;
    MemoryFile &operator=(const MemoryFile &) = delete;

    int descriptor() const { return m_descriptor; }

    std::string text() const
    {
        std::string text(static_cast<std::size_t>(::lseek(m_descriptor, 0, SEEK_END)), '\0');
        EXPECT_EQ(::pread(m_descriptor, text.data(), text.size(), 0), std::ssize(text));
        return text;
    }

private:
    int m_descriptor;
};

} // namespace kelmoth
