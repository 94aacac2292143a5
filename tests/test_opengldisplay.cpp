// SPDX-License-Identifier: MIT
// The 3-D view, its camera and its clicks, by real events and pixels.
#include "opengldisplay.h"
#include "view_helpers.h"

#include <cmath>

using testing::AllOf, testing::ElementsAre, testing::Gt, testing::Lt;

const TVector3 CENTER(15, 10, 10);
constexpr double RADIUS = 6.0;
constexpr double FLOAT = 1e-6; // the driver keeps its matrices in single precision

struct TTestDisplay : TOpenGLDisplay
{
    using TOpenGLDisplay::d_ballbars, TOpenGLDisplay::d_triad_origin;
    using TOpenGLDisplay::d_RotationCenter, TOpenGLDisplay::d_RubberBand;

    TCamera Camera()
    {
        makeCurrent();
        return Read_Camera();
    }
    double Pixel_Size() { return 2.0 / (Camera().projection(0) * Camera().viewport[2]); }
    /// The nearest point to the viewer on a unit sphere or, with an axis, on a cylinder about it.
    TVector3 Front(const TVector3& axis = {})
    {
        const TVector3 sight = Camera().model * TVector3(0, 0, 1);
        return (sight - (sight ^ axis) * axis).Normal();
    }
    void Add(int index, const TVector3& sphere1, const TVector3& sphere2, bool first_flag = false,
             bool second_flag = false, const QString& name = "bar")
    {
        Add_BallBar({index, name, first_flag, false, second_flag, sphere1, sphere2,
                     BallBarMeshes::Label_Position(sphere1, sphere2), probe});
    }
    TVector3 probe{0, 0, -8};
    int errors{0};

protected:
    void paintGL() override
    {
        TOpenGLDisplay::paintGL();
        errors += glGetError() == GL_NO_ERROR ? 0 : 1;
    }
};

struct OpenGLDisplay : testing::Test
{
    void SetUp() override
    {
        view.resize(600, 400);
        view.Define_Machine_Volume({0, 0, 0}, {30, 20, 20}); // small, so that a rod is many pixels wide
        view.Add(3, CENTER, CENTER);                         // a lone sphere
        Show(&view, &view);
        QObject::connect(&view, &TOpenGLWidget::Model_Click_Point, &view,
                         [this](const double& x, const double& y, const double& z, int item) {
                             points.append({x, y, z});
                             items.append(item);
                         });
    }
    void TearDown() override
    {
        Paint(&view);
        EXPECT_EQ(view.errors, 0);
    }
    /// The colour in the picture, less the one the lights give a surface of that normal on white.
    TVector3 Colour_Error(const QColor& pixel, const TVector3& color, double alpha, double specular,
                          const TVector3& normal)
    {
        const TMat4 model = view.Camera().model;
        const double angle = std::max(normal ^ (model * TVector3(0, 1, 0)), 0.0);
        const double highlight = std::max(normal ^ (model * TVector3(0, 0.707107, 0.707107)), 0.0) * specular;
        TVector3 error(pixel.red(), pixel.green(), pixel.blue());
        for (int i = 0; i < 3; ++i)
            error(i) -= 255 * (alpha * std::min(color(i) * (0.8 + 0.1 * angle) + highlight, 1.0) + 1 - alpha);
        return error;
    }

    TTestDisplay view;
    QVector<TVector3> points;
    QVector<int> items;
};

const auto IS_DARK = [](const QColor& c) { return c.lightness() < 160; };
const auto IS_RED = [](const QColor& c) { return c.red() > 150 && c.green() + c.blue() < 130; };

/// The pixels of a part of the picture that match.
int Count(const QImage& picture, const QRect& part, bool (*matches)(const QColor&))
{
    int count = 0;
    for (int i = 0; i < part.width() * part.height(); ++i)
        count += matches(picture.pixelColor(part.left() + i % part.width(), part.top() + i / part.width()));
    return count;
}

