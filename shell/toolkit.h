// What is said to the window toolkit before it starts.
#pragma once

namespace zep::shell {

// To be called first of all. Nothing here is drawn with OpenGL, whose software library would take
// more memory than all the rest of the program; who wants it sets GDK_GL.
void PrepareToolkit();

}  // namespace zep::shell
