// SPDX-License-Identifier: MIT
#include "opengldisplay.h"

#include "openglshaders.h"

#include <QOpenGLShaderProgram>
#include <QPainter>

#include <algorithm>
#include <cmath>
#include <iterator>

namespace
{

using TMesh = TOpenGLGeometryFactory::TMesh;
using TVertex = TOpenGLGeometryFactory::TOpenGLTriangleVertex;

constexpr TVector3 MACHINE_COLOR(0.5, 0.5, 0.5);
constexpr TVector3 TRIAD_COLOR(0.25, 0.25, 0.25);
constexpr TVector3 STEM_COLOR(0.7, 0.7, 0.7);
constexpr TVector3 RUBY_COLOR(1.0, 0.0, 0.0);

// By first flag and selection. Those of a see-through bar are weakened by its alpha.
constexpr TVector3 ROD_COLORS[2][2] = {{{0.1, 0.1, 0.1}, {0.0, 0.0, 0.7}},
                                       {{0.7, 0.0, 0.0}, {0.7, 0.0, 0.7}}};
constexpr TVector3 SPHERE_COLORS[2][2] = {{{0.6, 0.6, 0.6}, {0.7, 0.7, 0.9}},
                                          {{0.9, 0.7, 0.7}, {0.9, 0.7, 0.9}}};

// Which of a bar's eight buffers hold the vertices of each mesh. Those of its normals follow two places
// later.
constexpr int VERTEX_BUFFERS[BallBarMeshes::SLOT_COUNT] = {0, 1, 4, 5};
constexpr int TO_NORMALS = 2;

// One of the eight corners: bit k of the number chooses the maximum along axis k.
TVector3 Box_Corner(const TVector3& minimum, const TVector3& maximum, int number)
{
    return {number & 1 ? maximum.x : minimum.x, number & 2 ? maximum.y : minimum.y,
            number & 4 ? maximum.z : minimum.z};
}

// The box's twelve edges as separate lines: 72 doubles.
void Write_Box_Edges(const TVector3& minimum, const TVector3& maximum, double* out)
{
    for (int corner = 0; corner < 8; ++corner) {
        for (int axis = 1; axis < 8; axis *= 2) {
            if (corner & axis)
                continue;
            for (const int end : {corner, corner | axis}) {
                const TVector3 point = Box_Corner(minimum, maximum, end);
                out = std::copy_n(&point.x, 3, out);
            }
        }
    }
}

// The positions or the normals of all vertices, three doubles each.
void Write(const TMesh& mesh, TVector3 TVertex::*part, double* out)
{
    for (const TVertex& vertex : mesh)
        out = std::copy_n(&(vertex.*part).x, 3, out);
}

QOpenGLShaderProgram* New_Program(const char* vertex_source, const char* fragment_source, QObject* parent)
{
    auto* program = new QOpenGLShaderProgram(parent);
    program->addShaderFromSourceCode(QOpenGLShader::Vertex, vertex_source);
    program->addShaderFromSourceCode(QOpenGLShader::Fragment, fragment_source);
    program->link();
    return program;
}

} // namespace

TOpenGLDisplay::TOpenGLDisplay(const QWidget* parent, Qt::WindowFlags flags)
    : TOpenGLWidget(parent, flags), d_level(BallBarMeshes::Level(0))
{
}

TOpenGLDisplay::~TOpenGLDisplay()
{
    if (!Make_Current())
        return;
    delete d_lit_program;
    delete d_flat_program;
    doneCurrent();
}

void TOpenGLDisplay::Add_BallBar(const TBallBar& bar)
{
    d_ballbars.push_back(bar);
    const int level = BallBarMeshes::Level(d_ballbars.size());
    if (level == d_level) {
        Create_Meshes(&d_ballbars.back());
    } else {
        d_level = level;
        Remove_Meshes();
        for (TBallBar& item : d_ballbars)
            Create_Meshes(&item);
    }

    TSelectionItemType item;
    item.first_point = bar.sphere1;
    item.second_point = bar.sphere2;
    item.identifier = bar.index;
    AddSelectionItem(item);
}

