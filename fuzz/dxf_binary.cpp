#include "fuzz/dxf_target.h"

#include "host/io/dxf_source.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    std::string file(kBinarySentinel);
    file.append(reinterpret_cast<const char*>(data), size);
    exerciseDrawing(file);
    return 0;
}
