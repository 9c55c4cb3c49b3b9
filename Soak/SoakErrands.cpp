#include "Soak/SoakErrands.h"

#include "Soak/SoakBounds.h"

#include <QCoreApplication>

#include <unistd.h>

namespace kelmoth {

using namespace std::chrono;

milliseconds soakTime()
{
    return duration_cast<milliseconds>(steady_clock::now().time_since_epoch());
}

QString soakProgram(const char *name)
{
    return QCoreApplication::applicationDirPath() + QLatin1Char('/') + QLatin1String(name);
}

void tellApart(QProcess &process, int which)
{
    process.setChildProcessModifier([which] {
        for (int taken = 0; taken < 32 * which; ++taken) {
            (void)::dup(STDIN_FILENO);
        }
    });
}

void SoakErrands::send(const RazerDevice &device, bool mayChange, std::set<std::string> &changed)
{
    if (m_errands.size() + 1 >= soakPrograms) {
        return;
    }
    const bool isChange = mayChange && upTo(2) != 0;
    const auto line = isChange ? change(device, changed)
                               : any(std::vector<std::string>{"read --json", "list --json", "doctor --json"});
    auto process = std::make_unique<QProcess>();
    tellApart(*process, m_sent++ % (soakPrograms - 1) + 1);
    const auto whole = line + " --product " + std::to_string(device.productID);
    process->start(soakProgram("kelmothctl"), QString::fromStdString(whole).split(QLatin1Char(' ')));
    // It reads the mouse, and its battery, and then sends at most three commands. A change first waits for
    // another that is under way.
    const auto alone = 3000ms + longestTime(commandsOfFullRead(device) + 3 + 4, device);
    m_errands.push_back({std::move(process), line, soakTime(), isChange ? 2 * alone : alone});
}

std::string SoakErrands::change(const RazerDevice &device, std::set<std::string> &changed)
{
    const auto &capabilities = device.capabilities();
    const auto number = [this](int first, int last) { return std::to_string(first + upTo(last - first)); };
    switch (upTo(4)) {
    case 0:
        changed.insert("DPI stages");
        return "set dpi " + number(1, static_cast<int>(capabilities.maxDPI) / 100) + "00 --stage " +
               number(1, 5);
    case 1:
        changed.insert("DPI stages");
        return "set stage " + number(1, 5);
    case 2: {
        const std::string zone(rawValue(any(capabilities.rgbZones)));
        changed.insert("lighting of " + zone);
        return "set light " + zone + " --effect " + std::string(rawValue(any(capabilities.rgbEffects))) +
               " --brightness " + number(0, 100);
    }
    case 3: {
        const auto button = any(std::vector<std::string>{"right", "middle", "forward", "back", "dpi_up"});
        changed.insert("button " + button);
        return "set button " + button + ' ' +
               any(std::vector<std::string>{"keyPress:ctrl+z", "disabled", "back", "doubleClick",
                                            "dpiChange:0"});
    }
    default:
        changed.insert("lift-off distance");
        return "set lift-off " + any(std::vector<std::string>{"low", "medium", "high"});
    }
}

std::vector<std::string> SoakErrands::collect()
{
    std::vector<std::string> wrong;
    for (auto &[process, line, since, longest] : m_errands) {
        if (process->state() == QProcess::NotRunning) {
            const int status = process->exitCode();
            ++m_exits[status];
            // Done, failed, or no such mouse.
            if (process->exitStatus() != QProcess::NormalExit || (status > 1 && status != 3)) {
                wrong.push_back("kelmothctl " + line + " ended with " + std::to_string(status) + ": " +
                                process->readAllStandardError().toStdString());
            }
        } else if (soakTime() - since > longest) {
            wrong.push_back("kelmothctl " + line + " has not ended in " + std::to_string(longest.count()) +
                            " ms");
            process->kill();
            process->waitForFinished();
        }
    }
    std::erase_if(m_errands,
                  [](const auto &errand) { return errand.process->state() == QProcess::NotRunning; });
    return wrong;
}

} // namespace kelmoth
