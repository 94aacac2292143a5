// SPDX-License-Identifier: MIT
#include "ballbardata.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <cmath>
#include <sys/stat.h>

namespace
{

const char* const header_v1 = "B89.4.1_Data:Version=1:Type=BallBar\n";
const char* const header_legacy_v2 = "BallBar_V2\n";
const char* const header_legacy_v1 = "BallBar_V1\n";

class BallBarData : public testing::Test
{
protected:
    QTemporaryDir d_directory;
    TBallBarData d_data;

    QString Path(const char* name = "set.dat") const { return d_directory.filePath(QLatin1String(name)); }

    bool Load(const QByteArray& contents)
    {
        QFile file(Path());
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(contents);
        file.close();
        return d_data.Load_Data(Path());
    }

    /// The positions as text, one per entry: name|sph1|sph2|tool|forms.
    std::vector<std::string> Items() const
    {
        std::vector<std::string> texts;
        const auto text = [](const TVector3& v) {
            return QStringLiteral("%1 %2 %3").arg(v.x).arg(v.y).arg(v.z);
        };
        for (const Types::TBallbar_Item& item : d_data.Ballbar_Items()) {
            const QStringList parts{item.name, text(item.sph1), text(item.sph2), text(item.tool),
                                    QStringLiteral("%1 %2").arg(item.sph1_form).arg(item.sph2_form)};
            texts.push_back(parts.join(QLatin1Char('|')).toStdString());
        }
        return texts;
    }

    void Expect_Empty() const
    {
        EXPECT_EQ(d_data.Ballbar_Item_Count(), 0);
        EXPECT_EQ(d_data.Maximum_Length() + d_data.Mean_Length() + d_data.Median_Length(), 0.0);
        EXPECT_EQ(d_data.Volume_Corner_Min().x, -100.0);
        EXPECT_EQ(d_data.Volume_Corner_Max().z, 100.0);
    }
};

} // namespace

TEST_F(BallBarData, FormatsMapTheirFields)
{
    const QByteArray line13 = "P 1,x,1,2,3,101,2,3,0.001,0.002,0,10,-5\n";
    const QByteArray line11 = "P 1,,1,2,3,101,2,3,0,10,-5\n";
    const struct
    {
        QByteArray contents;
        const char* item;
    } rows[] = {
        {header_v1 + line13, "P 1|1 2 3|101 2 3|0 10 -5|0.001 0.002"},
        {header_legacy_v2 + line13, "P 1|1 12 -2|101 12 -2|0 10 -5|0.001 0.002"},
        {header_legacy_v1 + line11, "P 1|1 12 -2|101 12 -2|0 10 -5|0 0"},
        {"\r\n \t ballbar_v2 rest\r\n" + line13, "P 1|1 12 -2|101 12 -2|0 10 -5|0.001 0.002"},
        {"b89.4.1_data:version=1:type=ballbar\n" + line13, "P 1|1 2 3|101 2 3|0 10 -5|0.001 0.002"},
    };
    for (const auto& row : rows) {
        ASSERT_TRUE(Load(row.contents)) << d_data.Last_Error().toStdString();
        EXPECT_THAT(Items(), testing::ElementsAre(row.item));
        EXPECT_DOUBLE_EQ(d_data.Mean_Length(), 100.0);
    }
}

