// SPDX-License-Identifier: MIT
// The time of a frame against a bare loop that draws the same arrays by the same calls and nothing else, with
// and without the labels. Both take turns, frame by frame, in one run; medians are compared.
#include "opengldisplay.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QOpenGLShaderProgram>
#include <QPainter>
#include <QSurfaceFormat>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

namespace
{

enum TWay
{
    OURS,
    BARE,
    OURS_WITH_LABELS,
    BARE_WITH_LABELS,
    WAY_COUNT
};

class TBenchDisplay : public TOpenGLDisplay
{
public:
    void Fill(int count);
    double Median(TWay way);
    void Measure(int rounds);

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
    struct TLabel
    {
        QRect rect;
        QString name;
    };

    void Prepare();
    void Draw_Bare();
    void Draw_Bare_Labels();

    TWay d_Way{OURS};
    bool d_Painted{false};
    std::array<std::vector<double>, WAY_COUNT> d_Times;
    std::vector<TArray> d_Arrays;
    std::vector<TLabel> d_Labels;
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
    d_FitRequested = true;
    d_Arrays.clear();
    for (auto& times : d_Times)
        times.clear();
}

double TBenchDisplay::Median(TWay way)
{
    auto times = d_Times[way];
    std::sort(times.begin(), times.end());
    return times[times.size() / 2];
}

void TBenchDisplay::Measure(int rounds)
{
    for (int round = -2; round < rounds; ++round) { // the first two warm up
        for (int way = 0; way < WAY_COUNT; ++way) {
            d_Way = static_cast<TWay>(way);
            d_Painted = false;
            update();
            while (!d_Painted)
                QApplication::processEvents();
            if (round < 0)
                d_Times[d_Way].clear();
        }
    }
}

void TBenchDisplay::paintGL()
{
    if (d_FitRequested)
        TOpenGLDisplay::paintGL();
    if (d_Arrays.empty())
        Prepare();
    glFinish();
    QElapsedTimer timer;
    timer.start();
    if (d_Way == OURS_WITH_LABELS) {
        GLRender();
    } else {
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        if (d_Way == OURS) {
            TTriad triad = Triad();
            Render_Scene(&triad);
        } else {
            Draw_Bare();
        }
        if (d_Way == BARE_WITH_LABELS)
            Draw_Bare_Labels();
    }
    glFinish();
    d_Times[d_Way].push_back(static_cast<double>(timer.nsecsElapsed()) * 1e-6);
    d_Painted = true;
}

void TBenchDisplay::Prepare()
{
    for (const TBallBar& bar : d_BallBars)
        for (const int k : {0, 1})
            d_Arrays.push_back({static_cast<unsigned int>(d_VertexBuffers.Buffer_Size(bar.buffers[k])),
                                d_VertexBuffers.Buffer(bar.buffers[k]),
                                d_VertexBuffers.Buffer(bar.buffers[k + 2]), k == 1});
    d_Labels.clear();
    const TCamera camera = Read_Camera();
    for (const TBallBar& bar : d_BallBars) {
        QPoint pixel;
        camera.Raster_Position(bar.label, &pixel.rx(), &pixel.ry());
        d_Labels.push_back(
            {QRect(pixel - QPoint(1, 1), QFontMetrics(font()).size(0, bar.name) + QSize(3, 3)), bar.name});
    }
    d_Image = QImage(camera.viewport[2], camera.viewport[3], QImage::Format_ARGB32_Premultiplied);
}

void TBenchDisplay::Draw_Bare()
{
    const auto vertex = static_cast<GLuint>(d_LitVertex);
    const auto normal = static_cast<GLuint>(d_LitNormal);
    d_LitProgram->bind();
    for (const TArray& array : d_Arrays) {
        const float grey = array.spheres ? 0.6F : 0.1F;
        glUniform4f(d_LitColor, grey, grey, grey, 1.0F);
        glUniform3f(d_LitOffset, 0.0F, 0.0F, 0.0F);
        glUniform1f(d_LitSpecular, array.spheres ? 0.3F : 0.1F);
        glVertexAttribPointer(vertex, 3, GL_DOUBLE, GL_FALSE, 0, array.vertices);
        glVertexAttribPointer(normal, 3, GL_DOUBLE, GL_FALSE, 0, array.normals);
        glEnableVertexAttribArray(vertex);
        glEnableVertexAttribArray(normal);
        glDrawArrays(GL_TRIANGLES, 0, static_cast<GLsizei>(array.size / 3));
        glDisableVertexAttribArray(vertex);
        glDisableVertexAttribArray(normal);
    }
    d_LitProgram->release();
}

void TBenchDisplay::Draw_Bare_Labels()
{
    d_Image.fill(Qt::transparent);
    QPainter labels(&d_Image);
    labels.setFont(font());
    labels.setPen(Qt::black);
    for (const TLabel& label : d_Labels) {
        labels.fillRect(label.rect, QColor(224, 224, 224, 160));
        labels.drawText(label.rect, Qt::AlignHCenter | Qt::AlignVCenter, label.name);
    }
    labels.end();
    glPushAttrib(GL_ALL_ATTRIB_BITS);
    glDisable(GL_CULL_FACE);
    QPainter painter(this);
    painter.drawImage(0, 0, d_Image);
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
    for (const int count : {50, 100, 1000, 5000}) {
        view.Fill(count);
        view.show();
        view.Measure(count > 1000 ? 9 : 25);
        for (const TWay way : {OURS, OURS_WITH_LABELS}) {
            const double ours = view.Median(way);
            const double bare = view.Median(way == OURS ? BARE : BARE_WITH_LABELS);
            std::printf("view3d/%d%s  %.2f  %.2f  %.3f\n", count, way == OURS ? "" : "/labels", ours, bare,
                        ours / bare);
        }
    }
    return 0;
}
