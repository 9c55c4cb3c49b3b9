#pragma once

#include <string>

namespace kelmoth {

/// How a change of one setting ended. A plain value.
struct WriteResult {
    enum class Kind {
        done,      ///< the mouse accepted it, and the published settings hold it
        noDevice,  ///< no mouse that can be configured is chosen
        invalid,   ///< the mouse has no such setting, or its model no such value
        busy,      ///< the mouse is being read or written
        refused,   ///< the mouse refused it, or holds something else now
        noAnswer,  ///< the mouse did not answer
        unplugged, ///< the mouse has gone, or another is the chosen one
    };
    Kind kind = Kind::done;
    /// Message for the panel's user, an English translation key; empty: none.
    // NOLINTNEXTLINE(readability-redundant-member-init): lets initializers omit it
    std::string message = {};

    bool isDone() const { return kind == Kind::done; }
};

} // namespace kelmoth
