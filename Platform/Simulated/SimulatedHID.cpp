#include "Platform/Simulated/SimulatedHID.h"

#include "Platform/Simulated/SimulatedConnection.h"

#include <QCoreApplication>
#include <QMetaObject>

#include <algorithm>
#include <utility>

namespace kelmoth {

namespace {

/// A simulated mouse shows four interfaces over USB, of which one takes the reports.
constexpr int usbInterfaceCount = 4;
constexpr std::int64_t protocolReportSize = 90;
constexpr std::int64_t otherReportSize = 16;

class SimulatedHIDDevice : public HIDDevice {
public:
    SimulatedHIDDevice(std::shared_ptr<SimulatedMouse> mouse, int attachment, std::size_t place,
                       int interface)
        : m_connection(std::move(mouse), attachment),
          m_place(place),
          m_interface(static_cast<std::uint16_t>(interface))
    {
    }

    bool isAlive() const { return m_connection.isAlive(); }
    int attachment() const { return m_connection.attachment(); }

    HIDProperties properties() const override
    {
        const auto present = [](const std::string &text) {
            return text.empty() ? std::nullopt : std::optional{text};
        };
        return {.vendorID = model().vendorID,
                .productID = model().productID,
                .maxFeatureReportSize = maxFeatureReportSize(),
                .product = present(model().productName),
                .serialNumber = present(model().serialNumber),
                .transport = present(model().transport)};
    }

    std::string path() const override
    {
        return "simulated:" + std::to_string(m_place) + "/" + std::to_string(m_interface);
    }

    int probeAccess() override { return m_connection.probe(); }

    bool isEqual(const HIDDevice &other) const override
    {
        const auto *device = dynamic_cast<const SimulatedHIDDevice *>(&other);
        return device != nullptr && &device->m_connection.mouse() == &m_connection.mouse() &&
               device->attachment() == attachment() && device->m_interface == m_interface;
    }

    int beginExchange() override { return m_connection.open(); }
    void endExchange() override {}

    int setFeatureReport(std::span<const std::uint8_t> report) override
    {
        return m_connection.setReport(m_interface, report);
    }

    FeatureReportRead getFeatureReport(std::span<std::uint8_t> buffer) override
    {
        return m_connection.getReport(m_interface, buffer);
    }

private:
    const SimulatedModel &model() const { return m_connection.mouse().model(); }

    std::optional<std::int64_t> maxFeatureReportSize() const
    {
        if (model().transport != "USB") {
            return std::nullopt;
        }
        if (m_interface == m_connection.mouse().protocolInterface()) {
            return protocolReportSize;
        }
        return m_interface % 2 == 0 ? std::optional{otherReportSize} : std::nullopt;
    }

    SimulatedConnection m_connection;
    std::size_t m_place;
    std::uint16_t m_interface;
};

class SimulatedHIDManager;

/// Where the mice are plugged in. Main thread; the mice reach it through the event loop.
class SimulatedHIDBus : public std::enable_shared_from_this<SimulatedHIDBus> {
public:
    void plugIn(std::vector<std::shared_ptr<SimulatedMouse>> mice);
    std::vector<std::shared_ptr<SimulatedHIDDevice>> devices() const;
    void add(SimulatedHIDManager *manager) { m_managers.push_back(manager); }
    void remove(SimulatedHIDManager *manager) { std::erase(m_managers, manager); }

private:
    struct Port {
        std::shared_ptr<SimulatedMouse> mouse;
        std::vector<std::shared_ptr<SimulatedHIDDevice>> devices; ///< as last announced
    };

    void showInterfaces(std::size_t place);
    void update(std::size_t place);
    void announce(const std::shared_ptr<SimulatedHIDDevice> &device, bool isAttached);

    std::vector<Port> m_ports;
    std::vector<SimulatedHIDManager *> m_managers; ///< the open ones
};

class SimulatedHIDManager : public HIDManager {
public:
    explicit SimulatedHIDManager(std::shared_ptr<SimulatedHIDBus> bus) : m_bus(std::move(bus)) {}
    ~SimulatedHIDManager() override { m_bus->remove(this); }

    void setDeviceMatching(std::span<const std::uint16_t> vendorIDs) override
    {
        m_vendorIDs.emplace(vendorIDs.begin(), vendorIDs.end());
    }

    std::vector<std::shared_ptr<HIDDevice>> copyDevices() override
    {
        std::vector<std::shared_ptr<HIDDevice>> matching;
        std::ranges::copy_if(m_bus->devices(), std::back_inserter(matching),
                             [this](const auto &device) { return matches(*device) && device->isAlive(); });
        return matching;
    }

