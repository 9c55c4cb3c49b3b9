// restless_program: the whole program on a simulated mouse that each SIGUSR1 pulls out or puts back.

#include "App/KelmothApp.h"
#include "Platform/Simulated/SimulatedPlatform.h"
#include "UI/Views/PanelWindow.h"

#include <QApplication>
#include <QTimer>

#include <csignal>

int main(int argc, char **argv)
{
    using namespace kelmoth;
    static volatile std::sig_atomic_t moves = 0;
    std::signal(SIGUSR1, [](int) { moves = moves + 1; });
    qputenv("RESOURCE_NAME", "kelmoth"); // its windows are told by that
    PanelWindow::chooseRenderer();
    int status = 1;
    {
        const QApplication application(argc, argv);
        QApplication::setQuitOnLastWindowClosed(false);
        QCoreApplication::setApplicationName(QStringLiteral("kelmoth"));
        Arguments arguments;
        arguments.verbose = true;
        auto composition = compose(arguments, nullptr, nullptr);
        const auto machine = simulatedMachine("basilisk-v3-pro-wired");
        if (!composition || !machine) {
            return 2;
        }
        composition->platform.hid = machine->hid;
        composition->platform.usb = machine->usb;
        Platform::setCurrent(composition->platform);

        QTimer hand;
        int done = 0;
        QObject::connect(&hand, &QTimer::timeout, &application, [&] {
            for (; done < moves; ++done) {
                done % 2 == 0 ? machine->mice[0]->unplug() : machine->mice[0]->replug();
            }
        });
        hand.start(std::chrono::milliseconds(5));
        status = KelmothApp(*composition).run(false);
    }
    Platform::setCurrent({});
    return status;
}
