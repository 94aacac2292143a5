// SPDX-License-Identifier: MIT
#include "opengldisplay.h"

#include "openglshaders.h"

#include <QOpenGLShaderProgram>
#include <QPainter>

#include <algorithm>
#include <cmath>
#include <functional>

namespace
{

constexpr TVector3 MACHINE_COLOR(0.5, 0.5, 0.5);
constexpr TVector3 TRIAD_COLOR(0.25, 0.25, 0.25);

/// Where a mesh has its two identifiers among the eight of a bar.
struct TBufferPair
{
    int vertices;
    int normals;
};
constexpr TBufferPair BUFFER_PAIRS[BallBarMeshes::SLOT_COUNT] = {{0, 2}, {1, 3}, {4, 6}, {5, 7}};

/// One of the eight corners: bit k of the number chooses the maximum along axis k.
TVector3 Box_Corner(const TVector3& minimum, const TVector3& maximum, int number)
{
    return {number & 1 ? maximum.x : minimum.x, number & 2 ? maximum.y : minimum.y,
            number & 4 ? maximum.z : minimum.z};
}

/// The box's twelve edges as separate lines: 72 doubles.
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

QOpenGLShaderProgram* New_Program(const char* vertex_source, const char* fragment_source, QObject* parent)
{
    auto* program = new QOpenGLShaderProgram(parent);
    program->addShaderFromSourceCode(QOpenGLShader::Vertex, vertex_source);
    program->addShaderFromSourceCode(QOpenGLShader::Fragment, fragment_source);
    program->link();
    return program;
}

} // namespace

struct TOpenGLDisplay::TLook
{
    TVector3 color;
    double alpha;
    double specular;
};

TOpenGLDisplay::TOpenGLDisplay(const QWidget* parent, Qt::WindowFlags flags)
    : TOpenGLWidget(parent, flags), d_Level(BallBarMeshes::Level(0))
{
}

TOpenGLDisplay::~TOpenGLDisplay()
{
    if (!Make_Current())
        return;
    delete d_LitProgram;
    delete d_FlatProgram;
    doneCurrent();
}

