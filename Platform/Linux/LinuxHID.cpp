#include "Platform/Linux/LinuxHID.h"

#include "Platform/Linux/Udev.h"

#include <QObject>
#include <QSocketNotifier>
#include <QTimer>

#include <algorithm>
#include <cerrno>
#include <map>
#include <set>
#include <utility>

namespace kelmoth {

namespace {

/// One hidraw node, from its attach on. Keeps udev's facts, so that they are available after the detach.
class LinuxHIDDevice final : public HIDDevice {
public:
    LinuxHIDDevice(HIDFacts facts, std::shared_ptr<Hidraw> node)
        : m_facts(std::move(facts)), m_node(std::move(node))
    {
    }

    HIDProperties properties() const override
    {
        if (!m_maxFeatureReportSize) {
            m_maxFeatureReportSize = readMaxFeatureReportSize(m_facts.hidSyspath);
        }
        return {.vendorID = m_facts.vendorID,
                .productID = m_facts.productID,
                .maxFeatureReportSize = *m_maxFeatureReportSize,
                .product = m_facts.product,
                .serialNumber = m_facts.serial,
                .transport = m_facts.transport};
    }

    std::string path() const override { return m_facts.node; }
    int probeAccess() override { return m_node->open(); }

    bool isEqual(const HIDDevice &other) const override
    {
        const auto *device = dynamic_cast<const LinuxHIDDevice *>(&other);
        return device != nullptr && device->m_node == m_node;
    }

    int setFeatureReport(std::span<const std::uint8_t> report) override
    {
        return m_node->setFeatureReport(report);
    }
    FeatureReportRead getFeatureReport(std::span<std::uint8_t> buffer) override
    {
        return m_node->getFeatureReport(buffer);
    }
    int beginExchange() override { return m_node->beginExchange(); }
    void endExchange() override { m_node->endExchange(); }

    void markRemoved() { m_node->fail(); }

private:
    const HIDFacts m_facts;
    const std::shared_ptr<Hidraw> m_node;
    mutable std::optional<std::optional<std::int64_t>> m_maxFeatureReportSize; ///< once it has been read
};

class LinuxHIDManager final : public HIDManager {
public:
    LinuxHIDManager(UdevPtr<udev> context, std::shared_ptr<HidrawNodes> nodes)
        : m_udev(std::move(context)), m_nodes(std::move(nodes))
    {
    }
    ~LinuxHIDManager() override { close(); }

    void setDeviceMatching(std::span<const std::uint16_t> vendorIDs) override
    {
        m_vendorIDs.assign(vendorIDs.begin(), vendorIDs.end());
    }

    std::vector<std::shared_ptr<HIDDevice>> copyDevices() override
    {
        std::vector<std::shared_ptr<HIDDevice>> devices;
        for (const auto &hidraw : devicesOfSubsystem(m_udev.get(), "hidraw")) {
            if (auto device = present(hidraw)) {
                devices.push_back(std::move(device));
            }
        }
        return devices;
    }

    void registerDeviceMatchingCallback(Callback callback) override { m_attached = std::move(callback); }
    void registerDeviceRemovalCallback(Callback callback) override { m_removed = std::move(callback); }
    int open() override;
    void close() override;

private:
    /// The HID device of a hidraw device, the same object each time; null when it does not match.
    std::shared_ptr<LinuxHIDDevice> present(const UdevDevice &hidraw);
    void receive();
    void handle(const UdevDevice &hidraw);
    void attach(const UdevDevice &hidraw);
    void remove(const std::string &syspath);
    void reconcile();

