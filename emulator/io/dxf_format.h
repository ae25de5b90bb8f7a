// dxf_format.h - the DXF layout the host writes and reads: section and table
// names, the group codes with a meaning of their own, the header variables
// that travel with a drawing, and which records keep angles in degrees.
// dxf_format.md beside this file describes the file as a whole.
#ifndef VORHOST_IO_DXF_FORMAT_H
#define VORHOST_IO_DXF_FORMAT_H

#include <string_view>

namespace vorhost::dxf {

// The version and code page of every file the host writes.
constexpr std::string_view kVersionR12 = "AC1009";
constexpr std::string_view kVersionUtf8 = "AC1021";  // from here on texts are UTF-8
constexpr std::string_view kCodePage = "ANSI_950";

// Group codes run from 0 to this (the last of extended data).
constexpr int kMaxGroupCode = 1071;

// Group codes that structure the file or carry the common properties.
constexpr int kCodeStart = 0;         // record type, SECTION, ENDSEC, EOF, ...
constexpr int kCodeName = 2;          // section, table, entry and block names
constexpr int kCodeHeaderVar = 9;     // $NAME in the header
constexpr int kCodeHandle = 5;
constexpr int kCodeDimHandle = 105;   // DIMSTYLE's handle in newer files
constexpr int kCodeLinetype = 6;
constexpr int kCodeLayer = 8;
constexpr int kCodeColor = 62;
constexpr int kCodeFlags = 70;
constexpr int kCodeSubclass = 100;    // subclass marker (R13 and later)
constexpr int kCodeGroupBracket = 102;  // "{ACAD_REACTORS" ... "}"
constexpr int kCodeOwner = 330;       // soft owner handle
constexpr int kCodeHardOwner = 360;
constexpr int kCodeComment = 999;
constexpr int kCodeAppName = 1001;    // starts a run of extended data

// Point groups: x at the code, y at code + 10, z at code + 20.
constexpr int kPointYOffset = 10;
constexpr int kPointZOffset = 20;

// The header variables a drawing carries besides $ACADVER, $DWGCODEPAGE,
// $HANDLING, $HANDSEED, $EXTMIN and $EXTMAX, each with its group code and
// the system variable it comes from and goes to. All exist in R12.
struct HeaderVar {
  const char* name;     // without the $
  int code;             // 10 point, 40 real, 70 integer, 6/7/8 names
  bool planar = false;  // a point without z (R12 keeps limits 2D)
};
constexpr HeaderVar kHeaderVars[] = {
    {"INSBASE", 10},  {"LIMMIN", 10, true}, {"LIMMAX", 10, true}, {"ORTHOMODE", 70},
    {"REGENMODE", 70}, {"FILLMODE", 70}, {"QTEXTMODE", 70},  {"MIRRTEXT", 70},
    {"LTSCALE", 40},  {"ATTMODE", 70},   {"TEXTSIZE", 40},   {"TEXTSTYLE", 7},
    {"CLAYER", 8},    {"CELTYPE", 6},    {"DIMSCALE", 40},   {"LUNITS", 70},
    {"LUPREC", 70},   {"AUNITS", 70},    {"AUPREC", 70},     {"ELEVATION", 40},
    {"THICKNESS", 40}, {"LIMCHECK", 70}, {"BLIPMODE", 70},   {"ANGDIR", 70},
    {"PDMODE", 70},   {"PDSIZE", 40},    {"PLINEWID", 40},   {"ATTDIA", 70},
    {"ATTREQ", 70},   {"SNAPMODE", 70},  {"GRIDMODE", 70},   {"TILEMODE", 70},
    {"UNITMODE", 70}, {"USERI1", 70},    {"USERI2", 70},     {"USERR1", 40},
    {"USERR2", 40},
};

// Types an R12 file can hold. Their records are written without subclass
// markers, and the host's own types among them are read into the host's
// group order (see entity.h).
constexpr std::string_view kR12Types[] = {
    "LINE", "POINT", "CIRCLE", "ARC", "TRACE", "SOLID", "TEXT", "SHAPE", "INSERT",
    "ATTDEF", "ATTRIB", "POLYLINE", "VERTEX", "SEQEND", "3DFACE", "VIEWPORT", "DIMENSION",
};

// Types whose groups 50 and 51 are angles: degrees in the file, radians in
// memory. Other records keep 50 and 51 as the file had them.
constexpr std::string_view kDegreeTypes[] = {"ARC", "TEXT", "INSERT", "ATTRIB", "ATTDEF"};

// Newer types with one subclass of their own. Readers such as ezdxf need
// their markers even in an R12 file, so the writer puts back "AcDbEntity"
// and the type's marker that the reader drops, after the common groups
// (an R12 reader takes those only from before the first marker). Records
// of newer types not listed keep the markers they were read with.
struct SubclassMarker {
  std::string_view type;
  std::string_view marker;
};
constexpr std::string_view kEntityMarker = "AcDbEntity";
constexpr SubclassMarker kSubclassMarkers[] = {
    {"LWPOLYLINE", "AcDbPolyline"}, {"MTEXT", "AcDbMText"},   {"HATCH", "AcDbHatch"},
    {"SPLINE", "AcDbSpline"},       {"ELLIPSE", "AcDbEllipse"}, {"RAY", "AcDbRay"},
    {"XLINE", "AcDbXline"},         {"LEADER", "AcDbLeader"},   {"MLINE", "AcDbMline"},
    {"TOLERANCE", "AcDbFcf"},
};

// Groups that belong to the AcDbEntity subclass of a record (paper space,
// layout, plot style, lineweight, linetype scale, visibility, proxy
// graphics, true colour, colour name, transparency, shadow mode): written
// with the common properties, before the markers.
constexpr int kEntityCodes[] = {67, 410, 347, 348, 370, 48, 60, 92, 310, 420, 430, 440, 390, 284};

template <typename T, size_t N>
constexpr bool Contains(const T (&list)[N], std::string_view item) {
  for (const T& t : list)
    if (std::string_view(t) == item) return true;
  return false;
}

inline bool IsR12Type(std::string_view type) { return Contains(kR12Types, type); }
inline bool IsDegreeType(std::string_view type) { return Contains(kDegreeTypes, type); }
inline bool IsEntityCode(int code) {
  for (int c : kEntityCodes)
    if (c == code) return true;
  return false;
}
inline std::string_view SubclassMarkerOf(std::string_view type) {
  for (const SubclassMarker& m : kSubclassMarkers)
    if (m.type == type) return m.marker;
  return {};
}

// Whether a group code is the x of a point whose y and z follow at +10 and
// +20. Matches ValueOf in core/resbuf.h, so that points in memory are the
// points the host hands out.
constexpr bool IsPointCode(int code) {
  return (code >= 10 && code <= 18) || code == 210 || (code >= 1010 && code <= 1013);
}

// The one conversion between the file's degrees and memory's radians; the
// writer picks the degree text that this maps back to the same radians.
constexpr double kPi = 3.14159265358979323846;
inline double DegreesToRadians(double degrees) { return degrees * (kPi / 180); }
inline double RadiansToDegrees(double radians) { return radians * (180 / kPi); }

}  // namespace vorhost::dxf

#endif
