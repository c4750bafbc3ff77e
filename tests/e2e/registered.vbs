' Creates the module by its name and calls it by name. Writes each call and its error number.
Option Explicit
On Error Resume Next
Dim plugin

Sub Report(name)
  WScript.Echo name & " " & Hex(Err.Number)
  Err.Clear
End Sub

Set plugin = CreateObject("zdExpirationRule.ExpirationRule")
Report "CreateObject"
If IsEmpty(plugin) Then WScript.Quit 1
plugin.OnSelectionChanged Nothing
Report "OnSelectionChanged"
plugin.DoCommand 1, 0
Report "DoCommand"
plugin.NoSuchMethod
Report "NoSuchMethod"
plugin.Uninitialize
Report "Uninitialize"
