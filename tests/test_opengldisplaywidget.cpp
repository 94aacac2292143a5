// SPDX-License-Identifier: MIT
// Also run at other scale factors of the desktop.
#include "gui_test.h"
#include "opengldisplay.h"
#include "opengldisplaywidget.h"
#include "view_helpers.h"

#include <QLineF>
#include <QToolButton>

#include <random>

namespace
{

const TVector3 MACHINE(1200, 1200, 1300);

struct TBar
{
    TVector3 sphere1, sphere2;
    TVector3 At(double part) const { return sphere1 + part * (sphere2 - sphere1); }
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
    /// False when another bar passes over or under the middle of this one, or when it is seen end on.
    bool Is_In_Plain_Sight(size_t bar)
    {
        const QPointF p = Pixel(view, bars[bar].At(0.5));
        for (size_t other = 0; other < bars.size(); ++other)
            for (double part = 0.0; part <= 1.0; part += other == bar ? 1.0 : 0.05)
                if (QLineF(p, Pixel(view, bars[other].At(part))).length() < 15)
                    return false;
        return view->rect().contains(p.toPoint());
    }
    /// Clicks the middle of every bar, or of every bar in plain sight, and returns how many those were.
    int Click_All(bool plain_sight_only = false)
    {
        int clicked = 0;
        for (size_t i = 0; i < bars.size(); ++i) {
            if (plain_sight_only && !Is_In_Plain_Sight(i))
                continue;
            QSignalSpy spy(&frame, &TOpenGLDisplayWidget::Ballbar_Item_Clicked);
            Click(view, Pixel(view, bars[i].At(0.5)));
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
    for (const QSize& size : {QSize(1001, 803), QSize(803, 1001), QSize(900, 900)}) {
        frame.resize(size);
        Fit(view);
        EXPECT_EQ(Click_All(), 20);
    }
    std::mt19937 random(7);
    std::uniform_int_distribution<int> step(-80, 80);
    frame.Define_Machine_Volume({0, 0, 0}, {0, 0, 0}); // no edges before the bars
    int clicked = 0;
    for (int run = 0; run < 20; ++run) {
        const QPointF start(590, 400);
        const QPointF end = start + QPointF(step(random), step(random));
        const auto key = run % 2 ? Qt::ControlModifier : run % 4 ? Qt::ShiftModifier : Qt::NoModifier;
        Drag(view, Qt::RightButton, {start, (start + end) / 2, end}, key);
        Wheel(view, step(random));
        if (run % 5 == 4)
            Child<QToolButton>(frame, "tb_scale_to_fit").click();
        EXPECT_EQ(view->d_FitRequested, run % 5 == 4);
        Paint(view);
        clicked += Click_All(true);
    }
    EXPECT_GT(clicked, 120); // of 400: the others are out of sight or hidden, or nearly so

    const QPointF middle = Pixel(view, bars[0].At(0.5));
    QSignalSpy spy(&frame, &TOpenGLDisplayWidget::Ballbar_Item_Clicked);
    frame.Clear_BallBars(); // still in the picture until the next paint
    Click(view, middle);
    EXPECT_EQ(spy.value(0).value(0).toInt(), -1);
}

TEST_F(OpenGLDisplayWidget, ModeButtonsAreNeverAllUp)
{
    const char* const names[] = {"tb_pan", "tb_rotate2d", "tb_rotate3d"};
    const struct
    {
        int button, mode;
    } rows[] = {{0, 0}, {2, 2}, {1, 1}, {1, 0}, {2, 2}, {2, 0}, {1, 1}, {0, 0}};
    for (const auto& row : rows) {
        Child<QToolButton>(frame, names[row.button]).click();
        const bool modes[] = {view->d_PanMode, view->d_Rotate2dMode, view->d_Rotate3dMode};
        for (int i = 0; i < 3; ++i) {
            EXPECT_EQ(modes[i], i == row.mode) << &row - rows;
            EXPECT_EQ(Child<QToolButton>(frame, names[i]).isChecked(), i == row.mode) << &row - rows;
        }
    }
}
