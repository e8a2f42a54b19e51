# The boxes and the dialog of the built DLL while scripts run in their event loops: on_windows.tcl boxes_windows_test.tcl Vernoxa64.dll
# helper.dll, which lies beside it, does what a user at the boxes would do.

set built [lindex $argv 0]
set root [install [file join $env(TEMP) vernoxa-boxes] $built]

proc InitPath {} {return "b.dsn;C:\\设计\\a.dsn"}
quiet {RegisterAction UnregisterAction InsertXMLMenu creatServerForPthread}
set checkOpen [hex {{"Command":"CheckOpenState","Data":{"ProjectPath":"C:\\设计\\a.dsn"}}}]
set open {{"Data":{"State":"Open"},"Command":"CheckOpenState_EndResult","Result":"0"}}

# In the event loop of a box: the lists of the call are rewritten and taken away, and a packet arrives that shows a box
# itself; so does the dialog.
proc worst {text} {
  if {$::inside} {
    lappend ::innerBoxes $text
    return
  }
  set ::inside 1
  lappend ::boxes $text
  foreach name [info globals argument*] {
    append ::$name { more}
    unset ::$name
  }
  check "a packet inside $text" [unhex [packetParser $::checkOpen]] $::open
  check "the dialog inside $text" [SelectJumpPart "U9;U8" 1] U8
  set ::inside 0
}

load [file nativename $root/bin/Vernoxa64.dll] Vernoxa
load [file join [file dirname $built] helper.dll] Helper
set inside 0
onBox worst

# A script, its argument, what it answers and the box that it shows.
foreach {script value expected box} [list \
    {SelectJumpPart $argument 1} "U3;电阻;U2" U2 选择要跳转的器件分部 \
    {packetParser $argument} zz 7a7a 接收的数据异常 \
    {packetParser $argument} $checkOpen [hex $open] 文件一打开路径异常 \
    outputWarming "" "" 请先选中器件 \
    {outputError $argument} 自己的话 "" 自己的话] {
  set argument [string range " $value" 1 end]  ;# an object of its own
  set boxes {}
  set innerBoxes {}
  check "$script of $value" [eval $script] $expected
  check "boxes of $script of $value" $boxes [list $box]
  check "boxes inside those of $script of $value" $innerBoxes {文件一打开路径异常 选择要跳转的器件分部}
}
finish
