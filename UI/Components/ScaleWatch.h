#pragma once

#include <QQuickItem>

namespace kelmoth {

/// Calls `update` of every picture item below an item whose scale or turn changes, which tells nobody below.
/// From now on watches `item` and all that it lies in, each once however many pictures there are. Main
/// thread.
void watchScales(QQuickItem *item);

} // namespace kelmoth
