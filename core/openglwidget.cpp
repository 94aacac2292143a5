// SPDX-License-Identifier: MIT
#include "openglwidget.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QRubberBand>
#include <QWheelEvent>

#include <algorithm>
#include <cassert>
#include <cmath>

namespace
{

QString GL_Text(QOpenGLContext* context, GLenum name)
{
    return QString::fromLatin1(reinterpret_cast<const char*>(context->functions()->glGetString(name)));
}

} // namespace

TOpenGLWidget::TOpenGLWidget(const QWidget* parent, Qt::WindowFlags flags)
    : QOpenGLWidget(const_cast<QWidget*>(parent), flags)
{
    setFormat(QSurfaceFormat::defaultFormat());
    setFocusPolicy(Qt::StrongFocus);
}

QSurfaceFormat TOpenGLWidget::Default_Format()
{
    QSurfaceFormat format;
    format.setRenderableType(QSurfaceFormat::OpenGL);
    format.setProfile(QSurfaceFormat::CompatibilityProfile);
    format.setVersion(2, 1);
    format.setDepthBufferSize(24);
    format.setSamples(0);
    return format;
}

int TOpenGLWidget::Get_OpenGL_Version_Major(QString* version_text, QString* extensions_text)
{
    assert(version_text);
    assert(extensions_text);
    QOffscreenSurface surface;
    surface.create();
    QOpenGLContext context;
    if (!context.create() || !context.makeCurrent(&surface))
        return 0;
    *version_text = GL_Text(&context, GL_VERSION);
    *extensions_text = GL_Text(&context, GL_EXTENSIONS);
    context.doneCurrent();
    return version_text->simplified().section(QLatin1Char(' '), 0, 0).section(QLatin1Char('.'), 0, 0).toInt();
}

void TOpenGLWidget::Convert_To_GLViewport(short* x, short* y)
{
    if (!Make_Current())
        return;
    const QPoint position = In_Viewport(Read_Camera(), {*x, *y});
    *x = static_cast<short>(position.x());
    *y = static_cast<short>(position.y());
}

void TOpenGLWidget::Convert_GLViewport_ToModel(short x, short y, double* model_x, double* model_y)
{
    TVector2 point;
    if (Make_Current())
        point = Read_Camera().Eye_Plane_Point(x, y);
    *model_x = point.x;
    *model_y = point.y;
}

double TOpenGLWidget::Get_GLPixel_Depth(short x, short y)
{
    if (!Make_Current())
        return 1.0;
    const TCamera camera = Read_Camera();
    const int* viewport = camera.viewport;
    const int XPixel = x + viewport[0];
    const int YPixel = y + viewport[1];
    assert(XPixel < viewport[2]);
    assert(YPixel < viewport[3]);
    assert(XPixel >= 0);
    assert(YPixel >= 0);

    glReadBuffer(GL_BACK);
    glGetError(); // a framebuffer object has no back buffer to choose; its depth is read all the same
    float depth = 1.0F;
    glReadPixels(XPixel, YPixel, 1, 1, GL_DEPTH_COMPONENT, GL_FLOAT, &depth);
    depth = std::min(depth, 1.0F);
    const int block_size = std::min(viewport[2], viewport[3]) / 5;
    if (depth <= TCamera::BACKGROUND_DEPTH || block_size < 2)
        return depth;
    return Mean_Depth(std::clamp(XPixel - block_size / 2, 0, viewport[2] - block_size),
                      std::clamp(YPixel - block_size / 2, 0, viewport[3] - block_size), block_size);
}

void TOpenGLWidget::Set_Rotation_Center()
{
    if (!Make_Current())
        return;
    const TCamera camera = Read_Camera();
    if (!camera.Has_Pixels())
        return;
    const double depth = Get_GLPixel_Depth(static_cast<short>(camera.viewport[2] / 2),
                                           static_cast<short>(camera.viewport[3] / 2));
    d_RotationCenter = TCamera{d_ModelMatrix, d_ProjectionMatrix}.Rotation_Center(depth);
}

void TOpenGLWidget::Rotate_Model(const TVector3& axis, const double& angle)
{
    if (!(axis.Length() >= 1e-6) || !Make_Current())
        return;
    TVector3 unit_axis(axis);
    TMat4 model = Read_Camera().model;
    model.Rotate(unit_axis.Normal(), angle);
    Load_Model(model);
    update();
}

void TOpenGLWidget::Mousewheel_Zoom(int delta)
{
    if (delta != 0)
        Zoom(delta < 1 ? 0.95 : 1.0 / 0.95);
}

