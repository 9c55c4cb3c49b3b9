#pragma once

#include "App/Arguments.h"
#include "Platform/Platform.h"
#include "Platform/Qt/PopoverScreen.h"

#include <memory>
#include <optional>
#include <string>

namespace kelmoth {

/// The program's platform and session.
struct Composition {
    Platform platform;
    std::shared_ptr<const PopoverScreen> screen;
};

/// Composes this system's services with `loginItem`, and with simulated mice if the arguments list any. None
/// when that list is invalid, with the reason in `failure`. Main thread, with the application object.
std::optional<Composition> compose(const Arguments &arguments, std::shared_ptr<LoginItemService> loginItem,
                                   std::string *failure);

/// Joins the user's session. Blocks for the bus's greeting. Main thread.
std::shared_ptr<UserSession> joinSession();

} // namespace kelmoth
