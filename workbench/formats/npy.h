#pragma once

#include <cstdint>
#include <string>

#include "workbench/formats/document.h"

// NumPy's .npy files, versions 1 to 3, one array a file: Booleans, whole numbers signed and not, floats of 2, 4 and 8
// bytes, complex numbers, byte strings and Unicode strings; either byte order, C and Fortran order.
//   numbers        a numeric array of the same shape
//   strings        a nested array of character vectors; one string alone is a character vector; strings of one
//                  character each are a character array
// Back into the element type of the file where every value fits it; otherwise into <f8, <i8, |b1, <c16 or <U. A
// character vector is one string, a character array of rank 2 and more is an array of its rows' strings.
namespace vantrel::workbench {

struct NpyType {
    char kind = 'f';      // b i u f c S U
    std::size_t size = 8; // bytes of one item
    bool bigEndian = false;
};

struct NpySource {
    NpyType type;
    bool fortranOrder = false;
    int version = 1;
    fake::Shape shape;
    std::size_t dataOffset = 0; // in the document's bytes
    std::size_t count = 0;
};

Document ReadNpy(std::string bytes);
std::string WriteNpy(const fake::Array& array, const Document* original, WriteContext& context);

// Where item `index` of the row-major order stands in a file that is in Fortran order.
std::size_t FortranPosition(const fake::Shape& shape, std::size_t index);
// One item of a numeric type, as in the file.
fake::ComplexNumber ReadNpyNumber(const NpyType& type, const char* bytes);
void AppendNpyNumber(std::string& out, const NpyType& type, fake::ComplexNumber value);
// Whether the type holds the value, rounding of fractions apart.
bool NpyTypeHolds(const NpyType& type, fake::ComplexNumber value);

} // namespace vantrel::workbench
