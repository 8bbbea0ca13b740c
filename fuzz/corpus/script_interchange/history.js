/// <report name="Company history" database="Demo" language="JScript">
/// <page guid="{0F2C7B8A-1D3E-4F5A-9B6C-7D8E9F0A1B2C}" name="Company history">
/// <section name="ActiveReport Document">
function ActiveReport_ReportStart() {
  var start = "Hist";
}
/// </section>
/// <section name="Detail">
function Detail_Format() { n = n + 1; }
/// </section>
/// </page>
/// </report>
