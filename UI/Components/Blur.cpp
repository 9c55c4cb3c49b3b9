#include "UI/Components/Blur.h"

#include <QColor>

#include <algorithm>
#include <array>
#include <cmath>

namespace kelmoth {
namespace {

/// A recursive filter of third order whose forward and backward run together are a Gaussian (Young and
/// van Vliet, 1995): each output sample is `gain` of the input and a share of the three samples before it.
struct Filter {
    float gain, one, two, three;

    explicit Filter(double sigma)
    {
        const double q =
            sigma >= 2.5 ? 0.98711 * sigma - 0.96330 : 3.97156 - 4.14554 * std::sqrt(1.0 - 0.26891 * sigma);
        const double b0 = 1.57825 + q * (2.44413 + q * (1.4281 + q * 0.422205));
        const double b1 = q * (2.44413 + q * (2.85619 + q * 1.26661)) / b0;
        const double b2 = -q * q * (1.4281 + q * 1.26661) / b0;
        const double b3 = q * q * q * 0.422205 / b0;
        gain = static_cast<float>(1.0 - (b1 + b2 + b3));
        one = static_cast<float>(b1);
        two = static_cast<float>(b2);
        three = static_cast<float>(b3);
    }
};

/// One run over `count` samples that lie `step` apart.
void runAlong(float *samples, int count, std::ptrdiff_t step, const Filter &filter)
{
    float one = *samples;
    float two = one;
    float three = one;
    for (int i = 0; i < count; ++i, samples += step) {
        const float value =
            filter.gain * *samples + filter.one * one + filter.two * two + filter.three * three;
        three = two;
        two = one;
        one = value;
        *samples = value;
    }
}

/// One run over all rows at once, down (`step` 1) or up (-1): neighbours in memory are worked on together.
void runAcross(Plane &plane, int step, const Filter &filter)
{
    const int first = step > 0 ? 0 : plane.height - 1;
    const auto before = [&](int n, int back) { return plane.row(first + step * std::max(n - back, 0)); };
    for (int n = 1; n < plane.height; ++n) {
        float *row = plane.row(first + step * n);
        const float *one = before(n, 1);
        const float *two = before(n, 2);
        const float *three = before(n, 3);
        for (int x = 0; x < plane.width; ++x) {
            row[x] =
                filter.gain * row[x] + filter.one * one[x] + filter.two * two[x] + filter.three * three[x];
        }
    }
}

/// The eight bits of each pixel that begin at `shift`.
void blurChannel(QImage &image, int shift, double sigma)
{
    Plane plane{image.width(), image.height(), {}};
    plane.samples.resize(static_cast<std::size_t>(plane.width) * static_cast<std::size_t>(plane.height));
    for (int y = 0; y < plane.height; ++y) {
        const auto *pixels = reinterpret_cast<const QRgb *>(image.constScanLine(y));
        std::transform(pixels, pixels + plane.width, plane.row(y),
                       [shift](QRgb pixel) { return static_cast<float>((pixel >> shift) & 0xFFU); });
    }
    blur(plane, sigma);
    for (int y = 0; y < plane.height; ++y) {
        auto *pixels = reinterpret_cast<QRgb *>(image.scanLine(y));
        const float *samples = plane.row(y);
        for (int x = 0; x < plane.width; ++x) {
            const auto value = static_cast<QRgb>(std::clamp(samples[x] + 0.5F, 0.0F, 255.0F));
            pixels[x] = (pixels[x] & ~(0xFFU << shift)) | (value << shift);
        }
    }
}

} // namespace

void blur(Plane &plane, double sigma)
{
    if (sigma < 0.5 || plane.width < 1 || plane.height < 1) {
        return;
    }
    const Filter filter(sigma);
    for (int y = 0; y < plane.height; ++y) {
        runAlong(plane.row(y), plane.width, 1, filter);
        runAlong(plane.row(y) + plane.width - 1, plane.width, -1, filter);
    }
    runAcross(plane, 1, filter);
    runAcross(plane, -1, filter);
}

QImage blurred(const QImage &image, double sigma)
{
    QImage result = image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    if (sigma < 0.5 || result.isNull()) {
        return result;
    }
    // A wide blur leaves nothing that a smaller picture would not hold.
    constexpr double enough = 3;
    int shrink = 1;
    while (sigma / (2 * shrink) >= enough) {
        shrink *= 2;
    }
    if (shrink > 1) {
        const QSize small((result.width() + shrink - 1) / shrink, (result.height() + shrink - 1) / shrink);
        result = result.scaled(small, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    }
    for (int shift = 0; shift < 32; shift += 8) {
        blurChannel(result, shift, sigma / shrink);
    }
    return shrink > 1 ? result.scaled(image.size(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation) : result;
}

Plane alphaOf(const QImage &image)
{
    const QImage mask = image.convertToFormat(QImage::Format_Alpha8);
    Plane plane{mask.width(), mask.height(), {}};
    plane.samples.resize(static_cast<std::size_t>(plane.width) * static_cast<std::size_t>(plane.height));
    for (int y = 0; y < plane.height; ++y) {
        const uchar *bytes = mask.constScanLine(y);
        std::transform(bytes, bytes + plane.width, plane.row(y),
                       [](uchar byte) { return static_cast<float>(byte) / 255.0F; });
    }
    return plane;
}

QImage tinted(const Plane &alpha, const QColor &color)
{
    QImage image(alpha.width, alpha.height, QImage::Format_ARGB32_Premultiplied);
    const float opacity = color.alphaF();
    std::array<QRgb, 256> shades{};
    for (std::size_t i = 0; i < shades.size(); ++i) {
        shades[i] = qPremultiply(qRgba(color.red(), color.green(), color.blue(), static_cast<int>(i)));
    }
    for (int y = 0; y < alpha.height; ++y) {
        auto *pixels = reinterpret_cast<QRgb *>(image.scanLine(y));
        std::transform(alpha.row(y), alpha.row(y) + alpha.width, pixels, [&](float sample) {
            return shades[static_cast<std::size_t>(
                std::lround(std::clamp(sample * opacity, 0.0F, 1.0F) * 255.0F))];
        });
    }
    return image;
}

} // namespace kelmoth
