// SPDX-License-Identifier: MIT
#pragma once

#include "machinewidget.h"

#include <QPoint>
#include <QRect>
#include <QSize>

class QSettings;

/// What the program remembers from one run to the next. The initial values are the defaults of a first start.
struct TSettings
{
    QPoint position{30, 30}; ///< top left corner of the main window, pixels
    QSize size{1001, 801};   ///< size of the main window, pixels
    int graphic_height{800}; ///< upper pane of the splitter (3-D view), pixels
    int analysis_height{400};

    double tolerance_a{0.012};
    double tolerance_b{0.006};
    double tolerance_c{1000.0};
    double tolerance_d{0.0};

    TMachineWidget::TDimensions machine;

    /// Reads what `store` holds; what is missing or makes no sense there keeps its default.
    static TSettings Read(const QSettings& store);

    /// Writes every value into the settings file; what else it holds stays. Returns false where that is not
    /// possible: the file is the old one then.
    bool Store(const QString& file) const;
};

/// The directory of the user's settings and database, ".kelvora" in the home directory; made where it is
/// missing.
QString Settings_Directory();

/// The place of the main window at start: the part of `stored` on the screen's `available` area, or the
/// default place where that part is not more than 500 pixels wide and high.
QRect Window_Geometry(const QRect& stored, const QRect& available);
