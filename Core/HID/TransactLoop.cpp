#include "Core/HID/TransactLoop.h"

#include "Core/HID/RazerProtocol.h"

#include <utility>

namespace kelmoth {

TransactResult transactLoop(std::span<const std::uint8_t> request,
                            const std::function<std::optional<Data>()> &exchange, Sleeper &sleeper,
                            const std::stop_token &stop, const std::function<void(int)> &unanswered)
{
    for (int attempt = 1; attempt <= transactAttempts && !stop.stop_requested(); ++attempt) {
        auto response = exchange();
        switch (response ? RazerProtocol::classify(*response, request) : ResponseStatus::noMatch) {
        case ResponseStatus::success:
            return {TransactResult::Kind::success, *std::move(response)};
        case ResponseStatus::rejected:
            return {TransactResult::Kind::rejected, *std::move(response)};
        case ResponseStatus::noMatch:
            break;
        }
        if (stop.stop_requested()) {
            break;
        }
        if (unanswered) {
            unanswered(attempt);
        }
        sleeper.sleep(transactRetryPause);
    }
    return {};
}

} // namespace kelmoth
