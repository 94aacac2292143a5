// SPDX-License-Identifier: MIT
#pragma once

#include "camera.h"

#include <QFont>
#include <QImage>
#include <QSize>
#include <QString>

#include <vector>

/// The texts in the 3-D view. All of them are painted into one transparent image: drawn at once it gives the
/// same picture as painting each on the view, several times as fast.
class TLabelLayer
{
public:
    /// Names are cut to this many characters: nobody reads more beside a bar, and laying out thousands of
    /// them for each frame would stop the view.
    static constexpr int LONGEST_NAME = 200;

    /// Appends the name of what is at that point of the model.
    void Add(const QString& name, const TVector3& position);
    void Clear();

    /// The letters X, Y and Z at the anchors, then every name in its box, in an image as large as the
    /// camera's viewport. `ratio` is the number of device pixels in one of the font's.
    const QImage& Paint(const TCamera& camera, const TVector3 (&anchors)[3], const QFont& font, double ratio);

private:
    struct TLabel
    {
        QString name;
        TVector3 position;
        QSize size; ///< of the name in the font, invalid before it is measured
    };

    void Start_Image(const TCamera& camera, double ratio);

    std::vector<TLabel> d_Labels;
    QFont d_Font;
    QImage d_Image;
};
