#pragma once

#include "Core/Device/RazerDevice.h"

#include <QProcess>

#include <chrono>
#include <map>
#include <memory>
#include <random>
#include <set>
#include <string>
#include <vector>

namespace kelmoth {

/// Since some fixed moment.
std::chrono::milliseconds soakTime();

/// A program beside this one, of its name.
QString soakProgram(const char *name);

/// The mock of udev knows a program that listens by the number of its socket, and takes two with the same for
/// one: gives a process that is started later other numbers than those with another `which`, 1 and up.
void tellApart(QProcess &process, int which);

/// kelmothctl, now and then, beside the panel of a soak. Main thread.
class SoakErrands {
public:
    explicit SoakErrands(std::mt19937 &random) : m_random(random) {}

    /// Starts one more, unless as many run as may. It reads a mouse, or changes a setting of it, whose name
    /// then comes to `changed`.
    void send(const RazerDevice &device, bool mayChange, std::set<std::string> &changed);

    /// Looks after those that run; what is wrong with them.
    std::vector<std::string> collect();

    bool isRunning() const { return !m_errands.empty(); }
    const std::map<int, int> &exits() const { return m_exits; } ///< how often each exit status

private:
    struct Errand {
        std::unique_ptr<QProcess> process;
        std::string line;
        std::chrono::milliseconds since;
        std::chrono::milliseconds longest;
    };

    std::string change(const RazerDevice &device, std::set<std::string> &changed);
    int upTo(int last) { return std::uniform_int_distribution(0, last)(m_random); }
    template <class T> const T &any(const std::vector<T> &values)
    {
        return values.at(static_cast<std::size_t>(upTo(static_cast<int>(values.size()) - 1)));
    }

    std::mt19937 &m_random;
    std::vector<Errand> m_errands;
    std::map<int, int> m_exits;
    int m_sent = 0;
};

} // namespace kelmoth
