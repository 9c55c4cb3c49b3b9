#pragma once

class QQmlEngine;

namespace kelmoth {

/// Makes the modules Kelmoth.Views and Kelmoth.Components known to an engine. Before
/// qrc:/qt/qml/Kelmoth/Views/ContentView.qml is loaded.
void useViews(QQmlEngine &engine);

} // namespace kelmoth
