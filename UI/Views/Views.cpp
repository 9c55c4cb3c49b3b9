#include "UI/Views/Views.h"

#include "UI/Components/Components.h"

// Written by the build, and dropped by the linker where nobody calls it.
// NOLINTNEXTLINE(misc-use-internal-linkage,readability-identifier-naming): the build's own name
void qml_register_types_Kelmoth_Views();

namespace kelmoth {

void useViews(QQmlEngine &engine)
{
    useComponents(engine);
    qml_register_types_Kelmoth_Views();
}

} // namespace kelmoth
