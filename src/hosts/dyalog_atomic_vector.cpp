#include <algorithm>
#include <numeric>

#include "entry/trace.h"
#include "hosts/dyalog_host.h"

namespace vantrel {
namespace {

// The atomic vector of the Unicode edition, by position.
constexpr char16_t UnicodeAtomicVector[256] = {
    0,    8,    10,   13,   32,   12,   6,    7,    27,   9,    9014, 619,  37,   39,   9082, 9077,
    95,   97,   98,   99,   100,  101,  102,  103,  104,  105,  106,  107,  108,  109,  110,  111,
    112,  113,  114,  115,  116,  117,  118,  119,  120,  121,  122,  1,    2,    175,  46,   9068,
    48,   49,   50,   51,   52,   53,   54,   55,   56,   57,   3,    8866, 165,  36,   163,  162,
    8710, 65,   66,   67,   68,   69,   70,   71,   72,   73,   74,   75,   76,   77,   78,   79,
    80,   81,   82,   83,   84,   85,   86,   87,   88,   89,   90,   4,    5,    253,  183,  127,
    9049, 193,  194,  195,  199,  200,  202,  203,  204,  205,  206,  207,  208,  210,  211,  212,
    213,  217,  218,  219,  221,  254,  227,  236,  240,  242,  245,  123,  8364, 125,  8867, 9015,
    168,  192,  196,  197,  198,  9064, 201,  209,  214,  216,  220,  223,  224,  225,  226,  228,
    229,  230,  231,  232,  233,  234,  235,  237,  238,  239,  241,  91,   47,   9023, 92,   9024,
    60,   8804, 61,   8805, 62,   8800, 8744, 8743, 45,   43,   247,  215,  63,   8714, 9076, 126,
    8593, 8595, 9075, 9675, 42,   8968, 8970, 8711, 8728, 40,   8834, 8835, 8745, 8746, 8869, 8868,
    124,  59,   44,   9073, 9074, 9042, 9035, 9033, 9021, 8854, 9055, 9017, 33,   9045, 9038, 9067,
    9066, 8801, 8802, 243,  244,  246,  248,  34,   35,   30,   38,   180,  9496, 9488, 9484, 9492,
    9532, 9472, 9500, 9508, 9524, 9516, 9474, 64,   249,  250,  251,  94,   252,  96,   8739, 182,
    58,   9079, 191,  161,  8900, 8592, 8594, 9053, 41,   93,   31,   160,  167,  9109, 9054, 9059,
};

void ReadClassicAtomicVector(DyalogHost& host)
{
    std::uint8_t positions[256];
    std::iota(std::begin(positions), std::end(positions), std::uint8_t{0});
    ServiceOf(host, dyalog::FromAtomic)(host.atomicVector, positions, 256);
}

} // namespace

void BuildAtomicVector(DyalogHost& host) noexcept
{
    TraceScope trace("dyalog_atomic_vector.cpp", "BuildAtomicVector");
    if (host.unicode) {
        std::copy(std::begin(UnicodeAtomicVector), std::end(UnicodeAtomicVector), host.atomicVector);
    } else {
        ReadClassicAtomicVector(host);
    }
    std::fill(std::begin(host.atomicMembers), std::end(host.atomicMembers), 0u);
    for (const char16_t unit : host.atomicVector)
        host.atomicMembers[unit] = 1;
}

} // namespace vantrel
