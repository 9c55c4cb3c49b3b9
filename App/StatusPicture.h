#pragma once

#include <QIcon>

namespace kelmoth {

/// The status item's picture: a mouse in one colour, with a fine rim of the opposite one, since the colour of
/// the bar behind it is not known. Light for a dark bar. `alpha` is 0 to 1.
QIcon statusPicture(bool isForDarkBar, double alpha);

/// Whether the desktop of this session keeps its bar dark in every scheme.
bool hasAlwaysDarkBar();

} // namespace kelmoth
