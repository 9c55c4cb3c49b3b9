#include "UI/Views/PanelTranslator.h"

#include "Core/Services/L10n.h"
#include "UI/Views/Texts.h"

namespace kelmoth {

PanelTranslator::PanelTranslator(Preferences &preferences, QObject *parent) : QTranslator(parent)
{
    connect(&preferences, &Preferences::languageModeChanged, this, &PanelTranslator::retranslate);
}

QString PanelTranslator::translate(const char *, const char *sourceText, const char *, int) const
{
    return sourceText == nullptr ? QString() : panelText(L10n::text(sourceText));
}

} // namespace kelmoth