TEST_F(OpenGLDisplay, FirstPaintFitsAndResizingDoesNot)
{
    view.probe = {0, 0, -900};
    view.Add(0, {-400, 0, 0}, {100, 500, 50}); // leaves the machine's volume
    Fit(&view);
    for (const TVector3& end : {TVector3(-400, 0, 0), {100, 500, 950}, view.d_triad_origin})
        EXPECT_TRUE(view.rect().contains(Pixel(&view, end).toPoint()));
    view.Clear_BallBars();
    Fit(&view);
    const QImage box = view.grabFramebuffer();
    const TVector3 triad = view.d_triad_origin;
    const double lines[][3] = {{15, 0, 0}, {0, 10, 0}, {0, 0, 10}, {15, 20, 20}, {30, 10, 20},
                               {3, 0, 0},  {0, 3, 0},  {0, 0, 3}}; // the last three from the triad
    for (const auto& [x, y, z] : lines) {
        const TVector3 on_line = TVector3(x, y, z) + (x + y + z == 3 ? triad : TVector3());
        EXPECT_GT(Count(box, {Pixel(&view, on_line).toPoint() - QPoint(1, 1), QSize(3, 3)}, IS_DARK), 1);
    }
    // Right above the line an X is open in its middle, a Y has its foot there, and a Z is closed.
    std::vector<int> feet;
    for (const TVector3& axis : {TVector3(1, 0, 0), {0, 1, 0}, {0, 0, 1}})
        feet.push_back(
            Count(box, {Pixel(&view, triad + 4.6 * axis).toPoint() + QPoint(3, -1), QSize(3, 1)}, IS_DARK));
    EXPECT_THAT(feet, ElementsAre(0, AllOf(Gt(0), Lt(3)), 3));
    const double scale = view.Camera().projection(5);
    view.resize(500, 400);
    Paint(&view);
    EXPECT_EQ(view.Camera().projection(5), scale);
    EXPECT_NEAR(view.Camera().projection(0), scale * 400 / 500, FLOAT);
}

TEST_F(OpenGLDisplay, ClicksReportThePointOnTheSurface)
{
    for (const QSize& size : {QSize(600, 400), QSize(601, 403)}) {
        view.resize(size);
        Fit(&view);
        const double reach = 0.7 * RADIUS / view.Pixel_Size();
        for (const double angle : {0.0, 1.0, 2.5, 4.0, 5.5}) {
            Click(&view, Pixel(&view, CENTER) + reach * QPointF(std::cos(angle), std::sin(angle)));
            EXPECT_NEAR((points.last() - CENTER).Length(), RADIUS, 1.5 * view.Pixel_Size());
        }
    }
    EXPECT_EQ(items, QVector<int>(10, -1));                              // drawn, but no item has a length
    for (const QPointF& silent : {QPointF(1, 200), {200, 0}, {200, -7}}) // background, top row, beyond it
        Click(&view, silent);
    EXPECT_EQ(items.size(), 10);
    // Just beside the sphere the depth of what is near counts.
    Click(&view, Pixel(&view, CENTER) + QPointF(RADIUS / view.Pixel_Size() + 6, 0));
    EXPECT_EQ(items.size(), 11);
    EXPECT_LT((points.last() - CENTER).Length(), 2 * RADIUS);
    for (int i = 0; i < 40; ++i) // with the 41st all are made anew
        view.Add(i, CENTER + TVector3(0, 0, 50), CENTER + TVector3(0, 0, 50));
    Fit(&view);
    Click(&view, Pixel(&view, CENTER));
    EXPECT_EQ(items.size(), 12);
}

TEST_F(OpenGLDisplay, WheelAndRightClickZoom)
{
    const auto expect = [this](double factor, const auto& zoom) {
        const TMat4 before = view.Camera().projection;
        zoom();
        for (const int i : {0, 5, 10, 12, 13, 14})
            EXPECT_NEAR(view.Camera().projection(i), before(i) * factor, FLOAT) << factor;
    };
    for (const auto& [delta, factor] : {std::pair{120, 1 / 0.95}, {0, 1.0}, {-960, 0.95}})
        expect(factor, [this, step = delta] { Wheel(&view, step); });
    for (const auto& [y, factor] : {std::pair{400, 1.5}, {0, 0.5}, {300, 1.25}, {200, 1.0}})
        expect(factor, [this, row = y] { // a tremble of a pixel each way is still a click
            Drag(&view, Qt::RightButton, {QPointF(9, row - 1), QPointF(10, row)});
        });
}