void TOpenGLWidget::Click_Zoom(short, short y)
{
    if (Make_Current())
        Zoom(TCamera::Click_Zoom_Factor(y, Read_Camera().viewport[3]));
}

void TOpenGLWidget::Zoom_To_Rect(const QRect& rect)
{
    if (!Make_Current())
        return;
    TCamera camera = Read_Camera();
    const auto eye_point = [&](const QPoint& corner) {
        const QPoint pixel = In_Viewport(camera, corner);
        return camera.Eye_Plane_Point(pixel.x(), pixel.y());
    };
    if (camera.Zoom_To_Rect(eye_point(rect.topLeft()), eye_point(rect.bottomRight())))
        Load_Projection(camera.projection);
}

void TOpenGLWidget::Begin_Fit_To_Viewport()
{
    d_FitActive = true;
    d_FitFirstVertex = true;
    if (!Make_Current())
        return;
    d_FitMatrix = Read_Camera().model;
    d_FitMatrix.Transpose();
}

void TOpenGLWidget::Process_Vertex(const TVector3& v)
{
    const TVector3 p = d_FitMatrix * v;
    if (d_FitFirstVertex) {
        d_FitMinimum = p;
        d_FitMaximum = p;
        d_FitFirstVertex = false;
        return;
    }
    d_FitMinimum = {std::min(d_FitMinimum.x, p.x), std::min(d_FitMinimum.y, p.y),
                    std::min(d_FitMinimum.z, p.z)};
    d_FitMaximum = {std::max(d_FitMaximum.x, p.x), std::max(d_FitMaximum.y, p.y),
                    std::max(d_FitMaximum.z, p.z)};
}

void TOpenGLWidget::End_Fit_To_Viewport()
{
    d_FitActive = false;
    if (d_FitFirstVertex || !Make_Current())
        return;
    TCamera camera = Read_Camera();
    camera.Fit(d_FitMinimum, d_FitMaximum);
    Load_Projection(camera.projection);
}

void TOpenGLWidget::AddSelectionItem(const TSelectionItemType& item)
{
    if (item.kind != TSelectionItemType::BOX && item.kind != TSelectionItemType::SEGMENT)
        return;
    d_SelectionItems.push_back(item);
    d_SelectionItems.back().Repair_Directions();
}

TOpenGLWidget::TSelectionItemType TOpenGLWidget::Selection_Item(int offset) const
{
    assert(!(offset < 0));
    assert(offset < static_cast<int>(d_SelectionItems.size()));
    return d_SelectionItems[static_cast<size_t>(offset)];
}

int TOpenGLWidget::Find_Selection(const TVector3& point) const
{
    return Find_Item(d_SelectionItems, point);
}

bool TOpenGLWidget::Is_Point_Between(const TVector3& point, const TVector3& a, const TVector3& b,
                                     const TVector3& direction) const
{
    return Is_Between_Planes(point, a, b, direction);
}

void TOpenGLWidget::Point_Raster_Position(int* x, int* y, const TVector3& point)
{
    const QPoint pixel = Make_Current() ? Widget_Pixel(Read_Camera(), point) : QPoint();
    *x = pixel.x();
    *y = pixel.y();
}

void TOpenGLWidget::Process_Mouse_Click(short x, short y)
{
    if (!Make_Current())
        return;
    const TCamera camera = Read_Camera();
    const double depth = Get_GLPixel_Depth(x, y);
    if (depth > TCamera::BACKGROUND_DEPTH)
        return;
    const TVector3 point = camera.Model_Point(x, y, depth);
    const int offset = Find_Selection(point);
    emit Model_Click_Point(point.x, point.y, point.z, offset < 0 ? -1 : Selection_Item(offset).identifier);
}

void TOpenGLWidget::mousePressEvent(QMouseEvent* event)
{
    if (!Make_Current())
        return;
    setFocus(Qt::OtherFocusReason);
    if (event->buttons() & Qt::LeftButton)
        d_RubberBandActive = false;
    if (d_RubberBand)
        d_RubberBand->hide();                      // of a left drag that is given up by another button
    d_PressPosition = event->localPos().toPoint(); // rounds to the nearest pixel
    if (!(event->buttons() & Qt::RightButton))
        return;

    const TCamera camera = Read_Camera();
    d_LastDragPosition = In_Viewport(camera, d_PressPosition);
    d_MouseMoved = false;
    d_ModelMatrix = camera.model;
    d_ProjectionMatrix = camera.projection;
    d_ModelMatrix.Normal();
    Set_Rotation_Center();
}

