// SPDX-License-Identifier: MIT
// The main window and its 3-D view together, on a real screen.
#include "gui_test.h"
#include "kelvora.h"
#include "opengldisplay.h"
#include "view_helpers.h"

#include <QAccessible>
#include <QLineEdit>
#include <QSlider>
#include <QTemporaryDir>
#include <QToolButton>

TEST(KelvoraView, WindowAndViewWorkTogether)
{
    const QTemporaryDir home;
    qputenv("HOME", home.path().toLocal8Bit());
    TKelvora window;
    auto* view = window.findChild<TOpenGLDisplay*>();
    ASSERT_NE(view, nullptr);
    Show(&window, view);
    QFile file(home.filePath(QStringLiteral("set.dat")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("BallBar_V2\n"
               "Across,,100,100,-500,1000.02,100,-500,0.001,0.002,0,0,0\n"
               "Up,,600,1100,-950,600,1100,-50,0.001,0.002,0,0,0\n"
               "Along,,1100,1200,-900,1100,2100.01,-900,0.001,0.002,0,0,0\n");
    file.close();
    window.Import_Ballbar_Data(file.fileName());
    Paint(view);
    const auto name = [&window] { return Child<QLineEdit>(window, "name").text(); };

    const TVector3 middles[] = {{550, 100, -500}, {1100, 1650, -900}, {600, 1100, -500}};
    const char* const names[] = {"Across", "Along", "Up"};
    for (int i = 0; i < 3; ++i) {
        const QImage before = view->grabFramebuffer();
        Click(view, Pixel(view, middles[i]));
        EXPECT_EQ(name(), QLatin1String(names[i]));
        Paint(view);
        EXPECT_NE(view->grabFramebuffer(), before) << "the bar is highlighted";
    }
    Click(view, {3, 3}); // nothing there: silent
    EXPECT_EQ(name(), QStringLiteral("Up"));

    // A tolerance keeps the camera, an import fits.
    const QPointF fitted = Pixel(view, middles[1]);
    Wheel(view, 120);
    const QPointF moved = Pixel(view, middles[1]);
    EXPECT_NE(moved, fitted);
    Child<QSlider>(window, "sub_tolerance").setValue(4);
    Paint(view);
    EXPECT_EQ(Pixel(view, middles[1]), moved);
    window.Import_Ballbar_Data(file.fileName());
    Paint(view);
    EXPECT_LT(QLineF(Pixel(view, middles[1]), fitted).length(), 1.5);

    window.Menu_New(); // leaves nothing that could be picked
    Paint(view);
    const QImage empty = view->grabFramebuffer();
    Click(view, Pixel(view, middles[1]));
    EXPECT_EQ(name(), QString());
    Child<QLineEdit>(window, "max_z").setText(QStringLiteral("-200"));
    Child<QToolButton>(window, "update").click();
    Paint(view);
    EXPECT_NE(view->grabFramebuffer(), empty) << "the machine's volume is drawn anew";
}

TEST(KelvoraView, KeyboardAndScreenReader)
{
    const QTemporaryDir home;
    qputenv("HOME", home.path().toLocal8Bit());
    TKelvora window;
    auto* view = window.findChild<TOpenGLDisplay*>();
    ASSERT_NE(view, nullptr);
    Show(&window, view);
    const QWidgetList widgets = window.findChildren<QWidget*>(); // of the dialogs too
    for (QWidget* widget : widgets)
        if ((widget->focusPolicy() & Qt::TabFocus) != 0 && widget->focusProxy() == nullptr) {
            EXPECT_NE(QAccessible::queryAccessibleInterface(widget)->text(QAccessible::Name), QString())
                << widget->metaObject()->className() << ' ' << widget->objectName().toStdString();
        }
    view->setFocus();
    for (const char* const button : {"tb_scale_to_fit", "tb_pan", "tb_rotate2d", "tb_rotate3d"}) {
        QTest::keyClick(window.focusWidget(), Qt::Key_Tab);
        EXPECT_EQ(window.focusWidget()->objectName(), QLatin1String(button));
    }
    QTest::keyClick(window.focusWidget(), Qt::Key_Space);
    EXPECT_TRUE(view->d_Rotate3dMode);
}