TEST_F(OpenGLDisplay, RightDragModes)
{
    // Modes, modifiers, and the effect: pan, turn, roll or none.
    const std::tuple<bool, bool, Qt::KeyboardModifiers, char> rows[] = {
        {false, false, {}, 'P'},
        {false, false, Qt::ShiftModifier, 'R'},
        {false, false, Qt::ControlModifier, 'T'},
        {true, false, {}, 'R'},
        {false, true, {}, 'T'},
        {true, false, {}, '-'}};
    for (const auto& [rotate_2d, rotate_3d, modifiers, effect] : rows) {
        SCOPED_TRACE(testing::Message() << effect << rotate_2d << rotate_3d);
        Fit(&view);
        view.d_Rotate2dMode = rotate_2d;
        view.d_Rotate3dMode = rotate_3d;
        const TCamera before = view.Camera();
        if (effect == '-') // through the middle nothing turns, but it was no click either
            Drag(&view, Qt::RightButton, {{302, 200}, {298, 200}}, modifiers);
        else
            Drag(&view, Qt::RightButton, {{400, 250}, {390, 270}, {390, 300}, {380, 300}}, modifiers);
        const TCamera after = view.Camera();
        view.d_Rotate2dMode = view.d_Rotate3dMode = false;
        EXPECT_EQ(after.projection(0), before.projection(0)); // it was no click
        EXPECT_EQ(after.model(0) == before.model(0), effect == 'P' || effect == '-');
        // What faced the viewer does so still, or has followed the hand: to the left, and down more than
        // that.
        TMat4 to_eye(after.model);
        to_eye.Transpose();
        const TVector3 front = to_eye * (before.model * TVector3(0, 0, 1));
        EXPECT_EQ(State(front.x < -0.01, front.y < front.x - 0.01),
                  effect == 'T' ? "true true" : "false false");
        if (effect == 'P') {
            EXPECT_NEAR(after.projection(12) - before.projection(12), -20.0 / 300, FLOAT);
            EXPECT_NEAR(after.projection(13) - before.projection(13), -50.0 / 200, FLOAT);
        } else if (effect != '-') { // the surface point that was in the middle stays there
            const TVector3 center = view.d_RotationCenter * -1.0;
            EXPECT_NEAR((center - CENTER).Length(), RADIUS, 3 * view.Pixel_Size());
            EXPECT_LT(QLineF(Pixel(&view, center), {300, 200}).length(), 1.5);
        }
    }
    glMatrixMode(GL_MODELVIEW);
    glScaled(1.001, 1.001, 1.001); // as very many turns leave it
    Drag(&view, Qt::RightButton, {{400, 250}, {390, 300}}, Qt::ShiftModifier);
    const TMat4 model = view.Camera().model;
    EXPECT_NEAR(std::hypot(model(2), model(6), model(10)), 1.0, FLOAT);
}

TEST_F(OpenGLDisplay, RubberBandZooms)
{
    const TMat4 before = view.Camera().projection;
    Send_Mouse(&view, QEvent::MouseButtonPress, {160, 120}, Qt::LeftButton, Qt::LeftButton);
    for (const QPointF& corner : {QPointF(170, 130), {240, 180}})
        Send_Mouse(&view, QEvent::MouseMove, corner, Qt::NoButton, Qt::LeftButton);
    ASSERT_NE(view.d_RubberBand, nullptr);
    EXPECT_EQ(view.d_RubberBand->geometry(), QRect(QPoint(160, 120), QPoint(240, 180)));
    Send_Mouse(&view, QEvent::MouseButtonRelease, {240, 180}, Qt::LeftButton, Qt::NoButton);
    EXPECT_FALSE(view.d_RubberBand->isVisible());
    EXPECT_NEAR(view.Camera().projection(5), before(5) * 400 / 80, FLOAT); // 80 pixels fill the height
    EXPECT_TRUE(items.isEmpty());
    Fit(&view);
    Click(&view, Pixel(&view, CENTER)); // is no second band
    EXPECT_EQ(items.size(), 1);
    Send_Mouse(&view, QEvent::MouseButtonPress, {160, 120}, Qt::LeftButton, Qt::LeftButton);
    Send_Mouse(&view, QEvent::MouseMove, {170, 130}, Qt::NoButton, Qt::LeftButton);
    EXPECT_TRUE(view.d_RubberBand->isVisible());
    Send_Mouse(&view, QEvent::MouseButtonPress, {170, 130}, Qt::RightButton,
               Qt::LeftButton | Qt::RightButton);
    EXPECT_FALSE(view.d_RubberBand->isVisible()); // nor does a given-up one stay behind
}

