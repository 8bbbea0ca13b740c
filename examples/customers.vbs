' Lists the customers of the demo database with their city and the
' number of persons, through the host's object model.
Set onlyCustomers = CreateObject("Nuvo.Filter")
onlyCustomers.AddCondition "category", "customer", 0, 0
Set view = CreateObject("Nuvo.View")
view.Add "name", 0, -1, ""
view.Add "city", 0, -1, ""
Set records = CreateObject("Nuvo.Records")
records.Open "company", onlyCustomers, view, 0
WScript.Echo "Customers:", records.Count
shown = 0
For Each r In records
  If shown < 10 Then WScript.Echo "  " & r.Text("name") & ", " & r.Text("city")
  shown = shown + 1
Next
