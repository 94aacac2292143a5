// SPDX-License-Identifier: MIT
#include "ballbardata.h"
#include "testing.h"

#include <sys/stat.h>

using testing::ElementsAre;

const QByteArray V1 = "B89.4.1_Data:Version=1:Type=BallBar\n";
const QByteArray LEGACY_V2 = "BallBar_V2\n", LEGACY_V1 = "BallBar_V1\n";

struct BallBarData : testing::Test
{
    QTemporaryDir d_directory;
    TBallBarData d_data;

    QString Path(const char* name = "set.dat") const { return d_directory.filePath(name); }
    bool Load(const QByteArray& contents) { return d_data.Load_Data(Write(Path(), contents)); }

    /// The positions as text, one per entry: name|sph1|sph2|tool|forms.
    std::vector<std::string> Items() const
    {
        std::vector<std::string> texts;
        const auto text = [](const TVector3& v) { return QString("%1 %2 %3").arg(v.x).arg(v.y).arg(v.z); };
        for (const Types::TBallbar_Item& item : d_data.Ballbar_Items()) {
            const QStringList parts{item.name, text(item.sph1), text(item.sph2), text(item.tool),
                                    QString("%1 %2").arg(item.sph1_form).arg(item.sph2_form)};
            texts.push_back(parts.join('|').toStdString());
        }
        return texts;
    }

    void Expect_Empty() const
    {
        EXPECT_EQ(State(d_data.Ballbar_Item_Count(), d_data.Maximum_Length(), d_data.Mean_Length(),
                        d_data.Median_Length(), d_data.Volume_Corner_Min().x, d_data.Volume_Corner_Max().z),
                  "0 0 0 0 -100 100");
    }
};

TEST_F(BallBarData, FormatsMapTheirFields)
{
    const QByteArray line13 = "P 1,x,1,2,3,101,2,3,0.001,0.002,0,10,-5\n";
    const QByteArray line11 = "P 1,,1,2,3,101,2,3,0,10,-5\n";
    const std::pair<QByteArray, const char*> rows[] = {
        {V1 + line13, "P 1|1 2 3|101 2 3|0 10 -5|0.001 0.002"},
        {LEGACY_V2 + line13, "P 1|1 12 -2|101 12 -2|0 10 -5|0.001 0.002"},
        {LEGACY_V1 + line11, "P 1|1 12 -2|101 12 -2|0 10 -5|0 0"},
        {"\r\n \t ballbar_v2 rest\r\n" + line13, "P 1|1 12 -2|101 12 -2|0 10 -5|0.001 0.002"},
        {V1.toLower() + line13, "P 1|1 2 3|101 2 3|0 10 -5|0.001 0.002"},
    };
    for (const auto& [contents, item] : rows) {
        ASSERT_TRUE(Load(contents)) << d_data.Last_Error().toStdString();
        EXPECT_THAT(Items(), ElementsAre(item));
        EXPECT_DOUBLE_EQ(d_data.Mean_Length(), 100.0);
    }
}

