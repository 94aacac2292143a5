// SPDX-License-Identifier: MIT
#include "ballbarmeshes.h"
#include "opengldisplay.h"
#include "opengldisplaywidget.h"
#include "view_helpers.h"

#include <QToolButton>

#include <cmath>
#include <random>

namespace
{

const TVector3 MACHINE(1200, 1200, 1300);

struct TBar
{
    TVector3 sphere1, sphere2;
    TVector3 Middle() const { return (sphere1 + sphere2) / 2.0; }
};

/// Twenty bars all over the machine, in several directions and lengths.
std::vector<TBar> Example_Set()
{
    const TVector3 directions[] = {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}, {1, 1, 1}, {1, -1, 0}};
    std::vector<TBar> bars;
    for (int i = 0; i < 20; ++i) {
        const TVector3 center(150 + 200 * (i % 4), 150 + 225 * (i / 4), 150 + 150 * (i % 3));
        TVector3 axis = directions[i % 5];
        axis = axis.Normal() * (60.0 + 3.0 * i);
        bars.push_back({center - axis, center + axis});
    }
    return bars;
}

class OpenGLDisplayWidget : public testing::Test
{
protected:
    void SetUp() override
    {
        frame.resize(1001, 803);
        frame.Define_Machine_Volume({0, 0, 0}, MACHINE); // before the first show, as at start
        for (size_t i = 0; i < bars.size(); ++i)
            frame.Add_BallBar(100 + static_cast<int>(i), QStringLiteral("P%1").arg(i), bars[i].sphere1,
                              bars[i].sphere2, {0, 0, -40}, i % 4 == 1, i % 5 == 2);
        view = frame.findChild<TOpenGLDisplay*>();
        ASSERT_NE(view, nullptr);
        Show(&frame, view);
    }
    QToolButton* Button(const char* name) { return frame.findChild<QToolButton*>(QLatin1String(name)); }
    QString Mode() const
    {
        return QStringLiteral("%1%2%3")
            .arg(view->d_PanMode)
            .arg(view->d_Rotate2dMode)
            .arg(view->d_Rotate3dMode);
    }
    QString Checked()
    {
        return QStringLiteral("%1%2%3")
            .arg(Button("tb_pan")->isChecked())
            .arg(Button("tb_rotate2d")->isChecked())
            .arg(Button("tb_rotate3d")->isChecked());
    }
    QPointF Device_Pixel(const TVector3& point)
    {
        QPoint pixel;
        view->Point_Raster_Position(&pixel.rx(), &pixel.ry(), point);
        return pixel;
    }
    /// The distance, in pixels, at which the line from a to b passes the pixel p in the picture.
    double Gap(const QPointF& p, const TVector3& a, const TVector3& b)
    {
        const QPointF start = Device_Pixel(a);
        const QPointF along = Device_Pixel(b) - start;
        const double squared = std::max(QPointF::dotProduct(along, along), 1.0);
        const QPointF gap =
            p - start - along * std::clamp(QPointF::dotProduct(p - start, along) / squared, 0.0, 1.0);
        return std::hypot(gap.x(), gap.y());
    }
    /// True when another bar, or an edge of the machine, passes over or under the middle of this one, or when
    /// it is seen end on, so that a sphere hides the rod.
    bool Is_Crowded(size_t bar)
    {
        const QPointF p = Device_Pixel(bars[bar].Middle());
        const QPointF half_length = Device_Pixel(bars[bar].sphere1) - p;
        if (std::hypot(half_length.x(), half_length.y()) < 15 * Device_Pixel_Per_Mm() + 3)
            return true;
        for (size_t other = 0; other < bars.size(); ++other)
            if (other != bar &&
                Gap(p, bars[other].sphere1, bars[other].sphere2) < 15 * Device_Pixel_Per_Mm() + 3)
                return true;
        for (int corner = 0; corner < 8; ++corner)
            for (int axis = 0; axis < 3; ++axis) {
                TVector3 from(corner & 1 ? MACHINE.x : 0, corner & 2 ? MACHINE.y : 0,
                              corner & 4 ? MACHINE.z : 0);
                TVector3 to(from);
                to(axis) = MACHINE(axis);
                if (Gap(p, from, to) < 3)
                    return true;
            }
        return false;
    }
    double Device_Pixel_Per_Mm()
    {
        const QPointF a = Device_Pixel(bars[0].sphere1);
        double longest = 0.0;
        for (const TVector3& axis : {TVector3(1000, 0, 0), TVector3(0, 1000, 0), TVector3(0, 0, 1000)}) {
            const QPointF d = Device_Pixel(bars[0].sphere1 + axis) - a;
            longest = std::max(longest, std::hypot(d.x(), d.y()));
        }
        return longest / 1000;
    }
    /// Clicks the middle of every bar, or of every bar in plain sight, and returns how many those were.
    int Click_All(bool plain_sight_only = false)
    {
        int clicked = 0;
        QSignalSpy spy(&frame, &TOpenGLDisplayWidget::Ballbar_Item_Clicked);
        for (size_t i = 0; i < bars.size(); ++i) {
            const QPointF position = Device_Pixel(bars[i].Middle()) / view->devicePixelRatioF();
            const bool inside = view->rect().adjusted(2, 2, -2, -2).contains(position.toPoint());
            if (plain_sight_only && (!inside || Is_Crowded(i)))
                continue;
            spy.clear();
            Click(view, Qt::LeftButton, position);
            EXPECT_EQ(spy.size(), 1) << "bar " << i;
            EXPECT_EQ(spy.value(0).value(0).toInt(), 100 + static_cast<int>(i));
            ++clicked;
        }
        return clicked;
    }

