#include "Core/HID/HIDTransport.h"

#include <algorithm>
#include <optional>

namespace kelmoth {

namespace {

constexpr std::size_t readSize = 91;

/// One request and what was read back; none when a transfer failed, or a stop was requested in between.
std::optional<Data> exchange(std::span<const std::uint8_t> report, HIDDevice &device, Sleeper &sleeper,
                             std::uint32_t waitTimeUs, const std::stop_token &stop)
{
    const ExchangeScope scope(device);
    if (scope.status() != 0 || device.setFeatureReport(report) != 0) {
        return std::nullopt;
    }
    sleeper.sleep(std::chrono::microseconds(waitTimeUs));
    if (stop.stop_requested()) {
        return std::nullopt;
    }
    Data response(readSize, 0);
    const auto read = device.getFeatureReport(response);
    if (read.status != 0) {
        return std::nullopt;
    }
    response.resize(std::min(read.length, readSize));
    return response;
}

} // namespace

TransactResult transactViaHID(std::span<const std::uint8_t> report, HIDDevice &device, Sleeper &sleeper,
                              std::uint32_t waitTimeUs, const std::stop_token &stop)
{
    const auto attempt = [&] { return exchange(report, device, sleeper, waitTimeUs, stop); };
    return transactLoop(report, attempt, sleeper, stop);
}

} // namespace kelmoth
