#pragma once

#include "UI/Views/ContentModel.h"

#include <QQmlEngine>

// The models as QML types: the types of the properties `model`. QML makes none of them; it gets ContentModel
// from the window. The models' own headers need no QML.
namespace kelmoth {

struct AboutModelElement {
    Q_GADGET
    QML_FOREIGN(kelmoth::AboutModel) // in full, like the others: for qmllint
    QML_NAMED_ELEMENT(AboutModel)
    QML_UNCREATABLE("the program makes it")
};

struct ButtonsTabModelElement {
    Q_GADGET
    QML_FOREIGN(kelmoth::ButtonsTabModel)
    QML_NAMED_ELEMENT(ButtonsTabModel)
    QML_UNCREATABLE("the program makes it")
};

struct ContentModelElement {
    Q_GADGET
    QML_FOREIGN(kelmoth::ContentModel)
    QML_NAMED_ELEMENT(ContentModel)
    QML_UNCREATABLE("the program makes it")
};

struct DPITabModelElement {
    Q_GADGET
    QML_FOREIGN(kelmoth::DPITabModel)
    QML_NAMED_ELEMENT(DPITabModel)
    QML_UNCREATABLE("the program makes it")
};

struct RGBTabModelElement {
    Q_GADGET
    QML_FOREIGN(kelmoth::RGBTabModel)
    QML_NAMED_ELEMENT(RGBTabModel)
    QML_UNCREATABLE("the program makes it")
};

struct RowsModelElement {
    Q_GADGET
    QML_FOREIGN(kelmoth::RowsModel)
    QML_NAMED_ELEMENT(RowsModel)
    QML_UNCREATABLE("the program makes it")
};

struct SettingsTabModelElement {
    Q_GADGET
    QML_FOREIGN(kelmoth::SettingsTabModel)
    QML_NAMED_ELEMENT(SettingsTabModel)
    QML_UNCREATABLE("the program makes it")
};

struct TabModelElement {
    Q_GADGET
    QML_FOREIGN(kelmoth::TabModel)
    QML_NAMED_ELEMENT(TabModel)
    QML_UNCREATABLE("the program makes it")
};

struct ToastModelElement {
    Q_GADGET
    QML_FOREIGN(kelmoth::ToastModel)
    QML_NAMED_ELEMENT(ToastModel)
    QML_UNCREATABLE("the program makes it")
};

} // namespace kelmoth
