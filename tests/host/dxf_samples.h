// A drawing that has something of everything, as tests of files need it.
#pragma once

#include "host/io/drawing_file.h"
#include "sdk/vcdb_database.h"

#include <stdexcept>
#include <string>
#include <string_view>

// An R12 file as a program without tables or handles writes it, with the given entities.
inline std::string preliminary(std::string_view entities)
{
    return "0\nSECTION\n2\nENTITIES\n" + std::string(entities) + "0\nENDSEC\n0\nEOF\n";
}

inline constexpr std::string_view kSampleEntities =
    "0\nLINE\n8\nWALL\n62\n1\n10\n0.0\n20\n0.0\n30\n0.0\n11\n10.5\n21\n0.1\n31\n0.0\n"
    "0\nCIRCLE\n8\n0\n10\n5.0\n20\n5.0\n30\n0.0\n40\n2.5\n"
    "0\nARC\n8\n0\n10\n5.0\n20\n5.0\n30\n0.0\n40\n2.5\n50\n10.0\n51\n33.3\n"
    "0\nTEXT\n8\nTEXTS\n10\n1.0\n20\n2.0\n30\n0.0\n40\n2.5\n1\nSome ^ text\n50\n45.0\n1001\nACAD\n1000\nkept\n1070\n7\n"
    "0\nPOLYLINE\n8\n0\n66\n1\n10\n0.0\n20\n0.0\n30\n0.0\n70\n1\n"
    "0\nVERTEX\n8\n0\n10\n0.0\n20\n0.0\n30\n0.0\n42\n0.5\n0\nVERTEX\n8\n0\n10\n4.0\n20\n0.0\n30\n0.0\n0\nSEQEND\n8\n0\n"
    "0\nINSERT\n8\n0\n66\n1\n2\nDOOR\n10\n3.0\n20\n3.0\n30\n0.0\n0\nATTRIB\n8\n0\n10\n3.0\n20\n3.0\n30\n0.0\n40\n1."
    "0\n1\nA1\n2\nTAG\n70\n0\n"
    "0\nSEQEND\n8\n0\n"
    "0\nLWPOLYLINE\n100\nAcDbEntity\n8\n0\n100\nAcDbPolyline\n90\n2\n70\n0\n10\n1.0\n20\n2.0\n42\n0.0\n10\n3.0\n20\n4."
    "0\n91\n5\n"
    "0\nMYSTERY\n100\nAcDbEntity\n8\n0\n100\nAcDbMystery\n40\n1.5\n330\n1F\n310\n00FF\n";

inline std::string saved(VcDbDatabase& database, const WriteOptions& options = {})
{
    std::string bytes;
    const WriteResult result = writeDrawingBytes(database, bytes, options);
    if (!result.ok())
        throw std::runtime_error(result.message);
    return bytes;
}

inline std::string convertedSample(DxfVersion version, bool binary)
{
    VcDbDatabase database(false);
    readDrawingBytes(database, preliminary(kSampleEntities));
    WriteOptions options;
    options.version = version;
    options.binary = binary;
    options.allowLoss = true;
    return saved(database, options);
}

inline std::string asciiSample() { return convertedSample(DxfVersion::R2018, false); }

inline std::string binarySample() { return convertedSample(DxfVersion::R2018, true); }
