// SPDX-License-Identifier: MIT
#pragma once

#include "vector3.h"

#include <QFrame>

class QGridLayout;
class QLabel;
class QToolButton;
class TOpenGLDisplay;

/// The frame of the 3-D view with its tool buttons. Where OpenGL is missing or older than 2.0 it shows a
/// message instead of the view, and every command does nothing. All lengths are mm in machine coordinates.
class TOpenGLDisplayWidget : public QFrame
{
    Q_OBJECT

public:
    explicit TOpenGLDisplayWidget(const QWidget* parent = nullptr, Qt::WindowFlags flags = {});

    /// Adds a bar between two sphere centres; `probe` is the probe offset in use, `index` is what a click on
    /// the bar reports. The first flag tints the bar red, the second makes it see-through.
    void Add_BallBar(int index, const QString& name, const TVector3& sphere1, const TVector3& sphere2,
                     const TVector3& probe, bool first_flag, bool second_flag);
    void Define_Machine_Volume(const TVector3& minimum, const TVector3& maximum);
    void Clear_BallBars();
    void Set_Selection(int index);
    void Clear_Selection();
    /// Repaints; with `fit` the view is scaled to the whole scene first.
    void Update(bool fit);

signals:
    /// A click on something drawn: the index of the bar, -1 for what is no bar.
    void Ballbar_Item_Clicked(int index);

public slots:
    void Scale_To_Fit();
    /// The drag modes: one is always on, unchecking any leads back to panning.
    void Pan(bool checked);
    void Rotate2d(bool checked);
    void Rotate3d(bool checked);
    void Model_Item_Clicked(const double& x, const double& y, const double& z, int item);

protected:
    void paintEvent(QPaintEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void Create_Message(QGridLayout* layout, const QString& text);
    void Create_View(QGridLayout* layout);
    QToolButton* Add_Button(QGridLayout* layout, int row, const QString& tool_tip, const QString& image);
    void Set_Mode(const QToolButton* mode);

    QToolButton* d_pan;
    QToolButton* d_rotate2d;
    QToolButton* d_rotate3d;
    QToolButton* d_scale_to_fit;
    QLabel* d_message{nullptr};         // null when there is a view
    TOpenGLDisplay* d_display{nullptr}; // null when OpenGL is too old
};
