// The whole program, and within it somebody who uses its panel without pause: what the controls call of the
// panel's models is called at random. Lines on standard input say what to do:
//   run SEED       uses the panel from now on
//   state PRODUCT  stops, waits until the mouse of that product is shown and nothing is under way any more,
//   and
//                  prints what is published, one line of JSON; after "new" for a mouse attached since the
//                  last such line only

#include "Core/Device/DeviceState.h"
#include "Core/HID/DeviceManager.h"
#include "Core/Services/ToastManager.h"
#include "Platform/Platform.h"
#include "Soak/SoakBounds.h"
#include "Soak/SoakGestures.h"
#include "UI/Views/ContentModel.h"

#include <QGuiApplication>
#include <QQuickItem>
#include <QQuickView>
#include <QSocketNotifier>
#include <nlohmann/json.hpp>

#include <cstdarg>
#include <cstdio>
#include <dlfcn.h>
#include <iostream>
#include <string_view>
#include <unistd.h>

/// The mock of the kernel would lose a socket at each attempt to open a node that has gone.
extern "C" int open(const char *path, int flags, ...)
{
    static auto *const real = reinterpret_cast<int (*)(const char *, int, ...)>(::dlsym(RTLD_NEXT, "open"));
    va_list arguments;
    va_start(arguments, flags);
    const auto mode = va_arg(arguments, mode_t);
    va_end(arguments);
    const bool hasGone = std::string_view(path).starts_with("/dev/") && ::access(path, F_OK) != 0;
    return hasGone ? -1 : real(path, flags, mode);
}

namespace kelmoth {

namespace {

using namespace std::chrono;
using JSON = nlohmann::ordered_json;

milliseconds sinceStart()
{
    return duration_cast<milliseconds>(steady_clock::now().time_since_epoch());
}

class SoakUser : public QObject {
public:
    explicit SoakUser(QObject *parent);

private:
    /// A change that was asked for and has not come to its end.
    struct Operation {
        const TabModel *page;
        QUuid device;
        const char *what;
        bool isTaken; ///< the mouse has accepted it
        milliseconds since;
        milliseconds longest;
    };

    void obey();
    void step();
    void report();
    void connectOnce();
    void beginOperation(const SoakGestures::Gesture &gesture);
    void endOperation();
    void followDevice();
    void followReading();
    void turnPages();

    int upTo(int last) { return m_gestures.upTo(last); }
    milliseconds bound(int commands) const;
    void hold(const char *what, milliseconds since, milliseconds longest);

