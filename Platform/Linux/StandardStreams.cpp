#include "Platform/Linux/StandardStreams.h"

#include <fcntl.h>
#include <unistd.h>

namespace kelmoth {

void reserveStandardStreams()
{
    for (int descriptor = STDIN_FILENO; descriptor <= STDERR_FILENO; ++descriptor) {
        if (::fcntl(descriptor, F_GETFD) == -1) {
            // Opened in the wrong direction, so that using them still fails.
            ::open("/dev/null", descriptor == STDIN_FILENO ? O_WRONLY : O_RDONLY);
        }
    }
}

} // namespace kelmoth
