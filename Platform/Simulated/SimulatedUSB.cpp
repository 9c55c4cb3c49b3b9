#include "Platform/Simulated/SimulatedUSB.h"

#include "Platform/Simulated/SimulatedConnection.h"

#include <utility>

namespace kelmoth {

namespace {

class SimulatedUSBInterface : public USBDeviceInterface {
public:
    explicit SimulatedUSBInterface(std::shared_ptr<SimulatedConnection> connection)
        : m_connection(std::move(connection))
    {
    }

    int open(std::uint16_t) override
    {
        ++m_connection->mouse().holders;
        return m_connection->open();
    }
    void close() override { --m_connection->mouse().holders; }
    int beginExchange() override { return m_connection->open(); }
    void endExchange() override {}

    int deviceRequest(const USBControlRequest &request) override
    {
        if (!m_connection->isAlive()) {
            return ENODEV;
        }
        using namespace hidClassRequest;
        const auto is = [&](std::uint8_t type, std::uint8_t number) {
            return request.bmRequestType == type && request.bRequest == number &&
                   request.wValue == featureReport;
        };
        if (is(typeOut, setReport)) {
            return m_connection->setReport(request.wIndex, request.data);
        }
        if (is(typeIn, getReport)) {
            return m_connection->getReport(request.wIndex, request.data).status;
        }
        return EPIPE;
    }

private:
    std::shared_ptr<SimulatedConnection> m_connection;
};

class SimulatedUSBDevice : public USBDevice {
public:
    explicit SimulatedUSBDevice(const std::shared_ptr<SimulatedMouse> &mouse)
        : m_connection(std::make_shared<SimulatedConnection>(mouse, mouse->attachment()))
    {
    }

    InterfaceResult createInterface() override
    {
        if (const int status = m_connection->open(); status != 0) {
            return {status, nullptr};
        }
        return {0, std::make_unique<SimulatedUSBInterface>(m_connection)};
    }

private:
    std::shared_ptr<SimulatedConnection> m_connection;
};

class SimulatedUSBService : public USBService {
public:
    explicit SimulatedUSBService(std::vector<std::shared_ptr<SimulatedMouse>> mice) : m_mice(std::move(mice))
    {
    }

    Matches matchingDevices(std::uint16_t vendorID, std::uint16_t productID) override
    {
        Matches matches;
        for (const auto &mouse : m_mice) {
            const auto &model = mouse->model();
            if (model.transport == "USB" && model.vendorID == vendorID && model.productID == productID &&
                mouse->isAttached()) {
                matches.devices.push_back(std::make_shared<SimulatedUSBDevice>(mouse));
            }
        }
        return matches;
    }

private:
    const std::vector<std::shared_ptr<SimulatedMouse>> m_mice;
};

} // namespace

std::shared_ptr<USBService> makeSimulatedUSBService(std::vector<std::shared_ptr<SimulatedMouse>> mice)
{
    return std::make_shared<SimulatedUSBService>(std::move(mice));
}

} // namespace kelmoth
