#include "App/KelmothApp.h"
#include "Platform/Linux/StandardStreams.h"

#include <csignal>

int main(int argc, char **argv)
{
    kelmoth::reserveStandardStreams();
    // Nobody may be left to read what is written to a terminal that has gone.
    std::signal(SIGPIPE, SIG_IGN);
    return kelmoth::KelmothApp::main(argc, argv);
}
