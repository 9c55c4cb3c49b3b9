#pragma once

#include "Core/Device/RawValues.h"

#include <nlohmann/json.hpp>

#include <string>

namespace kelmoth {

/// Exit status.
enum class ExitStatus {
    done = 0,
    failed = 1,       ///< the mouse refused or did not answer, or the output could not be written
    usage = 2,        ///< invalid arguments; nothing was done
    noMouse = 3,      ///< no mouse that can be configured
    noPermission = 4, ///< the user has no permission to open the mouse
    notSaved = 5,     ///< the mouse accepted the change, but it could not be saved
};

/// The failure of a command, for the user and for the caller of the process.
struct Failure {
    enum class Code { failed, usage, noMouse, noPermission, refused, noAnswer, unplugged, notSaved };
    Code code = Code::failed;
    std::string message; ///< one English line or more
    // NOLINTNEXTLINE(readability-redundant-member-init): lets initializers omit it
    std::string remedy = {}; ///< what the user can do; empty: unknown

    /// The log of requests and answers is useful.
    bool isOfMouse() const
    {
        return code == Code::refused || code == Code::noAnswer || code == Code::unplugged;
    }
};

/// The machine-readable codes, each with its exit status.
template <> struct RawValues<Failure::Code> {
    struct Row {
        std::string_view rawValue;
        ExitStatus status;
    };
    static constexpr std::array table{
        Row{"failed", ExitStatus::failed},    Row{"usage", ExitStatus::usage},
        Row{"no-mouse", ExitStatus::noMouse}, Row{"no-permission", ExitStatus::noPermission},
        Row{"refused", ExitStatus::failed},   Row{"no-answer", ExitStatus::failed},
        Row{"unplugged", ExitStatus::failed}, Row{"not-saved", ExitStatus::notSaved},
    };
};

/// The exit status of the failure.
inline ExitStatus statusOf(const Failure &failure)
{
    return tableRow(failure.code).status;
}

/// The version of all JSON output.
inline constexpr int schema = 1;

/// The member "error" of JSON output.
inline nlohmann::ordered_json errorJSON(const Failure &failure)
{
    nlohmann::ordered_json json{{"code", rawValue(failure.code)}, {"message", failure.message}};
    json["remedy"] =
        failure.remedy.empty() ? nlohmann::ordered_json() : nlohmann::ordered_json(failure.remedy);
    return json;
}

} // namespace kelmoth
