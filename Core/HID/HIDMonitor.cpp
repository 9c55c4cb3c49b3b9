#include "Core/HID/HIDMonitor.h"

#include "Core/HID/HIDTransport.h"
#include "Core/HID/RazerProtocol.h"
#include "Core/Services/OwnThread.h"
#include "Core/Services/SharedInstance.h"
#include "Platform/Log.h"
#include "Platform/Platform.h"

#include <QCoroFuture>
#include <QtConcurrentRun>

#include <algorithm>
#include <array>
#include <limits>
#include <mutex>
#include <stop_token>

namespace kelmoth {

namespace {

constexpr std::array vendorIDs{razerVendorID, otherVendorID};

/// The interface that takes commands has feature reports of at least this size.
constexpr std::int64_t protocolReportSize = RazerProtocol::reportSize;

/// A 16-bit ID; none when it is missing or out of range.
std::optional<std::uint16_t> usableID(const std::optional<std::int64_t> &value)
{
    if (!value || *value < 0 || *value > std::numeric_limits<std::uint16_t>::max()) {
        return std::nullopt;
    }
    return static_cast<std::uint16_t>(*value);
}

/// The record of an interface; none when its IDs are unusable or its vendor is not Razer's.
std::optional<RazerDevice> describe(const HIDProperties &properties)
{
    const auto productID = usableID(properties.productID);
    const auto vendorID = usableID(properties.vendorID);
    if (!productID || !vendorID || std::ranges::find(vendorIDs, *vendorID) == vendorIDs.end()) {
        return std::nullopt;
    }
    RazerDevice device;
    device.vendorID = *vendorID;
    device.productID = *productID;
    device.serialNumber = properties.serialNumber;
    device.transport = properties.transport.value_or("Unknown");
    device.advertisedName = properties.product;
    return device;
}

} // namespace

struct HIDMonitor::Transports {
    /// Guards the maps, for access only: never held across a transfer.
    std::mutex devicesLock;
    std::map<QUuid, std::shared_ptr<HIDDevice>> deviceHandles;
    std::map<QUuid, std::shared_ptr<USBRazerDevice>> usbDevices;
    std::stop_source end; ///< of all transfers

    /// The transports of a device; both null once it is detached.
    std::pair<std::shared_ptr<USBRazerDevice>, std::shared_ptr<HIDDevice>> find(const QUuid &id)
    {
        const std::scoped_lock lock(devicesLock);
        const auto usb = usbDevices.find(id);
        const auto handle = deviceHandles.find(id);
        return {usb == usbDevices.end() ? nullptr : usb->second,
                handle == deviceHandles.end() ? nullptr : handle->second};
    }

    /// Keeps the USB transport of a device that is still attached.
    void keep(const QUuid &id, std::shared_ptr<USBRazerDevice> usb)
    {
        const std::scoped_lock lock(devicesLock);
        if (deviceHandles.contains(id)) {
            usbDevices[id] = std::move(usb);
        }
    }

