#include "fuzz/dxf_target.h"

#include "host/io/dxf_source.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    // Most inputs of a fuzzer would break the first bytes and go no further.
    const std::string_view given(reinterpret_cast<const char*>(data), size);
    exerciseDrawing(given.starts_with(kBinarySentinel) ? std::string(given)
                                                       : std::string(kBinarySentinel).append(given));
    return 0;
}
