// SPDX-License-Identifier: MIT
// The camera by numbers.
#include "camera.h"
#include "testing.h"

#include <cmath>

TCamera Camera(int width, int height)
{
    return {{}, {}, {0, 0, width, height}};
}

/// A camera that has seen some use: turned, fitted, panned and zoomed.
TCamera Used_Camera(double angle)
{
    TCamera camera = Camera(640, 480);
    camera.model.Rotate({0.48, 0.6, 0.64}, angle);
    camera.Fit({-500, -400, -300}, {500, 400, 300});
    camera.Pan(-30, 20, 320, 240);
    camera.Zoom(1.0 + 0.5 * angle);
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

TEST(Camera, FitFillsTheSmallerSide)
{
    const TVector3 low(100, 200, -50);
    for (const TVector3& high : {TVector3(500, 300, 150), {140, 300, -50}, low}) {
        for (const int width : {800, 450}) {
            TCamera camera = Camera(width, 600);
            camera.Fit(low, high);
            const TVector3 extent = high - low;
            const double larger = std::max({extent.x, extent.y, 1e-6});
            EXPECT_NEAR(camera.projection(0) * larger * width / 2, std::min(width, 600), 1e-9);
            EXPECT_NEAR(camera.projection(5) * larger * 600 / 2, std::min(width, 600), 1e-9);
            EXPECT_NEAR(Device(camera, (low + high) / 2.0).Length(), 0.0, 1e-6);
            EXPECT_EQ(camera.projection(10), -0.25 / std::max(extent.z, 1e-6)); // larger eye z are in front
            for (const auto& [w, h] : {std::pair{500, 500}, {1500, 500}, {500, 1000}}) { // the longer shrinks
                camera.Keep_Pixels_Square(w, h);
                EXPECT_DOUBLE_EQ(camera.projection(0) * w, camera.projection(5) * h);
            }
        }
    }
}

TEST(Camera, RotationKeepsItsCenter)
{
    for (int run = 0; run < 50; ++run) {
        TCamera camera = Used_Camera(run / 25.0 - 1.0);
        const double depth = run % 2 ? 0.45 : 1.0;
        const TVector3 center = camera.Rotation_Center(depth);
        // The point is under the middle of the viewport, on the surface or in mid depth.
        const TVector3 start = Device(camera, center * -1.0);
        EXPECT_NEAR((start - TVector3(0, 0, run % 2 ? 2 * depth - 1 : 0)).Length(), 0.0, 1e-9);
        for (int i = 0; i < 20; ++i) {
            camera.Rotate_3d(2 + 3 * i, run - 60);
            camera.Rotate_2d({100, 3}, {90, 20});
            camera.Recenter(center);
        }
        EXPECT_NEAR(Device(camera, center * -1.0).Length(), 0.0, 1e-6);
    }
}

TEST(Camera, MovesFollowTheCursor)
{
    const TCamera start = Used_Camera(0.7);
    TCamera camera = start;
    const TVector3 front = start.model * TVector3(0, 0, 100); // nearest to the viewer
    const double angle = 0.02 * (1 + std::log(30.0));
    camera.Rotate_3d(18, 24);
    EXPECT_NEAR((Eye(camera, front) - TVector3(60, 80, 0) * std::sin(angle)).Length(), 100 * std::cos(angle),
                1e-9);
    camera = start;
    EXPECT_FALSE(camera.Rotate_2d({5, 0}, {20, 20}));
    EXPECT_TRUE(camera.Rotate_2d({100, 0}, {80, 60}));
    EXPECT_NEAR((Eye(camera, start.model * TVector3(10, 0, 0)) - TVector3(8, 6, 0)).Length(), 0.0, 1e-9);
}