TEST_F(OpenGLDisplay, MovingToAnotherWindowKeepsTheViewAlive)
{
    const QImage fitted = view.grabFramebuffer();
    QWidget window;
    window.resize(600, 400);
    Wheel(&view, 120);
    view.d_Rotate3dMode = true;
    view.setParent(&window);
    Wheel(&view, 120); // there is no context now
    view.Clear_BallBars();
    view.Add(3, CENTER, CENTER);
    view.show();
    Show(&window, &view);
    EXPECT_TRUE(view.d_Rotate3dMode); // the owner's buttons still say so
    EXPECT_EQ(view.grabFramebuffer(), fitted);
    Click(&view, Pixel(&view, CENTER));
    EXPECT_EQ(items.size(), 1);
    view.setParent(nullptr);
    Show(&view, &view);
}

TEST_F(OpenGLDisplay, ColoursOfEveryState)
{
    const std::tuple<TVector3, TVector3, double> rows[] = {
        // plain, selected, flagged first, both; then the same see-through
        {{0.1, 0.1, 0.1}, {0.6, 0.6, 0.6}, 1.0},       {{0, 0, 0.7}, {0.7, 0.7, 0.9}, 1.0},
        {{0.7, 0, 0}, {0.9, 0.7, 0.7}, 1.0},           {{0.7, 0, 0.7}, {0.9, 0.7, 0.9}, 1.0},
        {{0.01, 0.01, 0.01}, {0.06, 0.06, 0.06}, 0.1}, {{0, 0, 0.42}, {0.42, 0.42, 0.54}, 0.6},
        {{0.07, 0, 0}, {0.09, 0.07, 0.07}, 0.1},       {{0.42, 0, 0.42}, {0.54, 0.42, 0.54}, 0.6}};
    const TVector3 half(15, 0, 0);
    for (int state = 0; state < 8; ++state) {
        SCOPED_TRACE(state);
        const auto& [rod_color, sphere_color, alpha] = rows[state];
        view.Clear_BallBars();
        view.Add(3, CENTER - half, CENTER + half, state & 2, state & 4);
        state & 1 ? view.Set_Selection(3) : view.Clear_Selection();
        Fit(&view);
        const QImage picture = view.grabFramebuffer();
        const auto color = [&](const TVector3& p) { return picture.pixelColor(Pixel(&view, p).toPoint()); };
        TVector3 on_sphere = view.Front() - TVector3(0.7, 0, 0); // beside the rod's end inside
        on_sphere.Normal();
        const TVector3 on_rod = view.Front({1, 0, 0});
        const QColor sphere = color(CENTER - half + RADIUS * on_sphere);
        const QColor rod = color(CENTER + RADIUS / 2 * on_rod);
        EXPECT_LT(Colour_Error(sphere, sphere_color, alpha, 0.3, on_sphere).Length(), 6);
        EXPECT_LT(Colour_Error(rod, rod_color, alpha, 0.1, on_rod).Length(), 6);
        // The probe shows on the selected bar alone, opaque in either case. (2 is a red bar.)
        EXPECT_EQ(Count(picture, picture.rect(), IS_RED) > 8, state % 2 == 1 || state == 2);
        const TVector3 on_stem = view.Front({0, 0, 1}); // of a fifth of the sphere's radius
        const QColor stem = color(CENTER + half + TVector3(0, 0, 1.4 * RADIUS + 5) + RADIUS / 5 * on_stem);
        if (state % 2 == 1) {
            EXPECT_LT(Colour_Error(stem, {0.7, 0.7, 0.7}, 1.0, 0.2, on_stem).Length(), 6);
        }
    }
}

TEST_F(OpenGLDisplay, SeeThroughBarsAreOnTopOfAll)
{
    // Two crossing rods, the second one behind the first; and what a click reports was drawn last.
    const TVector3 behind = view.Front() * -8.0;
    for (const bool see_through : {false, true}) {
        view.Clear_BallBars();
        view.Add(11, CENTER - TVector3(15, 0, 0), CENTER + TVector3(15, 0, 0));
        view.Add(10, CENTER + behind - TVector3(0, 0, 70), CENTER + behind + TVector3(0, 0, 70), true,
                 see_through);
        Fit(&view);
        const QColor pixel = view.grabFramebuffer().pixelColor(Pixel(&view, CENTER).toPoint());
        // A tenth of the see-through bar's red over the dark rod, or the dark rod alone.
        EXPECT_NEAR(pixel.red() - pixel.green(), see_through ? 1.5 : 0.0, 1.0);
        const double error = Colour_Error(pixel, {0.1, 0.1, 0.1}, 1.0, 0.1, view.Front({1, 0, 0})).x;
        EXPECT_NEAR(error, 0.0, see_through ? 12.0 : 4.0);
        items.clear();
        Click(&view, Pixel(&view, CENTER));
        EXPECT_EQ(items, QVector<int>{see_through ? 10 : 11});
    }
}

