#include "Soak/SoakFigures.h"

#include <array>
#include <fstream>
#include <iostream>
#include <map>
#include <string>

namespace kelmoth {

using Kind = SimulatedFault::Kind;

void SoakFigures::readMemory(qint64 process)
{
    std::ifstream rollup("/proc/" + std::to_string(process) + "/smaps_rollup");
    std::pair<long, long> now;
    for (std::string word; rollup >> word;) {
        if (word == "Rss:") {
            rollup >> now.first;
        } else if (word == "Pss:") {
            rollup >> now.second;
        }
    }
    memory.push_back(now);
}

/// The first rounds build what is built once.
const SoakFigures::Memory &SoakFigures::warmMemory() const
{
    return memory.at(std::min<std::size_t>(2, memory.size() - 1));
}

bool SoakFigures::memoryGrows() const
{
    return !memory.empty() && memory.back().first > warmMemory().first + warmMemory().first / 10;
}

void SoakFigures::print(std::chrono::seconds duration, const std::vector<std::unique_ptr<SoakMouse>> &mice,
                        const SoakErrands &errands, const nlohmann::ordered_json &panel) const
{
    constexpr std::array kinds{std::pair{Kind::noAnswer, "no answer"},
                               std::pair{Kind::notReady, "late answer"},
                               std::pair{Kind::rejected, "rejected"},
                               std::pair{Kind::otherCommand, "answer to another command"},
                               std::pair{Kind::failedTransfer, "failed transfer"},
                               std::pair{Kind::shortRead, "short answer"},
                               std::pair{Kind::unplug, "pulled out in a transfer"}};
    std::map<Kind, int> met;
    int requests = 0;
    for (const auto &each : mice) {
        requests += each->requests();
        for (const auto &[kind, times] : each->metFaults()) {
            met[kind] += times;
        }
    }
    const auto number = [&panel](const char *name) { return panel.value(name, 0); };
    std::cout << duration.count() << " s, " << storms << " storms with quiet after each, " << rounds
              << " times everything read anew\n"
              << "  operations: " << number("begun") << " changes in the panel (" << number("taken")
              << " taken), " << openings << " openings of it; kelmothctl:";
    for (const auto &[status, times] : errands.exits()) {
        std::cout << ' ' << times << " with status " << status;
    }
    std::cout << "\n  on the wire: " << requests << " requests; " << attaches
              << " times plugged in within a storm\n"
              << "  faults met:";
    for (const auto &[kind, name] : kinds) {
        std::cout << ' ' << met[kind] << ' ' << name << (kind == Kind::unplug ? "\n" : ",");
    }
    std::cout << "  compared: " << compared << " settings (" << excused
              << " whose state nobody can know left out), " << disagreements << " disagreements\n"
              << "  slowest operation of the panel: " << number("slowest")
              << " ms; longest stall of its main thread: " << number("stall") << " ms\n";
    if (!memory.empty()) {
        const auto &warm = warmMemory();
        const auto &[rss, pss] = memory.back();
        std::cout << "  memory of the panel: RSS " << warm.first << " KB after three rounds, " << rss
                  << " KB at the end; PSS " << warm.second << " and " << pss << " KB\n";
    }
    std::cout << "  ends while a transfer hung: " << quits << ", the slowest after " << slowestQuit.count()
              << " ms\n  wrong: " << faults << '\n'
              << std::flush;
}

} // namespace kelmoth
