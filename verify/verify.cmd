@echo off
rem Compares this computer with what libzqorb_lvm takes for granted. README.txt says what it does, and what it does not.
"%~dp0bin\win64\facts.exe" %*
set status=%errorlevel%
rem Whoever has clicked on this file wants to read before the window closes.
set "line=%cmdcmdline:"=%"
if "%~1"=="" if not "%line:/c=%"=="%line%" pause
exit /b %status%
