# The boxes and the dialog of the built DLL while scripts run in their event loops: on_windows.tcl boxes_windows_test.tcl Vernoxa64.dll
# helper.dll, which lies beside it, does what a user at the boxes would do.

set built [lindex $argv 0]
set root [install [file join $env(TEMP) vernoxa-boxes] $built]

namespace eval ::capGenerateBOMUtil {
  proc getStickList {} {return {{1;10k;R1;RES;0603;2} short}}
  proc getNotStickList {} {return {}}
}
proc InitPath {} {return "b.dsn;C:\\设计\\a.dsn"}
quiet {RegisterAction UnregisterAction InsertXMLMenu creatServerForPthread generateBOMForPath GetProductVersion}
set checkOpen [hex {{"Command":"CheckOpenState","Data":{"ProjectPath":"C:\\设计\\a.dsn"}}}]
set open {{"Data":{"State":"Open"},"Command":"CheckOpenState_EndResult","Result":"0"}}

# In the event loop of a box: the lists of the call are read as something else, rewritten and taken away, other texts get
# their memory, and a packet arrives that shows a box itself; so does the dialog.
proc worst {text} {
  if {$::inside} {
    lappend ::innerBoxes $text
    return
  }
  set ::inside 1
  lappend ::boxes $text
  foreach name [info globals argument*] {
    upvar #0 $name value
    foreach element $value {
      string length $element
    }
    string length $value
    append value { more}
    unset value
  }
  for {set size 0} {$size < 300} {incr size} {
    lappend ::noise [list [string repeat ! $size] [expr {$size * 3}]]
  }
  unset ::noise
  check "a packet inside $text" [unhex [packetParser $::checkOpen]] $::open
  check "the dialog inside $text" [SelectJumpPart "U9;U8" 1] U8
  set ::inside 0
}

# A command, its arguments as scripts write them, what it answers and the boxes that it shows.
proc call {command arguments expected boxes} {
  set words $command
  set number 0
  foreach argument $arguments {
    set ::argument[incr number] [string range " $argument" 1 end]  ;# an object of its own
    append words " \$::argument$number"
  }
  set ::boxes {}
  set ::innerBoxes {}
  set answer [uplevel #0 $words]
  if {[string match 7b* $answer]} {
    set answer [unhex $answer]
  }
  check "$command $arguments" $answer $expected
  check "boxes of $command $arguments" $::boxes $boxes
  check "boxes inside those of $command" $::innerBoxes \
      [string trim [string repeat "文件一打开路径异常 选择要跳转的器件分部 " [llength $boxes]]]
}

load [file nativename $root/bin/Vernoxa64.dll] Vernoxa
load [file join [file dirname $built] helper.dll] Helper
set inside 0
onBox worst

set parts {short {1;电阻;R1;RES;0603;2} {} {x;a b;R2;RES;0603;2}}
set lines [join {
  {{"PartNumber":"1","Value":"电阻","PartRef":"R1","PartName":"RES","PCBFootprint":"0603","PinNumber":"2"}}
  {{"PartNumber":"","Value":"a b","PartRef":"R2","PartName":"RES","PCBFootprint":"0603","PinNumber":"2"}}
} ,]
call sendAddToBom [list $parts] [format {{"Data":{"Stick":[%s]},"Command":"AddToBom","Result":"0"}} $lines] {??BOM?? ??BOM??}
call sendRemoveFromBom [list $parts] [format {{"Data":{"NotStick":[%s]},"Command":"RemoveFromBom","Result":"0"}} $lines] \
    {?BOM????? ?BOM?????}
call SelectJumpPart {"U3;电阻;U2" 1} U2 选择要跳转的器件分部
call packetParser zz 7a7a 接收的数据异常
call packetParserForPthread zz 7a7a 接收的数据异常
call packetParser $checkOpen $open 文件一打开路径异常
call packetParser [hex {{"Command":"GenerateBOM","Data":{"ProjectPath":"a.dsn"}}}] \
    {{"Data":{"Stick":[{"PartNumber":"1","Value":"10k","PartRef":"R1","PartName":"RES","PCBFootprint":"0603","PinNumber":"2"}],"NotStick":[],"NotPartNumber":[]},"Command":"GenerateBOM_EndResult","Result":"0"}} \
    BOM读取出错
call outputWarming {} "" 请先选中器件
call outputError NoObject "" 请选择元件
call outputError 自己的话 "" 自己的话

finish
