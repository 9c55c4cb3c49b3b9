#pragma once

#include "Platform/DesktopSettings.h"

#include <QIcon>

namespace kelmoth {

/// The status item's picture: a mouse in one colour with a fine rim of the opposite one; dark on a light bar,
/// else light. On a bar of which nothing is known the rim is a full line, so that either stands out. `alpha`
/// is 0 to 1.
QIcon statusPicture(ColorScheme bar, double alpha);

/// Whether the desktop of this session keeps its bar dark in every scheme.
bool hasAlwaysDarkBar();

} // namespace kelmoth
