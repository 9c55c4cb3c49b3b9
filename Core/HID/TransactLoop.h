#pragma once

#include "Core/Device/Types.h"
#include "Platform/Sleeper.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <stop_token>

namespace kelmoth {

/// How often a report is sent before it counts as unanswered, and the pause after each failed attempt; the
/// same on both paths to the mouse.
inline constexpr int transactAttempts = 5;
inline constexpr std::chrono::milliseconds transactRetryPause{10};

/// The outcome of one transaction.
struct TransactResult {
    enum class Kind {
        success,    ///< `response` holds the matching answer
        rejected,   ///< the mouse answered with a failure status, which `response` holds
        noResponse, ///< no attempt got a matching answer, or a stop was requested
    };
    Kind kind = Kind::noResponse;
    Data response; ///< empty without an answer
};

/// Sends a request until it is answered: at most five attempts, 10 ms apart. `exchange` makes one attempt and
/// returns the answer, none when a transfer failed. Failed transfers and non-matching answers use up an
/// attempt; a rejection is final. `unanswered` is called with the number of each failed attempt, from 1. No
/// attempt starts after a stop request. Blocks; transfer thread.
TransactResult transactLoop(std::span<const std::uint8_t> request,
                            const std::function<std::optional<Data>()> &exchange, Sleeper &sleeper,
                            const std::stop_token &stop, const std::function<void(int)> &unanswered = {});

} // namespace kelmoth
