// The main() of every test program: an event loop, a home and fonts of its own, no language of the user's.

#include "Tests/Home.h"

#include <QCoreApplication>
#include <gmock/gmock.h>

int main(int argc, char **argv)
{
    const QTemporaryDir home;
    moveInto(home);
    QCoreApplication application(argc, argv);
    testing::InitGoogleMock(&argc, argv);
    return RUN_ALL_TESTS();
}
