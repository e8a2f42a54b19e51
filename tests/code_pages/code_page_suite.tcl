# The built DLL in a Windows of another code page than the one that it was made for, which is the locale's here:
# on_windows.tcl code_page_suite.tcl PAGE Vernoxa64.dll
# One process does everything, since its start takes longer than all else.

lassign $argv page built
set encoding [expr {$page == 65001 ? "utf-8" : "cp$page"}]
set root [file join $env(TEMP) vernoxa-page-$page]
catch {file delete -force $root}

fconfigure stderr -translation lf -encoding utf-8
check "system encoding" [encoding system] $encoding

# A name that the page has, with what is half a character in it where there is one, and one that it has not.
set named [dict get {1252 iné 950 功測 932 表測 65001 測é} $page]
set foreign [expr {$page == 65001 ? "한é" : "測한é"}]

# What stands behind a member's name in a packet, as a program that reads it in the page does.
proc member {packet name} {
  if {![regexp "\"$name\":\"((?:\[^\"\\\\\]|\\\\.)*)\"" [binary decode hex $packet] - bytes]} {
    return "(none)"
  }
  return [encoding convertfrom $::encoding [string map {\\\\ \\} $bytes]]
}

# --- load, configuration, log ---------------------------------------------------------------------------------------

set base [file join $root $named]
install $base $built Config/Resource Script/Log
writeFile [file join $base Config App.txt] {{"StartWithCadence":"1"}}
writeFile [file join $base Config Resource Empty.olb] OLB
# A Tcl stands in for the companion.
set tcl [file dirname [info nameofexecutable]]
file copy [info nameofexecutable] [file join $base LanTuZS.exe]
foreach library [glob -directory $tcl *.dll] {
  file copy $library $base
}
writeFile [file join $base AutoLogin] {close [open started.txt w]; exit}
set env(TCL_LIBRARY) $tcl_library

proc IsSchematicViewActive {} {return 1}
proc GetNetsList {design path} {
  writeFile $path nets
  return done
}
proc placeLibPart {path args} {
  set ::library [list [string first \\ $path] [file exists $path] [file tail [file dirname $path]]]
}
proc convertToSVG {path} {return done}
quiet {RegisterAction UnregisterAction InsertXMLMenu creatServerForPthread UnSelectAll setPinNum PlaceNew
    setPlaceMarketFlag sendPacketGlobalHandle}

load [file join [file dirname $built] helper.dll] Helper
onBox {apply {text {lappend ::shown [boxTexts]}}}
set folder [pwd]
load [file join $base bin Vernoxa64.dll] Vernoxa
check "current folder" [pwd] $folder
check "code page in the log" [regexp "\]:\[0-9: -\]+\\.GetACP $page\r\n" [readFile [file join $base Script Log schLog.txt]]] 1

# --- file status ----------------------------------------------------------------------------------------------------

check "file status" [member [sendCloseFile "D:\\設計\\a.dsn"] FileName] \
    [expr {$page == 1252 ? "(none)" : "D:\\設計\\a.dsn"}]

# --- a project that is told in UTF-8 and that hardly any page has a name for -----------------------------------------

set project [file nativename [file join $root $foreign]]
set json [string map {\\ \\\\} $project]
file mkdir $project
packetParser [hex "{\"Command\":\"FileStatus_EndResult\",\"Data\":{\"Path\":\"$json\"}}" utf-8]
file mkdir [file join $project Cache]

initSVGList
addToPageList {Schematic S}
foreach name [list PA PＡ Pé Pe é\\é|é/ 測한] {
  addToPageList [list Page $name 100 100 K]
}
outputSVGFile {S 測한 "" "" K}
check "page files" [names [file join $project Cache Output]] [lsort [list S@!@PA@!@K.json S@!@PＡ@!@K.json S@!@Pé@!@K.json \
    S@!@Pe@!@K.json {S@!@é[;fanxiegan;]é[;shugan;]é[;xiegan;]@!@K.json} S@!@測한@!@K.json]]
set reply [packetParser [hex {{"Command":"CreateSVG","Data":{"ProjectPath":"D:\\a.dsn"}}}]]
check "told folder of drawings" [file isdirectory [member $reply SVGPath]] 1

set reply [packetParserForPthread [hex {{"Command":"GetNetsList","Data":{"ProjectPath":"a.dsn"}}}]]
check "nets" [list [member $reply Result] [file exists [member $reply netlistsFile]] \
    [file exists [file join $project Cache Nets.txt]]] {0 1 1}

# --- a design with a file, and so with a short name -----------------------------------------------------------------

set there [file nativename [file join $project a.dsn]]
writeFile $there design
check "name that opens the design" [file exists [member [sendSaveFile $there] FileName]] 1

# --- placing, by a path in UTF-8 and by one in the page -------------------------------------------------------------

foreach {folder with} [list $foreign utf-8 $named $encoding] {
  set modules [file join $root $folder]
  writeFile [file join $modules m.json] {{"lib":[{"Name":"RES"}],"children":[],"BoundingBox":"300 200"}}
  # JSON escapes bytes: half a character may be one that needs it.
  set path [string map {\\ \\\\} [encoding convertto $with [file nativename [file join $modules m.json]]]]
  set library {}
  packetParser [binary encode hex "{\"Command\":\"PlaceDSNModule\",\"Data\":{\"dsnDatPath\":\"$path\"}}"]
  check "library in $folder" $library [list -1 1 $folder]
}

# --- boxes and the dialog -------------------------------------------------------------------------------------------

outputWarming
outputError OtherProject
outputError "$foreign é"
check "boxes" $shown [list {澜图助手 请先选中器件} {澜图助手 请在同一个项目中选择} [list 澜图助手 "$foreign é"]]
set shown {}
check "selection" [SelectJumpPart "測 R2;U1" 1] U1
check "dialog" $shown {{选择要跳转的器件分部 U1 {測 R2}}}

# --- the companion, begun first -------------------------------------------------------------------------------------

for {set pause 0} {$pause < 100 && ![file exists [file join $base started.txt]]} {incr pause} {
  after 50
}
check "companion started in its folder" [file exists [file join $base started.txt]] 1
finish
