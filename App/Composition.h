#pragma once

#include "App/Arguments.h"
#include "Platform/Platform.h"
#include "Platform/Qt/PopoverScreen.h"

#include <memory>
#include <optional>
#include <string>

namespace kelmoth {

/// What the program runs on.
struct Composition {
    Platform platform;
    std::shared_ptr<const PopoverScreen> screen;
};

/// This system, with simulated mice in place of the attached ones where the arguments ask for them, and with
/// `loginItem` for its start at login. None when the list of simulated mice is wrong; `failure` then says
/// how. Main thread, with the application object.
std::optional<Composition> compose(const Arguments &arguments, std::shared_ptr<LoginItemService> loginItem,
                                   std::string *failure);

/// The user's session, joined; its bus greets whoever joins it, which is waited for. Main thread.
std::shared_ptr<UserSession> joinSession();

} // namespace kelmoth
