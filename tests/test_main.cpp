// SPDX-License-Identifier: MIT
// The frame of every test program: its own home directory, then the application object, then the tests.
#include "openglwidget.h"
#include "testing.h"

int main(int argc, char* argv[])
{
    const QTemporaryDir home;
    qputenv("HOME", home.path().toLocal8Bit());
    QSurfaceFormat::setDefaultFormat(TOpenGLWidget::Default_Format());
    QApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    QApplication application(argc, argv);
    testing::InitGoogleMock(&argc, argv);
    testing::GTEST_FLAG(death_test_style) = "threadsafe";
    return RUN_ALL_TESTS();
}
