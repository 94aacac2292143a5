// SPDX-License-Identifier: MIT
#include "openglgeometryfactory.h"
#include "openglwidget.h"
#include "view_helpers.h"

#include <QRubberBand>

#include <cmath>

namespace
{

const TVector3 CENTER(40, -20, 60);
constexpr double RADIUS = 50.0;
constexpr double FLOAT = 2e-7; // the driver keeps its matrices in single precision

/// One sphere inside a larger fitted cube, drawn without shaders.
class TTestView : public TOpenGLWidget
{
public:
    using TOpenGLWidget::d_RotationCenter;
    using TOpenGLWidget::d_RubberBand;
    using TOpenGLWidget::d_SelectionItems;

    TCamera Camera()
    {
        makeCurrent();
        return Read_Camera();
    }
    int errors{0};
    int renders{0};
    int last_width{-1};

protected:
    void GLInit() override
    {
        glEnable(GL_DEPTH_TEST);
        glClearColor(1, 1, 1, 1);
        Rotate_Model({1, 2, 3}, 0.5);
    }
    void GLResize(int width, int) override { last_width = width; }
    void GLRender() override
    {
        ++renders;
        if (d_FitActive) {
            for (const double side : {-100.0, 100.0})
                Process_Vertex(CENTER + side);
            return;
        }
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        glColor3d(1, 0, 0);
        TOpenGLGeometryFactory factory;
        factory.Set_Subdivision_Level(5);
        glBegin(GL_TRIANGLES);
        for (const auto& vertex : factory.RenderSphere(CENTER, RADIUS))
            glVertex3dv(&vertex.position.x);
        glEnd();
    }
    void paintGL() override
    {
        TOpenGLWidget::paintGL();
        errors += glGetError() == GL_NO_ERROR ? 0 : 1;
    }
};

class OpenGLWidget : public testing::Test
{
protected:
    void SetUp() override
    {
        view.resize(400, 300);
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
    /// A fresh fit in the view's present rotation.
    void Fit()
    {
        view.d_FitRequested = true;
        Paint(&view);
    }
    double Pixel_Size() { return 2.0 / (view.Camera().projection(0) * view.Camera().viewport[2]); }
    QPoint Pixel(const TVector3& point)
    {
        QPoint pixel;
        view.Point_Raster_Position(&pixel.rx(), &pixel.ry(), point);
        return pixel;
    }

    TTestView view;
    QVector<TVector3> points;
    QVector<int> items;
};

void Expect_Same(const TMat4& a, const TMat4& b, bool same)
{
    EXPECT_EQ(std::equal(a.Data(), a.Data() + 16, b.Data()), same);
}

TOpenGLWidget::TSelectionItemType Segment(const TVector3& a, const TVector3& b, int identifier)
{
    TOpenGLWidget::TSelectionItemType item;
    item.first_point = a;
    item.second_point = b;
    item.identifier = identifier;
    return item;
}

TOpenGLWidget::TSelectionItemType Box(const TVector3& a, const TVector3& b, int identifier, double direction)
{
    TOpenGLWidget::TSelectionItemType item = Segment(a, b, identifier);
    item.kind = TOpenGLWidget::TSelectionItemType::BOX;
    item.first_direction = {direction, 0, 0};
    item.second_direction = {0, direction, 0};
    item.third_direction = {0, 0, direction};
    return item;
}

} // namespace

TEST_F(OpenGLWidget, FirstPaintFitsAndResizingDoesNot)
{
    EXPECT_FALSE(view.d_FitRequested);
    EXPECT_TRUE(view.d_PanMode && !view.d_Rotate2dMode && !view.d_Rotate3dMode);
    EXPECT_EQ(view.last_width, view.Camera().viewport[2]);
    EXPECT_LT((Pixel(CENTER) - view.rect().center()).manhattanLength(), 4);
    const double scale = view.Camera().projection(5);
    view.resize(500, 300);
    Paint(&view);
    EXPECT_EQ(view.Camera().projection(5), scale);
    EXPECT_NEAR(view.Camera().projection(0), scale * 300 / 500, FLOAT);
}

TEST_F(OpenGLWidget, RecoveredPointLiesOnTheSurface)
{
    for (const QSize& size : {QSize(400, 300), QSize(401, 303)}) {
        view.resize(size);
        Fit();
        const QPoint middle = Pixel(CENTER);
        const double pixel = Pixel_Size();
        for (const double angle : {0.0, 1.0, 2.5, 4.0, 5.5}) {
            const double reach = 0.7 * RADIUS / pixel;
            points.clear();
            Click(&view, Qt::LeftButton, middle + QPointF(reach * std::cos(angle), reach * std::sin(angle)));
            ASSERT_EQ(points.size(), 1);
            EXPECT_NEAR(Length(points[0] - CENTER), RADIUS, 1.5 * pixel);
            EXPECT_EQ(items.last(), -1); // drawn, but no item
        }
    }
}

TEST_F(OpenGLWidget, ClicksReportItemsOnlyOfWhatIsDrawn)
{
    view.AddSelectionItem(Segment(CENTER - 70.0, CENTER + 70.0, 12));
    Click(&view, Qt::LeftButton, Pixel(CENTER));
    EXPECT_EQ(items, QVector<int>{12});
    Click(&view, Qt::LeftButton, {1, 150}); // background, nothing near
    Click(&view, Qt::LeftButton, {200, 0}); // the top row is outside the viewport
    Click(&view, Qt::LeftButton, {200, -7});
    EXPECT_EQ(items.size(), 1);
    // Just beside the sphere the depth of what is near counts.
    Click(&view, Qt::LeftButton, Pixel(CENTER) + QPointF(RADIUS / Pixel_Size() + 6, 0));
    EXPECT_EQ(items.size(), 2);
}

TEST_F(OpenGLWidget, WheelZoomsByOneStepAnEvent)
{
    const TMat4 start = view.Camera().projection;
    for (const auto& [delta, factor] : {std::pair{120, 1 / 0.95}, {1, 1 / 0.95}, {-15, 0.95}, {-960, 0.95}}) {
        const TMat4 before = view.Camera().projection;
        Wheel(&view, delta);
        for (const int i : {0, 5, 10, 12, 13, 14})
            EXPECT_NEAR(view.Camera().projection(i), before(i) * factor, FLOAT) << i;
    }
    EXPECT_EQ(view.Camera().projection(15), start(15));
    const TMat4 before = view.Camera().projection;
    Wheel(&view, 0);
    Expect_Same(view.Camera().projection, before, true);
}

TEST_F(OpenGLWidget, RightClickZoomsByItsHeight)
{
    for (const auto& [y, factor] : {std::pair{300, 1.5}, {0, 0.5}, {225, 1.25}, {150, 1.0}, {-200, 1.0}}) {
        const double before = view.Camera().projection(0);
        // A tremble of one pixel is still a click.
        Drag(&view, Qt::RightButton, {QPointF(9, y), QPointF(10, y)});
        EXPECT_NEAR(view.Camera().projection(0), before * factor, FLOAT) << y;
    }
}

TEST_F(OpenGLWidget, RightDragModes)
{
    enum TEffect
    {
        PAN,
        TURN,
        ROLL
    };
    const auto shift = Qt::ShiftModifier;
    const auto control = Qt::ControlModifier;
    const struct
    {
        bool rotate_2d, rotate_3d;
        Qt::KeyboardModifiers modifiers;
        TEffect effect;
    } rows[] = {
        {false, false, Qt::NoModifier, PAN}, {false, false, shift, ROLL},
        {false, false, control, TURN},       {false, false, shift | control, TURN},
        {true, false, Qt::NoModifier, ROLL}, {true, false, control, TURN},
        {false, true, Qt::NoModifier, TURN}, {false, true, shift, TURN},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(std::to_string(&row - rows));
        view.d_PanMode = !row.rotate_2d && !row.rotate_3d;
        view.d_Rotate2dMode = row.rotate_2d;
        view.d_Rotate3dMode = row.rotate_3d;
        const TCamera before = view.Camera();
        Drag(&view, Qt::RightButton, {{300, 150}, {300, 170}, {290, 200}}, row.modifiers);
        const TCamera after = view.Camera();
        EXPECT_EQ(after.projection(0), before.projection(0)); // it was no click
        Expect_Same(after.model, before.model, row.effect == PAN);
        // The line of sight keeps its place in the model only when the turn is about it.
        const TVector3 sight = after.model * TVector3(0, 0, 1) - before.model * TVector3(0, 0, 1);
        EXPECT_EQ(Length(sight) < 1e-12, row.effect != TURN);
        if (row.effect == PAN) {
            EXPECT_NEAR(after.projection(12) - before.projection(12), -10.0 / 200, FLOAT);
            EXPECT_NEAR(after.projection(13) - before.projection(13), -50.0 / 150, FLOAT);
        }
        Fit();
    }
}

TEST_F(OpenGLWidget, RotationKeepsTheSurfacePointInTheMiddle)
{
    view.d_Rotate3dMode = true;
    // The sphere is in the middle, so its nearest point is what the drag turns about.
    Drag(&view, Qt::RightButton, {{50, 50}, {150, 90}, {120, 200}, {300, 250}, {20, 20}});
    const TVector3 center = view.d_RotationCenter * -1.0;
    EXPECT_NEAR(Length(center - CENTER), RADIUS, 3 * Pixel_Size());
    const TCamera camera = view.Camera();
    TMat4 to_eye(camera.model);
    to_eye.Transpose();
    const TVector3 eye = to_eye * center;
    for (int i = 0; i < 3; ++i)
        EXPECT_NEAR(camera.projection(5 * i) * eye(i) + camera.projection(12 + i), 0.0, 1e-6);
}

TEST_F(OpenGLWidget, DragsThatChangeNothing)
{
    view.d_Rotate2dMode = true;
    const TCamera before = view.Camera();
    // Through the middle nothing turns, but it was no click either.
    Drag(&view, Qt::RightButton, {{202, 150}, {198, 150}});
    // Both buttons at once are neither drag.
    Send_Mouse(&view, QEvent::MouseButtonPress, {100, 100}, Qt::LeftButton, Qt::LeftButton);
    Send_Mouse(&view, QEvent::MouseMove, {150, 150}, Qt::NoButton, Qt::LeftButton | Qt::RightButton);
    EXPECT_EQ(view.d_RubberBand, nullptr);
    Expect_Same(view.Camera().model, before.model, true);
    Expect_Same(view.Camera().projection, before.projection, true);
}

TEST_F(OpenGLWidget, RubberBandZooms)
{
    const double before = view.Camera().projection(5);
    const QVector<QPointF> corners{{160, 120}, {170, 130}, {240, 180}};
    Send_Mouse(&view, QEvent::MouseButtonPress, corners[0], Qt::LeftButton, Qt::LeftButton);
    for (const QPointF& corner : corners)
        Send_Mouse(&view, QEvent::MouseMove, corner, Qt::NoButton, Qt::LeftButton);
    ASSERT_NE(view.d_RubberBand, nullptr);
    EXPECT_TRUE(view.d_RubberBand->isVisible());
    EXPECT_EQ(view.d_RubberBand->geometry(), QRect(QPoint(160, 120), QPoint(240, 180)));
    Send_Mouse(&view, QEvent::MouseButtonRelease, corners[2], Qt::LeftButton, Qt::NoButton);
    EXPECT_FALSE(view.d_RubberBand->isVisible());
    EXPECT_NEAR(view.Camera().projection(5), before * 300 / 80, FLOAT); // 80 pixels fill the height
    EXPECT_TRUE(items.isEmpty());

    Drag(&view, Qt::LeftButton, {{10, 10}, {30, 10}, {60, 10}}); // no height: nothing to zoom to
    EXPECT_NEAR(view.Camera().projection(5), before * 300 / 80, FLOAT);
}

TEST_F(OpenGLWidget, MovingToAnotherWindowKeepsTheViewAlive)
{
    QWidget window;
    window.resize(400, 300);
    const double fitted = view.Camera().projection(5);
    Wheel(&view, 120);
    view.d_Rotate3dMode = true;
    view.d_PanMode = false;
    view.setParent(&window);
    view.show();
    Show(&window, &view);
    EXPECT_TRUE(view.d_Rotate3dMode && !view.d_PanMode); // the owner's buttons still say so
    EXPECT_NEAR(view.Camera().projection(5), fitted, FLOAT);
    Click(&view, Qt::LeftButton, Pixel(CENTER));
    ASSERT_EQ(points.size(), 1);
    EXPECT_NEAR(Length(points[0] - CENTER), RADIUS, 1.5 * Pixel_Size());
    Paint(&view);
    view.setParent(nullptr);
    Show(&view, &view);
}

TEST_F(OpenGLWidget, DepthOutsideTheViewport)
{
    EXPECT_DEATH(view.Get_GLPixel_Depth(400, 0), "XPixel < viewport\\[2\\]");
    EXPECT_DEATH(view.Get_GLPixel_Depth(0, 300), "YPixel < viewport\\[3\\]");
    EXPECT_DEATH(view.Get_GLPixel_Depth(-1, 0), "XPixel >= 0");
    EXPECT_DEATH(view.Get_GLPixel_Depth(0, -1), "YPixel >= 0");
    for (const auto& [x, y] : {std::pair{0, 0}, {399, 299}}) // the block beside is moved inside
        EXPECT_EQ(view.Get_GLPixel_Depth(static_cast<short>(x), static_cast<short>(y)), 1.0);
}

TEST(OpenGLWidgetAlone, NothingHappensBeforeTheFirstShow)
{
    TTestView view;
    view.resize(0, 0);
    Drag(&view, Qt::RightButton, {{1, 1}, {20, 20}});
    Drag(&view, Qt::LeftButton, {{1, 1}, {20, 20}, {30, 30}});
    Wheel(&view, 120);
    view.Rotate_Model({1, 0, 0}, 1);
    view.Zoom_To_Rect({0, 0, 9, 9});
    view.Begin_Fit_To_Viewport();
    view.Process_Vertex({1, 1, 1});
    view.End_Fit_To_Viewport();
    double x = 7;
    double y = 7;
    view.Convert_GLViewport_ToModel(1, 1, &x, &y);
    EXPECT_EQ(x, 0.0);
    EXPECT_EQ(view.Get_GLPixel_Depth(5, 5), 1.0);
    EXPECT_EQ(view.d_RubberBand, nullptr);
}

TEST(OpenGLWidgetAlone, FindSelection)
{
    TTestView view;
    EXPECT_EQ(view.Find_Selection({0, 0, 0}), -1);
    view.AddSelectionItem(Segment({0, 0, 0}, {100, 0, 0}, 70));
    view.AddSelectionItem(Segment({0, 40, 0}, {100, 40, 0}, 71));
    view.AddSelectionItem(Segment({50, 0, 0}, {50, 0, 0}, 72)); // without length: never hit
    TOpenGLWidget::TSelectionItemType unknown;
    unknown.kind = 2;
    view.AddSelectionItem(unknown);
    view.AddSelectionItem(Box({200, 10, 10}, {100, -10, -10}, 73, 5)); // directions against the diagonal
    view.AddSelectionItem(Box({20, 39, -1}, {30, 41, 1}, 74, 0));      // without directions
    ASSERT_EQ(view.d_SelectionItems.size(), 5U);

    const struct
    {
        TVector3 point;
        int offset;
    } rows[] = {
        {{10, 5, 0}, 0},  {{10, 900, 0}, 1},                    // any distance
        {{10, 20, 0}, 0},                                       // on a tie the first
        {{0, 0, 0}, -1},  {{100, 0, 0}, -1},                    // on an end plane
        {{150, 0, 0}, 3}, {{150, 10, 0}, -1}, {{25, 40, 0}, 4}, // in a box, though on segment 1
    };
    for (const auto& row : rows)
        EXPECT_EQ(view.Find_Selection(row.point), row.offset) << row.point.x << "," << row.point.y;

    EXPECT_EQ(view.Selection_Item(1).identifier, 71);
    EXPECT_EQ(view.Selection_Item(3).first_direction.x, -1.0);
    EXPECT_EQ(view.Selection_Item(4).third_direction.z, 1.0);
    EXPECT_DEATH(view.Selection_Item(-1), "!\\(offset < 0\\)");
    EXPECT_DEATH(view.Selection_Item(5), "offset < static_cast<int>\\(d_SelectionItems.size\\(\\)\\)");
}

TEST(OpenGLWidgetAlone, Version)
{
    QString version;
    QString extensions;
    const int major = TOpenGLWidget::Get_OpenGL_Version_Major(&version, &extensions);
    EXPECT_GE(major, 2);
    EXPECT_TRUE(version.startsWith(QString::number(major) + "."));
    EXPECT_TRUE(extensions.contains("GL_"));
    EXPECT_DEATH(TOpenGLWidget::Get_OpenGL_Version_Major(nullptr, &extensions), "version_text");
    EXPECT_DEATH(TOpenGLWidget::Get_OpenGL_Version_Major(&version, nullptr), "extensions_text");
}
