#include "Platform/FileDescriptor.h"

#include <cerrno>
#include <poll.h>

namespace kelmoth {

int writeAll(int descriptor, std::string_view text)
{
    while (!text.empty()) {
        const auto written = ::write(descriptor, text.data(), text.size());
        if (written >= 0) {
            text.remove_prefix(static_cast<std::size_t>(written));
        } else if (errno == EAGAIN || errno == EWOULDBLOCK) {
            // Another process that shares the terminal or pipe has made it non-blocking.
            pollfd ready{descriptor, POLLOUT, 0};
            ::poll(&ready, 1, -1);
        } else if (errno != EINTR) {
            return errno;
        }
    }
    return 0;
}

} // namespace kelmoth
