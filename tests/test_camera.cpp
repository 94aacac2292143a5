// SPDX-License-Identifier: MIT
#include "camera.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

namespace
{

TCamera Camera(int width, int height)
{
    TCamera camera;
    camera.viewport[2] = width;
    camera.viewport[3] = height;
    return camera;
}

/// A camera that has seen some use: fitted, turned, panned and zoomed.
TCamera Used_Camera(std::mt19937& random, int width, int height)
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

/// Normalised device coordinates of an eye point.
TVector3 Device(const TCamera& camera, const TVector3& eye)
{
    const TMat4& p = camera.projection;
    return {p(0) * eye.x + p(12), p(5) * eye.y + p(13), p(10) * eye.z + p(14)};
}

} // namespace

TEST(Camera, FitFillsTheSmallerSide)
{
    const struct
    {
        int width, height;
        TVector3 minimum, maximum;
    } rows[] = {
        {800, 600, {100, 200, -50}, {500, 300, 150}},
        {600, 800, {100, 200, -50}, {500, 300, 150}},
        {500, 500, {-9, -90, 0}, {1, 10, 40}},
        {1001, 333, {0, 0, 0}, {0.001, 4000, 1}},
        {800, 600, {7, 7, 7}, {7, 7, 7}},
        {0, 600, {1, 2, 3}, {4, 6, 8}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(std::to_string(row.width) + " x " + std::to_string(row.height));
        TCamera camera = Camera(row.width, row.height);
        camera.Fit(row.minimum, row.maximum);
        const TMat4& p = camera.projection;
        const TVector3 extent = row.maximum - row.minimum;
        const double larger = std::max({extent.x, extent.y, 1e-6});
        if (row.width > 0) {
            const double filled = std::min(row.width, row.height);
            EXPECT_NEAR(p(0) * larger * row.width / 2, filled, 1e-9);
            EXPECT_NEAR(p(5) * larger * row.height / 2, filled, 1e-9);
        } else {
            EXPECT_DOUBLE_EQ(p(0), p(5));
        }
        EXPECT_NEAR(Length(Device(camera, (row.minimum + row.maximum) / 2.0)), 0.0, 1e-9);
        // The nearer end is in front (a larger eye z has a smaller depth), an eighth from the middle.
        EXPECT_NEAR(Device(camera, row.maximum).z, extent.z > 0 ? -0.125 : 0.0, 1e-9);
        EXPECT_EQ(p(11), 0.0);
        EXPECT_EQ(p(15), 1.0);
    }
    TCamera flat = Camera(100, 100);
    flat.Fit({0, 0, 8}, {1, 1, 8});
    EXPECT_DOUBLE_EQ(flat.projection(10), -250000.0);
    EXPECT_DOUBLE_EQ(flat.projection(14), 8 / 4e-6);

    const TCamera before = flat;
    flat.Fit({-1e300, 0, 0}, {1e300, 1, 1}); // no finite size to be shown
    EXPECT_EQ(flat.projection(0), before.projection(0));
}

TEST(Camera, ResizeKeepsPixelsSquare)
{
    TCamera camera = Camera(400, 400);
    camera.Fit({0, 0, 0}, {10, 10, 10});
    for (const auto& [width, height] : {std::pair{800, 400}, {400, 800}, {1001, 77}, {300, 300}}) {
        camera.Keep_Pixels_Square(width, height);
        EXPECT_NEAR(camera.projection(0) * width, camera.projection(5) * height, 1e-12);
    }
}

TEST(Camera, PanFollowsTheCursor)
{
    std::mt19937 random(1);
    TCamera camera = Used_Camera(random, 800, 600);
    const TVector3 before = Device(camera, {10, 20, 30});
    camera.Pan(37, -12, 400, 300);
    const TVector3 moved = Device(camera, {10, 20, 30}) - before;
    EXPECT_NEAR(moved.x * 400, 37, 1e-9);
    EXPECT_NEAR(moved.y * 300, -12, 1e-9);
    camera.Pan(5, 5, 0, 300); // a viewport one pixel wide has no half
    EXPECT_NEAR(Device(camera, {10, 20, 30}).y, before.y - 0.04, 1e-9);
}

TEST(Camera, RotationKeepsItsCenter)
{
    std::mt19937 random(2);
    std::uniform_int_distribution<int> step(2, 60);
    for (int run = 0; run < 50; ++run) {
        TCamera camera = Used_Camera(random, 640, 480);
        const double depth = run % 2 ? 0.45 : 1.0;
        const TVector3 center = camera.Rotation_Center(depth);
        // The point is under the middle of the viewport, on the surface or in mid depth.
        const TVector3 start = Device(camera, Eye(camera, center * -1.0));
        EXPECT_NEAR(start.x, 0.0, 1e-9);
        EXPECT_NEAR(start.y, 0.0, 1e-9);
        EXPECT_NEAR(0.5 + 0.5 * start.z, run % 2 ? depth : 0.5, 1e-9);
        for (int i = 0; i < 20; ++i) {
            camera.Rotate_3d(step(random), -step(random));
            camera.Rotate_2d({100, 3}, {90, 20});
            camera.Recenter(center);
        }
        const TVector3 end = Device(camera, Eye(camera, center * -1.0));
        EXPECT_NEAR(Length(end), 0.0, 1e-6);
    }
}

TEST(Camera, RotationFollowsTheCursor)
{
    std::mt19937 random(3);
    const TCamera start = Used_Camera(random, 640, 480);
    const TVector3 front = start.model * TVector3(0, 0, 100); // nearest to the viewer
    TCamera camera = start;
    camera.Rotate_3d(30, 0);
    EXPECT_NEAR(Eye(camera, front).x, 100 * std::sin(0.02 * (1 + std::log(30.0))), 1e-9);
    camera = start;
    camera.Rotate_3d(0, 30);
    EXPECT_GT(Eye(camera, front).y, 1.0);

    const TVector3 right = start.model * TVector3(10, 0, 0);
    camera = start;
    EXPECT_TRUE(camera.Rotate_2d({100, 0}, {80, 60}));
    EXPECT_NEAR(Length(Eye(camera, right) - TVector3(8, 6, 0)), 0.0, 1e-9);
}

TEST(Camera, RotationInThePlaneNeedsAnAngle)
{
    const struct
    {
        TVector2 from, to;
        bool turns;
    } rows[] = {
        {{5, 0}, {20, 20}, false},  {{20, 20}, {0, -5}, false}, {{6, 0}, {6, 1}, true},
        {{50, 0}, {100, 0}, false}, {{50, 0}, {0, 50}, false},  {{50, 0}, {-50, 1}, false},
        {{0, 50}, {-10, 50}, true},
    };
    for (const auto& row : rows) {
        TCamera camera = Camera(100, 100);
        EXPECT_EQ(camera.Rotate_2d(row.from, row.to), row.turns) << row.from.x << "," << row.from.y;
        EXPECT_EQ(camera.model(0) != 1.0, row.turns);
    }
}

TEST(Camera, Zoom)
{
    TCamera camera = Camera(100, 100);
    for (int i = 0; i < 16; ++i)
        camera.projection(i) = i + 1;
    camera.Zoom(2.0);
    for (int i = 0; i < 16; ++i)
        EXPECT_EQ(camera.projection(i), (i + 1) * (i % 4 == 3 ? 1.0 : 2.0)) << i;
    for (int i = 0; i < 20000; ++i)
        camera.Zoom(0.95);
    EXPECT_GT(camera.projection(0), 0.0); // still usable after wheeling out for ever

    const struct
    {
        int y, height;
        double factor;
    } rows[] = {{0, 600, 1.5},    {600, 600, 0.5}, {300, 600, 1.0},
                {150, 600, 1.25}, {250, 501, 1.0}, {1, 1, 1.0}};
    for (const auto& row : rows)
        EXPECT_DOUBLE_EQ(TCamera::Click_Zoom_Factor(row.y, row.height), row.factor) << row.y;
}

TEST(Camera, ZoomToRectangle)
{
    for (const auto& [width, height] : {std::pair{800, 400}, {400, 800}}) {
        TCamera camera = Camera(width, height);
        camera.Fit({0, 0, 0}, {1000, 800, 600});
        const TMat4 before = camera.projection;
        EXPECT_FALSE(camera.Zoom_To_Rect({10, 10}, {10, 200}));
        EXPECT_FALSE(camera.Zoom_To_Rect({10, 10}, {200, 10 + 1e-7}));
        EXPECT_EQ(camera.projection(0), before(0));
        EXPECT_TRUE(camera.Zoom_To_Rect({300, 150}, {100, 50})); // corners in any order
        EXPECT_NEAR(camera.projection(0) * 200 * width / 2, std::min(width, height), 1e-9);
        EXPECT_NEAR(Device(camera, {200, 100, 0}).x, 0.0, 1e-12);
        EXPECT_NEAR(Device(camera, {200, 100, 0}).y, 0.0, 1e-12);
        EXPECT_EQ(camera.projection(10), before(10));
        EXPECT_EQ(camera.projection(14), before(14));
    }
}

TEST(Camera, PixelsAndPointsMatch)
{
    std::mt19937 random(4);
    std::uniform_real_distribution<double> coordinate(-300, 300);
    for (int run = 0; run < 200; ++run) {
        const TCamera camera = Used_Camera(random, 640 + run % 2, 480 + run % 3);
        const TVector3 point(coordinate(random), coordinate(random), coordinate(random));
        int x = 0;
        int y = 0;
        camera.Raster_Position(point, &x, &y);
        camera.To_Viewport(&x, &y);
        const double depth = 0.5 + 0.5 * Device(camera, Eye(camera, point)).z;
        const double pixel = 2.0 / (camera.projection(0) * camera.viewport[2]);
        EXPECT_LT(Length(camera.Model_Point(x, y, depth) - point), 1.5 * pixel);
    }
    int x = 0;
    int y = 0;
    Used_Camera(random, 640, 480).Raster_Position({1e300, 1e300, 0}, &x, &y);
    EXPECT_GT(std::abs(x), 1000000); // far outside, but no overflow
    EXPECT_EQ(Camera(1, 1).Eye_Plane_Point(0, 0).x, 0.0);
}
