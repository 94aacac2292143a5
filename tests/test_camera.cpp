// SPDX-License-Identifier: MIT
// The matrix and the camera made of it, by numbers.
#include "camera.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numeric>
#include <random>

namespace
{

const double PI = std::acos(-1.0);

TMat4 Counted() // elements 1 to 16
{
    TMat4 m;
    std::iota(m.Data(), m.Data() + 16, 1.0);
    return m;
}

TCamera Camera(int width, int height)
{
    TCamera camera;
    camera.viewport[2] = width;
    camera.viewport[3] = height;
    return camera;
}

/// A camera that has seen some use: fitted, turned, panned and zoomed.
TCamera Used_Camera(std::mt19937& random, int width = 640, int height = 480)
{
    std::uniform_real_distribution<double> number(-1.0, 1.0);
    TCamera camera = Camera(width, height);
    TVector3 axis(number(random), 0.3, number(random));
    camera.model.Rotate(axis.Normal(), number(random));
    camera.Fit({-500, -400, -300}, {500, 400 + 100 * number(random), 300});
    camera.Pan(static_cast<int>(50 * number(random)), 20, width / 2, height / 2);
    camera.Zoom(1.0 + 0.5 * number(random));
    return camera;
}

TVector3 Eye(const TCamera& camera, const TVector3& model_point)
{
    TMat4 to_eye(camera.model);
    to_eye.Transpose();
    return to_eye * model_point;
}

/// Normalised device coordinates of a model point.
TVector3 Device(const TCamera& camera, const TVector3& model_point)
{
    const TVector3 eye = Eye(camera, model_point);
    const TMat4& p = camera.projection;
    return {p(0) * eye.x + p(12), p(5) * eye.y + p(13), p(10) * eye.z + p(14)};
}

} // namespace

TEST(Mat4, ReadsItsElementsRowByRow)
{
    TMat4 m = Counted();
    EXPECT_EQ(Length(m * TVector3(1, 2, 3) - TVector3(18, 46, 74)), 0.0); // moved, not divided by w
    m.Transpose();
    for (int i = 0; i < 16; ++i)
        EXPECT_EQ(m(i), 1 + i / 4 + 4 * (i % 4)) << i;
    m.Normal();
    for (int row = 0; row < 12; row += 4)
        EXPECT_NEAR(std::hypot(m(row), m(row + 1), m(row + 2)), 1.0, 1e-15);
    EXPECT_EQ(m(3) + m(7) + m(11) + m(13), 13.0 + 14.0 + 15.0 + 8.0);

    TMat4 shift;
    shift(3) = 10.0;
    m = Counted();
    const TMat4 returned = m *= shift; // row 0 gains ten times row 3
    for (int i = 0; i < 16; ++i)
        EXPECT_EQ(returned(i), i + 1 + (i < 4 ? 10 * (i + 13) : 0)) << i;
    const TMat4& same = m;
    m *= same;
    EXPECT_EQ(m(0), 131.0);
    EXPECT_EQ((shift * Counted())(3), 14.0); // column 3 gains ten times column 0
}

TEST(Mat4, RotatesAgainstTheRightHand)
{
    TMat4 oblique; // a third of a turn about the diagonal takes z to y
    oblique.Rotate(TVector3(1, 1, 1).Normal(), 2 * PI / 3);
    EXPECT_NEAR(Length(oblique * TVector3(1, 2, 3) - TVector3(2, 3, 1)), 0.0, 1e-14);
    TMat4 euler, turns;
    euler.Rotate(0.3, 0.5, 0.7);
    for (const auto& [axis, angle] : {std::pair(TVector3(0, 0, 1), 0.5), {{1, 0, 0}, 0.3}, {{0, 0, 1}, 0.7}})
        turns.Rotate(axis, angle);
    for (int i = 0; i < 16; ++i)
        EXPECT_NEAR(euler(i), turns(i), 1e-15) << "element " << i;
}

TEST(Camera, FitFillsTheSmallerSide)
{
    const struct
    {
        int width, height;
        TVector3 minimum, maximum;
    } rows[] = {{800, 600, {100, 200, -50}, {500, 300, 150}},
                {600, 800, {100, 200, -50}, {500, 300, 150}},
                {1001, 333, {0, 0, 0}, {0.001, 4000, 1}},
                {800, 600, {7, 7, 7}, {7, 7, 7}}};
    for (const auto& row : rows) {
        TCamera camera = Camera(row.width, row.height);
        camera.Fit(row.minimum, row.maximum);
        const TVector3 extent = row.maximum - row.minimum;
        const double larger = std::max({extent.x, extent.y, 1e-6});
        const double filled = std::min(row.width, row.height);
        EXPECT_NEAR(camera.projection(0) * larger * row.width / 2, filled, 1e-9);
        EXPECT_NEAR(camera.projection(5) * larger * row.height / 2, filled, 1e-9);
        EXPECT_NEAR(Length(Device(camera, (row.minimum + row.maximum) / 2.0)), 0.0, 1e-9);
        // The nearer end is in front (a larger eye z has a smaller depth), an eighth from the middle.
        EXPECT_NEAR(Device(camera, row.maximum).z, extent.z > 0 ? -0.125 : 0.0, 1e-9);
        camera.Keep_Pixels_Square(500, 500);
        camera.Keep_Pixels_Square(1500, 500); // the longer side shrinks
        EXPECT_DOUBLE_EQ(camera.projection(0) * 3, camera.projection(5));
    }
    TCamera flat = Camera(100, 100);
    flat.Fit({0, 0, 8}, {1, 1, 8});
    EXPECT_DOUBLE_EQ(flat.projection(10), -250000.0);
    EXPECT_DOUBLE_EQ(flat.projection(14), 8 / 4e-6);
    flat.Fit({-1e300, 0, 0}, {1e300, 1, 1}); // no size that can be shown
    EXPECT_EQ(flat.projection(0), 2.0);
}