    const std::vector<TBar> bars = Example_Set();
    TOpenGLDisplayWidget frame;
    TOpenGLDisplay* view{nullptr};
};

} // namespace

TEST_F(OpenGLDisplayWidget, EveryBarIsFoundAtItsMiddle)
{
    // Also run at other scale factors of the desktop.
    EXPECT_EQ(Click_All(), 20);
    for (const QSize& size : {QSize(803, 1001), QSize(900, 900)}) {
        frame.resize(size);
        Paint(view);
        frame.Update(true);
        Paint(view);
        EXPECT_EQ(Click_All(), 20);
    }
}

TEST_F(OpenGLDisplayWidget, EveryBarIsFoundAfterDragsAndZooms)
{
    std::mt19937 random(7);
    std::uniform_int_distribution<int> step(-80, 80);
    int clicked = 0;
    for (int run = 0; run < 20; ++run) {
        const QPointF start(frame.rect().center());
        const QPointF end = start + QPointF(step(random), step(random));
        switch (run % 5) {
        case 0:
        case 1:
            Drag(view, Qt::RightButton, {start, (start + end) / 2, end}, Qt::ControlModifier);
            break;
        case 2:
            Drag(view, Qt::RightButton, {start + QPointF(90, 0), end + QPointF(90, 0)}, Qt::ShiftModifier);
            break;
        case 3:
            Drag(view, Qt::RightButton, {start, start + QPointF(20, 12)});
            Wheel(view, step(random));
            break;
        default:
            frame.Update(true);
        }
        Paint(view);
        clicked += Click_All(true);
    }
    EXPECT_GT(clicked, 150); // of 400: the others are out of sight or hidden, or nearly so
}

TEST_F(OpenGLDisplayWidget, ModeButtons)
{
    const struct
    {
        const char* button;
        const char* state; ///< pan, rotate 2-D, rotate 3-D
    } rows[] = {
        {"tb_pan", "100"},      {"tb_rotate3d", "001"}, {"tb_rotate2d", "010"}, {"tb_rotate2d", "100"},
        {"tb_rotate3d", "001"}, {"tb_rotate3d", "100"}, {"tb_rotate2d", "010"}, {"tb_pan", "100"},
    };
    EXPECT_EQ(Mode(), "100");
    for (const auto& row : rows) {
        SCOPED_TRACE(std::to_string(&row - rows));
        Button(row.button)->click();
        EXPECT_EQ(Mode(), row.state);
        EXPECT_EQ(Checked(), row.state);
    }
    for (QToolButton* button : frame.findChildren<QToolButton*>()) {
        EXPECT_EQ(button->accessibleName(), button->toolTip());
        EXPECT_FALSE(button->toolTip().isEmpty());
    }
    EXPECT_EQ(frame.findChildren<QToolButton*>().size(), 4);
}

TEST_F(OpenGLDisplayWidget, OnlyAFitMovesTheCamera)
{
    const QPointF home = Device_Pixel(bars[0].sphere1);
    Wheel(view, 120);
    const QPointF zoomed = Device_Pixel(bars[0].sphere1);
    EXPECT_NE(zoomed, home);
    frame.Update(false);
    frame.Define_Machine_Volume({0, 0, 0}, {5000, 5000, 5000});
    Paint(view);
    EXPECT_EQ(Device_Pixel(bars[0].sphere1), zoomed);
    frame.Define_Machine_Volume({0, 0, 0}, MACHINE);
    Button("tb_scale_to_fit")->click();
    Paint(view);
    EXPECT_EQ(Device_Pixel(bars[0].sphere1), home);
}

TEST_F(OpenGLDisplayWidget, ClearedBarsAreNotClicked)
{
    const QPointF middle = Device_Pixel(bars[3].Middle()) / view->devicePixelRatioF();
    QSignalSpy spy(&frame, &TOpenGLDisplayWidget::Ballbar_Item_Clicked);
    frame.Clear_BallBars(); // still in the picture until the next paint
    Click(view, Qt::LeftButton, middle);
    ASSERT_EQ(spy.size(), 1);
    EXPECT_EQ(spy[0][0].toInt(), -1);
}
