' Drives the registered module by name, as a script host does: cscript //nologo module.vbs
' It prints each call with the number of the error that it raised, 0 for none, and ends with 1 when the module cannot be
' created. Without a host behind it the module opens no dialog: its command is refused.
Option Explicit
On Error Resume Next

Sub Report(name)
  WScript.Echo name & " " & Hex(Err.Number)
  Err.Clear
End Sub

Dim plugin
Set plugin = CreateObject("zdExpirationRule.ExpirationRule")
Report "CreateObject"
If IsEmpty(plugin) Then WScript.Quit 1

plugin.OnSelectionChanged Nothing
Report "OnSelectionChanged"
plugin.DoCommand 1, 0
Report "DoCommand"
' What the module does not have is an error of the script.
plugin.NoSuchMethod
Report "NoSuchMethod"
plugin.Uninitialize
Report "Uninitialize"
