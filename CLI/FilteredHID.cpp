#include "CLI/FilteredHID.h"

#include <utility>

namespace kelmoth {

namespace {

bool isProduct(const HIDDevice &device, std::uint16_t productID)
{
    return device.properties().productID == productID;
}

class FilteredHIDManager : public HIDManager {
public:
    FilteredHIDManager(std::unique_ptr<HIDManager> whole, std::uint16_t productID)
        : m_whole(std::move(whole)), m_productID(productID)
    {
    }

    void setDeviceMatching(std::span<const std::uint16_t> vendorIDs) override
    {
        m_whole->setDeviceMatching(vendorIDs);
    }

    std::vector<std::shared_ptr<HIDDevice>> copyDevices() override
    {
        auto devices = m_whole->copyDevices();
        std::erase_if(devices, [this](const auto &device) { return !isProduct(*device, m_productID); });
        return devices;
    }

    void registerDeviceMatchingCallback(Callback callback) override
    {
        m_whole->registerDeviceMatchingCallback(filtered(std::move(callback)));
    }

    void registerDeviceRemovalCallback(Callback callback) override
    {
        m_whole->registerDeviceRemovalCallback(filtered(std::move(callback)));
    }

    int open() override { return m_whole->open(); }
    void close() override { m_whole->close(); }

private:
    Callback filtered(Callback callback) const
    {
        return [productID = m_productID, callback = std::move(callback)](const auto &device) {
            if (isProduct(*device, productID)) {
                callback(device);
            }
        };
    }

    std::unique_ptr<HIDManager> m_whole;
    std::uint16_t m_productID;
};

} // namespace

FilteredHIDService::FilteredHIDService(std::shared_ptr<HIDService> whole, std::uint16_t productID)
    : m_whole(std::move(whole)), m_productID(productID)
{
}

std::unique_ptr<HIDManager> FilteredHIDService::createManager()
{
    auto whole = m_whole->createManager();
    return whole ? std::make_unique<FilteredHIDManager>(std::move(whole), m_productID) : nullptr;
}

} // namespace kelmoth