void TOpenGLDisplay::Clear_BallBars()
{
    Remove_Meshes();
    d_ballbars.clear();
    d_SelectionItems.clear();
    d_labels.Make_Room();
    d_level = BallBarMeshes::Level(0);
}

void TOpenGLDisplay::Set_Selection(int index)
{
    for (TBallBar& bar : d_ballbars)
        bar.selected = bar.index == index;
    update();
}

void TOpenGLDisplay::Clear_Selection()
{
    for (TBallBar& bar : d_ballbars)
        bar.selected = false;
    update();
}

void TOpenGLDisplay::Define_Machine_Volume(const TVector3& minimum, const TVector3& maximum)
{
    d_machine_minimum = minimum;
    d_machine_maximum = maximum;
    if (!d_vertex_buffers.Has_Buffer(d_machine_buffer))
        d_machine_buffer = d_vertex_buffers.Create_Buffer(72);
    Write_Box_Edges(minimum, maximum, d_vertex_buffers.Buffer(d_machine_buffer));

    const TVector3 diagonal = maximum - minimum;
    const double length = diagonal.Length();
    if (length > 1e-7) {
        d_triad_size = std::min({std::fabs(diagonal.x), std::fabs(diagonal.y), std::fabs(diagonal.z)}) / 5.0;
        d_triad_origin = minimum - diagonal * (d_triad_size / length);
    } else {
        d_triad_size = 100.0; // a machine without size says nothing of scale: one that suits the usual bars
        d_triad_origin = minimum;
    }
}

int TOpenGLDisplay::Convert_Geometry_To_Buffer(const TMesh& geometry, double** vertices, double** normals)
{
    delete[] * vertices;
    delete[] * normals;
    *vertices = *normals = nullptr;
    const size_t size = 3 * geometry.size();
    *vertices = new double[size];
    *normals = new double[size];
    Write(geometry, &TVertex::position, *vertices);
    Write(geometry, &TVertex::normal, *normals);
    return static_cast<int>(size);
}

void TOpenGLDisplay::GLInit()
{
    // A widget moved to another window gets a new context: the old one's programs are of no use any more.
    delete d_lit_program;
    delete d_flat_program;

    glEnable(GL_DEPTH_TEST);
    glDepthFunc(GL_LESS);
    glEnable(GL_CULL_FACE);
    glFrontFace(GL_CCW);
    glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
    glShadeModel(GL_SMOOTH);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    glEnable(GL_BLEND);

    d_lit_program = New_Program(OpenGLShaders::LIT_VERTEX, OpenGLShaders::LIT_FRAGMENT, this);
    d_lit_color = d_lit_program->uniformLocation("color");
    d_lit_specular = d_lit_program->uniformLocation("specular");
    d_lit_offset = d_lit_program->uniformLocation("offset");
    d_lit_vertex = d_lit_program->attributeLocation("vertex");
    d_lit_normal = d_lit_program->attributeLocation("normal");
    d_flat_program = New_Program(OpenGLShaders::FLAT_VERTEX, OpenGLShaders::FLAT_FRAGMENT, this);
    d_flat_color = d_flat_program->uniformLocation("color");
    d_flat_vertex = d_flat_program->attributeLocation("vertex");

    glClearColor(1.0F, 1.0F, 1.0F, 1.0F);
    Rotate_Model({1.0, 0.0, 0.0}, -1.31);
    Rotate_Model({0.0, 0.0, 1.0}, -0.26);
}

void TOpenGLDisplay::GLRender()
{
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    glEnable(GL_DEPTH_TEST);
    glDisable(GL_LIGHTING);
    TTriad triad = Triad();
    if (d_FitActive) {
        Fit_Scene(triad);
        return;
    }
    Render_Scene(&triad);
    Render_Labels(triad);
}

