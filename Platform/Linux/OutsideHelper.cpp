#include "Platform/Linux/OutsideHelper.h"

#include <array>
#include <cstdlib>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

namespace kelmoth {

OutsideHelper::OutsideHelper(const std::function<void()> &action)
{
    std::array<int, 2> ends{};
    if (::socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends.data()) != 0) {
        return;
    }
    m_wishes = FileDescriptor(ends[0]);
    const FileDescriptor helpers(ends[1]);
    m_process = ::fork();
    if (m_process != 0) {
        return; // in the program, with or without a helper
    }
    ::close(ends[0]); // or it would never see the end
    ::setsid();       // what it starts shall not end with the terminal that started the program
    char wish = 0;
    while (::read(helpers.get(), &wish, 1) == 1) {
        action();
    }
    std::_Exit(0);
}

OutsideHelper::~OutsideHelper()
{
    m_wishes = {};
    if (m_process > 0) {
        ::waitpid(m_process, nullptr, 0);
    }
}

void OutsideHelper::ask() const
{
    const char wish = 0;
    (void)::send(m_wishes.get(), &wish, 1, MSG_DONTWAIT | MSG_NOSIGNAL);
}

} // namespace kelmoth
