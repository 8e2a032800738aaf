@echo off
rem What quellboxctl does at night: delivers what senders of the whitelist have sent, deletes what is older than some
rem days, and writes that and the statistics of what remains into %LOCALAPPDATA%\quellbox\nightly.txt.
rem   quellboxctl-nightly.cmd [DAYS [ADDRESS SERVER]]
rem DAYS remain, 7 by default. With an address, the report is mailed there, through a mail server that asks for no
rem password. Ends with the highest exit code of the steps. Whoever wants other steps copies this file, and lets the
rem task call the copy.
setlocal
set "quellboxctl=%~dp0quellboxctl.exe"
set "days=%~1"
if not defined days set "days=7"
set "address=%~2"
set "server=%~3"
set "report=%LOCALAPPDATA%\quellbox\nightly.txt"
if not exist "%LOCALAPPDATA%\quellbox" mkdir "%LOCALAPPDATA%\quellbox"
call :work >"%report%" 2>&1
set "worst=%errorlevel%"
if not defined address exit /b %worst%

set "outcome=FAILED, exit code %worst%"
if %worst% equ 0 set "outcome=done"
if %worst% equ 1 set "outcome=some messages could not be dealt with"
set "subject=Spam archive of %USERNAME% on %COMPUTERNAME%: %outcome%"
powershell -NoProfile -NonInteractive -Command "Send-MailMessage -To $env:address -From $env:address -SmtpServer $env:server -Subject $env:subject -Encoding ([Text.Encoding]::UTF8) -Body ([IO.File]::ReadAllText($env:report)) -ErrorAction Stop" >>"%report%" 2>&1
if errorlevel 1 if %worst% equ 0 set "worst=1"
exit /b %worst%

:work
set "worst=0"
echo == Delivered, as their senders are tolerated
"%quellboxctl%" deliver-tolerated
call :note
if errorlevel 2 goto undelivered
echo == Deleted, but for %days% days
"%quellboxctl%" cleanse --keep-days "%days%"
call :note
if errorlevel 2 exit /b %worst%
echo == What remains
"%quellboxctl%" stats --top 10
call :note
exit /b %worst%

:undelivered
echo Nothing was deleted, as messages of tolerated senders might be among it.
exit /b %worst%

:note
set "code=%errorlevel%"
echo.
rem A program that Windows has ended has a negative number, which must not pass for a small one.
if %code% lss 0 set "code=255"
if %code% gtr %worst% set "worst=%code%"
exit /b %code%