    QSocketNotifier m_input{0, QSocketNotifier::Read};
    QTimer m_timer;
    QTimer m_pulse;
    SoakGestures m_gestures;
    QPointer<QQuickView> m_window;
    ContentModel *m_panel = nullptr;
    bool m_isRunning = false;
    int m_quietTurns = -1; ///< turns without anything under way; negative: no report is asked for
    std::uint16_t m_wanted = 0;
    bool m_isNewWanted = false;
    QUuid m_reported;
    QUuid m_known;                 ///< the mouse chosen last
    std::optional<QUuid> m_unread; ///< it, while it is still to be read in full
    std::optional<Operation> m_operation;
    milliseconds m_readingSince = sinceStart();
    milliseconds m_longestReading = milliseconds::max();
    int m_begun = 0;
    int m_taken = 0;
    milliseconds m_slowest{};
    milliseconds m_lastPulse{};
    milliseconds m_longestStall{};
    JSON m_overdue = JSON::array();
};

SoakUser::SoakUser(QObject *parent) : QObject(parent)
{
    connect(&m_input, &QSocketNotifier::activated, this, &SoakUser::obey);
    connect(&m_timer, &QTimer::timeout, this, &SoakUser::step);
    connect(&m_pulse, &QTimer::timeout, this, [this] {
        const auto now = sinceStart();
        m_longestStall = std::max(m_longestStall, m_lastPulse.count() ? now - m_lastPulse : milliseconds{});
        m_lastPulse = now;
    });
    m_timer.start(10ms);
    m_pulse.start(10ms);
}

void SoakUser::obey()
{
    std::string word;
    if (!(std::cin >> word)) {
        m_input.setEnabled(false);
        return;
    }
    if (word == "run") {
        unsigned seed = 0;
        std::cin >> seed;
        m_gestures.seed(seed);
        m_isRunning = true;
        m_quietTurns = -1;
    } else if (word == "state" || word == "new") {
        m_isNewWanted = word == "new";
        std::cin >> m_wanted;
        m_isRunning = false;
        m_quietTurns = 0;
    }
}

/// Finds the panel once it has been built.
void SoakUser::connectOnce()
{
    for (auto *window : QGuiApplication::topLevelWindows()) {
        auto *view = qobject_cast<QQuickView *>(window);
        auto *model =
            view && view->rootObject() ? view->rootObject()->property("model").value<QObject *>() : nullptr;
        m_panel = qobject_cast<ContentModel *>(model);
        if (m_panel) {
            m_window = view;
            auto &manager = DeviceManager::shared();
            connect(&manager, &DeviceManager::connectedDeviceChanged, this, &SoakUser::followDevice);
            connect(&manager, &DeviceManager::isSyncingChanged, this, &SoakUser::followReading);
            const auto take = [this] {
                if (m_operation) {
                    m_operation->isTaken = true;
                }
            };
            connect(&manager, &DeviceManager::deviceStateChanged, this, take);
            connect(&manager, &DeviceManager::liftOffLevelChanged, this, take);
            connect(&ToastManager::shared(), &ToastManager::currentToastChanged, this, [this] {
                const auto &toast = ToastManager::shared().currentToast();
                if (m_operation && toast && toast->type == ToastType::error) {
                    m_operation->isTaken = false;
                }
            });
            followDevice();
            if (manager.isAnswering()) {
                m_unread.reset();
            }
            return;
        }
    }
}

void SoakUser::followDevice()
{
    const auto &device = DeviceManager::shared().connectedDevice();
    const auto id = device ? device->id : QUuid();
    if (id != std::exchange(m_known, id) && device && device->isConfigurable()) {
        m_unread = id;
    }
}

void SoakUser::followReading()
{
    const auto &manager = DeviceManager::shared();
    const auto &device = manager.connectedDevice();
    if (manager.isSyncing()) {
        m_readingSince = sinceStart();
        m_longestReading = device ? bound(commandsOfFullRead(*device)) : milliseconds::max();
        return;
    }
    hold("a read", m_readingSince, std::exchange(m_longestReading, milliseconds::max()));
    if (!device) {
        return;
    }
    // A full read says what was answered, and what not.
    if (m_unread == device->id && (manager.isAnswering() || !manager.unanswered().empty())) {
        m_unread.reset();
    }
}

/// With the commands that may be queued before: two openings of the panel ask two batteries each.
milliseconds SoakUser::bound(int commands) const
{
    const auto &device = DeviceManager::shared().connectedDevice();
    constexpr int ahead = 8;
    return device && device->isConfigurable() ? longestTime(commands + ahead, *device) : milliseconds::max();
}

void SoakUser::hold(const char *what, milliseconds since, milliseconds longest)
{
    const auto took = sinceStart() - since;
    m_slowest = std::max(m_slowest, took);
    if (took > longest) {
        m_overdue.push_back(std::string(what) + " took " + std::to_string(took.count()) + " ms of " +
                            std::to_string(longest.count()));
    }
}

void SoakUser::beginOperation(const SoakGestures::Gesture &gesture)
{
    const auto &device = DeviceManager::shared().connectedDevice();
    if (!gesture.page->isApplying() || !device) {
        return; // the control did nothing
    }
    ++m_begun;
    m_operation = {gesture.page, device->id, gesture.what, false, sinceStart(), bound(gesture.commands)};
}

void SoakUser::endOperation()
{
    const auto operation = *std::exchange(m_operation, std::nullopt);
    hold(operation.what, operation.since, operation.longest);
    const auto &device = DeviceManager::shared().connectedDevice();
    if (operation.isTaken && device && device->id == operation.device) {
        ++m_taken;
    }
}

void SoakUser::step()
{
    if (!m_panel) {
        connectOnce();
        return;
    }
    if (m_operation && !m_operation->page->isApplying()) {
        endOperation();
    }
    if (m_quietTurns >= 0) {
        report();
    }
    if (!m_isRunning || upTo(3) != 0) {
        return;
    }
    if (m_operation || upTo(9) == 0) {
        if (upTo(40) == 0) {
            turnPages();
        }
        return;
    }
    if (!m_panel->isPageUsable() || upTo(9) == 0) {
        turnPages();
        return;
    }
    if (const auto gesture = m_gestures.use(*m_panel)) {
        beginOperation(*gesture);
    }
}

void SoakUser::turnPages()
{
    if (m_gestures.turnPages(*m_panel, *m_window)) {
        m_operation.reset(); // it goes on, but its page no longer tells of its end
    }
}

/// Prints what is published, as soon as it is at rest.
void SoakUser::report()
{
    const auto &manager = DeviceManager::shared();
    const auto &device = manager.connectedDevice();
    const bool isAnew = device && device->id != m_reported && manager.isAnswering() &&
                        (!HIDMonitor::hasReadableBattery(*device) || device->batteryLevel);
    const bool isShown = device && device->productID == m_wanted && !m_unread && (!m_isNewWanted || isAnew);
    if (!isShown || m_operation || manager.isSyncing() || ++m_quietTurns < 20) {
        m_quietTurns = !isShown || m_operation || manager.isSyncing() ? 0 : m_quietTurns;
        return;
    }
    m_quietTurns = -1;
    m_reported = device->id;
    Platform::current().userDefaults->flush();
    const auto &lift = manager.liftOffLevel();
    const JSON state{{"state", JSON::parse(encode(manager.deviceState()).value())},
                     {"liftOffLevel", lift ? JSON(*lift) : JSON()},
                     {"batteryLevel", device->batteryLevel ? JSON(*device->batteryLevel) : JSON()},
                     {"isCharging", device->isCharging},
                     {"unanswered", manager.unanswered().words()},
                     {"begun", m_begun},
                     {"taken", m_taken},
                     {"slowest", m_slowest.count()},
                     {"stall", m_longestStall.count()},
                     {"overdue", std::exchange(m_overdue, JSON::array())}};
    std::printf("%s\n", state.dump().c_str());
    std::fflush(stdout);
}

void start()
{
    std::ios::sync_with_stdio(true);
    std::cin.rdbuf()->pubsetbuf(nullptr, 0);
    QTimer::singleShot(0, qApp, [] { new SoakUser(qApp); });
}
Q_COREAPP_STARTUP_FUNCTION(start)

} // namespace

} // namespace kelmoth
