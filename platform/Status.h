#pragma once

// Status codes of the printing services: 0 is success.
using OSStatus = int;

inline constexpr OSStatus noErr = 0;
inline constexpr OSStatus kPMInvalidParameter = -50;
inline constexpr OSStatus kPMKeyNotFound = -30599;
inline constexpr OSStatus kPMInvalidPrinter = -30560;
