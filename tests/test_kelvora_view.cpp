// SPDX-License-Identifier: MIT
// The main window and its 3-D view together, on a real screen; also run at other scale factors of the
// desktop.
#include "gui_test.h"
#include "kelvora.h"
#include "opengldisplay.h"
#include "opengldisplaywidget.h"
#include "view_helpers.h"

#include <QAccessible>
#include <QLineEdit>
#include <QLineF>
#include <QSlider>
#include <QTemporaryDir>
#include <QToolButton>

#include <random>

namespace
{

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
        const TVector3 center(150 + 200 * (i % 4), 150 + 225 * (i / 4), 150 * (i % 3) - 1150);
        TVector3 axis = directions[i % 5];
        axis = axis.Normal() * (60.0 + 3.0 * i);
        bars.push_back({center - axis, center + axis});
    }
    return bars;
}

class KelvoraView : public testing::Test
{
protected:
    void SetUp() override
    {
        qputenv("HOME", home.path().toLocal8Bit());
        window = std::make_unique<TKelvora>();
        view = window->findChild<TOpenGLDisplay*>();
        ASSERT_NE(view, nullptr);
        QFile file(home.filePath(QStringLiteral("set.dat")));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        QTextStream out(&file);
        out << "BallBar_V2\n";
        for (size_t i = 0; i < bars.size(); ++i) {
            out << "P" << i << ",";
            for (const TVector3& p : {bars[i].sphere1, bars[i].sphere2})
                out << "," << p.x << "," << p.y << "," << p.z;
            out << ",0,0,0,0,0\n";
        }
        out.flush();
        file.close();
        window->resize(1001, 1000);
        Show(window.get(), view);
        Import();
    }
    void Import()
    {
        window->Import_Ballbar_Data(home.filePath(QStringLiteral("set.dat")));
        Paint(view);
    }
    QString Name() const { return Child<QLineEdit>(*window, "name").text(); }
    /// False when another bar passes over or under the middle of this one, or when it is seen end on.
    bool Is_In_Plain_Sight(size_t bar)
    {
        const QPointF p = Pixel(view, bars[bar].At(0.5));
        for (size_t other = 0; other < bars.size(); ++other)
            for (double part = 0.0; part <= 1.0; part += other == bar ? 1.0 : 0.05)
                if (QLineF(p, Pixel(view, bars[other].At(part))).length() < 10)
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
            Click(view, Pixel(view, bars[i].At(0.5)));
            EXPECT_EQ(Name(), QStringLiteral("P%1").arg(i));
            ++clicked;
        }
        return clicked;
    }

    const std::vector<TBar> bars = Example_Set();
    const QTemporaryDir home;
    std::unique_ptr<TKelvora> window;
    TOpenGLDisplay* view{nullptr};
};

} // namespace

TEST_F(KelvoraView, EveryBarIsFoundAtItsMiddle)
{
    EXPECT_EQ(Click_All(), 20);
    // No edges of the machine before the bars.
    window->findChild<TOpenGLDisplayWidget*>()->Define_Machine_Volume({0, 0, 0}, {0, 0, 0});
    std::mt19937 random(7);
    std::uniform_int_distribution<int> step(-80, 80);
    int clicked = 0;
    for (int run = 0; run < 20; ++run) {
        const QPointF start = view->rect().center() + QPointF(90, 0);
        const QPointF end = start + QPointF(step(random), step(random));
        const auto key = run % 2 ? Qt::ControlModifier : run % 4 ? Qt::ShiftModifier : Qt::NoModifier;
        Drag(view, Qt::RightButton, {start, (start + end) / 2, end}, key);
        Wheel(view, step(random));
        if (run % 5 == 4)
            Child<QToolButton>(*window, "tb_scale_to_fit").click();
        EXPECT_EQ(view->d_FitRequested, run % 5 == 4);
        Paint(view);
        clicked += Click_All(true);
    }
    EXPECT_GT(clicked, 100); // of 400: the others are out of sight or hidden, or nearly so
}

TEST_F(KelvoraView, WindowAndViewWorkTogether)
{
    QImage before = view->grabFramebuffer();
    Click(view, Pixel(view, bars[0].At(0.5)));
    Paint(view);
    EXPECT_NE(view->grabFramebuffer(), before) << "the bar is highlighted";
    Click(view, {3, 3}); // nothing there: silent
    EXPECT_EQ(Name(), QStringLiteral("P0"));

    // A tolerance keeps the camera, an import fits.
    const QPointF fitted = Pixel(view, bars[1].sphere1);
    Wheel(view, 120);
    const QPointF moved = Pixel(view, bars[1].sphere1);
    EXPECT_NE(moved, fitted);
    Child<QSlider>(*window, "sub_tolerance").setValue(4);
    Paint(view);
    EXPECT_EQ(Pixel(view, bars[1].sphere1), moved);
    Import();
    EXPECT_LT(QLineF(Pixel(view, bars[1].sphere1), fitted).length(), 1.5);

    window->Menu_New();                        // leaves nothing that could be picked
    Click(view, Pixel(view, bars[0].At(0.5))); // but a picture of it until the next paint
    EXPECT_EQ(Name(), QString());
    Paint(view);
    before = view->grabFramebuffer();
    Child<QLineEdit>(*window, "max_z").setText(QStringLiteral("-200"));
    Child<QToolButton>(*window, "update").click();
    Paint(view);
    EXPECT_NE(view->grabFramebuffer(), before) << "the machine's volume is drawn anew";
}

TEST_F(KelvoraView, OneModeButtonIsAlwaysDown)
{
    const char* const names[] = {"tb_pan", "tb_rotate2d", "tb_rotate3d"};
    for (const auto& [button, mode] :
         {std::pair{0, 0}, {2, 2}, {1, 1}, {1, 0}, {2, 2}, {2, 0}, {1, 1}, {0, 0}}) {
        Child<QToolButton>(*window, names[button]).click();
        const bool modes[] = {view->d_PanMode, view->d_Rotate2dMode, view->d_Rotate3dMode};
        for (int i = 0; i < 3; ++i) {
            EXPECT_EQ(modes[i], i == mode) << names[button];
            EXPECT_EQ(Child<QToolButton>(*window, names[i]).isChecked(), i == mode) << names[button];
        }
    }
}

TEST_F(KelvoraView, KeyboardAndScreenReader)
{
    const QWidgetList widgets = window->findChildren<QWidget*>(); // of the dialogs too
    for (QWidget* widget : widgets)
        if ((widget->focusPolicy() & Qt::TabFocus) != 0 && widget->focusProxy() == nullptr) {
            EXPECT_NE(QAccessible::queryAccessibleInterface(widget)->text(QAccessible::Name), QString())
                << widget->metaObject()->className() << ' ' << widget->objectName().toStdString();
        }
    view->setFocus();
    for (const char* const button : {"tb_scale_to_fit", "tb_pan", "tb_rotate2d", "tb_rotate3d"}) {
        QTest::keyClick(window->focusWidget(), Qt::Key_Tab);
        EXPECT_EQ(window->focusWidget()->objectName(), QLatin1String(button));
    }
    QTest::keyClick(window->focusWidget(), Qt::Key_Space);
    EXPECT_TRUE(view->d_Rotate3dMode);
}
