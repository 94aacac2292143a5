// SPDX-License-Identifier: MIT
#include "icons.h"

#include <QImage>

#include <gmock/gmock.h>

#include <vector>

class TIconTest : public testing::Test
{
protected:
    static void SetUpTestSuite() { Q_INIT_RESOURCE(kelvora); }
};

namespace
{

std::vector<int> Widths(const QIcon& icon)
{
    std::vector<int> widths;
    for (const QSize& size : icon.availableSizes())
        widths.push_back(size.width());
    return widths;
}

} // namespace

TEST_F(TIconTest, Every_Command_Has_A_Drawing_For_Each_Usual_Size)
{
    for (const char* const path :
         {":/menu/file_new.png", ":/menu/file_import_ballbar.png", ":/menu/help_about.png",
          ":/menu/database.png", ":/menu/database_add.png", ":/toolbar/tb_scale_to_fit.png",
          ":/toolbar/tb_pan.png", ":/toolbar/tb_rotate2d.png", ":/toolbar/tb_rotate3d.png"}) {
        EXPECT_THAT(Widths(Load_Icon(QString::fromLatin1(path))),
                    testing::UnorderedElementsAre(16, 24, 32, 48, 64))
            << path;
    }
    EXPECT_THAT(Widths(Load_Icon(QStringLiteral(":/images/kelvora.png"))),
                testing::UnorderedElementsAre(16, 24, 32, 48, 64, 128, 256));
}

TEST_F(TIconTest, Unknown_Name_Gives_A_Null_Icon)
{
    EXPECT_TRUE(Load_Icon(QStringLiteral(":/menu/no_such_command.png")).isNull());
}

TEST_F(TIconTest, Logo_Fills_Its_Place_In_The_Main_Window)
{
    EXPECT_EQ(QImage(QStringLiteral(":/images/logo.png")).size(), QSize(100, 40));
}