TEST(Camera, RotationKeepsItsCenter)
{
    std::mt19937 random(2);
    std::uniform_int_distribution<int> step(2, 60);
    for (int run = 0; run < 50; ++run) {
        TCamera camera = Used_Camera(random);
        const double depth = run % 2 ? 0.45 : 1.0;
        const TVector3 center = camera.Rotation_Center(depth);
        // The point is under the middle of the viewport, on the surface or in mid depth.
        const TVector3 start = Device(camera, center * -1.0);
        EXPECT_NEAR(Length(start - TVector3(0, 0, run % 2 ? 2 * depth - 1 : 0)), 0.0, 1e-9);
        for (int i = 0; i < 20; ++i) {
            camera.Rotate_3d(step(random), -step(random));
            camera.Rotate_2d({100, 3}, {90, 20});
            camera.Recenter(center);
        }
        EXPECT_NEAR(Length(Device(camera, center * -1.0)), 0.0, 1e-6);
    }
}

TEST(Camera, MovesFollowTheCursor)
{
    std::mt19937 random(3);
    const TCamera start = Used_Camera(random);
    TCamera camera = start;
    const TVector3 front = start.model * TVector3(0, 0, 100); // nearest to the viewer
    const double angle = 0.02 * (1 + std::log(30.0));
    camera.Rotate_3d(18, 24);
    EXPECT_NEAR(Length(Eye(camera, front) - TVector3(60, 80, 0) * std::sin(angle)), 100 * std::cos(angle),
                1e-9);
    camera = start;
    EXPECT_TRUE(camera.Rotate_2d({100, 0}, {80, 60}));
    EXPECT_NEAR(Length(Eye(camera, start.model * TVector3(10, 0, 0)) - TVector3(8, 6, 0)), 0.0, 1e-9);

    const struct
    {
        TVector2 from, to;
        bool turns;
    } rows[] = {{{5, 0}, {20, 20}, false},  {{20, 20}, {0, -5}, false}, {{6, 0}, {6, 1}, true},
                {{50, 0}, {100, 0}, false}, {{50, 0}, {0, 50}, false},  {{50, 0}, {-50, 1}, false}};
    for (const auto& row : rows) {
        camera = Camera(100, 100);
        EXPECT_EQ(camera.Rotate_2d(row.from, row.to), row.turns) << &row - rows;
        EXPECT_EQ(camera.model(0) != 1.0, row.turns);
    }
}

TEST(Camera, ZoomKeepsTheDriversNumbersUsable)
{
    TCamera camera = Camera(100, 100);
    camera.projection = Counted();
    camera.Zoom(2.0);
    for (int i = 0; i < 16; ++i)
        EXPECT_EQ(camera.projection(i), (i + 1) * (i % 4 == 3 ? 1.0 : 2.0)) << i;
    for (const double factor : {0.95, 1 / 0.95}) {
        for (int i = 0; i < 5000; ++i)
            camera.Zoom(factor);
        const auto single = static_cast<float>(camera.projection(0)); // as the driver keeps it
        EXPECT_TRUE(std::isnormal(single) && std::isnormal(1 / single)) << single;
    }
}

TEST(Camera, PixelsAndPointsMatch)
{
    std::mt19937 random(4);
    std::uniform_real_distribution<double> coordinate(-300, 300);
    int x = 0;
    int y = 0;
    for (int run = 0; run < 200; ++run) {
        const TCamera camera = Used_Camera(random, 640 + run % 2, 480 + run % 3);
        const TVector3 point(coordinate(random), coordinate(random), coordinate(random));
        camera.Raster_Position(point, &x, &y);
        camera.To_Viewport(&x, &y);
        const double depth = 0.5 + 0.5 * Device(camera, point).z;
        const double pixel = 2.0 / (camera.projection(0) * camera.viewport[2]);
        EXPECT_LT(Length(camera.Model_Point(x, y, depth) - point), 1.5 * pixel);
    }
    Used_Camera(random).Raster_Position({1e300, 1e300, 0}, &x, &y);
    EXPECT_GT(std::abs(x), 1000000); // far outside, but no overflow
    EXPECT_EQ(Camera(1, 1).Eye_Plane_Point(0, 0).x, 0.0);
}
