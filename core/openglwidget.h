// SPDX-License-Identifier: MIT
#pragma once

#include "camera.h"
#include "mat4.h"
#include "selectionitem.h"
#include "vector3.h"

#include <QOpenGLFunctions>
#include <QOpenGLWidget>
#include <QPoint>
#include <QRect>

#include <vector>

class QRubberBand;

/// An OpenGL view with its own camera: turns mouse drags into rotation, panning and zooming, fits the scene
/// to the viewport and reports the model point under a click. It draws nothing itself; a subclass fills the
/// hooks.
///
/// The camera lives in OpenGL's matrix stacks: it is read from there, changed as a TCamera and loaded again.
/// Widget coordinates are Qt's (logical pixels, origin top left, y down), viewport coordinates OpenGL's
/// (device pixels, origin bottom left, y up). Before the first show there is no OpenGL: commands then do
/// nothing.
class TOpenGLWidget : public QOpenGLWidget, protected QOpenGLFunctions
{
    Q_OBJECT

public:
    using TSelectionItemType = TSelectionItem;

    explicit TOpenGLWidget(const QWidget* parent = nullptr, Qt::WindowFlags flags = {});

    /// What QSurfaceFormat::setDefaultFormat must be given before the application object is made: matrix
    /// stacks need a compatibility profile (3.0 or newer would give a core one), picking a depth buffer that
    /// can be read back (no multisampling).
    static QSurfaceFormat Default_Format();

    /// The major version of the OpenGL there is, 0 when there is none (the texts then stay as they are).
    static int Get_OpenGL_Version_Major(QString* version_text, QString* extensions_text);

    void Convert_To_GLViewport(short* x, short* y);
    /// Viewport pixel to the eye plane, in model units; the rotation is not undone.
    void Convert_GLViewport_ToModel(short x, short y, double* model_x, double* model_y);
    /// Depth (0 to 1) under a viewport pixel, which must be inside (assertion). On the background the mean
    /// depth of what is drawn nearby, 1.0 when there is nothing.
    double Get_GLPixel_Depth(short x, short y);

    void Set_Rotation_Center();
    /// Turns the model by `angle` radians about an axis of any length above 1e-6.
    void Rotate_Model(const TVector3& axis, const double& angle);
    void Mousewheel_Zoom(int delta);
    void Click_Zoom(short x, short y);
    void Zoom_To_Rect(const QRect& rect);

    /// A fit pass: between begin and end every point that must be visible goes through Process_Vertex.
    void Begin_Fit_To_Viewport();
    void Process_Vertex(const TVector3& v);
    void End_Fit_To_Viewport();

    /// Appends a copy with repaired directions. Unknown kinds are ignored.
    void AddSelectionItem(const TSelectionItemType& item);
    TSelectionItemType Selection_Item(int offset) const;
    /// The offset of the item a model point belongs to, -1 for none (see Find_Item).
    int Find_Selection(const TVector3& point) const;
    /// True strictly between the planes through a and b with that normal.
    bool Is_Point_Between(const TVector3& point, const TVector3& a, const TVector3& b,
                          const TVector3& direction) const;
    /// The widget pixel that shows a model point.
    void Point_Raster_Position(int* x, int* y, const TVector3& point);
    /// Reports what the viewport pixel shows; silent on the background.
    void Process_Mouse_Click(short x, short y);

    /// What a subclass does when there is a new context, when the size in device pixels has changed, and to
    /// draw a frame (in a fit pass: to name its vertices). The context is current.
    virtual void GLInit() {}
    virtual void GLResize(int /*width*/, int /*height*/) {}
    virtual void GLRender() {}

    bool d_FitRequested{true}; ///< fit the scene in the next paint

    /// What a right drag does: the owner sets exactly one.
    bool d_PanMode{false};
    bool d_Rotate2dMode{false};
    bool d_Rotate3dMode{false};

signals:
    /// A click on something drawn: the model point and the identifier of its item, -1 for none.
    void Model_Click_Point(const double& x, const double& y, const double& z, int item);

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void initializeGL() override;
    void resizeGL(int width, int height) override;
    void paintGL() override;

    /// Makes the context current; false before the first show, when there is none.
    bool Make_Current();
    /// What OpenGL holds now; the context must be current.
    TCamera Read_Camera();
    /// The widget pixel in which a camera shows a model point.
    QPoint Widget_Pixel(const TCamera& camera, const TVector3& point) const;

    TMat4 d_ModelMatrix;
    TMat4 d_ProjectionMatrix;
    TMat4 d_FitMatrix; ///< model to eye during a fit pass
    TVector3 d_FitMinimum;
    TVector3 d_FitMaximum;
    QPoint d_PressPosition;    ///< widget coordinates
    QPoint d_LastDragPosition; ///< viewport coordinates
    bool d_MouseMoved{false};
    bool d_RubberBandActive{false};
    QRect d_RubberBandRect; ///< widget coordinates
    QRubberBand* d_RubberBand{nullptr};
    bool d_ShiftKeyDown{false};
    bool d_ControlKeyDown{false};
    int d_HalfWidth{0};
    int d_HalfHeight{0};
    TVector3 d_RotationCenter; ///< negated model point
    bool d_FitActive{false};
    bool d_FitFirstVertex{false};
    std::vector<TSelectionItemType> d_SelectionItems;

private:
    QPoint In_Viewport(const TCamera& camera, const QPoint& position) const;
    double Mean_Depth(int left, int bottom, int size);
    void Load_Model(const TMat4& model);
    void Load_Projection(const TMat4& projection);
    void Zoom(double factor);
    void Release_Left(const TCamera& camera, const QPoint& position);
    void Release_Right(const TCamera& camera, const QPoint& position);
    void Drag_View(const QPoint& position, Qt::KeyboardModifiers modifiers);
    bool Move_Camera(TCamera* camera, const QPoint& cursor, Qt::KeyboardModifiers modifiers) const;
    void Drag_Rubber_Band(const QPoint& position);
    void Note_Modifier_Key(int key, bool down);

    bool d_initialised{false};
};
