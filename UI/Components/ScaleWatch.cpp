#include "UI/Components/ScaleWatch.h"

#include "UI/Components/PictureItem.h"

#include <QSet>

namespace kelmoth {

namespace {

QSet<const QObject *> &watched()
{
    static QSet<const QObject *> items;
    return items;
}

void updatePictures(QQuickItem *item)
{
    if (auto *picture = qobject_cast<PictureItem *>(item)) {
        picture->update();
    }
    const auto children = item->childItems();
    for (auto *child : children) {
        updatePictures(child);
    }
}

} // namespace

void watchScales(QQuickItem *item)
{
    // What a watched item lies in is watched as well: it says when it moves elsewhere.
    for (; item != nullptr && !watched().contains(item); item = item->parentItem()) {
        watched().insert(item);
        const auto update = [item] { updatePictures(item); };
        QObject::connect(item, &QQuickItem::scaleChanged, item, update);
        QObject::connect(item, &QQuickItem::rotationChanged, item, update);
        QObject::connect(item, &QQuickItem::parentChanged, item, &watchScales);
        QObject::connect(item, &QObject::destroyed, [](QObject *gone) { watched().remove(gone); });
    }
}

} // namespace kelmoth
