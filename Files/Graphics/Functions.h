#pragma once
// The built-ins' handlers. Scripts know them by the names in Function_Table.cpp.
//
// Camera handlers set the result to the real -1 first, check the argument count, and do nothing for an identifier that
// names no camera. Setters leave the -1; getters overwrite it. View handlers check nothing.
//
// Parameters, as TFunction names them: result, self, other, argc, args. The comments show what args holds.

#include "Files/Code/Function.h"

// ---- cameras (Functions_Camera.cpp) ----
void F_CameraCreate(RValue&, CInstance*, CInstance*, int, RValue*);         // ()
void F_CameraCreateView(RValue&, CInstance*, CInstance*, int, RValue*);     // (x, y, w, h [, ...]), see there
void F_CameraDestroy(RValue&, CInstance*, CInstance*, int, RValue*);        // (camera)
void F_CameraApply(RValue&, CInstance*, CInstance*, int, RValue*);          // (camera)
void F_CameraGetActive(RValue&, CInstance*, CInstance*, int, RValue*);      // ()
void F_CameraGetDefault(RValue&, CInstance*, CInstance*, int, RValue*);     // ()
void F_CameraSetDefault(RValue&, CInstance*, CInstance*, int, RValue*);     // (camera); leaves the result alone
void F_CameraSetViewPos(RValue&, CInstance*, CInstance*, int, RValue*);     // (camera, x, y)
void F_CameraSetViewSize(RValue&, CInstance*, CInstance*, int, RValue*);    // (camera, w, h)
void F_CameraSetViewSpeed(RValue&, CInstance*, CInstance*, int, RValue*);   // (camera, x, y)
void F_CameraSetViewBorder(RValue&, CInstance*, CInstance*, int, RValue*);  // (camera, x, y)
void F_CameraSetViewAngle(RValue&, CInstance*, CInstance*, int, RValue*);   // (camera, degrees)
void F_CameraSetViewTarget(RValue&, CInstance*, CInstance*, int, RValue*);  // (camera, object or instance)
void F_CameraGetViewX(RValue&, CInstance*, CInstance*, int, RValue*);       // (camera)
void F_CameraGetViewY(RValue&, CInstance*, CInstance*, int, RValue*);       // (camera)
void F_CameraGetViewWidth(RValue&, CInstance*, CInstance*, int, RValue*);   // (camera)
void F_CameraGetViewHeight(RValue&, CInstance*, CInstance*, int, RValue*);  // (camera)
void F_CameraGetViewSpeedX(RValue&, CInstance*, CInstance*, int, RValue*);  // (camera)
void F_CameraGetViewSpeedY(RValue&, CInstance*, CInstance*, int, RValue*);  // (camera)
void F_CameraGetViewBorderX(RValue&, CInstance*, CInstance*, int, RValue*); // (camera)
void F_CameraGetViewBorderY(RValue&, CInstance*, CInstance*, int, RValue*); // (camera)
void F_CameraGetViewAngle(RValue&, CInstance*, CInstance*, int, RValue*);   // (camera)
void F_CameraGetViewTarget(RValue&, CInstance*, CInstance*, int, RValue*);  // (camera)

// Not in the table: no script reaches it. Sets all ten view properties at once: (camera, x, y, w, h, speed x, y,
// border x, y, angle, target).
void F_CameraSetView(RValue&, CInstance*, CInstance*, int, RValue*);

// ---- matrices and callbacks (Functions_Matrix.cpp) ----
void F_CameraSetViewMat(RValue&, CInstance*, CInstance*, int, RValue*);      // (camera, array of 16)
void F_CameraSetProjMat(RValue&, CInstance*, CInstance*, int, RValue*);      // (camera, array of 16)
void F_CameraSetUpdateScript(RValue&, CInstance*, CInstance*, int, RValue*); // (camera, script)
void F_CameraSetBeginScript(RValue&, CInstance*, CInstance*, int, RValue*);  // (camera, script)
void F_CameraSetEndScript(RValue&, CInstance*, CInstance*, int, RValue*);    // (camera, script)
void F_CameraGetViewMat(RValue&, CInstance*, CInstance*, int, RValue*);      // (camera)
void F_CameraGetProjMat(RValue&, CInstance*, CInstance*, int, RValue*);      // (camera)
void F_CameraGetUpdateScript(RValue&, CInstance*, CInstance*, int, RValue*); // (camera)
void F_CameraGetBeginScript(RValue&, CInstance*, CInstance*, int, RValue*);  // (camera)
void F_CameraGetEndScript(RValue&, CInstance*, CInstance*, int, RValue*);    // (camera)

// ---- views: forwarded to the host's accessors, the result left as the accessor makes it (Functions_View.cpp) ----
void F_ViewGetCamera(RValue&, CInstance*, CInstance*, int, RValue*);    // (view)
void F_ViewGetVisible(RValue&, CInstance*, CInstance*, int, RValue*);   // (view)
void F_ViewGetXport(RValue&, CInstance*, CInstance*, int, RValue*);     // (view)
void F_ViewGetYport(RValue&, CInstance*, CInstance*, int, RValue*);     // (view)
void F_ViewGetWport(RValue&, CInstance*, CInstance*, int, RValue*);     // (view)
void F_ViewGetHport(RValue&, CInstance*, CInstance*, int, RValue*);     // (view)
void F_ViewGetSurfaceId(RValue&, CInstance*, CInstance*, int, RValue*); // (view)
void F_ViewSetCamera(RValue&, CInstance*, CInstance*, int, RValue*);    // (view, value)
void F_ViewSetVisible(RValue&, CInstance*, CInstance*, int, RValue*);   // (view, value)
void F_ViewSetXport(RValue&, CInstance*, CInstance*, int, RValue*);     // (view, value)
void F_ViewSetYport(RValue&, CInstance*, CInstance*, int, RValue*);     // (view, value)
void F_ViewSetWport(RValue&, CInstance*, CInstance*, int, RValue*);     // (view, value)
void F_ViewSetHport(RValue&, CInstance*, CInstance*, int, RValue*);     // (view, value)
void F_ViewSetSurfaceId(RValue&, CInstance*, CInstance*, int, RValue*); // (view, value)
