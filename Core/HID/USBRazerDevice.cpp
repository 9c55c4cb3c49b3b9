#include "Core/HID/USBRazerDevice.h"

#include "Core/HID/RazerProtocol.h"
#include "Platform/Log.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace kelmoth {

USBRazerDevice::USBRazerDevice(std::shared_ptr<USBService> service, std::shared_ptr<Sleeper> sleeper,
                               std::uint16_t vendorID, std::uint16_t productID, std::uint16_t reportIndex,
                               std::stop_token stop)
    : m_service(std::move(service)),
      m_sleeper(std::move(sleeper)),
      m_vendorID(vendorID),
      m_productID(productID),
      m_reportIndex(reportIndex),
      m_stop(std::move(stop))
{
}

USBRazerDevice::~USBRazerDevice()
{
    if (m_deviceInterface) {
        m_deviceInterface->close();
    }
}

bool USBRazerDevice::open()
{
    m_deviceInterface = findInterface();
    if (!m_deviceInterface) {
        log("❌ Failed to open USB device VID:0x%04X PID:0x%04X", m_vendorID, m_productID);
        return false;
    }
    if (const int status = m_deviceInterface->open(m_reportIndex); status != 0) {
        log("⚠️ USBDeviceOpen: 0x%X (device may be in use)", static_cast<unsigned>(status));
    }
    log("✅ USB device opened: VID:0x%04X PID:0x%04X reportIndex:0x%02X", m_vendorID, m_productID,
        m_reportIndex);
    return true;
}

std::unique_ptr<USBDeviceInterface> USBRazerDevice::findInterface() const
{
    const auto matches = m_service->matchingDevices(m_vendorID, m_productID);
    if (matches.status != 0) {
        log("❌ IOServiceGetMatchingServices failed: 0x%X", static_cast<unsigned>(matches.status));
        return nullptr;
    }
    if (matches.devices.empty()) {
        log("❌ No USB device found");
        return nullptr;
    }
    auto result = matches.devices.front()->createInterface();
    if (result.status != 0) {
        log("❌ IOCreatePlugInInterfaceForService failed: 0x%X", static_cast<unsigned>(result.status));
        return nullptr;
    }
    if (!result.interface) {
        log("❌ QueryInterface for device failed");
    }
    return std::move(result.interface);
}

int USBRazerDevice::request(std::uint8_t bmRequestType, std::uint8_t bRequest, std::span<std::uint8_t> data)
{
    if (!m_deviceInterface) {
        return usbStatusNotOpen;
    }
    return m_deviceInterface->deviceRequest(
        {bmRequestType, bRequest, hidClassRequest::featureReport, m_reportIndex, data});
}

bool USBRazerDevice::sendRazerReport(std::span<const std::uint8_t> report)
{
    Data buffer(report.begin(), report.end());
    buffer.resize(std::max(buffer.size(), RazerProtocol::reportSize), 0);
    if (const int status = request(hidClassRequest::typeOut, hidClassRequest::setReport, buffer);
        status != 0) {
        log("❌ USB SET_REPORT failed: 0x%X", static_cast<unsigned>(status));
        return false;
    }
    log("📤 USB Report sent: %s", RazerProtocol::hexPrefix(report).c_str());
    return true;
}

std::optional<Data> USBRazerDevice::sendReportAndGetResponse(std::span<const std::uint8_t> report,
                                                             std::uint32_t waitTimeUs)
{
    std::optional<ExchangeScope> exchange;
    if (m_deviceInterface) {
        exchange.emplace(*m_deviceInterface);
        if (exchange->status() != 0) {
            log("❌ USB SET_REPORT failed: 0x%X", static_cast<unsigned>(exchange->status()));
            return std::nullopt;
        }
    }
    if (!sendRazerReport(report)) {
        return std::nullopt;
    }
    m_sleeper->sleep(std::chrono::microseconds(waitTimeUs));
    if (m_stop.stop_requested()) {
        return std::nullopt;
    }
    Data response(RazerProtocol::reportSize, 0);
    if (const int status = request(hidClassRequest::typeIn, hidClassRequest::getReport, response);
        status != 0) {
        log("❌ USB GET_REPORT failed: 0x%X", static_cast<unsigned>(status));
        return std::nullopt;
    }
    log("📥 USB Response: %s", RazerProtocol::hexPrefix(response).c_str());
    return response;
}

TransactResult USBRazerDevice::transact(std::span<const std::uint8_t> report, std::uint32_t waitTimeUs)
{
    using namespace RazerProtocol;
    const auto byteAt = [&report](std::size_t at) { return at < report.size() ? report[at] : 0; };
    const auto commandClass = static_cast<unsigned>(byteAt(offset::commandClass));
    const auto commandID = static_cast<unsigned>(byteAt(offset::commandID));
    const auto exchange = [&] { return sendReportAndGetResponse(report, waitTimeUs); };
    const auto logUnanswered = [&](int attempt) {
        log("⚠️ USB command 0x%02X/0x%02X: no matching response (attempt %d/%d)", commandClass, commandID,
            attempt, transactAttempts);
    };
    auto result = transactLoop(report, exchange, *m_sleeper, m_stop, logUnanswered);
    if (result.kind == TransactResult::Kind::rejected) {
        log("❌ USB command 0x%02X/0x%02X rejected (status 0x%02X)", commandClass, commandID,
            static_cast<unsigned>(result.response[offset::status]));
    }
    return result;
}

} // namespace kelmoth
