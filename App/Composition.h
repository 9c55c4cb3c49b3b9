#pragma once

#include "App/Arguments.h"
#include "Platform/Linux/AutostartLoginItem.h"
#include "Platform/Platform.h"
#include "Platform/Qt/PopoverScreen.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace kelmoth {

/// What the program runs on.
struct Composition {
    Platform platform;
    std::shared_ptr<const PopoverScreen> screen;
};

/// This system, with simulated mice in place of the attached ones where the arguments ask for them.
/// `firstArgument` is the word that the program was started by. None when the list of simulated mice is
/// wrong; `failure` then says how. `openLoginItemsSettings` is for a program that may start no other. Main
/// thread, with the application object.
std::optional<Composition> compose(const Arguments &arguments, const char *firstArgument,
                                   std::string *failure,
                                   std::function<void()> openLoginItemsSettings = openAutostartSettings);

/// The user's session, joined; its bus greets whoever joins it, which is waited for. Main thread.
std::shared_ptr<UserSession> joinSession();

} // namespace kelmoth
