// The program's version, as the company record, the change log and the main window show it.
#pragma once

namespace nv {

inline constexpr char kProgramVersion[] = "4.1.141";
// Written into the company record's version field: "v" + this.
inline constexpr char kRecordVersionText[] = "4.1.141/4.1";
inline constexpr int kProgramVersionMajor = 4;
inline constexpr int kProgramVersionMinor = 1;
inline constexpr int kProgramVersionBuild = 141;

}  // namespace nv
