// SPDX-License-Identifier: MIT
// The matrix and the camera made of it, by numbers.
#include "camera.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

namespace
{

const double PI = std::acos(-1.0);

TCamera Camera(int width, int height)
{
    TCamera camera;
    camera.viewport[2] = width;
    camera.viewport[3] = height;
    return camera;
}

/// A camera that has seen some use: fitted, turned, panned and zoomed.
TCamera Used_Camera(std::mt19937& random)
{
    std::uniform_real_distribution<double> number(-1.0, 1.0);
    TCamera camera = Camera(640, 480);
    TVector3 axis(number(random), 0.3, number(random));
    camera.model.Rotate(axis.Normal(), number(random));
    camera.Fit({-500, -400, -300}, {500, 400, 300});
    camera.Pan(-30, 20, 320, 240);
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
    TMat4 same(turns);
    same *= same;
    EXPECT_EQ(same(0), turns(0)); // never squares itself
}

TEST(Camera, FitFillsTheSmallerSide)
{
    const struct
    {
        int width, height;
        TVector3 minimum, maximum;
    } rows[] = {{800, 600, {100, 200, -50}, {500, 300, 150}},
                {600, 800, {100, 200, -50}, {500, 300, 150}},
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
        // A larger eye z is in front: it has a smaller depth.
        EXPECT_NEAR(Device(camera, row.maximum).z, extent.z > 0 ? -0.125 : 0.0, 1e-9);
        camera.Keep_Pixels_Square(500, 500);
        camera.Keep_Pixels_Square(1500, 500); // the longer side shrinks
        EXPECT_DOUBLE_EQ(camera.projection(0) * 3, camera.projection(5));
    }
    TCamera flat = Camera(100, 100);
    flat.Fit({0, 0, 8}, {1, 1, 8});
    EXPECT_DOUBLE_EQ(flat.projection(10), -250000.0);
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
    EXPECT_TRUE(camera.Rotate_2d({100, 0}, {80, 60}) && !camera.Rotate_2d({5, 0}, {20, 20}));
    EXPECT_NEAR(Length(Eye(camera, start.model * TVector3(10, 0, 0)) - TVector3(8, 6, 0)), 0.0, 1e-9);
}