void TOpenGLWidget::mouseReleaseEvent(QMouseEvent* event)
{
    if (!Make_Current())
        return;
    const TCamera camera = Read_Camera();
    const QPoint position = In_Viewport(camera, event->localPos().toPoint());
    if (event->button() == Qt::LeftButton)
        Release_Left(camera, position);
    else if (event->button() == Qt::RightButton && !d_MouseMoved)
        Release_Right(camera, position);
}

void TOpenGLWidget::mouseMoveEvent(QMouseEvent* event)
{
    if (!Make_Current())
        return;
    const QPoint position = event->localPos().toPoint();
    if ((position - d_PressPosition).manhattanLength() <= 1)
        return;
    if (event->buttons() == Qt::RightButton)
        Drag_View(position, event->modifiers());
    else if (event->buttons() == Qt::LeftButton)
        Drag_Rubber_Band(position);
}

void TOpenGLWidget::wheelEvent(QWheelEvent* event)
{
    Mousewheel_Zoom(event->angleDelta().y());
    update();
}

void TOpenGLWidget::keyPressEvent(QKeyEvent* event)
{
    Note_Modifier_Key(event->key(), true);
    QOpenGLWidget::keyPressEvent(event); // ignores it, so that the parent gets it too
}

void TOpenGLWidget::keyReleaseEvent(QKeyEvent* event)
{
    Note_Modifier_Key(event->key(), false);
    QOpenGLWidget::keyReleaseEvent(event);
}

void TOpenGLWidget::initializeGL()
{
    initializeOpenGLFunctions();
    GLInit();
    Load_Model(d_ModelMatrix);
    Load_Projection(d_ProjectionMatrix);
    glDepthRange(0.0, 1.0);
    glPixelTransferf(GL_DEPTH_BIAS, 0.0F);
    glPixelTransferf(GL_DEPTH_SCALE, 1.0F);
    if (d_initialised) {
        d_FitRequested = true; // a move to another window: a new view of the scene in the owner's drag mode
        return;
    }
    d_PanMode = true;
    d_Rotate2dMode = d_Rotate3dMode = false;
    d_initialised = true;
}

void TOpenGLWidget::resizeGL(int width, int height)
{
    const double ratio = devicePixelRatioF();
    const int device_width = static_cast<int>(width * ratio);
    const int device_height = static_cast<int>(height * ratio);
    GLResize(device_width, device_height);
    if (device_width == 0 || device_height == 0)
        return;
    d_HalfWidth = device_width / 2;
    d_HalfHeight = device_height / 2;
    glViewport(0, 0, device_width, device_height);
    TCamera camera = Read_Camera();
    camera.Keep_Pixels_Square(device_width, device_height);
    glMatrixMode(GL_PROJECTION); // the member stays: the next press reads what is shown
    glLoadMatrixd(camera.projection.Data());
}

void TOpenGLWidget::paintGL()
{
    if (d_FitRequested) {
        Begin_Fit_To_Viewport();
        GLRender();
        End_Fit_To_Viewport();
        d_FitRequested = false;
    }
    GLRender();
}

bool TOpenGLWidget::Make_Current()
{
    if (!isValid())
        return false;
    makeCurrent();
    return true;
}

TCamera TOpenGLWidget::Read_Camera()
{
    TCamera camera;
    glGetDoublev(GL_MODELVIEW_MATRIX, camera.model.Data());
    glGetDoublev(GL_PROJECTION_MATRIX, camera.projection.Data());
    glGetIntegerv(GL_VIEWPORT, camera.viewport);
    return camera;
}

QPoint TOpenGLWidget::Widget_Pixel(const TCamera& camera, const TVector3& point) const
{
    QPoint pixel;
    camera.Raster_Position(point, &pixel.rx(), &pixel.ry());
    return pixel / devicePixelRatioF();
}

QPoint TOpenGLWidget::In_Viewport(const TCamera& camera, const QPoint& position) const
{
    QPoint pixel = position * devicePixelRatioF();
    camera.To_Viewport(&pixel.rx(), &pixel.ry());
    return pixel;
}

