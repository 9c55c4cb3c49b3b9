#include "UI/Views/PanelWindow.h"

#include "UI/Views/Views.h"

#include <QQmlEngine>

namespace kelmoth {

void PanelWindow::chooseRenderer()
{
    if (!qEnvironmentVariableIsSet("QT_QUICK_BACKEND") && !qEnvironmentVariableIsSet("QSG_RHI_BACKEND")) {
        setGraphicsApi(QSGRendererInterface::Software);
    }
}

PanelWindow::PanelWindow(ContentModel &model, PanelTranslator &translator)
{
    useViews(*engine());
    connect(&translator, &PanelTranslator::retranslate, engine(), &QQmlEngine::retranslate);
    setFlags(Qt::FramelessWindowHint);
    setTitle(QStringLiteral("Kelmoth"));
    setResizeMode(SizeRootObjectToView);
    setMinimumSize(panelSize);
    setMaximumSize(panelSize);
    setInitialProperties({{QStringLiteral("model"), QVariant::fromValue(&model)}});
    setSource(QUrl(QStringLiteral("qrc:/qt/qml/Kelmoth/Views/ContentView.qml")));
}

} // namespace kelmoth
