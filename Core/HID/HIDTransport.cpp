#include "Core/HID/HIDTransport.h"

#include "Core/HID/RazerProtocol.h"
#include "Core/HID/USBRazerDevice.h"

#include <algorithm>

namespace kelmoth {

namespace {

constexpr std::size_t readSize = 91;

/// One request and what was read back; none when a transfer failed.
std::optional<Data> exchange(std::span<const std::uint8_t> report, HIDDevice &device, Sleeper &sleeper,
                             std::uint32_t waitTimeUs)
{
    const ExchangeScope scope(device);
    if (scope.status() != 0 || device.setFeatureReport(report) != 0) {
        return std::nullopt;
    }
    sleeper.sleep(std::chrono::microseconds(waitTimeUs));
    Data response(readSize, 0);
    const auto read = device.getFeatureReport(response);
    if (read.status != 0) {
        return std::nullopt;
    }
    response.resize(std::min(read.length, readSize));
    return response;
}

} // namespace

std::optional<Data> transactViaHID(std::span<const std::uint8_t> report, HIDDevice &device, Sleeper &sleeper,
                                   std::uint32_t waitTimeUs)
{
    for (int attempt = 1; attempt <= transactAttempts; ++attempt) {
        auto response = exchange(report, device, sleeper, waitTimeUs);
        const auto status = response ? RazerProtocol::classify(*response, report) : ResponseStatus::noMatch;
        if (status == ResponseStatus::success) {
            return response;
        }
        if (status == ResponseStatus::rejected) {
            return std::nullopt;
        }
        sleeper.sleep(transactRetryPause);
    }
    return std::nullopt;
}

} // namespace kelmoth
