// What the program calls itself.
#pragma once

/// Domain of the program's own preferences.
constexpr const char* kPreferenceDomain = "com.tessalysoft.orvaneftpjp";
constexpr const char* kProgramName = "Orvane FTPファイル転送ソフト";
constexpr const char* kProgramVersion = "5.01";
