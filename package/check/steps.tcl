# What is tried, in its order, and how it is judged.

# The plug-in prints lines too, so each of these is written whole.
proc tell {args} {
  puts "\n@$args"
  flush stdout
}

proc expect {what got expected} {
  if {$got ne $expected} {
    lappend ::faults "$what: got \"$got\", expected \"$expected\""
  }
}

# The same path, whatever its separators.
proc expectPath {what got expected} {
  expect $what [file join {*}[file split $got]] [file join {*}[file split $expected]]
}

# Lets the event loop run until the condition holds. The time is long, since the machine may be busy.
proc await {what condition {seconds 60}} {
  set ::awaited 0
  set end [expr {[clock milliseconds] + 1000 * $seconds}]
  while {![uplevel #0 [list expr $condition]]} {
    if {[clock milliseconds] > $end} {
      error "$what did not come within $seconds s"
    }
    after 50 {incr ::awaited}
    vwait ::awaited
  }
}

# Ends a step that cannot be tried here.
proc untried {why} {
  return -code error -errorcode UNTRIED $why
}

set companionRuns 0  ;# 1 while the companion is expected to listen
set took ""          ;# what a step tells as its time where it is not its own

proc step {name body} {
  tell begin $name
  set ::faults {}
  set ::took ""
  set began [clock milliseconds]
  set result passed
  if {[catch {uplevel #0 $body} text options]} {
    if {[dict get $options -errorcode] eq "UNTRIED"} {
      set result "not tried"
    }
    lappend ::faults $text
  }
  if {$result eq "passed" && [llength $::faults]} {
    set result failed
  }
  tell end $name $result [join $::faults "; "] [expr {$::took ne "" ? $::took : [clock milliseconds] - $began}]
  if {$::companionRuns && ![catch {portOwner 9601} owner] && $owner eq ""} {
    set ::companionRuns 0
    tell begin "the companion goes on"
    tell end "the companion goes on" failed "the process of the companion ended while \"$name\" was tried" 0
  }
}

# What a command of the plug-in answers, read as a message.
proc message {args} {
  return [unhex [{*}$args]]
}

proc heard {} {
  return [lmap line [lsearch -all -inline -not -exact \
      [split [encoding convertfrom utf-8 [readFile [file join $::base heard.txt]]] \n] ""] {string trimright $line \r}]
}

proc heardOf {kind} {
  return [lsearch -all -inline -index 0 [heard] $kind]
}

set open [file nativename $design]
set jsonOpen [string map {\\ \\\\} $open]
set answers(InitPath) $open
set steps {}

# trial NAME BODY: one line of the table.
proc trial {name body} {
  lappend ::steps $name $body
}

trial "the plug-in loads" {
  set before [info commands]
  set began [clock milliseconds]
  load [file join $base bin Vernoxa64.dll] Vernoxa
  tell fact "time to load" "[expr {[clock milliseconds] - $began}] ms"
  tell fact "code page in the plug-in's log" [lindex [regexp -inline {GetACP (\d+)} [readFile [file join $base Script Log schLog.txt]]] 1]
  expect "package" [package present Vernoxa] 1.0
  expect "calls at the start" [lmap call $calls {lindex $call 0}] \
      {::capGenerateBOMUtil::init RegisterAction creatServerForPthread RegisterAction InsertXMLMenu RegisterAction RegisterAction GetProductVersion}
}
trial "all its commands are there" {
  expect "missing" [lmap name $commands {if {$name in [info commands]} continue; set name}] ""
  expect "more than those" [lmap name [info commands] {
    if {$name in $before || $name in $commands || $name in {LoadAction unloadAction}} continue
    set name
  }] ""
}
trial "the companion is started" {
  await "the companion" {[llength [heardOf started]] > 0}
  expect "started in" [lrange [lindex [heardOf started] 0] 1 end] [list [file normalize $base] {}]
}
# These need no companion, and go on while the thread pauses.
trial "boxes are shown, and closed" {
  set boxes {}
  onBox {lappend boxes}
  outputWarming
  outputError NoObject
  outputError "$named box"
  expect "boxes" $boxes [list \u8bf7\u5148\u9009\u4e2d\u5668\u4ef6 \u8bf7\u9009\u62e9\u5143\u4ef6 "$named box"]
}
trial "the dialog is shown, and closed" {
  set boxes {}
  expect "picked" [SelectJumpPart "U2;U1" 1] U1
  expect "dialogs" [llength $boxes] 1
}
trial "the plug-in's thread links them" {
  await "the link" {$links > 0}
  set companionRuns 1
}
trial "an open design is reported" {
  await "the report" {[llength [heardOf status]] > 0}
  expect "told" [lindex [heardOf status] 0] [list status Open $jsonOpen]
  expect "open designs" [getOpenFileCount] 1
}
trial "every request of the companion" {
  await "the last answer" {[llength [heardOf sent]] > 0 && [lsearch $conversation *CloseOrcad*] >= 0}
  set seen [dict create]
  foreach {asked reply called} $conversation {
    regexp {"Command":"(\w+)"} $asked - command
    dict set seen $command [list $reply $called]
  }
  foreach row $requests {
    lassign $row command data reply called
    if {![dict exists $seen $command]} {
      lappend faults "$command was not asked"
      continue
    }
    lassign [dict get $seen $command] gotReply gotCalls
    expect "$command: reply" $gotReply $reply
    expect "$command: calls" [lsort $gotCalls] [lsort $called]
    if {$reply ne ""} {
      expect "$command: heard" [lindex [lsearch -inline -index 1 [heardOf answer] ${command}_EndResult] 2] $reply
    }
  }
  expect "requests without a trial" [lmap name $companionRequests {
    if {[lsearch -index 0 $requests $name] >= 0 || [string match Place*Module $name]} continue
    set name
  }] ""
}
trial "requests of the plug-in's thread" {
  set reply [message packetParserForPthread [hex "{\"Command\":\"GetNetsList\",\"Data\":$path}"]]
  expect GetNetsList [regexp {"Result":"0"} $reply] 1
  expect "nets file" [readFile [file join $base project Cache Nets.txt]] nets
  expect getDsnPinCount [message packetParserForPthread [hex "{\"Command\":\"getDsnPinCount\",\"Data\":$path}"]] \
      {{"Data":{"PinCount":"12"},"Command":"getDsnPinCount_EndResult","Result":"0"}}
  expect GetNewOpenPath [message packetParserForPthread [hex {{"Command":"GetNewOpenPath"}}]] \
      {{"Data":{"CloseFile":""},"Command":"GetNewOpenPath_EndResult","Result":"0"}}
}
trial "file status messages" {
  foreach {command status more} {ReadOpenPath Open ,"PinCount":"12" sendSaveFile Save {} sendCloseFile Close {}} {
    set reply [message $command $open]
    set whole {^\{"Command":"FileStatus","Result":"0","Data":\{"Status":"(\w+)","FileName":"([^"]*)"(,"Pid":"(\d+)","AllegroPath":"[^"]*")?(.*)\}\}$}
    expect "$command: form" [regexp $whole $reply - gotStatus gotName - process gotMore] 1
    expect $command [list $gotStatus $gotName $gotMore] [list $status $jsonOpen $more]
    expect "$command: process" $process [expr {$status eq "Close" ? "" : [pid]}]
  }
}
trial "queries that wait for the companion" {
  expect getSelfUserId [getSelfUserId] 1001
  expect GetResPath [GetResPath 7] $kept
}
trial "messages to the companion" {
  set sent {}
  tryUpdateBom
  sendRefRepetition RefRepe R1 R1 top main 300 200
  sendNetlist NoFootprint U3 {} top main 300 200
  sendDsnPackageInfo {{Value 10k}}
  expect "sent" [lmap text $sent {regexp -inline {"Command":"\w+"} $text}] \
      {{{"Command":"TryUpdateBom"}} {{"Command":"DsnCheck_Result"}} {{"Command":"DsnCheck_Result"}} {{"Command":"GetDsnAllPackageInfo_EndResult"}}}
  expect "added" [message sendAddToBom {{x;10k;R1;RES;0603;2}}] \
      {{"Data":{"Stick":[{"PartNumber":"","Value":"10k","PartRef":"R1","PartName":"RES","PCBFootprint":"0603","PinNumber":"2"}]},"Command":"AddToBom","Result":"0"}}
  expect "identifier" [regexp {^[0-9A-Fa-f-]{36}$} [getGenerateGuid]] 1
}
