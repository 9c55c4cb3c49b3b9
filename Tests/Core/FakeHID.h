#pragma once

#include "Platform/HID.h"
#include "Platform/USB.h"

#include <cerrno>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace kelmoth {

/// A HID interface of a test's making, with which nobody can talk.
class FakeHIDDevice : public HIDDevice {
public:
    std::map<std::string, std::int64_t, std::less<>> integers;
    std::map<std::string, std::string, std::less<>> strings;

    std::optional<std::int64_t> integerProperty(std::string_view key) const override
    {
        const auto found = integers.find(key);
        return found == integers.end() ? std::nullopt : std::optional(found->second);
    }
    std::optional<std::string> stringProperty(std::string_view key) const override
    {
        const auto found = strings.find(key);
        return found == strings.end() ? std::nullopt : std::optional(found->second);
    }
    std::string path() const override { return "fake"; }
    int probeAccess() override { return 0; }
    bool isEqual(const HIDDevice &other) const override { return this == &other; }
    int beginExchange() override { return ENODEV; }
    void endExchange() override {}
    int setFeatureReport(std::span<const std::uint8_t>) override { return ENODEV; }
    FeatureReportRead getFeatureReport(std::span<std::uint8_t>) override { return {ENODEV, 0}; }

    /// An interface with these properties; without a report size when that is negative.
    static std::shared_ptr<FakeHIDDevice> make(std::int64_t vendorID, std::int64_t productID,
                                               std::int64_t reportSize = 90, std::string transport = "USB")
    {
        auto device = std::make_shared<FakeHIDDevice>();
        device->integers = {{"VendorID", vendorID}, {"ProductID", productID}};
        if (reportSize >= 0) {
            device->integers["MaxFeatureReportSize"] = reportSize;
        }
        device->strings = {{"Transport", std::move(transport)}};
        return device;
    }
};

/// A system whose devices come and go as a test says. Main thread.
class FakeHIDService : public HIDService {
public:
    std::vector<std::shared_ptr<HIDDevice>> present;
    bool canCreate = true;
    int openStatus = 0;
    int managers = 0;
    std::vector<std::uint16_t> matching;
    HIDManager::Callback attached;
    HIDManager::Callback removed;

    std::unique_ptr<HIDManager> createManager() override;
};

class FakeHIDManager : public HIDManager {
public:
    explicit FakeHIDManager(FakeHIDService &service) : m_service(service) { ++m_service.managers; }
    ~FakeHIDManager() override { close(); }
    void setDeviceMatching(std::span<const std::uint16_t> vendorIDs) override
    {
        m_service.matching.assign(vendorIDs.begin(), vendorIDs.end());
    }
    std::vector<std::shared_ptr<HIDDevice>> copyDevices() override { return m_service.present; }
    void registerDeviceMatchingCallback(Callback callback) override
    {
        m_service.attached = std::move(callback);
    }
    void registerDeviceRemovalCallback(Callback callback) override
    {
        m_service.removed = std::move(callback);
    }
    int open() override { return m_service.openStatus; }
    void close() override { m_service.attached = m_service.removed = nullptr; }

private:
    FakeHIDService &m_service;
};

inline std::unique_ptr<HIDManager> FakeHIDService::createManager()
{
    return canCreate ? std::make_unique<FakeHIDManager>(*this) : nullptr;
}

/// A system without USB devices.
class NoUSB : public USBService {
public:
    Matches matchingDevices(std::uint16_t, std::uint16_t) override { return {}; }
};

} // namespace kelmoth