TEST_F(OpenGLDisplay, EveryBarCarriesItsLabel)
{
    view.Clear_BallBars();
    for (int i = 0; i < 4; ++i)
        view.Add(i, {0, 12.0 * i, 0}, {40, 12.0 * i, 0}, false, i % 2 == 1);
    Fit(&view);
    const QImage picture = view.grabFramebuffer();
    for (const auto& bar : view.d_ballbars) {
        const QPoint corner = Pixel(&view, bar.label).toPoint() - QPoint(1, 1);
        const QRect label(corner, QFontMetrics(view.font()).size(0, bar.name) + QSize(3, 3));
        EXPECT_EQ(picture.pixelColor(corner), QColor(236, 236, 236)); // 224 at 160/255 over white
        EXPECT_GT(Count(picture, label, IS_DARK), 5);
    }
}

TEST(OpenGLDisplayAlone, FindSelection)
{
    TTestDisplay view;
    EXPECT_EQ(view.Find_Selection({0, 0, 0}), -1);
    const TVector3 axes[] = {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}};
    const auto add = [&](int kind, const TVector3& a, const TVector3& b, double x_size = 1.0) {
        view.AddSelectionItem({a, b, axes[0] * x_size, axes[1], axes[2], 0, kind});
    };
    add(TSelectionItem::SEGMENT, {0, 0, 0}, {100, 0, 0});
    add(TSelectionItem::SEGMENT, {0, 40, 0}, {100, 40, 0});
    add(TSelectionItem::SEGMENT, {50, 0, 0}, {50, 0, 0}); // never hit
    add(TSelectionItem::BOX, {200, 10, 10}, {100, -10, -10});
    add(TSelectionItem::BOX, {300, 10, 10}, {200, -10, -10}, 0.0); // its directions get repaired
    add(TSelectionItem::SEGMENT, {-1e200, 0, 0}, {1e200, 0, 0});   // longer than can be measured: never hit
    const std::pair<TVector3, int> rows[] = {{{10, 5, 0}, 0},  {{10, 900, 0}, 1},  // any distance
                                             {{10, 20, 0}, 0},                     // on a tie the first
                                             {{0, 0, 0}, -1},  {{100, 0, 0}, -1},  // on an end plane
                                             {{150, 0, 0}, 3}, {{150, 10, 0}, -1}, // in the box, on its face
                                             {{250, 0, 0}, 4}, {{150, 0, 90}, -1}};
    for (const auto& [point, offset] : rows)
        EXPECT_EQ(view.Find_Selection(point), offset) << point.x << ", " << point.y;
    EXPECT_DEATH(view.Selection_Item(6), "d_SelectionItems.size");
}

TEST(OpenGLDisplayAlone, LabelsLookAsIfPaintedOneByOne)
{
    const std::pair<QString, QPoint> rows[] = {{"under", {10, 10}},
                                               {"over", {14, 14}},
                                               {QString(200, 'W'), {10, 30}},
                                               {"over", {-9, 40}},
                                               {"out", {-99, 9}}};
    const QSize large(900, 500);
    for (const auto& [ratio, view] : {std::pair{1, large}, {2, large}, {2, QSize(60, 50)}}) {
        QImage picture(view * ratio, QImage::Format_RGB32);
        picture.fill(Qt::white);
        QImage expected = picture;
        expected.setDevicePixelRatio(ratio);
        QPainter painter(&picture), one_by_one(&expected);
        TLabelAtlas labels;
        labels.Begin(view, QFont(), ratio);
        for (const auto& [name, pixel] : rows) {
            labels.Add(name, pixel);
            const QRect box(pixel - QPoint(1, 1), QFontMetrics(QFont()).size(0, name) + QSize(3, 3));
            one_by_one.fillRect(box, QColor(224, 224, 224, 160));
            one_by_one.drawText(box, Qt::AlignCenter, name);
        }
        labels.Draw(&painter);
        int worst = 0;
        for (int i = 0; i < picture.width() * picture.height(); ++i) {
            const QPoint at(i % picture.width(), i / picture.width());
            worst = std::max(worst, std::abs(qRed(picture.pixel(at)) - qRed(expected.pixel(at))));
        }
        EXPECT_LE(worst, 2) << ratio << ", " << view.width();
    }
}
