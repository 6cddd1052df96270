// CRC-32C checksums.
#pragma once

#include <cstddef>
#include <cstdint>

namespace vosmere {

/// CRC-32C of bytes that follow those with the checksum `before`; 0 begins.
std::uint32_t Checksum(std::uint32_t before, const void* bytes, std::size_t size);

}  // namespace vosmere
