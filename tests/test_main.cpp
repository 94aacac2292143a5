// SPDX-License-Identifier: MIT
// The frame of every test program: no special rights, its own home directory, then the application object,
// then the tests.
#include "openglwidget.h"
#include "testing.h"

#include <linux/capability.h>
#include <sys/syscall.h>
#include <unistd.h>

int main(int argc, char* argv[])
{
    // Root too is kept from files that may only be read.
    __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
    const __user_cap_data_struct no_rights[2]{};
    syscall(SYS_capset, &header, no_rights);
    const QTemporaryDir home;
    qputenv("HOME", home.path().toLocal8Bit());
    qputenv("TMPDIR", home.path().toLocal8Bit()); // goes with it, also what a killed death test leaves
    QSurfaceFormat::setDefaultFormat(TOpenGLWidget::Default_Format());
    QApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    QApplication application(argc, argv);
    Q_INIT_RESOURCE(kelvora);
    testing::InitGoogleMock(&argc, argv);
    testing::GTEST_FLAG(death_test_style) = "threadsafe";
    return RUN_ALL_TESTS();
}