TEST_F(BallBarData, LinesAreReadOrSkipped)
{
    // clang-format off
    const char* const read[][2] = {
        {"A,,0,0,0,1,0,0,0,0,0,0,0", "A|0 0 0|1 0 0|0 0 0|0 0"},
        {"  A \t b ,any thing, 0 ,0,0,\t1e0,0,0,+.5,5.,0,0,-0 \r", "A b |0 0 0|1 0 0|0 0 0|0.5 5"},
        {",,0,0,0,1,0,0,0,0,0,0,0", "|0 0 0|1 0 0|0 0 0|0 0"},
        {"Name_A,,0,0,0,1,0,0,0,0,0,0,0", "Name_A|0 0 0|1 0 0|0 0 0|0 0"},
        {"%2,%1,0,0,0,1,0,0,0,0,0,0,0", "%2|0 0 0|1 0 0|0 0 0|0 0"}};
    const QByteArray skipped[] = {
        "nAme,lEngth,0,0,0,1,0,0,0,0,0,0,0", "Name,Length,X1,Y1,Z1,X2,Y2,Z2,F1,F2,TX,TY,TZ", " \t ",
        "# A,,0,0,0,1,0,0,0,0,0,0,0", "B89.4.1_data:version=1:type=ballbar,,0,0,0,1,0,0,0,0,0,0,0",
        "A,,0,0,0,1,0,0,0,0,0,0", "A,,0,0,0,1,0,0,0,0,0,0,0,",
        "A,,0,0,0;1,0,0,0,0,0,0,0", "A,,0,0,0,,0,0,0,0,0,0,0", "A,,0,0,0,1 0,0,0,0,0,0,0,0",
        "A,,0,0,0,1,0,0,0,0,0,0,nan", "A,,0,0,0,inf,0,0,0,0,0,0,0",
        "A,,0,0,0,1e154,0,0,0,0,0,0,0", // its square would overflow
        QByteArray(5000, 'N') + ",,0,0,0,1,0,0,0,0,0,0,0"};
    // clang-format on
    const QByteArray last = "\nlast,,0,0,0,0,3,4,0,0,0,0,0";
    const char* const last_item = "last|0 0 0|0 3 4|0 0 0|0 0";
    for (const auto& row : read) {
        ASSERT_TRUE(Load(V1 + row[0] + last));
        EXPECT_THAT(Items(), ElementsAre(row[1], last_item));
    }
    for (const QByteArray& line : skipped) {
        ASSERT_TRUE(Load(V1 + line + last));
        EXPECT_THAT(Items(), ElementsAre(last_item)) << line.left(60).constData();
    }
}

TEST_F(BallBarData, FilesAreRefused)
{
    const QString binary = "Input file '%1' appears to be binary and is not supported.";
    const QString unknown = "Input file '%1' is not recognized as a ball bar measurement file.";
    const std::pair<QByteArray, QString> rows[] = {
        {LEGACY_V1 + "P\xc3\xa9,,1,2,3,101,2,3,0,10,-5\n", binary},
        {"\xef\xbb\xbf" + V1, binary},
        {V1 + QByteArray("A\0B", 3), binary},
        {V1 + "\f", binary},
        {"", unknown},
        {"BallBar_V1", unknown}, // shorter than any file with a line
        {"BallBar_V3 and more\n", unknown},
        {"\n\n# BallBar_V1\nBallBar_V1\n", unknown},
    };
    for (const auto& [contents, error] : rows) {
        SCOPED_TRACE(contents.toStdString());
        ASSERT_TRUE(Load(V1 + "A,,0,0,0,1,0,0,0,0,0,0,0\n"));
        EXPECT_FALSE(Load(contents));
        EXPECT_EQ(d_data.Last_Error(), error.arg(Path()));
        Expect_Empty();
    }
    // Tab, vertical tab and delete are text; a good load leaves the last error alone.
    EXPECT_TRUE(Load("BallBar_V1\t\v\x7f"));
    EXPECT_EQ(d_data.Last_Error(), unknown.arg(Path()));
    Expect_Empty();
}

TEST_F(BallBarData, UnreadablePathsAreRefused)
{
    ASSERT_EQ(mkfifo(Path("pipe.dat").toLocal8Bit().constData(), 0600), 0);
    const QString cannot_open = "Cannot open file '";
    for (const QString& path : {Path("missing %1.dat"), Path("pipe.dat"), d_directory.path(), QString()}) {
        Expect_Empty();
        EXPECT_FALSE(d_data.Load_Data(path));
        EXPECT_EQ(d_data.Last_Error(), cannot_open + path + "'");
    }
    const QString huge = Write(Path("huge.dat"), LEGACY_V1);
    ASSERT_TRUE(QFile::resize(huge, TBallBarData::MAXIMUM_FILE_SIZE + 1)); // sparse
    const QString many = Write(
        Path(), LEGACY_V1 + QByteArray(",,0,0,0,1,0,0,0,0,0\n").repeated(1000001)); // a million is the limit
    for (const QString& path : {huge, many}) {
        EXPECT_FALSE(d_data.Load_Data(path));
        EXPECT_EQ(d_data.Last_Error(),
                  "Input file '" + path + "' is too large to be a ball bar measurement file.");
        Expect_Empty();
    }
}
