// SPDX-License-Identifier: MIT
#pragma once

/// The shaders of the 3-D scene (GLSL 1.10): lit ones for the meshes, flat ones for lines and points.
namespace OpenGLShaders
{

// Both lights stay with the viewer: their directions are taken back into the model by the transposed
// rotation.
inline constexpr char LIT_VERTEX[] = R"(   uniform vec4 color;
   uniform vec3 offset;
   uniform float specular;
   attribute vec3 vertex;
   attribute vec3 normal;
   varying float vertex_angle;
   varying float vertex_specular;
   varying vec3 vertex_normal;

   void main(void)
   {
       vec4 light_position = vec4(0.0,1.0,0.0,1.0);
       vec4 specular_position = vec4(0.0,0.707107,0.707107,1.0);
       mat4 modelview_mat = gl_ModelViewMatrix;
       mat4 trans_modelview_mat = modelview_mat;

       trans_modelview_mat[1][0] = modelview_mat[0][1];
       trans_modelview_mat[2][0] = modelview_mat[0][2];
       trans_modelview_mat[0][1] = modelview_mat[1][0];
       trans_modelview_mat[0][2] = modelview_mat[2][0];
       trans_modelview_mat[1][2] = modelview_mat[2][1];
       trans_modelview_mat[2][1] = modelview_mat[1][2];

       light_position = trans_modelview_mat * light_position;
       specular_position = trans_modelview_mat * specular_position;
       vertex_angle = max(dot(normal, vec3(light_position.x,light_position.y,light_position.z)),0.0);
       vertex_specular = max(dot(normal, vec3(specular_position.x,specular_position.y,specular_position.z)),0.0) * specular;
       vertex_normal = normal;

       gl_Position = gl_ModelViewProjectionMatrix * vec4(vertex.x + offset.x,vertex.y + offset.y,vertex.z + offset.z,1.0);
    }
)";

inline constexpr char LIT_FRAGMENT[] = R"(   varying vec3 vertex_normal;
   uniform vec4 color;
   varying float vertex_angle;
   varying float vertex_specular;

   void main(void)
   {
       vec4 fragment_color;

       float diffuse_level = vertex_angle * 0.1;

       fragment_color = color * vec4(0.8, 0.8, 0.8, 1.0);
       fragment_color += color * vec4(diffuse_level,diffuse_level,diffuse_level, 1.0);
       fragment_color += vec4(vertex_specular,vertex_specular,vertex_specular, 1.0);
       fragment_color.w = color.w;
       gl_FragColor = clamp(fragment_color, 0.0, 1.0);
   }
)";

inline constexpr char FLAT_VERTEX[] = R"(   uniform vec4 color;
   attribute vec3 vertex;

   void main(void)
   {
       gl_Position = gl_ModelViewProjectionMatrix * vec4(vertex,1.0);
    }
)";

inline constexpr char FLAT_FRAGMENT[] = R"(   varying vec3 vertex_normal;
   uniform vec4 color;

   void main(void)
   {
       gl_FragColor = clamp(color, 0.0, 1.0);
   }
)";

} // namespace OpenGLShaders