TEST_F(BallBarData, LinesAreReadOrSkipped)
{
    const char* const read[][2] = {
        {"A,,0,0,0,1,0,0,0,0,0,0,0", "A|0 0 0|1 0 0|0 0 0|0 0"},
        {"  A \t b ,any thing, 0 ,0,0,\t1e0,0,0,+.5,5.,0,0,-0 \r", "A b |0 0 0|1 0 0|0 0 0|0.5 5"},
        {",,0,0,0,1,0,0,0,0,0,0,0", "|0 0 0|1 0 0|0 0 0|0 0"},
        {"Name_A,,0,0,0,1,0,0,0,0,0,0,0", "Name_A|0 0 0|1 0 0|0 0 0|0 0"},
        {"%2,%1,0,0,0,1,0,0,0,0,0,0,0", "%2|0 0 0|1 0 0|0 0 0|0 0"},
    };
    // clang-format off
    const char* const skipped[] = {
        "nAme,lEngth,0,0,0,1,0,0,0,0,0,0,0", "Name,Length,X1,Y1,Z1,X2,Y2,Z2,F1,F2,TX,TY,TZ", " \t ",
        "# A,,0,0,0,1,0,0,0,0,0,0,0", "B89.4.1_data:version=1:type=ballbar,,0,0,0,1,0,0,0,0,0,0,0",
        "A,,0,0,0,1,0,0,0,0,0,0", "A,,0,0,0,1,0,0,0,0,0,0,0,", "A,,0,0,0,1.2.3,0,0,0,0,0,0,0",
        "A,,0,0,0,,0,0,0,0,0,0,0", "A,,0,0,0,1 0,0,0,0,0,0,0,0", "A,,0,0,0,1,0,0,0,0,0,0,nan",
        "A,,0,0,0,inf,0,0,0,0,0,0,0", "A,,0,0,0,0x1,0,0,0,0,0,0,0", "A,,0,0,0,1e309,0,0,0,0,0,0,0",
        "A,,0,0,0,1e154,0,0,0,0,0,0,0"}; // its square would overflow
    // clang-format on
    const QByteArray last = "\nlast,,0,0,0,0,3,4,0,0,0,0,0";
    const char* const last_item = "last|0 0 0|0 3 4|0 0 0|0 0";
    for (const auto& row : read) {
        ASSERT_TRUE(Load(header_v1 + QByteArray(row[0]) + last));
        EXPECT_THAT(Items(), testing::ElementsAre(row[1], last_item));
    }
    for (const char* line : skipped) {
        ASSERT_TRUE(Load(header_v1 + QByteArray(line) + last));
        EXPECT_THAT(Items(), testing::ElementsAre(last_item)) << line;
    }
    ASSERT_TRUE(Load(header_v1 + QByteArray(5000, 'N') + ",,0,0,0,1,0,0,0,0,0,0,0" + last));
    EXPECT_EQ(d_data.Ballbar_Item_Count(), 1);
}

TEST_F(BallBarData, FilesAreRefused)
{
    const QString binary = QStringLiteral("Input file '%1' appears to be binary and is not supported.");
    const QString unknown =
        QStringLiteral("Input file '%1' is not recognized as a ball bar measurement file.");
    const struct
    {
        QByteArray contents;
        QString error;
    } rows[] = {
        {header_legacy_v1 + QByteArray("P\xc3\xa9,,1,2,3,101,2,3,0,10,-5\n"), binary},
        {"\xef\xbb\xbf" + QByteArray(header_v1), binary},
        {header_v1 + QByteArray("A\0B", 3), binary},
        {header_v1 + QByteArray("\f"), binary},
        {"", unknown},
        {"BallBar_V1", unknown}, // shorter than any file with a line
        {"BallBar_V3 and more\n", unknown},
        {"\n\n# BallBar_V1\nBallBar_V1\n", unknown},
        {"           ", unknown},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.contents.toStdString());
        ASSERT_TRUE(Load(header_v1 + QByteArray("A,,0,0,0,1,0,0,0,0,0,0,0\n")));
        EXPECT_FALSE(Load(row.contents));
        EXPECT_EQ(d_data.Last_Error(), row.error.arg(Path()));
        Expect_Empty();
    }
    // Tab, vertical tab and delete are text; a good load leaves the last error alone.
    EXPECT_TRUE(Load("BallBar_V1\t\v\x7f"));
    EXPECT_EQ(d_data.Last_Error(), rows[8].error.arg(Path()));
    Expect_Empty();
}

