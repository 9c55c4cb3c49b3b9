#include "UI/Components/Picture.h"

#include <QCache>

#include <algorithm>
#include <limits>

namespace kelmoth {

Picture cachedPicture(const QByteArray &key, const std::function<Picture()> &paint)
{
    // Bytes. Items hold on to what they show; fading colours leave pictures behind that nobody needs again.
    constexpr int capacity = 3 << 20;
    static QCache<QByteArray, Picture> cache(capacity);
    if (const Picture *known = cache.object(key)) {
        return *known;
    }
    Picture picture = paint();
    const auto cost =
        static_cast<int>(std::min<qsizetype>(picture.image.sizeInBytes(), std::numeric_limits<int>::max()));
    cache.insert(key, new Picture(picture), cost);
    return picture;
}

double reachOfBlur(double radius)
{
    return radius * 3.5; // standard deviations, where less than a shade is left
}

} // namespace kelmoth
