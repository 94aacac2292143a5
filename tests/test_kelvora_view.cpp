// SPDX-License-Identifier: MIT
// The main window and its 3-D view together, on a real screen; also run at other scale factors of the
// desktop.
#include "ballbardata.h"
#include "kelvora.h"
#include "opengldisplay.h"
#include "opengldisplaywidget.h"
#include "view_helpers.h"

#include <QAccessible>

struct KelvoraView : testing::Test
{
    const QTemporaryDir home;
    TBallBarData set;
    std::unique_ptr<TKelvora> window;
    TOpenGLDisplay* view{nullptr};

    void SetUp() override
    {
        qputenv("HOME", home.path().toLocal8Bit());
        ASSERT_TRUE(set.Load_Data(TEST_DATA "/bars.dat"));
        window = std::make_unique<TKelvora>();
        view = &Child<TOpenGLDisplay>(*window, "display");
        window->resize(1600, 1500); // many pixels for each bar: a click is rounded to whole ones
        Show(window.get(), view);
        Import();
    }
    void Import()
    {
        window->Import_Ballbar_Data(TEST_DATA "/bars.dat");
        Paint(view);
    }
    /// Where the view shows a bar.
    QPointF Middle(int i) { return Pixel(view, (set.Ballbar_Item(i).sph1 + set.Ballbar_Item(i).sph2) / 2.0); }
    QPointF Sphere(int i) { return Pixel(view, set.Ballbar_Item(i).sph1); }
    QString Name() const { return Child<QLineEdit>(*window, "name").text(); }
    void Click_All()
    {
        for (int i = 0; i < set.Ballbar_Item_Count(); ++i) {
            Click(view, Middle(i));
            EXPECT_EQ(Name(), QString("P%1").arg(i));
        }
    }
};

TEST_F(KelvoraView, EveryBarIsFoundAtItsMiddle)
{
    Click_All();
    // No edges of the machine before the bars.
    window->findChild<TOpenGLDisplayWidget*>()->Define_Machine_Volume({0, 0, 0}, {0, 0, 0});
    const QPointF start = view->rect().center() + QPointF(90, 0);
    for (const auto key : {Qt::NoModifier, Qt::ShiftModifier, Qt::ControlModifier}) {
        Drag(view, Qt::RightButton, {start, start + QPointF(-3, 8), start + QPointF(-7, 20)}, key);
        Wheel(view, key == Qt::ControlModifier ? 120 : -120);
        Paint(view);
        Click_All();
    }
}

TEST_F(KelvoraView, NoFileStopsTheProgram)
{
    window->resize(500, 400);
    const QPointF middle = view->rect().center();
    for (const char* row : {"1e12,1e12,0, 1e12,1e12,500, 0,0,0", "1.2e10,0,0, 1.2e10,0,1.1e-6, 0,0,-80",
                            "1,2,3, 1,2,3, 0,0,-80", "5e-324,0,0, 0,5e-324,0, 5e-324,0,0",
                            "0,0,0, 500,0,0, 1e140,-1e12,1e12", "1e140,1e140,0, -1e140,0,0, 1e140,0,0"}) {
        const QByteArray content = QByteArray("BallBar_V2\nA,900,") + row + ",0,0\n";
        window->Import_Ballbar_Data(Write(home.filePath("row.dat"), content));
        Paint(view);
        Click(view, middle);
        for (const auto key : {Qt::NoModifier, Qt::ShiftModifier, Qt::ControlModifier})
            Drag(view, Qt::RightButton, {middle + QPointF(20, 0), middle, {0, 0}}, key);
        Drag(view, Qt::LeftButton, {{0, 0}, middle, middle});
        Paint(view);
    }
}

TEST_F(KelvoraView, WindowAndViewWorkTogether)
{
    QImage before = view->grabFramebuffer();
    Click(view, Middle(0));
    Paint(view);
    EXPECT_NE(view->grabFramebuffer(), before) << "the bar is highlighted";
    Click(view, {3, 3}); // nothing there: silent
    EXPECT_EQ(Name(), "P0");

    // A tolerance keeps the camera, an import and the button fit.
    const QPointF fitted = Sphere(1);
    Wheel(view, 120);
    const QPointF moved = Sphere(1);
    EXPECT_NE(moved, fitted);
    Child<QSlider>(*window, "sub_tolerance").setValue(4);
    Paint(view);
    EXPECT_EQ(Sphere(1), moved);
    Import();
    EXPECT_LT(QLineF(Sphere(1), fitted).length(), 1.5);
    Drag(view, Qt::RightButton, {{200, 200}, {215, 210}, {230, 220}}); // follows the pointer
    EXPECT_LT(QLineF(Sphere(1), fitted + QPointF(30, 20)).length(), 2.0);
    Child<QToolButton>(*window, "tb_scale_to_fit").click();
    Paint(view);
    EXPECT_LT(QLineF(Sphere(1), fitted).length(), 1.5);

    window->Menu_New();     // leaves nothing that could be picked
    Click(view, Middle(0)); // but a picture of it until the next paint
    EXPECT_EQ(Name(), "");
    Paint(view);
    before = view->grabFramebuffer();
    const QPointF before_update = Sphere(1);
    Child<QLineEdit>(*window, "max_z").setText("-200");
    Child<QToolButton>(*window, "update").click();
    Paint(view);
    EXPECT_NE(view->grabFramebuffer(), before) << "the machine's volume is drawn anew";
    EXPECT_EQ(Sphere(1), before_update) << "from the same place";
}

TEST_F(KelvoraView, ButtonsKeyboardAndScreenReader)
{
    const char* const names[] = {"tb_pan", "tb_rotate2d", "tb_rotate3d"};
    EXPECT_TRUE(Child<QToolButton>(*window, "tb_pan").isChecked());
    for (const auto& [button, mode] : {std::pair{0, 0}, {2, 2}, {1, 1}, {1, 0}, {2, 2}, {2, 0}, {0, 0}}) {
        Child<QToolButton>(*window, names[button]).click();
        const bool modes[] = {view->d_PanMode, view->d_Rotate2dMode, view->d_Rotate3dMode};
        for (int i = 0; i < 3; ++i)
            EXPECT_EQ(State(modes[i], Child<QToolButton>(*window, names[i]).isChecked()),
                      State(i == mode, i == mode));
    }
    EXPECT_NE(QAccessible::queryAccessibleInterface(view)->text(QAccessible::Name), "");
    QApplication::setActiveWindow(window.get());
    view->setFocus();
    for (const char* const button : {"tb_scale_to_fit", "tb_pan", "tb_rotate2d", "tb_rotate3d"}) {
        QTest::keyClick(window->focusWidget(), Qt::Key_Tab);
        QWidget* focus = window->focusWidget();
        EXPECT_EQ(focus->objectName(), button);
        EXPECT_EQ(QAccessible::queryAccessibleInterface(focus)->text(QAccessible::Name), focus->toolTip());
    }
    QTest::keyClick(window->focusWidget(), Qt::Key_Space);
    EXPECT_TRUE(view->d_Rotate3dMode);
}
