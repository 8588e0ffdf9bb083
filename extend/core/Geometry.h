// Plain numbers: comparisons, angles, vectors, matrices, points on lines. Angles are radians.
//
// Each comparison has a tolerance of its own, some absolute, some relative to the second operand. Commands were tuned
// against exactly these, so none stands in for another.
#pragma once

#include "vcge.h"

// Reals. The tolerance is relative to b, unless b itself is within it.
bool vcutRealEqual(double a, double b, double tolerance);
bool vcutIsZero(double value, double tolerance);
bool VkRealEqual(double a, double b);
// Neither an infinity, nor a not-a-number, nor a denormal.
bool IsvalidReal(double x);
bool vk_isvalid_real(double x);

// Points.
bool VkPointEqual(const vds_point p, const vds_point q);
bool isPointEqual(const vds_point p, const vds_point q, double tolerance);
bool is_equal_point(const vds_point p, const vds_point q);

// Angles, whole turns aside. -2 pi counts as 2 pi and differs from 0.
bool VkAngleEqual(double a, double b);
bool vkadAngleEqual(double a, double b);
// Brings the start into one turn and the end, which may be null, after it.
void normlizedAng(double& start, double* end);
void vk_normang(double& start, double* end);

// Vectors. The outputs of the first four and of the crossing products but cross_product may be an operand.
int vds_point_add(const vds_point a, const vds_point b, vds_point out);
int vds_point_sub(const vds_point a, const vds_point b, vds_point out);
int vds_piont_mul(const vds_point p, double s, vds_point out);
int vds_mid_pt(const vds_point a, const vds_point b, vds_point out);
void vk_crossproduct(const vds_point a, const vds_point b, vds_point out);
void vc_crossProduct(const vds_point a, const vds_point b, vds_point out);
void cross_product(const vds_point a, const vds_point b, vds_point out);
double vc_dotProduct(const vds_point a, const vds_point b);

// Matrices.
void vc_identity(double (&m)[3][3]);
void vk_idmat(vds_matrix m);
void multMtx2Mtx(const vds_matrix a, const vds_matrix b, vds_matrix out);

// One form of a point seen as another; nothing is copied.
inline VcGePoint3d& asPnt3d(vds_point p) { return *reinterpret_cast<VcGePoint3d*>(p); }
inline const VcGePoint3d& asPnt3d(const vds_point p) { return *reinterpret_cast<const VcGePoint3d*>(p); }
inline VcGePoint2d& asPnt2d(double* p) { return *reinterpret_cast<VcGePoint2d*>(p); }
inline const VcGePoint2d& asPnt2d(const double* p) { return *reinterpret_cast<const VcGePoint2d*>(p); }
inline double* asDblArray(VcGePoint3d& p) { return &p.x; }
inline const double* asDblArray(const VcGePoint3d& p) { return &p.x; }
inline double* asDblArray(VcGeVector3d& v) { return &v.x; }
inline const double* asDblArray(const VcGeVector3d& v) { return &v.x; }
inline double* asDblArray(VcGePoint2d& p) { return &p.x; }
inline const double* asDblArray(const VcGePoint2d& p) { return &p.x; }
static_assert(sizeof(VcGePoint3d) == sizeof(vds_point) && sizeof(VcGePoint2d) == 2 * sizeof(double));

// Lines. The first two have tolerances in drawing units: 0.01 and 1.
bool vds_dyl_colin(const vds_point a, const vds_point b, const vds_point c);
bool _3PointsInSameLine(const vds_point a, const vds_point b, const vds_point c);
bool isPtOnLine(const vds_point p, const vds_point a, const vds_point b);
// The bulge of the arc from start to end through a third point; 0 where they lie on a line.
double cal_bulge(const vds_point start, const vds_point end, const vds_point onArc);
