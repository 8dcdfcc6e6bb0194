/* A stand-in for the header of the console's library: what exported sources take from it. */
typedef unsigned short Uint16;
typedef int FIXED;
typedef FIXED VECTOR[3];
typedef VECTOR POINT;
typedef struct {
    VECTOR normal;
    Uint16 corner[4];
} POLYGON;
typedef struct {
    Uint16 plane, sort, texture, color, table, mode, flip, option;
} ATTR;
typedef struct {
    Uint16 color[4];
} GOURAUDTBL;
typedef struct {
    POINT* points;
    unsigned pointCount;
    POLYGON* polygons;
    unsigned polygonCount;
    ATTR* attributes;
} PDATA;
typedef struct {
    POINT* points;
    unsigned pointCount;
    POLYGON* polygons;
    unsigned polygonCount;
    ATTR* attributes;
    VECTOR* normals;
} XPDATA;
typedef struct OBJECT {
    PDATA* data;
    VECTOR place, rotation, scaling;
    struct OBJECT *child, *next;
} OBJECT;
typedef struct {
    Uint16 width, height, address;
} TEXTURE;
typedef struct {
    Uint16 number, mode;
    const Uint16* texels;
} PICTURE;

// The braces of these macros need not match.
// clang-format off
#define TO_FIXED(value) ((FIXED)((value) * 65536.0))
#define POStoFIXED(x, y, z) {TO_FIXED(x), TO_FIXED(y), TO_FIXED(z)}
#define NORMAL(x, y, z) {POStoFIXED(x, y, z)
#define VERTICES(a, b, c, d) {a, b, c, d}}
#define TRANSLATION POStoFIXED
#define ROTATION POStoFIXED
#define SCALING POStoFIXED
#define C_RGB(r, g, b) ((r) | (g) << 5 | (b) << 10 | 0x8000)
#define ATTRIBUTE(f, s, t, c, g, a, d, o) {f, s, t, c, g, a, d, o}
#define TEXTBL(w, h, address) {w, h, (address) / 8}
#define PICTBL(number, mode, texels) {number, mode, texels}
#define NULL 0
enum { Single_Plane, Dual_Plane, No_Texture = 0, No_Gouraud = 0, No_Option = 0, COL_32K = 5, CGADDRESS = 0x10000,
       SORT_CEN = 0, SORT_MIN, SORT_MAX, CL32KRGB = 0x28, MESHoff = 0, MESHon = 0x100, CL_Replace = 0, CL_Shadow = 1,
       CL_Half = 2, CL_Trans = 3, CL_Gouraud = 4, UseGouraud = 4, UseLight = 8, UseNearClip = 16, UseTexture = 32,
       sprNoflip = 4, sprHflip = 20, sprVflip = 36, sprHVflip = 52, sprPolygon = 0, sprPolyLine = 1 };
// clang-format on
