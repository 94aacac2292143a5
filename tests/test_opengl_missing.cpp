// SPDX-License-Identifier: MIT
// Run where OpenGL is too old or missing.
#include "opengldisplay.h"
#include "opengldisplaywidget.h"

#include <QApplication>
#include <QLabel>
#include <QPalette>
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

    QApplication::setPalette(
        QPalette(Qt::white, Qt::black, Qt::gray, Qt::darkGray, Qt::gray, Qt::white, Qt::black));
    TOpenGLDisplayWidget frame;
    EXPECT_EQ(frame.findChild<TOpenGLDisplay*>(), nullptr);
    EXPECT_EQ(
        frame.findChild<QLabel*>()->text(),
        QStringLiteral("<html><head/><body><p><span style=\" font-weight:700;\">ERR:  OpenGL version not "
                       "supported.  No graphical display will be shown.</span></p>"
                       "<p><span style=\" font-weight:500; text-decoration: underline;\">OpenGL Version "
                       "Text:</span></p><p>%1</p>"
                       "<p><span style=\" font-weight:500; text-decoration: underline;\">OpenGL "
                       "Extensions:</span></p><p>%2</p></body></html>")
            .arg(version, extensions));

    frame.resize(600, 400);
    frame.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&frame));
    EXPECT_EQ(frame.height(), 400); // a long list of extensions does not stretch the window
    const QImage picture = frame.grab(QRect(5, 5, 400, 60)).toImage();
    int dark = 0;
    for (int i = 0; i < picture.width() * picture.height(); ++i)
        dark += qGray(picture.pixel(i % picture.width(), i / picture.width())) < 64 ? 1 : 0;
    EXPECT_GT(dark, 200); // black letters on white, also on a dark desktop
    EXPECT_LT(dark, picture.width() * picture.height() / 4);
    frame.Add_BallBar(0, QStringLiteral("A"), {0, 0, 0}, {1, 1, 1}, {0, 0, 1}, true, true);
    frame.Define_Machine_Volume({0, 0, 0}, {1, 1, 1});
    frame.Set_Selection(0);
    frame.Clear_Selection();
    frame.Clear_BallBars();
    frame.Update(true);
    for (QToolButton* button : frame.findChildren<QToolButton*>())
        button->click();
    EXPECT_TRUE(frame.findChild<QToolButton*>(QStringLiteral("tb_rotate3d"))->isChecked());
}
