#pragma once
// The application's title and version, shown in the caption and the boxes.

inline constexpr const char *AppTitle = "DNC VELDA";
inline constexpr int AppMajor = 2;
inline constexpr int AppMinor = 6;
inline constexpr int AppRevision = 0;
