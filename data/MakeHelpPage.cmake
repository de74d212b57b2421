# Writes the help page the Support button opens: the README, escaped for HTML, as one page.
# Called as: cmake -DREADME=... -DOUTPUT=... -P MakeHelpPage.cmake
file(READ "${README}" text)
string(REPLACE "&" "&amp;" text "${text}")
string(REPLACE "<" "&lt;" text "${text}")
string(REPLACE ">" "&gt;" text "${text}")
file(WRITE "${OUTPUT}" "<!DOCTYPE html>
<html lang=\"en\"><head><meta charset=\"utf-8\"><title>Clipquill help</title>
<style>body{font-family:sans-serif;max-width:52em;margin:2em auto}pre{white-space:pre-wrap;font-size:1.05em}</style>
</head><body><pre>${text}</pre></body></html>
")