    void registerDeviceMatchingCallback(Callback callback) override { m_onMatch = std::move(callback); }
    void registerDeviceRemovalCallback(Callback callback) override { m_onRemoval = std::move(callback); }

    int open() override
    {
        m_bus->remove(this);
        m_bus->add(this);
        return 0;
    }
    void close() override { m_bus->remove(this); }

    void announce(const std::shared_ptr<SimulatedHIDDevice> &device, bool isAttached)
    {
        // A copy: the callback may destroy this manager.
        const auto callback = isAttached ? m_onMatch : m_onRemoval;
        if (callback && matches(*device)) {
            callback(device);
        }
    }

private:
    bool matches(const HIDDevice &device) const
    {
        const auto vendorID = device.properties().vendorID;
        return !m_vendorIDs || std::ranges::find(*m_vendorIDs, vendorID) != m_vendorIDs->end();
    }

    std::shared_ptr<SimulatedHIDBus> m_bus;
    std::optional<std::vector<std::uint16_t>> m_vendorIDs;
    Callback m_onMatch;
    Callback m_onRemoval;
};

void SimulatedHIDBus::plugIn(std::vector<std::shared_ptr<SimulatedMouse>> mice)
{
    for (auto &mouse : mice) {
        const auto place = m_ports.size();
        // Only the main thread turns the weak pointer into a strong one, so that the bus ends there.
        mouse->setAttachmentCallback([weakBus = weak_from_this(), place](bool) {
            auto *application = QCoreApplication::instance();
            if (application == nullptr) {
                return;
            }
            const auto announceChange = [weakBus, place] {
                if (const auto bus = weakBus.lock()) {
                    bus->update(place);
                }
            };
            QMetaObject::invokeMethod(application, announceChange, Qt::QueuedConnection);
        });
        m_ports.push_back({std::move(mouse), {}});
        showInterfaces(place);
    }
}

std::vector<std::shared_ptr<SimulatedHIDDevice>> SimulatedHIDBus::devices() const
{
    std::vector<std::shared_ptr<SimulatedHIDDevice>> devices;
    for (const auto &port : m_ports) {
        devices.insert(devices.end(), port.devices.begin(), port.devices.end());
    }
    return devices;
}

void SimulatedHIDBus::showInterfaces(std::size_t place)
{
    auto &port = m_ports[place];
    const int attachment = port.mouse->attachment();
    if (!port.mouse->isAttached()) {
        return;
    }
    const int count = port.mouse->model().transport == "USB" ? usbInterfaceCount : 1;
    for (int interface = 0; interface < count; ++interface) {
        port.devices.push_back(
            std::make_shared<SimulatedHIDDevice>(port.mouse, attachment, place, interface));
    }
}

/// Announces what has become of a mouse since the last time, however often it went and came meanwhile.
void SimulatedHIDBus::update(std::size_t place)
{
    auto &port = m_ports[place];
    if (!port.devices.empty() && !port.devices.front()->isAlive()) {
        for (const auto &device : std::exchange(port.devices, {})) {
            announce(device, false);
        }
    }
    if (port.devices.empty()) {
        showInterfaces(place);
        const auto devices = port.devices;
        for (const auto &device : devices) {
            announce(device, true);
        }
    }
}

void SimulatedHIDBus::announce(const std::shared_ptr<SimulatedHIDDevice> &device, bool isAttached)
{
    // A callback may close or destroy any manager.
    const auto managers = m_managers;
    for (auto *manager : managers) {
        if (std::ranges::find(m_managers, manager) != m_managers.end()) {
            manager->announce(device, isAttached);
        }
    }
}

class SimulatedHIDService : public HIDService {
public:
    explicit SimulatedHIDService(std::vector<std::shared_ptr<SimulatedMouse>> mice)
    {
        m_bus->plugIn(std::move(mice));
    }

    std::unique_ptr<HIDManager> createManager() override
    {
        return std::make_unique<SimulatedHIDManager>(m_bus);
    }

private:
    std::shared_ptr<SimulatedHIDBus> m_bus = std::make_shared<SimulatedHIDBus>();
};

} // namespace

std::shared_ptr<HIDService> makeSimulatedHIDService(std::vector<std::shared_ptr<SimulatedMouse>> mice)
{
    return std::make_shared<SimulatedHIDService>(std::move(mice));
}

} // namespace kelmoth
