// soak_host SECONDS SEED: runs the program with its panel in use and kelmothctl beside it on mice that fail
// at random, in rounds: a storm, then quiet, in which what is published, saved and held by the mouse is
// compared. Prints what it saw; status 1 when something was wrong. Runs under umockdev-wrapper, with a
// screen, a session bus and a home of its own.

#include "Soak/SoakBounds.h"
#include "Soak/SoakErrands.h"
#include "Soak/SoakFigures.h"
#include "Soak/SoakMouse.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QSettings>
#include <QTimer>
#include <nlohmann/json.hpp>

#include <csignal>
#include <fstream>
#include <functional>
#include <iostream>

namespace kelmoth {

namespace {

using namespace std::chrono;
using JSON = nlohmann::ordered_json;

class Soak {
public:
    Soak(const std::shared_ptr<MockTestbed> &testbed, unsigned seed);
    int run(seconds duration);

private:
    void storm(milliseconds duration);
    void stir();
    void plug();
    bool runRound();
    void calm();
    bool compareAtRest(bool isReadAnew);
    void compareWithCommandLine();
    std::optional<JSON> askPanel(const std::string &question, milliseconds longest);
    void collectErrands();
    void startPanel();
    void tryQuits();
    void quit(QProcess &program, const std::function<void()> &tell);
    void wait(milliseconds duration);
    void wrong(const std::string &what);

    int upTo(int last) { return std::uniform_int_distribution(0, last)(m_random); }
    SoakMouse &mouse() { return *m_mice.at(m_first); }
    SoakMouse &other() { return *m_mice.at(m_second); }

