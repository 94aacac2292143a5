// SPDX-License-Identifier: MIT
// Run where OpenGL is too old or missing.
#include "opengldisplay.h"
#include "opengldisplaywidget.h"

#include <QLabel>
#include <QTest>
#include <QToolButton>

#include <gtest/gtest.h>

TEST(OpenGLMissing, MessageInsteadOfTheView)
{
    QString version;
    QString extensions;
    const bool old = TOpenGLWidget::Get_OpenGL_Version_Major(&version, &extensions) == 1;
    EXPECT_EQ(version.startsWith(QLatin1String("1.4")), old);
    EXPECT_EQ(extensions.contains(QLatin1String("GL_")), old);

    TOpenGLDisplayWidget frame;
    EXPECT_EQ(frame.findChild<TOpenGLDisplay*>(), nullptr);
    const QString text = frame.findChild<QLabel*>()->text();
    for (const QString& part : {QStringLiteral("ERR:  OpenGL version not supported."), version, extensions})
        EXPECT_TRUE(text.contains(part));
    frame.resize(600, 400);
    frame.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&frame));
    EXPECT_EQ(frame.height(), 400); // a long list of extensions does not stretch the window
    frame.Add_BallBar(0, QStringLiteral("A"), {0, 0, 0}, {1, 1, 1}, {0, 0, 1}, true, true);
    frame.Define_Machine_Volume({0, 0, 0}, {1, 1, 1});
    frame.Set_Selection(0);
    frame.Clear_BallBars();
    frame.Update(true);
    for (QToolButton* button : frame.findChildren<QToolButton*>())
        button->click(); // none of it needs a view
}
