#pragma once

namespace kordel::hostapi {

// The layout engine's report object, made through Application.CreateObject
// and reached late-bound under the member names layouts use: Sections,
// Fields, Printer, PageSettings, ScriptLanguage, Script, PrintWidth,
// Detail, documentName, Caption, Pages, AddNamedItem, LoadLayout,
// SaveLayout, Run, CheckScript ("" or where the report's script does not
// compile), RefreshLayout (tells a designer showing the layout
// that sections or controls were added or removed), and EventSink: the object that answers the run's events
// by name, held weakly, so its owner keeps it alive. For printing and the
// preview: PrintReport(prompt), Show(modal), Close, WindowState (0 normal,
// 1 minimised, 2 maximised) and Left, Top, Width, Height (the preview
// window's place in twips); PrintReport raises
// ActiveReport_PrintProgress(pageNumber) once per page after the printer
// took the job. Its sections hold controls made by Controls.Add with the
// control ProgIDs below.
inline constexpr const char *kLayoutReportProgId = "DDActiveReports2.ActiveReport";
// A printer object, as a report's Printer is one: DeviceName (writing it
// selects that printer), Port, PaperBin (-1 for the printer's own choice),
// PaperBins, PaperBinNames, Orientation, Copies, PaperWidth and
// PaperHeight (twips). A new one stands for the default printer.
inline constexpr const char *kLayoutPrinterProgId = "DDActiveReports2.Printer";
inline constexpr const char *kLabelProgId = "DDActiveReports2.Label";
inline constexpr const char *kFieldProgId = "DDActiveReports2.Field";
inline constexpr const char *kSubReportProgId = "DDActiveReports2.SubReport";
inline constexpr const char *kLineProgId = "DDActiveReports2.Line";
inline constexpr const char *kShapeProgId = "DDActiveReports2.Shape";
inline constexpr const char *kPictureProgId = "DDActiveReports2.Picture";
// Measures text in twips as pages show it: Font (write; a control's Font
// or a family name) and MeasureText(text, width, height), which writes
// the width and height into its second and third arguments.
inline constexpr const char *kTextCanvasProgId = "DDActiveReports2.TextCanvas";

// The band designer: Report, NewReport, IsDirty, GridX, GridY, ShowGrid,
// AlignToGrid, RulerUnits, ToolbarsVisible, ToolbarsAccessible,
// QueryAction(action), ExecuteAction(action), Selection and EventSink, the
// object that answers its events (LayoutChanged, ValidateChange,
// ContextMenuOpen, SelectionChanged, Message, GotFocus, LostFocus).
inline constexpr const char *kDesignerProgId = "DDActiveReportsDesignerCtl.ARDesigner";

// The engine's exporters: each has FileName (write) and Export(pages),
// pages being the report object's Pages after Run. The workbook exporters
// take Layout: "Table" (the run's values as a table, the default) or
// "Pages" (the texts as the pages show them). The HTML exporter takes
// FileNamePrefix and HtmlOutputPath instead of one file name; the text
// exporter TextDelimiter (between the texts of a line), PageDelimiter (a
// line of its own between pages) and SuppressEmptyLines.
inline constexpr const char *kPdfExportProgId = "Orvex.PdfExport";
inline constexpr const char *kXlsExportProgId = "Orvex.XlsExport";
inline constexpr const char *kXlsxExportProgId = "Orvex.XlsxExport";
inline constexpr const char *kHtmlExportProgId = "Orvex.HtmlExport";
inline constexpr const char *kRtfExportProgId = "Orvex.RtfExport";
inline constexpr const char *kTextExportProgId = "Orvex.TextExport";
inline constexpr const char *kTiffExportProgId = "Orvex.TiffExport";

// The file types a report exports to, by the lower-case extension of the
// target file, and the exporter of each.
struct ExportType {
  const char *extension;
  const char *progId;
};
inline constexpr ExportType kExportTypes[] = {
    {"pdf", kPdfExportProgId},  {"xls", kXlsExportProgId}, {"xlsx", kXlsxExportProgId}, {"html", kHtmlExportProgId},
    {"htm", kHtmlExportProgId}, {"rtf", kRtfExportProgId}, {"txt", kTextExportProgId},  {"tiff", kTiffExportProgId},
};

} // namespace kordel::hostapi