    std::mt19937 m_random;
    std::vector<std::unique_ptr<SoakMouse>> m_mice;
    std::size_t m_first = 0;
    std::size_t m_second = 0;
    QProcess m_panel;
    SoakErrands m_errands{m_random};
    bool m_hasChangesBeside = false; ///< kelmothctl may change settings in this storm, unseen by the panel
    std::set<std::string> m_changedBeside;
    JSON m_last;
    SoakFigures m_figures;
};

Soak::Soak(const std::shared_ptr<MockTestbed> &testbed, unsigned seed) : m_random(seed)
{
    for (const auto &model : basiliskModels()) {
        m_mice.push_back(std::make_unique<SoakMouse>(testbed, model));
    }
    m_panel.setProcessChannelMode(QProcess::SeparateChannels);
    m_panel.setStandardErrorFile(qEnvironmentVariable("SOAK_LOG"), QIODevice::Append);
    tellApart(m_panel, soakPrograms);
    startPanel();
}

void Soak::startPanel()
{
    m_panel.start(soakProgram("soak_panel"), {QStringLiteral("--show")});
    m_panel.waitForStarted(-1);
}

void Soak::wrong(const std::string &what)
{
    ++m_figures.faults;
    std::cout << "  WRONG, round " << m_figures.rounds << ", " << mouse().model().commandLineName << ": "
              << what << '\n'
              << std::flush;
}

void Soak::wait(milliseconds duration)
{
    QEventLoop loop;
    QTimer::singleShot(duration, &loop, &QEventLoop::quit);
    loop.exec();
}

int Soak::run(seconds duration)
{
    const auto end = soakTime() + duration;
    while (soakTime() < end && m_panel.state() == QProcess::Running) {
        ++m_figures.rounds;
        for (const auto &each : m_mice) {
            each->forget();
        }
        m_changedBeside.clear();
        m_hasChangesBeside = upTo(1) == 0;
        m_first = upTo(1) == 0 ? 0 : static_cast<std::size_t>(upTo(5)); // the first is the quickest
        m_second = static_cast<std::size_t>(upTo(5));
        mouse().attach(1);
        if (!runRound()) {
            break;
        }
    }
    if (m_panel.state() != QProcess::Running) {
        wrong("the program has ended by itself, with " + std::to_string(m_panel.exitCode()));
    } else {
        const auto last = m_last; // of the panel that the whole run used
        tryQuits();
        m_last = last;
    }
    // What the toolkit has to say against the panel.
    std::ifstream log(qEnvironmentVariable("SOAK_LOG").toStdString());
    for (std::string line; std::getline(log, line);) {
        if (line.find("qrc:") != std::string::npos || line.starts_with("QObject:")) {
            wrong(line);
        }
    }
    if (m_figures.memoryGrows()) {
        wrong("memory grows");
    }
    m_figures.print(duration, m_mice, m_errands, m_last);
    return m_figures.faults == 0 ? 0 : 1;
}

/// All transfers hang, and the program is told to end while one does: the panel by a signal and by a second
/// copy, kelmothctl by the key that interrupts it.
void Soak::tryQuits()
{
    constexpr int each = 2;
    for (int i = 0; i < each; ++i) {
        mouse().attach(1);
        compareAtRest(true);
        mouse().hangTransfers(kernelTimeout);
        m_panel.write("run " + QByteArray::number(upTo(1'000'000)) + '\n');
        quit(m_panel, [&] {
            if (i % 2 == 0) {
                m_panel.terminate();
            } else {
                QProcess::startDetached(soakProgram("kelmoth"), {QStringLiteral("--quit")});
            }
        });
        if (m_panel.exitStatus() != QProcess::NormalExit || m_panel.exitCode() != 0) {
            wrong("the program does not end as it should");
        }
        mouse().attach(1);
        mouse().hangTransfers(kernelTimeout);
        QProcess reader;
        tellApart(reader, 1);
        reader.start(soakProgram("kelmothctl"), {QStringLiteral("read")});
        reader.waitForStarted(-1);
        quit(reader, [&] { ::kill(static_cast<pid_t>(reader.processId()), SIGINT); });
        if (i + 1 < each) {
            startPanel();
        }
    }
}

/// Waits until a transfer hangs, and for some part of it, before the program is told.
void Soak::quit(QProcess &program, const std::function<void()> &tell)
{
    const auto before = mouse().hangs();
    for (const auto end = soakTime() + 20s; mouse().hangs() == before;) {
        wait(10ms);
        if (soakTime() > end) {
            wrong("no transfer to hang");
            break;
        }
    }
    wait(milliseconds(upTo(4000)));
    const auto since = soakTime();
    tell();
    if (!program.waitForFinished(120'000)) {
        program.kill();
        program.waitForFinished();
    }
    const auto took = soakTime() - since;
    ++m_figures.quits;
    m_figures.slowestQuit = std::max(m_figures.slowestQuit, took);
    if (took > longestQuit) {
        wrong("it takes " + std::to_string(took.count()) + " ms to end while a transfer hangs");
    }
}

void Soak::storm(milliseconds duration)
{
    m_panel.write("run " + QByteArray::number(upTo(1'000'000)) + '\n');
    mouse().hang(upTo(2) == 0 ? soakHang : milliseconds(0));
    // Some storms end with changes that are refused, and with no other after them.
    constexpr milliseconds refusing{700};
    auto untilRefusal = upTo(1) == 0 ? duration - refusing : 2 * duration;
    for (const auto begin = soakTime(); soakTime() - begin < duration;) {
        wait(milliseconds(20 + upTo(60)));
        if (soakTime() - begin > untilRefusal) {
            untilRefusal = 2 * duration;
            mouse().clearFaults();
            mouse().refuseChanges();
        }
        stir();
        collectErrands();
        for (const auto &each : m_mice) {
            each->watchWire();
        }
    }
}

void Soak::stir()
{
    if (upTo(5) == 0) {
        (upTo(3) == 0 ? other() : mouse()).addFault(m_random);
    }
    if (upTo(60) == 0 || (!mouse().isAttached() && upTo(5) == 0)) {
        plug();
    }
    if (upTo(4) == 0) {
        m_errands.send((upTo(3) == 0 ? other() : mouse()).device(), m_hasChangesBeside, m_changedBeside);
    }
    if (upTo(25) == 0) { // opens the panel of the copy that runs
        ++m_figures.openings;
        auto *copy = new QProcess;
        QObject::connect(copy, &QProcess::finished, copy, &QObject::deleteLater);
        copy->start(soakProgram("kelmoth"), {});
    }
}

/// Pulls a mouse out, or puts one back.
void Soak::plug()
{
    auto &each = upTo(2) == 0 ? other() : mouse();
    if (each.isAttached()) {
        each.detach();
    } else {
        ++m_figures.attaches;
        each.attach(&each == &mouse() ? 1 : 4);
    }
}

void Soak::collectErrands()
{
    for (const auto &what : m_errands.collect()) {
        wrong(what);
    }
}

/// Some storms on the same mouse, and what is shown after each; then the mouse is plugged in anew, which
/// makes the program read it, and everything is compared. False when the program does not come to rest.
bool Soak::runRound()
{
    for (int storms = 0; storms < 4; ++storms) {
        ++m_figures.storms;
        storm(milliseconds(1500 + upTo(3000)));
        calm();
        if (!compareAtRest(false)) {
            return false;
        }
    }
    if (&other() != &mouse()) {
        other().detach();
    }
    mouse().attach(1);
    if (!compareAtRest(true)) {
        return false;
    }
    compareWithCommandLine();
    m_figures.readMemory(m_panel.processId());
    mouse().detach();
    return true;
}

/// Nothing goes wrong any more, and nobody else is about.
void Soak::calm()
{
    while (m_errands.isRunning()) {
        wait(20ms);
        collectErrands();
    }
    for (const auto &each : m_mice) {
        each->clearFaults();
    }
    if (!mouse().isAttached()) {
        mouse().attach(1);
    }
    if (&other() != &mouse()) {
        other().detach();
    }
}

std::optional<JSON> Soak::askPanel(const std::string &question, milliseconds longest)
{
    m_panel.write((question + '\n').c_str());
    for (const auto end = soakTime() + longest; !m_panel.canReadLine();) {
        wait(20ms);
        if (soakTime() > end || m_panel.state() != QProcess::Running) {
            return std::nullopt;
        }
    }
    return JSON::parse(m_panel.readLine().toStdString());
}

std::string joined(const std::set<std::string> &words)
{
    std::string text;
    for (const auto &word : words) {
        text += (text.empty() ? "" : ", ") + word;
    }
    return text;
}

/// What the panel publishes against what the mouse holds. Before it has been read anew, some settings may
/// rightly differ: those of which the program cannot know, or which kelmothctl has changed since. False when
/// the panel does not come to rest.
bool Soak::compareAtRest(bool isReadAnew)
{
    const auto longest = 3 * longestTime(commandsOfFullRead(mouse().device()) + 8, mouse().device());
    const auto answer =
        askPanel((isReadAnew ? "new " : "state ") + std::to_string(mouse().device().productID), longest);
    if (!answer && m_panel.state() != QProcess::Running) {
        return false;
    }
    if (!answer) {
        wrong("the program has not come to rest in " + std::to_string(longest.count()) + " ms");
        return false;
    }
    m_last = *answer;
    for (const auto &late : m_last["overdue"]) {
        wrong(late.get<std::string>());
    }
    const auto state = decodeDeviceState(m_last["state"].dump()).value();
    const auto &lift = m_last["liftOffLevel"];
    auto names = mouse().differences(state, lift.is_null() ? std::nullopt : std::optional(lift.get<Int>()));
    std::set<std::string> excused;
    if (!isReadAnew) {
        excused = mouse().unknown();
        excused.merge(m_last["unanswered"].get<std::set<std::string>>());
        excused.merge(std::set(m_changedBeside));
    }
    const int all = commandsOfFullRead(mouse().device()) -
                    static_cast<int>(mouse().device().capabilities().rgbZones.size());
    m_figures.compared += all - static_cast<int>(excused.size());
    m_figures.excused += static_cast<int>(excused.size());
    std::erase_if(names, [&](const auto &name) { return excused.contains(name); });
    if (!names.empty()) {
        m_figures.disagreements += static_cast<int>(names.size());
        wrong("the panel shows, and the mouse holds not, " + joined(names) +
              (isReadAnew ? " (read anew)" : "") + "; " + m_last["state"].dump() +
              mouse().wireOf(*names.begin()));
    }
    const auto &battery = m_last["batteryLevel"];
    if (isReadAnew && !mouse().isBattery(battery.is_null() ? std::nullopt : std::optional(battery.get<Int>()),
                                         m_last["isCharging"])) {
        ++m_figures.disagreements;
        wrong("the battery is shown at " + battery.dump());
    }
    const QSettings saved(qEnvironmentVariable("XDG_CONFIG_HOME") +
                              QStringLiteral("/com.kelmoth.app/defaults.ini"),
                          QSettings::IniFormat);
    const auto key = QStringLiteral("com.kelmoth.deviceState.%1").arg(mouse().device().productID);
    const auto record = decodeDeviceState(saved.value(key).toString().toStdString());
    if (isReadAnew && record != state) {
        ++m_figures.disagreements;
        wrong("the saved record is not what is published");
    }
    return true;
}

/// What kelmothctl reads, with nobody else about, against what the mouse holds.
void Soak::compareWithCommandLine()
{
    QProcess process;
    process.start(soakProgram("kelmothctl"), {QStringLiteral("export")});
    process.waitForFinished(60'000);
    const auto read = JSON::parse(process.readAllStandardOutput().toStdString(), nullptr, false);
    const auto state = read.is_object() ? decodeDeviceState(read.dump()) : std::nullopt;
    const auto names =
        state && read.contains("liftOffLevel")
            ? mouse().differences(*state, read["liftOffLevel"].get<Int>())
            : std::set<std::string>{"anything: " + process.readAllStandardError().toStdString()};
    if (process.exitCode() != 0 || !names.empty()) {
        m_figures.disagreements += static_cast<int>(names.size());
        wrong("kelmothctl does not read as the mouse holds: " + joined(names));
    }
}

} // namespace

} // namespace kelmoth

// NOLINTNEXTLINE(bugprone-exception-escape): what nobody expects ends the run, and fails it
int main(int argc, char **argv)
{
    std::signal(SIGINT, SIG_DFL); // shells start background jobs with it ignored, and so would our programs
    const QCoreApplication application(argc, argv);
    const auto arguments = QCoreApplication::arguments();
    const auto testbed = std::make_shared<kelmoth::MockTestbed>();
    if (arguments.size() != 3 || !umockdev_in_mock_environment()) {
        std::cerr << "usage: umockdev-wrapper soak_host SECONDS SEED\n";
        return 2;
    }
    return kelmoth::Soak(testbed, arguments[2].toUInt()).run(std::chrono::seconds(arguments[1].toInt()));
}
