#pragma once

#include "Platform/DesktopSettings.h"

#include <QIcon>

namespace kelmoth {

/// The status item's picture: a mouse in one colour with a thin rim in the opposite one; dark on a light bar,
/// else light. For a bar of unknown colour the rim is a full line, so that one of them is visible. `alpha` is
/// 0 to 1.
QIcon statusPicture(ColorScheme bar, double alpha);

/// Whether the bar of this session's desktop is dark in every scheme.
bool hasAlwaysDarkBar();

} // namespace kelmoth
