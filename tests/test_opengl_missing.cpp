// SPDX-License-Identifier: MIT
// Run where OpenGL is too old or missing.
#include "opengldisplay.h"
#include "opengldisplaywidget.h"
#include "testing.h"

TEST(OpenGLMissing, MessageInsteadOfTheView)
{
    QString version, extensions;
    const bool old = TOpenGLWidget::Get_OpenGL_Version_Major(&version, &extensions) == 1;
    EXPECT_EQ(State(version.left(3), extensions.contains("GL_")), old ? "1.4 true" : "false");

    QApplication::setPalette(QColor(53, 53, 53)); // a dark desktop
    TOpenGLDisplayWidget frame;
    EXPECT_EQ(frame.findChild<TOpenGLDisplay*>(), nullptr);
    EXPECT_EQ(Plain(Child<QLabel>(frame, "message").text()),
              "ERR:  OpenGL version not supported.  No graphical display will be shown.OpenGL Version Text:" +
                  version + "OpenGL Extensions:" + extensions);
    frame.resize(600, 400);
    frame.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&frame));
    EXPECT_EQ(frame.height(), 400); // a long list of extensions does not stretch the window
    EXPECT_GT(Contrast(frame.grab(QRect(5, 5, 400, 60)).toImage()), 4.5);
    Child<QToolButton>(frame, "tb_rotate3d").click(); // moves nothing
}
