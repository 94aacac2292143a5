// SPDX-License-Identifier: MIT
#include "opengldisplay.h"
#include "view_helpers.h"

#include <QImage>
#include <QVector3D>

#include <algorithm>
#include <cmath>
#include <functional>
#include <map>

namespace
{

class TTestDisplay : public TOpenGLDisplay
{
public:
    using TOpenGLDisplay::d_BallBars;
    using TOpenGLDisplay::d_MachineBuffer;
    using TOpenGLDisplay::d_SelectionItems;
    using TOpenGLDisplay::d_TriadOrigin;
    using TOpenGLDisplay::d_TriadSize;
    using TOpenGLDisplay::d_VertexBuffers;

    TCamera Camera()
    {
        makeCurrent();
        return Read_Camera();
    }
    int errors{0};

protected:
    void paintGL() override
    {
        TOpenGLDisplay::paintGL();
        errors += glGetError() == GL_NO_ERROR ? 0 : 1;
    }
};

TOpenGLDisplay::TBallBar Bar(int index, const TVector3& sphere1, const TVector3& sphere2,
                             bool first_flag = false, bool second_flag = false)
{
    TOpenGLDisplay::TBallBar bar;
    bar.index = index;
    bar.name = QStringLiteral("bar");
    bar.first_flag = first_flag;
    bar.second_flag = second_flag;
    bar.sphere1 = sphere1;
    bar.sphere2 = sphere2;
    bar.label = BallBarMeshes::Label_Position(sphere1, sphere2);
    bar.probe = {0, 0, -8};
    return bar;
}

class OpenGLDisplay : public testing::Test
{
protected:
    void SetUp() override
    {
        view.resize(600, 400);
        view.Define_Machine_Volume({0, 0, 0}, {40, 30, 20}); // small, so that a rod is many pixels wide
        Show(&view, &view);
    }
    void TearDown() override { EXPECT_EQ(view.errors, 0); }
    QImage Picture(bool fit = false)
    {
        view.d_FitRequested = fit;
        Paint(&view);
        return view.grabFramebuffer();
    }
    QPoint Pixel(const TVector3& point)
    {
        QPoint pixel;
        view.Point_Raster_Position(&pixel.rx(), &pixel.ry(), point);
        return pixel;
    }
    /// The nearest point to the viewer of a sphere or, with an axis, of a cylinder about that point.
    TVector3 Front_Normal(const TVector3& axis = {})
    {
        const TVector3 sight = view.Camera().model * TVector3(0, 0, 1);
        TVector3 normal = sight - (sight ^ axis) * axis;
        return normal.Normal();
    }
    /// The colour the lights give a surface of that normal on a white background.
    QVector3D Shade(const TVector3& color, double alpha, double specular, const TVector3& normal)
    {
        const TMat4 model = view.Camera().model;
        const double angle = std::max(normal ^ (model * TVector3(0, 1, 0)), 0.0);
        const double highlight = std::max(normal ^ (model * TVector3(0, 0.707107, 0.707107)), 0.0) * specular;
        const auto channel = [&](double c) {
            return 255.0 * (alpha * std::min(c * (0.8 + 0.1 * angle) + highlight, 1.0) + 1.0 - alpha);
        };
        return QVector3D(static_cast<float>(channel(color.x)), static_cast<float>(channel(color.y)),
                         static_cast<float>(channel(color.z)));
    }

    TTestDisplay view;
};

QVector3D Color(QRgb rgb)
{
    return QVector3D(static_cast<float>(qRed(rgb)), static_cast<float>(qGreen(rgb)),
                     static_cast<float>(qBlue(rgb)));
}

int Count(const QImage& image, const std::function<bool(QRgb)>& matches)
{
    int count = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            count += matches(image.pixel(x, y)) ? 1 : 0;
    return count;
}

bool Is_Pure_Red(QRgb rgb)
{
    return qRed(rgb) > 150 && qGreen(rgb) < 80 && qBlue(rgb) < 80;
}

} // namespace

