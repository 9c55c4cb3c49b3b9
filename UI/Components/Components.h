#pragma once

class QQmlEngine;

namespace kelmoth {

/// Makes the module Kelmoth.Components known to an engine. Before the first QML file that imports it is
/// loaded.
void useComponents(QQmlEngine &engine);

} // namespace kelmoth