// The mean depth of what is drawn in a square block, 1.0 when that is nothing.
double TOpenGLWidget::Mean_Depth(int left, int bottom, int size)
{
    std::vector<float> block(static_cast<size_t>(size) * static_cast<size_t>(size), 1.0F);
    glReadPixels(left, bottom, size, size, GL_DEPTH_COMPONENT, GL_FLOAT, block.data());
    double sum = 0.0;
    int count = 0;
    for (const float value : block) {
        if (value <= TCamera::BACKGROUND_DEPTH) {
            sum += value;
            ++count;
        }
    }
    return count > 0 ? sum / count : 1.0;
}

void TOpenGLWidget::Load_Model(const TMat4& model)
{
    d_ModelMatrix = model;
    glMatrixMode(GL_MODELVIEW);
    glLoadMatrixd(model.Data());
}

// Keeps the member in step, so that a drag that is under way goes on from what is shown.
void TOpenGLWidget::Load_Projection(const TMat4& projection)
{
    d_ProjectionMatrix = projection;
    glMatrixMode(GL_PROJECTION);
    glLoadMatrixd(projection.Data());
}

void TOpenGLWidget::Zoom(double factor)
{
    if (!Make_Current())
        return;
    TCamera camera = Read_Camera();
    camera.Zoom(factor);
    Load_Projection(camera.projection);
}

void TOpenGLWidget::Release_Left(const TCamera& camera, const QPoint& position)
{
    if (d_RubberBandActive && d_RubberBand) {
        d_RubberBand->hide();
        Zoom_To_Rect(d_RubberBandRect);
        update();
    } else if (camera.Is_Inside_Viewport(position.x(), position.y())) {
        Process_Mouse_Click(static_cast<short>(position.x()), static_cast<short>(position.y()));
    }
}

void TOpenGLWidget::Release_Right(const TCamera& camera, const QPoint& position)
{
    // Beyond the edges the law of the click zoom would turn the picture inside out.
    if (position.y() < 0 || position.y() > camera.viewport[3])
        return;
    Click_Zoom(static_cast<short>(position.x()), static_cast<short>(position.y()));
    update();
}

void TOpenGLWidget::Drag_View(const QPoint& position, Qt::KeyboardModifiers modifiers)
{
    TCamera camera = Read_Camera();
    const QPoint cursor = In_Viewport(camera, position);
    const QPointF step = QPointF(cursor - d_LastDragPosition) / devicePixelRatioF();
    if (std::fabs(step.x()) < 2.0 && std::fabs(step.y()) < 2.0)
        return;

    camera.model = d_ModelMatrix;
    camera.projection = d_ProjectionMatrix;
    if (Move_Camera(&camera, cursor, modifiers)) {
        camera.Recenter(d_RotationCenter);
        Load_Model(camera.model);
    }
    Load_Projection(camera.projection);
    update();
    d_MouseMoved = true;
    d_LastDragPosition = cursor;
}

// Takes the camera from the last drag position to the cursor; true when that was a rotation. Turning goes by
// logical pixels, so that it is equally fast on every screen.
bool TOpenGLWidget::Move_Camera(TCamera* camera, const QPoint& cursor, Qt::KeyboardModifiers modifiers) const
{
    const QPoint step = cursor - d_LastDragPosition;
    const double ratio = devicePixelRatioF();
    if ((modifiers & Qt::ControlModifier) || d_Rotate3dMode) {
        camera->Rotate_3d(step.x() / ratio, step.y() / ratio);
        return true;
    }
    if (!(modifiers & Qt::ShiftModifier) && !d_Rotate2dMode) {
        camera->Pan(step.x(), step.y(), d_HalfWidth, d_HalfHeight);
        return false;
    }
    const auto from_middle = [this, ratio](const QPoint& pixel) {
        return TVector2((pixel.x() - d_HalfWidth) / ratio, (pixel.y() - d_HalfHeight) / ratio);
    };
    return camera->Rotate_2d(from_middle(d_LastDragPosition), from_middle(cursor));
}

void TOpenGLWidget::Drag_Rubber_Band(const QPoint& position)
{
    if (!d_RubberBand)
        d_RubberBand = new QRubberBand(QRubberBand::Rectangle, this);
    if (d_RubberBandActive)
        d_RubberBandRect.setBottomRight(position);
    else
        d_RubberBandRect = QRect(d_PressPosition, d_PressPosition);
    d_RubberBand->setGeometry(d_RubberBandRect.normalized());
    d_RubberBand->show();
    d_RubberBandActive = true;
}

void TOpenGLWidget::Note_Modifier_Key(int key, bool down)
{
    if (key == Qt::Key_Shift)
        d_ShiftKeyDown = down;
    else if (key == Qt::Key_Control)
        d_ControlKeyDown = down;
}
