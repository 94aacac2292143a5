// SPDX-License-Identifier: MIT
// The main window and its 3-D view together, on a real screen.
#include "gui_test.h"
#include "kelvora.h"
#include "opengldisplay.h"
#include "opengldisplaywidget.h"
#include "view_helpers.h"

#include <QAccessible>
#include <QLineEdit>
#include <QSlider>
#include <QTemporaryDir>
#include <QToolButton>

namespace
{

struct KelvoraView : testing::Test
{
    QTemporaryDir d_home;
    std::unique_ptr<TKelvora> d_window;
    TOpenGLDisplay* d_view{nullptr};

    void SetUp() override
    {
        qputenv("HOME", d_home.path().toLocal8Bit());
        d_window = std::make_unique<TKelvora>();
        d_view = d_window->findChild<TOpenGLDisplay*>();
        ASSERT_NE(d_view, nullptr);
        Show(d_window.get(), d_view);
        QFile file(d_home.filePath(QStringLiteral("set.dat")));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("BallBar_V2\n"
                   "Across,,100,100,-500,1000.02,100,-500,0.001,0.002,0,0,0\n"
                   "Up,,600,1100,-950,600,1100,-50,0.001,0.002,0,0,0\n"
                   "Along,,1100,1200,-900,1100,2100.01,-900,0.001,0.002,0,0,0\n");
        file.close();
        d_window->Import_Ballbar_Data(file.fileName());
        Paint(d_view);
    }

    QString Name() const { return Child<QLineEdit>(*d_window, "name").text(); }

    QPointF Pixel(const TVector3& point) const
    {
        int x = 0;
        int y = 0;
        d_view->makeCurrent();
        d_view->Point_Raster_Position(&x, &y, point);
        return {double(x), double(y)};
    }
};

const TVector3 middles[] = {{550, 100, -500}, {600, 1100, -500}, {1100, 1650, -900}};

} // namespace

TEST_F(KelvoraView, ClickOnABarSelectsIt)
{
    const char* const names[] = {"Across", "Up", "Along"};
    for (int i = 0; i < 3; ++i) {
        const QImage before = d_view->grabFramebuffer();
        Click(d_view, Qt::LeftButton, Pixel(middles[i]));
        EXPECT_EQ(Name(), QLatin1String(names[i]));
        Paint(d_view);
        EXPECT_NE(d_view->grabFramebuffer(), before) << "the bar is highlighted";
    }
    Click(d_view, Qt::LeftButton, {3, 3}); // nothing there: silent
    EXPECT_EQ(Name(), QStringLiteral("Along"));
    EXPECT_EQ(Child<QLineEdit>(*d_window, "length").text(), QStringLiteral("900.0100"));
}

TEST_F(KelvoraView, ToleranceKeepsTheCameraAndAnImportFits)
{
    const QPointF fitted = Pixel(middles[1]);
    Wheel(d_view, 120);
    Drag(d_view, Qt::RightButton, {{200, 200}, {230, 210}, {260, 190}});
    const QPointF moved = Pixel(middles[1]);
    ASSERT_NE(moved, fitted);
    Child<QSlider>(*d_window, "sub_tolerance").setValue(4);
    Paint(d_view);
    EXPECT_EQ(Pixel(middles[1]), moved);
    d_window->Import_Ballbar_Data(d_home.filePath(QStringLiteral("set.dat")));
    Paint(d_view);
    EXPECT_NEAR(Pixel(middles[1]).x(), fitted.x(), 1);
    EXPECT_NEAR(Pixel(middles[1]).y(), fitted.y(), 1);
}

TEST_F(KelvoraView, NothingCanBePickedAfterNew)
{
    const QPointF pixel = Pixel(middles[1]);
    d_window->Menu_New();
    Paint(d_view);
    Click(d_view, Qt::LeftButton, pixel);
    EXPECT_EQ(Name(), QString());
    Child<QSlider>(*d_window, "sub_tolerance").setValue(4); // brings the set back
    Paint(d_view);
    Click(d_view, Qt::LeftButton, pixel);
    EXPECT_EQ(Name(), QStringLiteral("Up"));
}

TEST_F(KelvoraView, MachineVolumeIsRedrawn)
{
    d_window->Menu_New();
    Paint(d_view);
    const QImage before = d_view->grabFramebuffer();
    Child<QLineEdit>(*d_window, "max_z").setText(QStringLiteral("-200"));
    Child<QToolButton>(*d_window, "update").click();
    Paint(d_view);
    EXPECT_NE(d_view->grabFramebuffer(), before);
}

TEST_F(KelvoraView, KeyboardAndScreenReader)
{
    const QWidgetList widgets = d_window->findChildren<QWidget*>(); // of the dialogs too
    for (QWidget* widget : widgets)
        if ((widget->focusPolicy() & Qt::TabFocus) != 0 && widget->focusProxy() == nullptr) {
            EXPECT_NE(QAccessible::queryAccessibleInterface(widget)->text(QAccessible::Name), QString())
                << widget->metaObject()->className() << ' ' << widget->objectName().toStdString();
        }
    d_view->setFocus();
    for (const char* const button : {"tb_scale_to_fit", "tb_pan", "tb_rotate2d", "tb_rotate3d"}) {
        QTest::keyClick(d_window->focusWidget(), Qt::Key_Tab);
        EXPECT_EQ(d_window->focusWidget()->objectName(), QLatin1String(button));
    }
    QTest::keyClick(d_window->focusWidget(), Qt::Key_Space);
    EXPECT_TRUE(d_view->d_Rotate3dMode);
}