void TOpenGLDisplay::Add_BallBar(const TBallBar& bar)
{
    d_BallBars.push_back(bar);
    const int level = BallBarMeshes::Level(d_BallBars.size());
    if (level == d_Level) {
        Create_Meshes(&d_BallBars.back());
    } else {
        d_Level = level;
        Remove_Meshes();
        for (TBallBar& item : d_BallBars)
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
    d_BallBars.clear();
    d_SelectionItems.clear();
    d_Labels.Make_Room();
    d_Level = BallBarMeshes::Level(0);
}

void TOpenGLDisplay::Set_Selection(int index)
{
    for (TBallBar& bar : d_BallBars)
        bar.selected = bar.index == index;
    update();
}

void TOpenGLDisplay::Clear_Selection()
{
    for (TBallBar& bar : d_BallBars)
        bar.selected = false;
    update();
}

void TOpenGLDisplay::Define_Machine_Volume(const TVector3& minimum, const TVector3& maximum)
{
    d_MachineMinimum = minimum;
    d_MachineMaximum = maximum;
    if (!d_VertexBuffers.Has_Buffer(d_MachineBuffer))
        d_MachineBuffer = d_VertexBuffers.Create_Buffer(72);
    Write_Box_Edges(minimum, maximum, d_VertexBuffers.Buffer(d_MachineBuffer));

    const TVector3 diagonal = maximum - minimum;
    const double length = Length(diagonal);
    if (length > 1e-7) {
        d_TriadSize = std::min({std::fabs(diagonal.x), std::fabs(diagonal.y), std::fabs(diagonal.z)}) / 5.0;
        d_TriadOrigin = minimum - diagonal * (d_TriadSize / length);
    } else {
        d_TriadSize = 100.0; // a machine without size says nothing of scale: one that suits the usual bars
        d_TriadOrigin = minimum;
    }
}

int TOpenGLDisplay::Convert_Geometry_To_Buffer(const TOpenGLGeometryFactory::TMesh& geometry,
                                               double** vertices, double** normals)
{
    delete[] * vertices;
    delete[] * normals;
    *vertices = *normals = nullptr;
    double* position_out = *vertices = new double[3 * geometry.size()];
    double* normal_out = *normals = new double[3 * geometry.size()];
    for (const auto& vertex : geometry) {
        position_out = std::copy_n(&vertex.position.x, 3, position_out);
        normal_out = std::copy_n(&vertex.normal.x, 3, normal_out);
    }
    return static_cast<int>(3 * geometry.size());
}

void TOpenGLDisplay::GLInit()
{
    // A widget moved to another window gets a new context: the old one's programs are of no use any more.
    delete d_LitProgram;
    delete d_FlatProgram;

    glEnable(GL_DEPTH_TEST);
    glDepthFunc(GL_LESS);
    glEnable(GL_CULL_FACE);
    glFrontFace(GL_CCW);
    glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
    glShadeModel(GL_SMOOTH);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    glEnable(GL_BLEND);

    d_LitProgram = New_Program(OpenGLShaders::LIT_VERTEX, OpenGLShaders::LIT_FRAGMENT, this);
    d_LitColor = d_LitProgram->uniformLocation("color");
    d_LitSpecular = d_LitProgram->uniformLocation("specular");
    d_LitOffset = d_LitProgram->uniformLocation("offset");
    d_LitVertex = d_LitProgram->attributeLocation("vertex");
    d_LitNormal = d_LitProgram->attributeLocation("normal");
    d_FlatProgram = New_Program(OpenGLShaders::FLAT_VERTEX, OpenGLShaders::FLAT_FRAGMENT, this);
    d_FlatColor = d_FlatProgram->uniformLocation("color");
    d_FlatVertex = d_FlatProgram->attributeLocation("vertex");

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
    const auto vertex = static_cast<GLuint>(d_LitVertex);
    const auto normal = static_cast<GLuint>(d_LitNormal);
    glUniform4f(d_LitColor, static_cast<float>(color.x), static_cast<float>(color.y),
                static_cast<float>(color.z), static_cast<float>(alpha));
    glUniform3f(d_LitOffset, static_cast<float>(offset.x), static_cast<float>(offset.y),
                static_cast<float>(offset.z));
    glUniform1f(d_LitSpecular, static_cast<float>(specular));
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
        direction(axis) = d_TriadSize;
        const TVector3 end = d_TriadOrigin + direction;
        out = std::copy_n(&d_TriadOrigin.x, 3, out);
        out = std::copy_n(&end.x, 3, out);
        triad.anchors[axis] = d_TriadOrigin + 1.15 * direction;
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
        Process_Vertex(Box_Corner(d_MachineMinimum, d_MachineMaximum, corner));
    process(triad.vertices, 18);
    for (const TBallBar& bar : d_BallBars)
        for (const TBufferPair& pair : BUFFER_PAIRS)
            if (const auto* vertices = d_VertexBuffers.Item(bar.buffers[pair.vertices]))
                process(vertices->data.get(), vertices->size);
}

void TOpenGLDisplay::Render_Scene(TTriad* triad)
{
    d_LitProgram->bind();
    for (const TBallBar& bar : d_BallBars) {
        if (!bar.second_flag)
            Render_Bar(bar);
        if (bar.selected)
            Render_Probes(bar);
    }
    glDepthFunc(GL_ALWAYS);
    for (const TBallBar& bar : d_BallBars)
        if (bar.second_flag)
            Render_Bar(bar);
    glDepthFunc(GL_LESS);
    d_LitProgram->release();

    d_FlatProgram->bind();
    if (const auto* machine = d_VertexBuffers.Item(d_MachineBuffer))
        Render_Line_Buffer(static_cast<unsigned int>(machine->size), MACHINE_COLOR, machine->data.get());
    Render_Line_Buffer(18, TRIAD_COLOR, triad->vertices);
    d_FlatProgram->release();
}

void TOpenGLDisplay::Render_Bar(const TBallBar& bar)
{
    // By second flag, first flag and selection.
    static const TLook rods[2][2][2] = {{{{{0.1, 0.1, 0.1}, 1.0, 0.1}, {{0.0, 0.0, 0.7}, 1.0, 0.1}},
                                         {{{0.7, 0.0, 0.0}, 1.0, 0.1}, {{0.7, 0.0, 0.7}, 1.0, 0.1}}},
                                        {{{{0.01, 0.01, 0.01}, 0.1, 0.1}, {{0.0, 0.0, 0.42}, 0.6, 0.1}},
                                         {{{0.07, 0.0, 0.0}, 0.1, 0.1}, {{0.42, 0.0, 0.42}, 0.6, 0.1}}}};
    static const TLook spheres[2][2][2] = {
        {{{{0.6, 0.6, 0.6}, 1.0, 0.3}, {{0.7, 0.7, 0.9}, 1.0, 0.3}},
         {{{0.9, 0.7, 0.7}, 1.0, 0.3}, {{0.9, 0.7, 0.9}, 1.0, 0.3}}},
        {{{{0.06, 0.06, 0.06}, 0.1, 0.3}, {{0.42, 0.42, 0.54}, 0.6, 0.3}},
         {{{0.09, 0.07, 0.07}, 0.1, 0.3}, {{0.54, 0.42, 0.54}, 0.6, 0.3}}}};
    Render_Mesh(bar, BallBarMeshes::ROD, rods[bar.second_flag][bar.first_flag][bar.selected]);
    Render_Mesh(bar, BallBarMeshes::SPHERES, spheres[bar.second_flag][bar.first_flag][bar.selected]);
}

void TOpenGLDisplay::Render_Probes(const TBallBar& bar)
{
    static const TLook stems{{0.7, 0.7, 0.7}, 1.0, 0.2};
    static const TLook rubies{{1.0, 0.0, 0.0}, 1.0, 0.25};
    Render_Mesh(bar, BallBarMeshes::STEMS, stems);
    Render_Mesh(bar, BallBarMeshes::RUBIES, rubies);
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
    d_Labels.Begin(size(), font(), devicePixelRatioF());
    for (const TBallBar& bar : d_BallBars)
        d_Labels.Add(bar.name, Widget_Pixel(camera, bar.label));
    painter.scale(1.0 / devicePixelRatioF(), 1.0 / devicePixelRatioF());
    d_Labels.Draw(&painter);
    painter.end();
    glPopAttrib();
}

void TOpenGLDisplay::Create_Meshes(TBallBar* bar)
{
    const auto meshes = BallBarMeshes::Build(bar->sphere1, bar->sphere2, bar->probe, d_Level);
    double* vertices = nullptr;
    double* normals = nullptr;
    for (size_t slot = 0; slot < meshes.size(); ++slot) {
        const int size = Convert_Geometry_To_Buffer(meshes[slot], &vertices, &normals);
        bar->buffers[BUFFER_PAIRS[slot].vertices] = Store(size, vertices);
        bar->buffers[BUFFER_PAIRS[slot].normals] = Store(size, normals);
    }
    delete[] vertices;
    delete[] normals;
}

// Backwards, because taking the newest buffer away moves no other.
void TOpenGLDisplay::Remove_Meshes()
{
    for (auto bar = d_BallBars.rbegin(); bar != d_BallBars.rend(); ++bar) {
        std::sort(std::begin(bar->buffers), std::end(bar->buffers), std::greater<>());
        for (int& id : bar->buffers) {
            d_VertexBuffers.Remove_Buffer(id);
            id = -1;
        }
    }
}

int TOpenGLDisplay::Store(int size, const double* values)
{
    const int id = d_VertexBuffers.Create_Buffer(static_cast<unsigned int>(size));
    if (id > 0)
        std::copy_n(values, size, d_VertexBuffers.Buffer(id));
    return id;
}

void TOpenGLDisplay::Render_Mesh(const TBallBar& bar, int slot, const TLook& look)
{
    const auto* vertices = d_VertexBuffers.Item(bar.buffers[BUFFER_PAIRS[slot].vertices]);
    const auto* normals = d_VertexBuffers.Item(bar.buffers[BUFFER_PAIRS[slot].normals]);
    if (vertices && normals)
        Render_Triangle_Buffer(static_cast<unsigned int>(vertices->size), TVector3(), look.color,
                               look.specular, look.alpha, vertices->data.get(), normals->data.get());
}

void TOpenGLDisplay::Render_Flat(GLenum mode, unsigned int size, const TVector3& color, double* vertices)
{
    const auto vertex = static_cast<GLuint>(d_FlatVertex);
    glUniform4f(d_FlatColor, static_cast<float>(color.x), static_cast<float>(color.y),
                static_cast<float>(color.z), 1.0F);
    glVertexAttribPointer(vertex, 3, GL_DOUBLE, GL_FALSE, 0, vertices);
    glEnableVertexAttribArray(vertex);
    glDrawArrays(mode, 0, static_cast<GLsizei>(size / 3));
    glDisableVertexAttribArray(vertex);
}
