// SPDX-License-Identifier: MIT
#pragma once

#include "types.h"

#include <QByteArray>
#include <QString>

#include <vector>

/// One measurement set: its positions in file order, the statistics of their lengths and the text of the
/// last failure. All lengths are millimetres.
class TBallBarData
{
public:
    enum TFileEncoding
    {
        ENCODING_ASCII = 0,
        ENCODING_BINARY = 1
    };

    enum TFileContents
    {
        CONTENTS_UNKNOWN = 0,
        CONTENTS_LEGACY_V1 = 1,
        CONTENTS_LEGACY_V2 = 2,
        CONTENTS_V1 = 3
    };

    TBallBarData() = default;
    TBallBarData(const TBallBarData&) = delete;
    TBallBarData& operator=(const TBallBarData&) = delete;

    /// Replaces the set by the positions of a measurement file. Comments and malformed lines are skipped.
    /// On failure returns false with the reason in `Last_Error` and leaves the set empty. Only regular files
    /// within the limits below are read: a pipe or a device would never end.
    bool Load_Data(const QString& path);

    /// Empties the set; the last error text stays.
    void Clear();

    /// Appends a position; the statistics follow with the next `Update_Stats`.
    void Add_Ballbar(const Types::TBallbar_Item& item);

    /// Recomputes the statistics from the positions.
    void Update_Stats();

    /// A copy of the position at `index`, which must be within the set (assertion).
    Types::TBallbar_Item Ballbar_Item(int index) const;
    int Ballbar_Item_Count() const;
    const std::vector<Types::TBallbar_Item>& Ballbar_Items() const { return d_ballbar_items; }

    double Minimum_Length() const { return d_minimum_length; }
    double Maximum_Length() const { return d_maximum_length; }
    double Mean_Length() const { return d_mean_length; }
    /// The mid-range, (minimum + maximum) / 2.
    double Median_Length() const { return d_median_length; }
    double Stdev_Length() const { return d_stdev_length; }

    QString Last_Error() const { return d_last_error; }

    /// Corners of the axis-aligned box around all sphere centres; a 200 mm cube around the origin for an
    /// empty set.
    TVector3 Volume_Corner_Min() const;
    TVector3 Volume_Corner_Max() const;

    /// Largest file that is read, bytes, and largest set. No machine measures a thousandth of that; without
    /// limits one wrong file would take all memory.
    static constexpr qint64 MAXIMUM_FILE_SIZE = qint64(256) * 1024 * 1024;
    static constexpr size_t MAXIMUM_POSITION_COUNT = 1000000;

private:
    bool Read_File(const QString& path, QByteArray* contents);
    bool Fail(const QString& message, const QString& path);

    TFileEncoding DetermineFileEncoding(const QByteArray& contents) const;
    TFileContents DetermineAsciiFileContents(const QByteArray& contents) const;

    bool Load_Data_Legacy_V1(const QByteArray& contents);
    bool Load_Data_Legacy_V2(const QByteArray& contents);
    bool Load_Data_V1(const QByteArray& contents);

    std::vector<Types::TBallbar_Item> d_ballbar_items;
    double d_minimum_length{0.0};
    double d_maximum_length{0.0};
    double d_mean_length{0.0};
    double d_median_length{0.0};
    double d_stdev_length{0.0};
    QString d_last_error;
};
