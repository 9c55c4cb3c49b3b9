#include "App/PanelStage.h"

#include "Core/Services/Appearance.h"
#include "Core/Services/Preferences.h"
#include "Platform/Qt/QtPlatform.h"
#include "Platform/Simulated/MemoryDefaults.h"
#include "Platform/Simulated/SimulatedPlatform.h"

#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QQmlEngine>
#include <QTimer>

namespace kelmoth {

namespace {

constexpr int drawTimeout = 20'000; // milliseconds
constexpr int settleTime = 400;     // milliseconds

/// A desktop without preferences but reduced motion.
class StillDesktop : public DesktopSettings {
public:
    ColorScheme colorScheme() const override { return ColorScheme::noPreference; }
    std::optional<std::uint32_t> accentColor() const override { return std::nullopt; }
    bool reduceMotion() const override { return true; }
    bool reduceTransparency() const override { return false; }
    double textScale() const override { return 1; }
    void setChangeHandler(std::function<void()>) override {}
};

/// An installed program that does not start at login.
class InstalledProgram : public LoginItemService {
public:
    LoginItemStatus status() const override { return LoginItemStatus::notRegistered; }
    void registerItem(Done done) override { done(std::nullopt); }
    void unregisterItem(Done done) override { done(std::nullopt); }
    void openLoginItemsSettings() override {}
    bool isInApplicationsFolder() const override { return true; }
    std::string bundlePath() const override { return "/usr/bin/kelmoth"; }
};

void runEvents(int milliseconds)
{
    QEventLoop loop;
    QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
    loop.exec();
}

std::vector<std::shared_ptr<SimulatedMouse>> miceNamed(const std::string &name,
                                                       const std::shared_ptr<ManualTime> &time)
{
    if (name.empty()) {
        return {};
    }
    auto model = SimulatedModel::named(name == PanelStage::foreignMouse ? "basilisk-v3" : name).value();
    if (name == PanelStage::foreignMouse) {
        model.vendorID = otherVendorID;
    }
    return {std::make_shared<SimulatedMouse>(model, time->clock())};
}

} // namespace

Platform stillPlatform()
{
    Platform platform;
    fillQtPlatform(platform);
    platform.userDefaults = std::make_shared<MemoryDefaults>();
    platform.desktopSettings = std::make_shared<StillDesktop>();
    platform.loginItemService = std::make_shared<InstalledProgram>();
    return platform;
}

PanelStage::PanelStage(const std::string &mouse, PanelTranslator &translator)
    : m_mice(miceNamed(mouse, m_time)),
      m_system(simulatedMachine(m_mice)),
      m_monitor(m_system.hid, m_system.usb, m_time),
      m_manager(m_monitor, m_toasts, std::make_shared<MemoryDefaults>()),
      m_loginItem(Platform::current().loginItemService, Platform::current().userDefaults),
      m_panel(m_manager, m_toasts, Preferences::shared(), Appearance::shared(), m_loginItem),
      m_translator(translator)
{
    m_monitor.startMonitoring();
    for (const QDeadlineTimer end(drawTimeout); !hasRead() && !end.hasExpired();) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 100);
    }
}

PanelWindow &PanelStage::show()
{
    if (!m_window) {
        m_window.emplace(m_panel, m_translator);
        m_isWhole = m_window->status() == QQuickView::Ready;
        QObject::connect(m_window->engine(), &QQmlEngine::warnings, &*m_window,
                         [this] { m_isWhole = false; });
    }
    m_window->show();
    return *m_window;
}

bool PanelStage::hasRead() const
{
    const auto &device = m_manager.connectedDevice();
    if (m_mice.empty()) {
        return true;
    }
    return device && !m_manager.isSyncing() &&
           (!device->isConfigurable() || (m_manager.liftOffLevel() && device->batteryLevel));
}

QImage PanelStage::settle()
{
    auto &window = show();
    QImage last;
    QElapsedTimer sinceChange;
    for (const QDeadlineTimer end(drawTimeout); !end.hasExpired();) {
        runEvents(settleTime / 4);
        const auto image = window.grabWindow();
        if (image != last || image.isNull()) {
            last = image;
            sinceChange.start();
        } else if (sinceChange.hasExpired(settleTime)) {
            return m_isWhole ? last : QImage();
        }
    }
    return {};
}

} // namespace kelmoth
