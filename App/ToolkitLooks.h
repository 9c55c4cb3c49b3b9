#pragma once

#include "Core/Services/Appearance.h"

namespace kelmoth {

/// Gives what the toolkit itself draws, the status item's menu, the scheme that the user prefers; the
/// desktop's own when no preference names one. Main thread, with the application object.
void applyToToolkit(Appearance::Mode mode);

} // namespace kelmoth