void TOpenGLDisplay::Render_Triangle_Buffer(unsigned int size, const TVector3& offset, const TVector3& color,
                                            const double& specular, const double& alpha, double* vertices,
                                            double* normals)
{
    const auto vertex = static_cast<GLuint>(d_lit_vertex);
    const auto normal = static_cast<GLuint>(d_lit_normal);
    glUniform4f(d_lit_color, static_cast<float>(color.x), static_cast<float>(color.y),
                static_cast<float>(color.z), static_cast<float>(alpha));
    glUniform3f(d_lit_offset, static_cast<float>(offset.x), static_cast<float>(offset.y),
                static_cast<float>(offset.z));
    glUniform1f(d_lit_specular, static_cast<float>(specular));
    glVertexAttribPointer(vertex, 3, GL_DOUBLE, GL_FALSE, 0, vertices);
    glVertexAttribPointer(normal, 3, GL_DOUBLE, GL_FALSE, 0, normals);
    glEnableVertexAttribArray(vertex);
    glEnableVertexAttribArray(normal);
    glDrawArrays(GL_TRIANGLES, 0, static_cast<GLsizei>(size / 3));
    glDisableVertexAttribArray(vertex);
    glDisableVertexAttribArray(normal);
}

void TOpenGLDisplay::Render_Line_Buffer(unsigned int size, const TVector3& color, double* vertices)
{
    Render_Flat(GL_LINES, size, color, vertices);
}

void TOpenGLDisplay::Render_Line_Strip_Buffer(unsigned int size, const TVector3& color, double* vertices)
{
    Render_Flat(GL_LINE_STRIP, size, color, vertices);
}

void TOpenGLDisplay::Render_Point_Buffer(unsigned int size, const TVector3& color, double* vertices)
{
    Render_Flat(GL_POINTS, size, color, vertices);
}

TOpenGLDisplay::TTriad TOpenGLDisplay::Triad() const
{
    TTriad triad{};
    double* out = triad.vertices;
    for (int axis = 0; axis < 3; ++axis) {
        TVector3 direction;
        direction(axis) = d_triad_size;
        const TVector3 end = d_triad_origin + direction;
        out = std::copy_n(&d_triad_origin.x, 3, out);
        out = std::copy_n(&end.x, 3, out);
        triad.anchors[axis] = d_triad_origin + 1.15 * direction;
    }
    return triad;
}

void TOpenGLDisplay::Fit_Scene(const TTriad& triad)
{
    const auto process = [this](const double* values, int size) {
        for (int i = 0; i < size; i += 3)
            Process_Vertex({values[i], values[i + 1], values[i + 2]});
    };
    for (int corner = 0; corner < 8; ++corner)
        Process_Vertex(Box_Corner(d_machine_minimum, d_machine_maximum, corner));
    process(triad.vertices, 18);
    for (const TBallBar& bar : d_ballbars)
        for (const int number : VERTEX_BUFFERS)
            if (const auto* vertices = d_vertex_buffers.Item(bar.buffers[number]))
                process(vertices->data.get(), vertices->size);
}

void TOpenGLDisplay::Render_Scene(TTriad* triad)
{
    d_lit_program->bind();
    for (const TBallBar& bar : d_ballbars) {
        if (!bar.second_flag)
            Render_Bar(bar);
        if (bar.selected)
            Render_Probes(bar);
    }
    glDepthFunc(GL_ALWAYS);
    for (const TBallBar& bar : d_ballbars)
        if (bar.second_flag)
            Render_Bar(bar);
    glDepthFunc(GL_LESS);
    d_lit_program->release();

    d_flat_program->bind();
    if (const auto* machine = d_vertex_buffers.Item(d_machine_buffer))
        Render_Line_Buffer(static_cast<unsigned int>(machine->size), MACHINE_COLOR, machine->data.get());
    Render_Line_Buffer(18, TRIAD_COLOR, triad->vertices);
    d_flat_program->release();
}

void TOpenGLDisplay::Render_Bar(const TBallBar& bar)
{
    const double see_through = bar.selected ? 0.6 : 0.1;
    const double alpha = bar.second_flag ? see_through : 1.0;
    Render_Mesh(bar, BallBarMeshes::ROD, alpha * ROD_COLORS[bar.first_flag][bar.selected], 0.1, alpha);
    Render_Mesh(bar, BallBarMeshes::SPHERES, alpha * SPHERE_COLORS[bar.first_flag][bar.selected], 0.3, alpha);
}

