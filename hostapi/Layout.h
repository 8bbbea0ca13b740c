#pragma once

namespace kordel::hostapi {

// The layout engine's report object, made through Application.CreateObject
// and reached late-bound under the member names layouts use: Sections,
// Fields, Printer, PageSettings, ScriptLanguage, Script, PrintWidth,
// Detail, documentName, Caption, Pages, AddNamedItem, LoadLayout,
// SaveLayout, Run. Its sections hold controls made by Controls.Add with
// the control ProgIDs below.
inline constexpr const char *kLayoutReportProgId = "DDActiveReports2.ActiveReport";
inline constexpr const char *kLabelProgId = "DDActiveReports2.Label";
inline constexpr const char *kFieldProgId = "DDActiveReports2.Field";
inline constexpr const char *kSubReportProgId = "DDActiveReports2.SubReport";
inline constexpr const char *kLineProgId = "DDActiveReports2.Line";
inline constexpr const char *kShapeProgId = "DDActiveReports2.Shape";
inline constexpr const char *kPictureProgId = "DDActiveReports2.Picture";

} // namespace kordel::hostapi
