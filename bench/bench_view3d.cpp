// SPDX-License-Identifier: MIT
// The time of a frame, in ms, against a bare loop that draws the same arrays by the same calls and nothing
// else; and the time of the labels against the better of the two ways to paint them that need no idea: each
// on the view, or all of them into one image of its size.
#include "opengldisplay.h"
#include "ratio.h"

#include <QApplication>
#include <QOpenGLShaderProgram>
#include <QPainter>
#include <QSurfaceFormat>

#include <cmath>

namespace
{

class TBenchDisplay : public TOpenGLDisplay
{
public:
    void Fill(int count);
    /// Fits the view and runs the measurements in its paint, where the context is ready.
    void Measure(const std::function<void()>& measurements);
    void Compare_Scene();
    void Compare_Labels();

protected:
    void paintGL() override;

private:
    struct TArray
    {
        unsigned int size;
        double* vertices;
        double* normals;
        bool spheres;
    };

    TComparison Compare_Frames(const std::function<void()>& ours, const std::function<void()>& reference);
    void Prepare();
    void Draw_Bare();
    void Paint_Names(QPainter* painter);
    void Paint_On_View(const std::function<void(QPainter*)>& paint);

    std::function<void()> d_Measurements;
    std::vector<TArray> d_Arrays;
    std::vector<QRect> d_Boxes;
    QImage d_Image;
};

void TBenchDisplay::Fill(int count)
{
    Clear_BallBars();
    Define_Machine_Volume({0, 0, 0}, {900, 1200, 700});
    for (int i = 0; i < count; ++i) {
        const TVector3 center(100 + i * 137 % 700, 100 + i * 251 % 1000, 100 + i * 89 % 500);
        const TVector3 half(100 * std::cos(i), 100 * std::sin(i), 60 * std::cos(1.7 * i));
        TBallBar bar;
        bar.index = i;
        bar.name = QStringLiteral("Position %1").arg(i);
        bar.sphere1 = center - half;
        bar.sphere2 = center + half;
        bar.label = BallBarMeshes::Label_Position(bar.sphere1, bar.sphere2);
        bar.probe = {0, 0, -100};
        Add_BallBar(bar);
    }
}

void TBenchDisplay::Measure(const std::function<void()>& measurements)
{
    d_FitRequested = true;
    d_Measurements = measurements;
    update();
    while (d_Measurements)
        QApplication::processEvents();
}

void TBenchDisplay::paintGL()
{
    TOpenGLDisplay::paintGL();
    if (d_Measurements)
        d_Measurements();
    d_Measurements = nullptr;
}

TComparison TBenchDisplay::Compare_Frames(const std::function<void()>& ours,
                                          const std::function<void()>& reference)
{
    const auto frame = [this](const std::function<void()>& draw) {
        return [this, draw] {
            draw();
            glFinish();
        };
    };
    return TComparison(d_ballbars.size() > 1000 ? 9 : 25, frame(ours), frame(reference));
}

void TBenchDisplay::Compare_Scene()
{
    Prepare();
    const auto clear = [this] { glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT); };
    const auto scene = [&] {
        clear();
        TTriad triad = Triad();
        Render_Scene(&triad);
    };
    const auto bare = [&] {
        clear();
        Draw_Bare();
    };
    const TComparison plain = Compare_Frames(scene, bare);
    const QString name = QStringLiteral("view3d/%1").arg(d_ballbars.size());
    Print_Ratio(qPrintable(name), plain.ours * 1e3, plain.reference * 1e3, 1.15);
    if (d_ballbars.size() == 50) {
        const TComparison whole = Compare_Frames([this] { GLRender(); }, bare);
        Print_Ratio("  with labels, against 60 frames a second", whole.ours * 1e3, 1e3 / 60, 1.0);
    }
}