TEST_F(BallBarData, UnreadablePathsAreRefused)
{
    ASSERT_EQ(mkfifo(Path("pipe.dat").toLocal8Bit().constData(), 0600), 0);
    QFile huge(Path("huge.dat"));
    ASSERT_TRUE(huge.open(QIODevice::WriteOnly));
    ASSERT_TRUE(huge.resize(TBallBarData::Maximum_File_Size + 1)); // sparse
    huge.close();

    const QString cannot_open = QStringLiteral("Cannot open file '%1'");
    for (const QString& path : {Path("missing %1.dat"), Path("pipe.dat"), d_directory.path(), QString()}) {
        EXPECT_FALSE(d_data.Load_Data(path));
        EXPECT_EQ(d_data.Last_Error(), QString(cannot_open).replace(QStringLiteral("%1"), path));
    }
    EXPECT_FALSE(d_data.Load_Data(huge.fileName()));
    EXPECT_THAT(d_data.Last_Error().toStdString(), testing::HasSubstr("too large"));
    QByteArray many = header_legacy_v1;
    for (size_t i = 0; i <= TBallBarData::Maximum_Position_Count; ++i)
        many += ",,0,0,0,1,0,0,0,0,0\n";
    EXPECT_FALSE(Load(many));
    EXPECT_THAT(d_data.Last_Error().toStdString(), testing::HasSubstr("too large"));
    Expect_Empty();
}

TEST_F(BallBarData, VolumeHoldsAllSpheres)
{
    ASSERT_TRUE(Load(header_v1 + QByteArray("A,,5,-3,0,1,7,2,0,0,900,900,900\n"
                                            "B,,2,1,-8,9,0,1,0,0,-900,-900,-900\n")));
    const TVector3 low = d_data.Volume_Corner_Min();
    const TVector3 high = d_data.Volume_Corner_Max();
    EXPECT_THAT((std::vector<double>{low.x, low.y, low.z, high.x, high.y, high.z}),
                testing::ElementsAre(1, -3, -8, 9, 7, 2));
}

// The NIST univariate sets NumAcc1 to NumAcc4, as files of lengths along X. The certified values are exact by
// construction; what doubles and two passes can reach of the deviation is 14.5, 14.5, 9.4 and 8.2 digits.
TEST_F(BallBarData, StatisticsOfCertifiedSets)
{
    const auto repeated = [](const char* first, const char* low, const char* high) {
        QStringList lengths{QLatin1String(first)};
        for (int i = 0; i < 500; ++i)
            lengths << QLatin1String(low) << QLatin1String(high);
        return lengths;
    };
    const struct
    {
        QStringList lengths;
        double mean;
        double deviation;
        double deviation_digits;
    } rows[] = {
        {{"10000001", "10000003", "10000002"}, 10000002, 1, 14.5},
        {repeated("1.2", "1.1", "1.3"), 1.2, 0.1, 14.5},
        {repeated("1000000.2", "1000000.1", "1000000.3"), 1000000.2, 0.1, 9.4},
        {repeated("10000000.2", "10000000.1", "10000000.3"), 10000000.2, 0.1, 8.2},
    };
    const auto digits = [](double value, double certified) {
        return value == certified ? 15.0 : -std::log10(std::abs(value - certified) / std::abs(certified));
    };
    for (const auto& row : rows) {
        QByteArray contents = header_v1;
        for (const QString& length : row.lengths)
            contents += "P,," + QByteArray("0,0,0,") + length.toLatin1() + ",0,0,0,0,0,0,0\n";
        ASSERT_TRUE(Load(contents));
        ASSERT_EQ(d_data.Ballbar_Item_Count(), row.lengths.size());
        EXPECT_GE(digits(d_data.Mean_Length(), row.mean), 14.0) << row.mean;
        EXPECT_GE(digits(d_data.Stdev_Length(), row.deviation), row.deviation_digits) << row.mean;
    }
}

TEST_F(BallBarData, IndexOutsideStops)
{
    ASSERT_TRUE(Load(header_v1 + QByteArray("A,,0,0,0,1,0,0,0,0,0,0,0\n")));
    EXPECT_EQ(d_data.Ballbar_Item(0).name, QStringLiteral("A"));
    const char* text = "static_cast<unsigned int>\\(index\\) < d_ballbar_items.size\\(\\)";
    EXPECT_DEATH(d_data.Ballbar_Item(1), text);
    EXPECT_DEATH(d_data.Ballbar_Item(-1), text);
}