    UdevPtr<udev> m_udev;
    std::shared_ptr<HidrawNodes> m_nodes;
    std::vector<std::uint16_t> m_vendorIDs;
    std::map<std::string, std::shared_ptr<LinuxHIDDevice>> m_present; ///< by syspath
    Callback m_attached;
    Callback m_removed;
    UdevPtr<udev_monitor> m_monitor;
    /// Set while the manager is open. A callback may close or destroy the manager: after calling one, check a
    /// weak reference to this before using the manager.
    std::shared_ptr<QSocketNotifier> m_notifier;
};

int LinuxHIDManager::open()
{
    if (m_notifier) {
        return 0;
    }
    errno = 0;
    UdevPtr<udev_monitor> monitor(udev_monitor_new_from_netlink(m_udev.get(), "udev"));
    if (!monitor) {
        return errno != 0 ? errno : ENOMEM;
    }
    if (const int status = udev_monitor_filter_add_match_subsystem_devtype(monitor.get(), "hidraw", nullptr);
        status < 0) {
        return -status;
    }
    if (const int status = udev_monitor_enable_receiving(monitor.get()); status < 0) {
        return -status;
    }
    m_monitor = std::move(monitor);
    m_notifier =
        std::make_shared<QSocketNotifier>(udev_monitor_get_fd(m_monitor.get()), QSocketNotifier::Read);
    auto *const notifier = m_notifier.get();
    QObject::connect(notifier, &QSocketNotifier::activated, notifier, [this] { receive(); });
    // Devices may have been attached or detached since `copyDevices`.
    QTimer::singleShot(0, notifier, [this] { reconcile(); });
    return 0;
}

void LinuxHIDManager::close()
{
    m_notifier.reset();
    m_monitor.reset();
}

std::shared_ptr<LinuxHIDDevice> LinuxHIDManager::present(const UdevDevice &hidraw)
{
    if (const auto known = m_present.find(hidraw.syspath()); known != m_present.end()) {
        return known->second;
    }
    auto facts = hidFacts(hidraw);
    if (!facts) {
        return nullptr;
    }
    const bool matches =
        m_vendorIDs.empty() || std::ranges::find(m_vendorIDs, facts->vendorID) != m_vendorIDs.end();
    if (!matches) {
        return nullptr;
    }
    auto node = m_nodes->node(facts->syspath, facts->node,
                              {.vendorID = facts->vendorID, .productID = facts->productID});
    const std::string syspath = facts->syspath;
    auto device = std::make_shared<LinuxHIDDevice>(*std::move(facts), std::move(node));
    m_present.emplace(syspath, device);
    return device;
}

void LinuxHIDManager::receive()
{
    const std::weak_ptr<QSocketNotifier> open = m_notifier;
    while (!open.expired()) {
        errno = 0;
        const UdevDevice device(udev_monitor_receive_device(m_monitor.get()));
        if (device) {
            handle(device);
            continue;
        }
        if (errno == ENOBUFS) {
            reconcile(); // events were lost
        }
        return;
    }
}

void LinuxHIDManager::handle(const UdevDevice &hidraw)
{
    const std::string action = hidraw.action();
    if (action == "add") {
        attach(hidraw);
    } else if (action == "remove") {
        remove(hidraw.syspath());
    }
}

void LinuxHIDManager::attach(const UdevDevice &hidraw)
{
    if (m_present.contains(hidraw.syspath())) {
        return;
    }
    if (const auto device = present(hidraw); device && m_attached) {
        const auto callback = m_attached; // a copy: it may destroy the manager
        callback(device);
    }
}

void LinuxHIDManager::remove(const std::string &syspath)
{
    const auto known = m_present.find(syspath);
    if (known == m_present.end()) {
        return;
    }
    const auto device = known->second;
    m_present.erase(known);
    device->markRemoved();
    if (m_removed) {
        const auto callback = m_removed;
        callback(device);
    }
}

/// Handles changes whose events were lost.
void LinuxHIDManager::reconcile()
{
    const std::weak_ptr<QSocketNotifier> open = m_notifier;
    const auto devices = devicesOfSubsystem(m_udev.get(), "hidraw");
    std::set<std::string> gone;
    for (const auto &[syspath, device] : m_present) {
        gone.insert(syspath);
    }
    for (const auto &device : devices) {
        gone.erase(device.syspath());
    }
    for (const auto &syspath : gone) {
        if (open.expired()) {
            return;
        }
        remove(syspath);
    }
    for (const auto &device : devices) {
        if (open.expired()) {
            return;
        }
        attach(device);
    }
}

} // namespace

LinuxHIDService::LinuxHIDService(std::shared_ptr<HidrawNodes> nodes) : m_nodes(std::move(nodes)) {}

std::unique_ptr<HIDManager> LinuxHIDService::createManager()
{
    UdevPtr<udev> context(udev_new());
    if (!context) {
        return nullptr;
    }
    return std::make_unique<LinuxHIDManager>(std::move(context), m_nodes);
}

} // namespace kelmoth
