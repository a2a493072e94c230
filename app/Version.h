#pragma once

#include <cstdint>

#include "foundation/String.h"

namespace tbx {

inline constexpr const char* kProductName = "Quorrel Tonebench 3";
inline constexpr const char* kProductCode = "0417";

// "3.50".
fenn::String getVersionString();

// ((a << 8) | b) << 16 | c.
std::uint32_t makeVersion(std::uint32_t a, std::uint32_t b, std::uint32_t c);

// Up to three dot-separated decimal fields packed as makeVersion does; a
// missing field is 0, and a field ends at the first character that is not a
// digit.
std::uint32_t parseVersion(const fenn::String& text);

// The packed version of this program.
std::uint32_t getVersionNumber();

}  // namespace tbx
