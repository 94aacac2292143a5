// SPDX-License-Identifier: MIT
#pragma once

#include "mat4.h"
#include "vector2.h"
#include "vector3.h"

/// The camera of a 3-D view as plain numbers: what the fixed-function matrix stacks hold, without OpenGL.
///
/// Spaces: model (the scene's units), eye (the model turned by `model`), viewport (pixels, origin bottom
/// left, y up), widget (pixels, origin top left, y down). All pixels are device pixels, but those of the
/// turns, which are the logical ones that a hand moves by.
struct TCamera
{
    /// The modelview matrix in OpenGL's sense: always a rotation. `model * p` takes eye axes to model axes,
    /// its transpose takes the model to the eye.
    TMat4 model;
    /// The parallel projection in OpenGL's sense: elements 0, 5 and 10 are the scales, 12, 13 and 14 the
    /// translations in normalised device units.
    TMat4 projection;
    int viewport[4]{0, 0, 0, 0}; ///< x, y, width, height

    /// Depths beyond this are the background.
    static constexpr double BACKGROUND_DEPTH = 0.99;

    bool Has_Pixels() const { return viewport[2] > 0 && viewport[3] > 0; }
    bool Is_Inside_Viewport(int x, int y) const; ///< of a viewport pixel

    /// Widget to viewport pixels, in place: the top row becomes y = height.
    void To_Viewport(int* x, int* y) const;

    /// Makes a pixel equally wide and high in a viewport of that size by shrinking along its longer side.
    void Keep_Pixels_Square(int width, int height);

    /// Shows the box between two corners given in eye coordinates: the larger of its width and height fills
    /// the smaller side of the viewport, its depth takes the middle quarter of the depth range, which leaves
    /// room to turn. A box too large for the driver's numbers (1e30) changes nothing.
    void Fit(const TVector3& minimum, const TVector3& maximum);

    /// Shows the rectangle between two points of the eye plane; false, and nothing changed, when it is
    /// narrower than 1e-6 in one direction.
    bool Zoom_To_Rect(const TVector2& a, const TVector2& b);

    /// Scales about the middle of the viewport. A factor that would leave no usable scale changes nothing.
    void Zoom(double factor);
    /// The zoom of a click in the viewport row y: 1.5 at the bottom, 1 in the middle, 0.5 at the top.
    static double Click_Zoom_Factor(int y, int viewport_height);

    /// Moves the picture by that many pixels; half sizes of the viewport in whole pixels.
    void Pan(int dx, int dy, int half_width, int half_height);

    /// Turns as a track ball does for a drag by (dx, dy) pixels (y up): about the eye axis across the drag,
    /// by 0.02 * (1 + ln d) radians for a drag of d pixels.
    void Rotate_3d(double dx, double dy);

    /// Turns about the line of sight as the cursor goes from a to b, both in pixels from the middle of the
    /// viewport. False, and nothing changed, within 5 pixels of the middle and for steps without an angle.
    bool Rotate_2d(const TVector2& a, const TVector2& b);

    /// The model point in the middle of the viewport, negated: on the surface that has `depth` there, or in
    /// the middle of the depth range where that is background.
    TVector3 Rotation_Center(double depth) const;
    /// Brings a rotation centre back to the middle of the viewport and to mid depth.
    void Recenter(const TVector3& rotation_center);

    /// The eye-plane point of a viewport pixel; the rotation is not undone.
    TVector2 Eye_Plane_Point(int x, int y) const;
    /// The model point of a viewport pixel that shows a surface at `depth` (0 to 1).
    TVector3 Model_Point(int x, int y, double depth) const;
    /// The widget pixel that shows a model point.
    void Raster_Position(const TVector3& point, int* x, int* y) const;

private:
    void Show_Window(double x_sum, double y_sum, double size);
    void Rotate_About_Eye_Axis(const TVector3& axis, double angle);
};