void TBenchDisplay::Compare_Labels()
{
    Prepare();
    const auto ours = [this] { Render_Labels(Triad()); };
    const auto one_by_one = [this] { Paint_On_View([this](QPainter* painter) { Paint_Names(painter); }); };
    const auto one_image = [this] {
        d_Image.fill(Qt::transparent);
        QPainter names(&d_Image);
        Paint_Names(&names);
        names.end();
        Paint_On_View([this](QPainter* painter) { painter->drawImage(0, 0, d_Image); });
    };
    const TComparison first = Compare_Frames(ours, one_by_one);
    const TComparison second = Compare_Frames(ours, one_image);
    const QString name =
        QStringLiteral("labels/%1 at %2 x %3 (%4)").arg(d_ballbars.size()).arg(width()).arg(height());
    const bool image = second.reference < first.reference;
    Print_Ratio(qPrintable(name.arg(image ? "image" : "one by one")), std::min(first.ours, second.ours) * 1e3,
                std::min(first.reference, second.reference) * 1e3, 1.1);
}

void TBenchDisplay::Prepare()
{
    d_Arrays.clear();
    d_Boxes.clear();
    const TCamera camera = Read_Camera();
    for (const TBallBar& bar : d_ballbars) {
        for (const int k : {0, 1})
            d_Arrays.push_back({static_cast<unsigned int>(d_vertex_buffers.Buffer_Size(bar.buffers[k])),
                                d_vertex_buffers.Buffer(bar.buffers[k]),
                                d_vertex_buffers.Buffer(bar.buffers[k + 2]), k == 1});
        QPoint pixel;
        camera.Raster_Position(bar.label, &pixel.rx(), &pixel.ry());
        d_Boxes.emplace_back(pixel - QPoint(1, 1), QFontMetrics(font()).size(0, bar.name) + QSize(3, 3));
    }
    d_Image = QImage(camera.viewport[2], camera.viewport[3], QImage::Format_ARGB32_Premultiplied);
}

void TBenchDisplay::Draw_Bare()
{
    const auto vertex = static_cast<GLuint>(d_lit_vertex);
    const auto normal = static_cast<GLuint>(d_lit_normal);
    d_lit_program->bind();
    for (const TArray& array : d_Arrays) {
        const float grey = array.spheres ? 0.6F : 0.1F;
        glUniform4f(d_lit_color, grey, grey, grey, 1.0F);
        glUniform3f(d_lit_offset, 0.0F, 0.0F, 0.0F);
        glUniform1f(d_lit_specular, array.spheres ? 0.3F : 0.1F);
        glVertexAttribPointer(vertex, 3, GL_DOUBLE, GL_FALSE, 0, array.vertices);
        glVertexAttribPointer(normal, 3, GL_DOUBLE, GL_FALSE, 0, array.normals);
        glEnableVertexAttribArray(vertex);
        glEnableVertexAttribArray(normal);
        glDrawArrays(GL_TRIANGLES, 0, static_cast<GLsizei>(array.size / 3));
        glDisableVertexAttribArray(vertex);
        glDisableVertexAttribArray(normal);
    }
    d_lit_program->release();
}

void TBenchDisplay::Paint_Names(QPainter* painter)
{
    painter->setFont(font());
    painter->setPen(Qt::black);
    for (size_t i = 0; i < d_Boxes.size(); ++i) {
        painter->fillRect(d_Boxes[i], QColor(224, 224, 224, 160));
        painter->drawText(d_Boxes[i], Qt::AlignHCenter | Qt::AlignVCenter, d_ballbars[i].name);
    }
}

void TBenchDisplay::Paint_On_View(const std::function<void(QPainter*)>& paint)
{
    glPushAttrib(GL_ALL_ATTRIB_BITS);
    glDisable(GL_CULL_FACE);
    QPainter painter(this);
    paint(&painter);
    painter.end();
    glPopAttrib();
}

} // namespace

int main(int argc, char* argv[])
{
    QSurfaceFormat::setDefaultFormat(TOpenGLWidget::Default_Format());
    QApplication application(argc, argv);
    TBenchDisplay view;
    view.resize(1000, 700);
    view.show();
    Print_Heading("ours ms", "reference ms");
    for (const int count : {50, 100, 1000, 5000}) {
        view.Fill(count);
        view.Measure([&] { view.Compare_Scene(); });
    }
    for (const QSize& size : {QSize(850, 590), QSize(1920, 1080), QSize(3840, 2100)}) {
        view.resize(size);
        for (const int count : {30, 100, 1000, 5000}) {
            view.Fill(count);
            view.Measure([&] { view.Compare_Labels(); });
        }
    }
    return 0;
}