void TOpenGLDisplay::Render_Probes(const TBallBar& bar)
{
    Render_Mesh(bar, BallBarMeshes::STEMS, STEM_COLOR, 0.2, 1.0);
    Render_Mesh(bar, BallBarMeshes::RUBIES, RUBY_COLOR, 0.25, 1.0);
}

// Culling would take the labels away, and the painter leaves it on.
void TOpenGLDisplay::Render_Labels(const TTriad& triad)
{
    const TCamera camera = Read_Camera();
    if (!camera.Has_Pixels())
        return;
    glPushAttrib(GL_ALL_ATTRIB_BITS);
    glDisable(GL_CULL_FACE);
    QPainter painter(this);
    painter.setPen(Qt::black);
    for (int axis = 0; axis < 3; ++axis)
        painter.drawText(Widget_Pixel(camera, triad.anchors[axis]), QString(QLatin1Char("XYZ"[axis])));
    d_labels.Begin(size(), font(), devicePixelRatioF());
    for (const TBallBar& bar : d_ballbars)
        d_labels.Add(bar.name, Widget_Pixel(camera, bar.label));
    painter.scale(1.0 / devicePixelRatioF(), 1.0 / devicePixelRatioF());
    d_labels.Draw(&painter);
    painter.end();
    glPopAttrib();
}

void TOpenGLDisplay::Create_Meshes(TBallBar* bar)
{
    const auto store = [this](const TMesh& mesh, TVector3 TVertex::*part) {
        const int id = d_vertex_buffers.Create_Buffer(static_cast<unsigned int>(3 * mesh.size()));
        Write(mesh, part, d_vertex_buffers.Buffer(id)); // without a buffer there is nothing to write
        return id;
    };
    const auto meshes = BallBarMeshes::Build(bar->sphere1, bar->sphere2, bar->probe, d_level);
    for (size_t slot = 0; slot < meshes.size(); ++slot) {
        const int vertices = VERTEX_BUFFERS[slot];
        bar->buffers[vertices] = store(meshes[slot], &TVertex::position);
        bar->buffers[vertices + TO_NORMALS] = store(meshes[slot], &TVertex::normal);
    }
}

// Backwards, because behind the newest buffers there are next to no others to move up.
void TOpenGLDisplay::Remove_Meshes()
{
    for (auto bar = d_ballbars.rbegin(); bar != d_ballbars.rend(); ++bar) {
        for (auto id = std::rbegin(bar->buffers); id != std::rend(bar->buffers); ++id) {
            d_vertex_buffers.Remove_Buffer(*id);
            *id = -1;
        }
    }
}

void TOpenGLDisplay::Render_Mesh(const TBallBar& bar, int slot, const TVector3& color, double specular,
                                 double alpha)
{
    const int first = VERTEX_BUFFERS[slot];
    const auto* vertices = d_vertex_buffers.Item(bar.buffers[first]);
    const auto* normals = d_vertex_buffers.Item(bar.buffers[first + TO_NORMALS]);
    if (vertices && normals)
        Render_Triangle_Buffer(static_cast<unsigned int>(vertices->size), TVector3(), color, specular, alpha,
                               vertices->data.get(), normals->data.get());
}

void TOpenGLDisplay::Render_Flat(GLenum mode, unsigned int size, const TVector3& color, double* vertices)
{
    const auto vertex = static_cast<GLuint>(d_flat_vertex);
    glUniform4f(d_flat_color, static_cast<float>(color.x), static_cast<float>(color.y),
                static_cast<float>(color.z), 1.0F);
    glVertexAttribPointer(vertex, 3, GL_DOUBLE, GL_FALSE, 0, vertices);
    glEnableVertexAttribArray(vertex);
    glDrawArrays(mode, 0, static_cast<GLsizei>(size / 3));
    glDisableVertexAttribArray(vertex);
}