TEST_F(OpenGLDisplay, ColoursOfEveryState)
{
    const struct
    {
        bool first, second, selected;
        TVector3 rod, spheres;
        double alpha;
    } rows[] = {
        {false, false, false, {0.1, 0.1, 0.1}, {0.6, 0.6, 0.6}, 1.0},
        {false, false, true, {0, 0, 0.7}, {0.7, 0.7, 0.9}, 1.0},
        {true, false, false, {0.7, 0, 0}, {0.9, 0.7, 0.7}, 1.0},
        {true, false, true, {0.7, 0, 0.7}, {0.9, 0.7, 0.9}, 1.0},
        {false, true, false, {0.01, 0.01, 0.01}, {0.06, 0.06, 0.06}, 0.1},
        {false, true, true, {0, 0, 0.42}, {0.42, 0.42, 0.54}, 0.6},
        {true, true, false, {0.07, 0, 0}, {0.09, 0.07, 0.07}, 0.1},
        {true, true, true, {0.42, 0, 0.42}, {0.54, 0.42, 0.54}, 0.6},
    };
    const TVector3 sphere1(5, 15, 10);
    const TVector3 sphere2(35, 15, 10);
    for (const auto& row : rows) {
        SCOPED_TRACE(std::to_string(&row - rows));
        view.Clear_BallBars();
        view.Add_BallBar(Bar(3, sphere1, sphere2, row.first, row.second));
        view.Set_Selection(row.selected ? 3 : 4);
        const QImage picture = Picture(true);
        const double radius = BallBarMeshes::Sphere_Radius(30);
        TVector3 on_sphere = Front_Normal() - TVector3(0.7, 0, 0); // beside the rod's end inside
        on_sphere.Normal();
        const TVector3 on_rod = Front_Normal({1, 0, 0});
        const QVector3D sphere = Color(picture.pixel(Pixel(sphere1 + radius * on_sphere)));
        const QVector3D rod = Color(picture.pixel(Pixel((sphere1 + sphere2) / 2.0 + 0.5 * radius * on_rod)));
        EXPECT_LT((sphere - Shade(row.spheres, row.alpha, 0.3, on_sphere)).length(), 6);
        EXPECT_LT((rod - Shade(row.rod, row.alpha, 0.1, on_rod)).length(), 6);
        // The probe shows on the selected bar alone, opaque in either case.
        EXPECT_EQ(Count(picture, Is_Pure_Red) > 8, row.selected || (row.first && !row.second));
    }
}

TEST_F(OpenGLDisplay, SeeThroughBarsAreOnTopOfAll)
{
    // Two crossing rods, the second one behind the first.
    const TVector3 crossing(20, 15, 10);
    const TVector3 behind = (view.Camera().model * TVector3(0, 0, -1)) * 8.0;
    for (const bool see_through : {false, true}) {
        view.Clear_BallBars();
        view.Add_BallBar(Bar(0, crossing + behind - TVector3(0, 0, 70),
                             crossing + behind + TVector3(0, 0, 70), true, see_through));
        view.Add_BallBar(Bar(1, crossing - TVector3(15, 0, 0), crossing + TVector3(15, 0, 0)));
        const QRgb pixel = Picture(true).pixel(Pixel(crossing));
        const QVector3D front = Shade({0.1, 0.1, 0.1}, 1.0, 0.1, Front_Normal({1, 0, 0}));
        if (see_through) { // a tenth of the see-through bar's red over the dark rod
            EXPECT_NEAR(qRed(pixel) - qGreen(pixel), 0.1 * 0.07 * 0.8 * 255, 2.0);
            EXPECT_LT(qRed(pixel), front.x() + 5);
            EXPECT_GE(qRed(pixel), qGreen(pixel));
        } else {
            EXPECT_LT((Color(pixel) - front).length(), 6);
        }
        // What a click there reports is what was drawn last.
        QVector<int> items;
        const auto connection =
            QObject::connect(&view, &TOpenGLWidget::Model_Click_Point, &view,
                             [&items](double, double, double, int item) { items.append(item); });
        Click(&view, Qt::LeftButton, Pixel(crossing));
        QObject::disconnect(connection);
        EXPECT_EQ(items, QVector<int>{see_through ? 0 : 1});
    }
}

TEST_F(OpenGLDisplay, EveryBarCarriesItsLabel)
{
    for (int i = 0; i < 4; ++i) {
        const double y = 12.0 * i;
        view.Add_BallBar(Bar(i, {0, y, 0}, {40, y, 0}, false, i % 2 == 1));
    }
    const QImage picture = Picture(true);
    for (const auto& bar : view.d_BallBars) {
        const QPoint corner = Pixel(bar.label) - QPoint(1, 1);
        EXPECT_EQ(picture.pixelColor(corner), QColor(236, 236, 236))
            << bar.index; // 224 at 160/255 over white
        const QRect label(corner, QFontMetrics(view.font()).size(0, bar.name) + QSize(3, 3));
        EXPECT_GT(Count(picture.copy(label), [](QRgb rgb) { return qGray(rgb) < 100; }), 5); // its letters
    }
    EXPECT_EQ(Picture(), picture); // painting leaves no state behind
    EXPECT_EQ(Picture(true), picture);
}

TEST_F(OpenGLDisplay, FitShowsTheWholeScene)
{
    view.Add_BallBar(Bar(0, {-400, 0, 0}, {100, 500, 50}));
    const TCamera before = view.Camera();
    Picture(true);
    const TCamera camera = view.Camera();
    EXPECT_LT(camera.projection(0), before.projection(0)); // the bar leaves the machine's volume
    QRect shown(Pixel(view.d_TriadOrigin), QSize(1, 1));
    std::vector<int> buffers{view.d_MachineBuffer};
    for (const int position : {0, 1, 4, 5})
        buffers.push_back(view.d_BallBars[0].buffers[position]);
    for (const int buffer : buffers) {
        const auto* vertices = view.d_VertexBuffers.Item(buffer);
        ASSERT_NE(vertices, nullptr);
        const double* v = vertices->data.get();
        for (int i = 0; i < vertices->size; i += 3)
            shown |= QRect(Pixel({v[i], v[i + 1], v[i + 2]}), QSize(1, 1));
    }
    EXPECT_NEAR(std::max(shown.width(), shown.height()), 400, 2);
    EXPECT_LT((shown.center() - view.rect().center()).manhattanLength(), 4);
}

