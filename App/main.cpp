#include "App/KelmothApp.h"
#include "Platform/Linux/StandardStreams.h"

#include <csignal>

int main(int argc, char **argv)
{
    kelmoth::reserveStandardStreams();
    // Ignore SIGPIPE: the terminal may be gone.
    std::signal(SIGPIPE, SIG_IGN);
    return kelmoth::KelmothApp::main(argc, argv);
}
