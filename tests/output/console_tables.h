#pragma once

/* The macros and records that exported C sources are written against, in the plainest form that
   keeps every number: what a console program gets from its library's header. */

typedef struct {
    double x, y, z;
} POINT, VECTOR;

typedef struct {
    double normal[3];
    unsigned short vertices[4];
} POLYGON;

typedef struct {
    int plane, sort, texture, color, gouraud, mode, kind, option;
} ATTR;

typedef struct {
    unsigned short color[4];
} GOURAUDTBL;

typedef struct {
    POINT* points;
    unsigned long pointCount;
    POLYGON* polygons;
    unsigned long polygonCount;
    ATTR* attributes;
    VECTOR* normals;
} XPDATA;

typedef XPDATA PDATA;

typedef struct OBJECT {
    PDATA* data;
    double translation[3], rotation[3], scaling[3];
    struct OBJECT *child, *next;
} OBJECT;

#define POStoFIXED(x, y, z)                                                                        \
    {                                                                                              \
        x, y, z                                                                                    \
    }
#define NORMAL(x, y, z) x, y, z
#define VERTICES(a, b, c, d) a, b, c, d
#define TRANSLATION(x, y, z) x, y, z
#define ROTATION(x, y, z) x, y, z
#define SCALING(x, y, z) x, y, z
#define C_RGB(r, g, b) ((r) << 10 | (g) << 5 | (b))
#define ATTRIBUTE(plane, sort, texture, color, gouraud, mode, kind, option)                        \
    plane, sort, texture, color, gouraud, mode, kind, option

enum { Single_Plane, Dual_Plane };
enum { SORT_CEN, SORT_MIN, SORT_MAX };
enum { No_Texture = -1, No_Gouraud = 0, No_Option = 0 };
enum {
    CL32KRGB = 0,
    MESHoff = 0,
    MESHon = 0x100,
    CL_Shadow = 0x200,
    CL_Half = 0x400,
    CL_Trans = 0x800,
    CL_Gouraud = 0x1000
};
enum { sprNoflip, sprHflip, sprVflip, sprHVflip, sprPolygon = 0x10, sprPolyLine = 0x20 };
enum { UseLight = 1, UseGouraud = 2, UseNearClip = 4 };
