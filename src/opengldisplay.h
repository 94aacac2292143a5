// SPDX-License-Identifier: MIT
#pragma once

#include "ballbarmeshes.h"
#include "labelatlas.h"
#include "openglgeometryfactory.h"
#include "openglvertexbuffer.h"
#include "openglwidget.h"

#include <QString>

#include <vector>

class QOpenGLShaderProgram;

/// Draws the scene: every ball bar as shaded meshes with its name, the machine volume as a wire box and the
/// directions of the axes. Mesh data stays in client memory. All lengths are mm in machine coordinates.
class TOpenGLDisplay : public TOpenGLWidget
{
    Q_OBJECT

public:
    struct TBallBar
    {
        int index{-1}; ///< reported when the bar is clicked
        QString name;
        bool first_flag{false}; ///< red tint
        bool selected{false};
        bool second_flag{false}; ///< see-through and on top of everything
        TVector3 sphere1;
        TVector3 sphere2;
        TVector3 label; ///< where the name stands
        TVector3 probe; ///< offset from the probe head to the tip
        /// Vertices and normals: of the rod 0 and 2, spheres 1 and 3, probe stems 4 and 6, probe rubies 5
        /// and 7.
        int buffers[8]{-1, -1, -1, -1, -1, -1, -1, -1};
    };

    explicit TOpenGLDisplay(const QWidget* parent = nullptr, Qt::WindowFlags flags = {});
    ~TOpenGLDisplay() override;

    /// Appends a copy of the bar, makes its meshes (its buffer identifiers are set here) and makes it
    /// clickable from one sphere centre to the other. With the number of bars the meshes of all get coarser.
    void Add_BallBar(const TBallBar& bar);
    /// Removes bars, their meshes and what can be clicked.
    void Clear_BallBars();
    /// Selects the bars with that index and deselects all others.
    void Set_Selection(int index);
    void Clear_Selection();
    /// The box between two opposite corners; sizes the axes beside it.
    void Define_Machine_Volume(const TVector3& minimum, const TVector3& maximum);

    /// Splits n mesh vertices into new arrays of positions and normals, 3n doubles each, that the caller
    /// owns; frees what the pointers held before. Returns 3n.
    int Convert_Geometry_To_Buffer(const TOpenGLGeometryFactory::TMesh& geometry, double** vertices,
                                   double** normals);

    void GLInit() override;
    void GLResize(int /*width*/, int /*height*/) override {}
    void GLRender() override;

    /// Draw `size` doubles as triangles; the lit program must be bound. Colours run from 0 to 1.
    void Render_Triangle_Buffer(unsigned int size, const TVector3& offset, const TVector3& color,
                                const double& specular, const double& alpha, double* vertices,
                                double* normals);
    /// Draw `size` doubles as separate lines, one line strip or points; the flat program must be bound.
    void Render_Line_Buffer(unsigned int size, const TVector3& color, double* vertices);
    void Render_Line_Strip_Buffer(unsigned int size, const TVector3& color, double* vertices);
    void Render_Point_Buffer(unsigned int size, const TVector3& color, double* vertices);

protected:
    /// The positions, three for each axis segment, and where the letters stand.
    struct TTriad
    {
        double vertices[18];
        TVector3 anchors[3];
    };

    TTriad Triad() const;
    void Fit_Scene(const TTriad& triad);
    void Render_Scene(TTriad* triad);
    void Render_Labels(const TTriad& triad);

    std::vector<TBallBar> d_ballbars;
    TOpenGLVertexBuffer d_vertex_buffers;
    QOpenGLShaderProgram* d_lit_program{nullptr};
    QOpenGLShaderProgram* d_flat_program{nullptr};
    int d_lit_color{-1};
    int d_lit_specular{-1};
    int d_lit_offset{-1};
    int d_lit_vertex{-1};
    int d_lit_normal{-1};
    int d_machine_buffer{-1};
    int d_flat_color{-1};
    int d_flat_vertex{-1};
    TVector3 d_machine_minimum;
    TVector3 d_machine_maximum;
    TVector3 d_triad_origin;
    double d_triad_size{0.0};

private:
    void Create_Meshes(TBallBar* bar);
    void Remove_Meshes();
    void Render_Bar(const TBallBar& bar);
    void Render_Probes(const TBallBar& bar);
    void Render_Mesh(const TBallBar& bar, int slot, const TVector3& color, double specular, double alpha);
    void Render_Flat(GLenum mode, unsigned int size, const TVector3& color, double* vertices);

    int d_level;
    TLabelAtlas d_labels;
};