TEST_F(OpenGLDisplay, MachineBoxAndTriad)
{
    view.Define_Machine_Volume({0, 0, 0}, {300, 200, 150});
    std::map<std::vector<double>, int> corners;
    const auto* box = view.d_VertexBuffers.Item(view.d_MachineBuffer);
    ASSERT_EQ(box->size, 72);
    for (int i = 0; i < 72; i += 6) {
        const double* edge = box->data.get() + i;
        int differing = 0;
        for (int k = 0; k < 3; ++k)
            differing += edge[k] != edge[k + 3] ? 1 : 0;
        EXPECT_EQ(differing, 1);
        ++corners[{edge[0], edge[1], edge[2]}];
        ++corners[{edge[3], edge[4], edge[5]}];
    }
    EXPECT_EQ(corners.size(), 8U);
    for (const auto& [corner, count] : corners)
        EXPECT_EQ(count, 3);
    EXPECT_EQ(view.d_TriadSize, 30.0);
    EXPECT_NEAR(Length(view.d_TriadOrigin), 30.0, 1e-12);
    EXPECT_LT(view.d_TriadOrigin.x, 0.0);

    const int buffer = view.d_MachineBuffer;
    for (const TVector3& maximum : {TVector3(), TVector3(1e300, 1, 1), TVector3(-5, -5, -5)}) {
        view.Define_Machine_Volume(TVector3(), maximum);
        Picture(true);
        EXPECT_GE(view.d_TriadSize, 0.0);
    }
    EXPECT_EQ(view.d_MachineBuffer, buffer);
}

TEST_F(OpenGLDisplay, ClearingReleasesEverything)
{
    const auto stored = [this](const TTestDisplay::TBallBar& bar) {
        return std::count_if(std::begin(bar.buffers), std::end(bar.buffers),
                             [this](int id) { return view.d_VertexBuffers.Has_Buffer(id); });
    };
    for (int i = 0; i < 41; ++i) { // one more than the finest meshes are made for
        view.Add_BallBar(Bar(i, {1.0 * i, 0, 0}, {1.0 * i, 100, 0}));
        const int fineness = i < 40 ? 64 : 16;
        ASSERT_EQ(view.d_VertexBuffers.Buffer_Size(view.d_BallBars[0].buffers[1]), 2 * 3 * 24 * fineness);
    }
    for (const auto& bar : view.d_BallBars) {
        EXPECT_EQ(stored(bar), 8);
        EXPECT_EQ(view.d_VertexBuffers.Buffer_Size(bar.buffers[1]), 2 * 3 * 24 * 16);
    }
    const auto bars = view.d_BallBars;
    EXPECT_EQ(view.d_SelectionItems.size(), 41U);
    view.Clear_BallBars();
    EXPECT_TRUE(view.d_BallBars.empty() && view.d_SelectionItems.empty());
    for (const auto& bar : bars)
        EXPECT_EQ(stored(bar), 0);
    EXPECT_TRUE(view.d_VertexBuffers.Has_Buffer(view.d_MachineBuffer));
    Picture(true);
}

TEST_F(OpenGLDisplay, OddBars)
{
    const QString names[] = {QString(), QString(5000, QLatin1Char('W')), QStringLiteral("%1 <b>&\n\t"),
                             QStringLiteral("位置 Ω שלום")};
    const TVector3 ends[] = {{0, 0, 0}, {1e-9, 0, 0}, {1e9, 0, 0}, {1e300, 1e300, 0}, {100, 0, 0}};
    for (int i = 0; i < 20; ++i) {
        auto bar = Bar(i, TVector3(), ends[i % 5]);
        bar.name = names[i % 4];
        bar.probe = i % 3 ? TVector3() : TVector3(0, 0, -1e9);
        view.Add_BallBar(bar);
    }
    Picture(true);
    view.Set_Selection(2);
    Picture();
    const TCamera camera = view.Camera();
    for (const int i : {0, 5, 10, 12, 13, 14})
        EXPECT_TRUE(std::isfinite(camera.projection(i)) && (i > 10 || camera.projection(i) != 0.0)) << i;
}

TEST(OpenGLDisplayAlone, ConvertsGeometryIntoTwoArrays)
{
    TTestDisplay view;
    auto* vertices = new double[1];
    auto* normals = new double[1];
    const auto sphere = TOpenGLGeometryFactory().RenderSphere({5, 0, 0}, 2);
    EXPECT_EQ(view.Convert_Geometry_To_Buffer(sphere, &vertices, &normals), 288);
    EXPECT_EQ(vertices[287], sphere[95].position.z);
    EXPECT_EQ(normals[285], sphere[95].normal.x);
    EXPECT_EQ(view.Convert_Geometry_To_Buffer({}, &vertices, &normals), 0);
    delete[] vertices;
    delete[] normals;
}
