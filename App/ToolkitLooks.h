#pragma once

#include "Core/Services/Appearance.h"

namespace kelmoth {

/// Applies the preferred scheme to what the toolkit draws, the status item's menu; the desktop's scheme
/// without a preference. Main thread, with the application object.
void applyToToolkit(Appearance::Mode mode);

} // namespace kelmoth
