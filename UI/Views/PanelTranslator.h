#pragma once

#include "Core/Services/Preferences.h"

#include <QTranslator>

namespace kelmoth {

/// Gives the panel its texts: whatever is asked for, in whatever context, is looked up as a key of the string
/// tables in the language of the moment. Installed once in the application; main thread.
class PanelTranslator : public QTranslator {
    Q_OBJECT

public:
    explicit PanelTranslator(Preferences &preferences, QObject *parent = nullptr);

    QString translate(const char *context, const char *sourceText, const char *disambiguation,
                      int n) const override;
    bool isEmpty() const override { return false; }

Q_SIGNALS:
    /// What has been translated so far is to be translated again (QQmlEngine::retranslate).
    void retranslate();
};

} // namespace kelmoth
