'/// <report name="Company list" database="Demo" language="VBScript">
'/// <page guid="{E3336E1B-CB9C-4A34-A0F2-3A3BB22CAC49}" name="Company list">
'/// <section name="ActiveReport Document">
Sub ActiveReport_ReportStart
  start = "Com"
End Sub
'/// </section>
'/// <section name="PageHeader">
Sub PageHeader_Format
  rpt.Sections("PageHeader").Controls("Label2").Caption = "Customer name"
End Sub
'/// </section>
'/// <section name="Detail">
Sub Detail_Format
  n = n + 1 ' Com
End Sub
'/// </section>
'/// </page>
'/// <page guid="{SCRIPT-PERSONS}" name="Persons">
'/// <section name="GroupFooter1">
Sub GroupFooter1_Format
End Sub
'/// </section>
'/// </page>
'/// </report>