    /// One command on the transfer thread: by USB, and by HID only when that gave no answer at all.
    static TransactResult transfer(const std::shared_ptr<Transports> &transports,
                                   const std::shared_ptr<Sleeper> &sleeper, const QUuid &id,
                                   const Data &report, std::uint32_t waitTimeUs)
    {
        const auto [usb, handle] = transports->find(id);
        const auto stop = transports->end.get_token();
        if (usb) {
            auto result = usb->transact(report, waitTimeUs);
            if (result.kind != TransactResult::Kind::noResponse) {
                return result;
            }
        }
        return handle ? transactViaHID(report, *handle, *sleeper, waitTimeUs, stop) : TransactResult{};
    }
};

HIDMonitor &HIDMonitor::shared()
{
    return sharedInstance([] {
        const auto &platform = Platform::current();
        return std::make_unique<HIDMonitor>(platform.hid, platform.usb, platform.sleeper);
    });
}

HIDMonitor::HIDMonitor(std::shared_ptr<HIDService> hid, std::shared_ptr<USBService> usb,
                       std::shared_ptr<Sleeper> sleeper, QObject *parent)
    : QObject(parent),
      m_hid(std::move(hid)),
      m_usb(std::move(usb)),
      m_sleeper(std::move(sleeper)),
      m_transports(std::make_shared<Transports>())
{
    m_queue.setObjectName(QStringLiteral("com.kelmoth.hid"));
    m_queue.setMaxThreadCount(1);
    m_queue.setExpiryTimeout(-1); // an expiry timer would wake the thread
}

HIDMonitor::~HIDMonitor()
{
    stopMonitoring();
    endTransfers();
    m_queue.waitForDone();
}

void HIDMonitor::endTransfers()
{
    m_transports->end.request_stop();
}

void HIDMonitor::startMonitoring(bool watchesBatteries)
{
    assertOwnThread(*this);
    if (m_isMonitoring) {
        return;
    }
    m_watchesBatteries = watchesBatteries;
    m_manager = m_hid->createManager();
    if (!m_manager) {
        log("❌ Failed to create IOHIDManager");
        return;
    }
    m_manager->setDeviceMatching(vendorIDs);
    for (const auto &handle : m_manager->copyDevices()) {
        deviceConnected(handle);
    }
    m_manager->registerDeviceMatchingCallback(
        [this](const std::shared_ptr<HIDDevice> &handle) { deviceConnected(handle); });
    m_manager->registerDeviceRemovalCallback(
        [this](const std::shared_ptr<HIDDevice> &handle) { deviceDisconnected(handle); });
    if (const int status = m_manager->open(); status != 0) {
        log("❌ Failed to open IOHIDManager: 0x%X", static_cast<unsigned>(status));
        m_manager.reset();
        return;
    }
    setIsMonitoring(true);
    log("HID monitoring started");
}

void HIDMonitor::stopMonitoring()
{
    assertOwnThread(*this);
    if (!m_isMonitoring || !m_manager) {
        return;
    }
    m_manager->close();
    m_manager.reset();
    setIsMonitoring(false);
}

void HIDMonitor::setIsMonitoring(bool monitoring)
{
    m_isMonitoring = monitoring;
    Q_EMIT isMonitoringChanged();
}

void HIDMonitor::deviceConnected(const std::shared_ptr<HIDDevice> &handle)
{
    assertOwnThread(*this);
    const auto properties = handle->properties();
    const auto described = describe(properties);
    if (!described) {
        return;
    }
    const RazerDevice &device = *described;
    const auto model = device.model();
    if (!model) {
        log("Unsupported Razer device: %s PID:0x%04X", device.advertisedName.value_or("Unknown").c_str(),
            device.productID);
        return;
    }
    if (!device.isBluetooth() && properties.maxFeatureReportSize.value_or(0) < protocolReportSize) {
        return;
    }
    const bool isListed = std::ranges::any_of(m_connectedDevices, [&device](const RazerDevice &other) {
        return other.productID == device.productID && other.isBluetooth() == device.isBluetooth();
    });
    if (isListed) {
        return;
    }
    {
        const std::scoped_lock lock(m_transports->devicesLock);
        m_transports->deviceHandles[device.id] = handle;
    }
    if (!device.isBluetooth()) {
        openTransport(device);
    }
    log("✅ Razer device connected: %s (PID: 0x%04X)", device.name().c_str(), device.productID);
    m_connectedDevices.push_back(device);
    Q_EMIT connectedDevicesChanged();
    if (m_watchesBatteries && hasReadableBattery(device)) {
        startBatteryMonitoring(device);
    }
}

void HIDMonitor::openTransport(const RazerDevice &device)
{
    auto usb = std::make_shared<USBRazerDevice>(m_usb, m_sleeper, device.vendorID, device.productID,
                                                basiliskModel(*device.model()).reportIndex,
                                                m_transports->end.get_token());
    // Opening a device node can block until the mouse wakes: not on the main thread. The queue is FIFO, so
    // every command runs after it.
    m_queue.start([transports = m_transports, id = device.id, usb = std::move(usb)] {
        if (!transports->end.stop_requested() && usb->open()) {
            transports->keep(id, usb);
        }
    });
}

void HIDMonitor::deviceDisconnected(const std::shared_ptr<HIDDevice> &handle)
{
    assertOwnThread(*this);
    std::optional<QUuid> id;
    std::shared_ptr<USBRazerDevice> usb;
    {
        const std::scoped_lock lock(m_transports->devicesLock);
        auto &handles = m_transports->deviceHandles;
        const auto entry = std::ranges::find_if(
            handles, [&handle](const auto &listed) { return listed.second->isEqual(*handle); });
        if (entry == handles.end()) {
            return;
        }
        id = entry->first;
        handles.erase(entry);
        if (auto node = m_transports->usbDevices.extract(*id)) {
            usb = std::move(node.mapped());
        }
    }
    // Closing can take as long as opening, and must not happen during a transfer.
    m_queue.start([usb = std::move(usb), handle] {});
    m_batteryMonitors.erase(*id);
    const auto device = std::ranges::find(m_connectedDevices, *id, &RazerDevice::id);
    if (device == m_connectedDevices.end()) {
        return;
    }
    const RazerDevice gone = std::move(*device);
    m_connectedDevices.erase(device);
    log("🔌 Razer device disconnected: %s (PID: 0x%04X)", gone.name().c_str(), gone.productID);
    Q_EMIT connectedDevicesChanged();
}

QCoro::Task<std::optional<Data>> HIDMonitor::send(RazerCommand command, RazerDevice device)
{
    TransactResult result = co_await transact(command, device);
    co_return result.kind == TransactResult::Kind::success ? std::optional(std::move(result.response))
                                                           : std::nullopt;
}

QCoro::Task<TransactResult> HIDMonitor::transact(RazerCommand command, RazerDevice device)
{
    assertOwnThread(*this);
    if (!device.isConfigurable()) {
        co_return TransactResult{};
    }
    const auto waitTimeUs = basiliskModel(*device.model()).waitTimeUs;
    auto report = RazerProtocol::createReport(command, device);
    QFuture<TransactResult> answer = QtConcurrent::run(&m_queue, &Transports::transfer, m_transports,
                                                       m_sleeper, device.id, report, waitTimeUs);
    // Do not use `this` after the co_await: the monitor may be destroyed meanwhile.
    TransactResult result = co_await answer;
    co_return result;
}

std::shared_ptr<HIDDevice> HIDMonitor::deviceHandle(const QUuid &id) const
{
    return m_transports->find(id).second;
}

} // namespace kelmoth
