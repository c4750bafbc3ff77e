-- Pages lie as HTML where they lie as Markdown: a link to another page leads there, a link to a source stays as its text only.
function Link(link)
  if link.target:match("^%a+:") or link.target:match("^#") then return link end
  local page, anchor = link.target:match("^(.+)%.md(#?.*)$")
  if not page then return link.content end
  link.target = page .. ".html" .. anchor
  return link
end
