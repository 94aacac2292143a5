// SPDX-License-Identifier: MIT
#include "camera.h"

#include <algorithm>
#include <cmath>

namespace
{

// How much narrower x and y become so that pixels are square.
TVector2 Aspect(int width, int height)
{
    if (width == 0 || height == 0)
        return {1.0, 1.0};
    if (width > height)
        return {static_cast<double>(height) / width, 1.0};
    return {1.0, static_cast<double>(width) / height};
}

// The driver keeps its matrices in single precision, where what is far larger or smaller gets lost.
constexpr double LARGEST_USABLE = 1e30;

bool Is_Usable_Scale(double scale)
{
    return std::fabs(scale) <= LARGEST_USABLE && std::fabs(scale) >= 1.0 / LARGEST_USABLE;
}

// The whole part. What no int can hold, or is no number, lies far outside the viewport.
int Truncated(double value)
{
    constexpr double OUTSIDE = 1e9;
    return static_cast<int>(std::isnan(value) ? OUTSIDE : std::clamp(value, -OUTSIDE, OUTSIDE));
}

} // namespace

bool TCamera::Is_Inside_Viewport(int x, int y) const
{
    return x >= 0 && x < viewport[2] && y >= 0 && y < viewport[3];
}

void TCamera::To_Viewport(int* x, int* y) const
{
    *x = *x - viewport[0];
    *y = viewport[1] + viewport[3] - *y;
}

void TCamera::Keep_Pixels_Square(int width, int height)
{
    const TVector2 aspect = Aspect(width, height);
    if (aspect.x < 1.0)
        projection(0) = aspect.x * projection(5);
    else
        projection(5) = aspect.y * projection(0);
}

void TCamera::Fit(const TVector3& minimum, const TVector3& maximum)
{
    TVector3 extent = maximum - minimum;
    for (int i = 0; i < 3; ++i)
        extent(i) = std::max(extent(i), 1e-6);
    const TVector3 sum = minimum + maximum;
    if (!(extent.Length() <= LARGEST_USABLE && sum.Length() <= LARGEST_USABLE))
        return;

    projection(8) = 0.0;
    projection(9) = 0.0;
    projection(10) = -0.25 / extent.z;
    projection(14) = (sum.z / 2.0) / (4.0 * extent.z);
    Show_Window(sum.x, sum.y, std::max(extent.x, extent.y));
}

bool TCamera::Zoom_To_Rect(const TVector2& a, const TVector2& b)
{
    const double width = std::fabs(b.x - a.x);
    const double height = std::fabs(b.y - a.y);
    if (!(width >= 1e-6 && height >= 1e-6))
        return false;
    Show_Window(a.x + b.x, a.y + b.y, std::max(width, height));
    return true;
}

void TCamera::Zoom(double factor)
{
    for (const int scale : {0, 5, 10})
        if (!Is_Usable_Scale(projection(scale) * factor))
            return;
    for (int column = 0; column < 16; column += 4)
        for (int row = 0; row < 3; ++row)
            projection(column + row) *= factor;
}

double TCamera::Click_Zoom_Factor(int y, int viewport_height)
{
    const int half_height = viewport_height / 2;
    if (half_height == 0 || y == half_height)
        return 1.0;
    return ((half_height - y) * 0.5 + half_height) / half_height;
}

void TCamera::Pan(int dx, int dy, int half_width, int half_height)
{
    if (half_width == 0 || half_height == 0)
        return;
    projection(12) += static_cast<double>(dx) / half_width;
    projection(13) += static_cast<double>(dy) / half_height;
}

void TCamera::Rotate_3d(double dx, double dy)
{
    const TVector3 axis(-dy, dx, 0.0);
    Rotate_About_Eye_Axis(axis, 0.02 * (1.0 + std::log(axis.Length())));
}

bool TCamera::Rotate_2d(const TVector2& a, const TVector2& b)
{
    TVector3 from(a.x, a.y, 0.0);
    TVector3 to(b.x, b.y, 0.0);
    if (!(from.Length() > 5.0 && to.Length() > 5.0))
        return false;
    const double cosine = from.Normal() ^ to.Normal();
    const TVector3 axis = from * to;
    if (!(cosine > 0.0 && cosine < 1.0 && axis.Length() > 1e-8))
        return false;
    Rotate_About_Eye_Axis(axis, std::acos(cosine));
    return true;
}

TVector3 TCamera::Rotation_Center(double depth) const
{
    const TMat4& p = projection;
    TVector3 center(p(12) / p(0), p(13) / p(5), p(14) / p(10));
    if (depth <= BACKGROUND_DEPTH)
        center.z = (1.0 - p(11)) * (0.5 - (depth - 0.5 * p(14))) / (0.5 * p(10));
    return model * center;
}

void TCamera::Recenter(const TVector3& rotation_center)
{
    TMat4 to_eye(model);
    to_eye.Transpose();
    const TVector3 eye = to_eye * rotation_center;
    projection(12) = projection(0) * eye.x;
    projection(13) = projection(5) * eye.y;
    projection(14) = projection(10) * eye.z;
}

TVector2 TCamera::Eye_Plane_Point(int x, int y) const
{
    const int half_width = viewport[2] / 2;
    const int half_height = viewport[3] / 2;
    if (half_width == 0 || half_height == 0)
        return {};
    const int center_x = Truncated(half_width * (1.0 + projection(12)));
    const int center_y = Truncated(half_height * (1.0 + projection(13)));
    return {(x - center_x) * (1.0 / projection(0)) / half_width,
            (y - center_y) * (1.0 / projection(5)) / half_height};
}

TVector3 TCamera::Model_Point(int x, int y, double depth) const
{
    const TVector2 plane = Eye_Plane_Point(x, y);
    const double z = (depth - 0.5 * projection(14) - 0.5) / (0.5 * projection(10));
    return model * TVector3(plane.x, plane.y, z);
}

void TCamera::Raster_Position(const TVector3& point, int* x, int* y) const
{
    TMat4 to_eye(model);
    to_eye.Transpose();
    const TVector3 eye = to_eye * point;
    const int half_width = viewport[2] / 2;
    const int half_height = viewport[3] / 2;
    *x = Truncated((1.0 + projection(12) + projection(0) * eye.x) * half_width) - viewport[0];
    *y = viewport[3] - Truncated((1.0 + projection(13) + projection(5) * eye.y) * half_height) + viewport[1];
}

// Puts the square window of side `size` whose opposite corners sum up to (x_sum, y_sum) into the viewport.
void TCamera::Show_Window(double x_sum, double y_sum, double size)
{
    const TVector2 aspect = Aspect(viewport[2], viewport[3]);
    for (const int k : {1, 2, 4, 6})
        projection(k) = 0.0;
    projection(0) = aspect.x * 2.0 / size;
    projection(5) = aspect.y * 2.0 / size;
    projection(12) = -x_sum / size * aspect.x;
    projection(13) = -y_sum / size * aspect.y;
}

void TCamera::Rotate_About_Eye_Axis(const TVector3& axis, double angle)
{
    TVector3 model_axis = model * axis;
    TMat4 rotation;
    rotation.Rotate(model_axis.Normal(), angle);
    model *= rotation;
}
