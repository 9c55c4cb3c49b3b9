#pragma once

#include <QImage>

#include <vector>

namespace kelmoth {

/// Samples of 0 to 1 in rows.
struct Plane {
    int width = 0;
    int height = 0;
    std::vector<float> samples;

    float *row(int y) { return samples.data() + static_cast<std::ptrdiff_t>(y) * width; }
    const float *row(int y) const { return samples.data() + static_cast<std::ptrdiff_t>(y) * width; }
};

/// Blurs with a Gaussian of standard deviation `sigma`, in samples; what lies outside is taken to be like the
/// edge. The cost does not grow with `sigma`; below half a sample nothing is done.
void blur(Plane &plane, double sigma);

/// The same for a picture; the result has the format ARGB32_Premultiplied.
QImage blurred(const QImage &image, double sigma);

/// The opacity of a picture as a plane, and a picture of one colour with that opacity.
Plane alphaOf(const QImage &image);
QImage tinted(const Plane &alpha, const QColor &color);

} // namespace kelmoth
