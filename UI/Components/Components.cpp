#include "UI/Components/Components.h"

#include "UI/Components/Operable.h"

#include <QQmlEngine>

// Written by the build, and dropped by the linker where nobody calls it.
// NOLINTNEXTLINE(misc-use-internal-linkage,readability-identifier-naming): the build's own name
extern void qml_register_types_Kelmoth_Components();

namespace kelmoth {

void useComponents(QQmlEngine &engine)
{
    qml_register_types_Kelmoth_Components();
    Operable::announce();
    engine.addImportPath(QStringLiteral("qrc:/qt/qml"));
}

} // namespace kelmoth
