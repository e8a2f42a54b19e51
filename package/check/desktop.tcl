# The clipboard, hostile packets, and the end.

trial "the clipboard, which is put back" {
  if {[catch keepClipboard why]} {
    untried $why
  }
  # The plug-in writes and deletes a metafile of this one name, which may be somebody's.
  set theirs ""
  if {[file exists C:/Temp/test.emf]} {
    set theirs C:/Temp/vernoxa-check-[pid].emf
    if {[catch {file rename C:/Temp/test.emf $theirs} why]} {
      untried "C:\\Temp\\test.emf is somebody's, and cannot be put aside: $why"
    }
  }
  try {
    writeToClipboard "$named 1"
    expect "text" [clipboardText] "$named 1"
    putPicture
    set was [file exists C:/Temp]
    set picture [GetClipBoardPic]
    expectPath "picture" $picture [file join $base project Cache Output Preview.bmp]
    binary scan [readFile $picture] a2i@14iii mark bytes length width height
    expect "bitmap" [list $mark $bytes [file size $picture]] [list BM [expr {54 + 4 * $width * $height}] $bytes]
    expect "metafile left" [file exists C:/Temp/test.emf] 0
    if {!$was} {
      catch {file delete C:/Temp}
    }
  } finally {
    if {$theirs ne "" && [catch {file rename -force $theirs C:/Temp/test.emf} why]} {
      lappend faults "your C:\\Temp\\test.emf is [file nativename $theirs] now, since it could not be put back: $why"
    }
    if {[catch restoreClipboard why]} {
      lappend faults $why
    }
  }
}
trial "the cursor's position" {
  expect "two numbers" [regexp {^-?\d+ -?\d+$} [GetMousePosition]] 1
}
trial "keys" {
  untried "afterPlace and pressEnter press keys, which would go to whatever window is in front"
}
trial "hostile packets" {
  set boxes {}
  set calls {}
  set bomb [string repeat \[ 2000]
  set ran 0
  set texts [list {} zz 7 7b 7b7d 00 ff [hex \[1,2] [hex "{\"Command\":1}"] [hex "{\"Command\":\"GenerateBOM\",\"Data\":$bomb}"] \
      [string repeat 7b 200000] [hex {{"Command":"JumpToPartRef","Data":{"ProjectPath":"\";set ran 1;\"","PartRef":"[set ran 1]"}}}] \
      [hex {{"Command":"RenameRef","Data":{"Type":"1;set ran 1"}}}] [hex "{\"Command\":\"PlaceDSNModule\",\"Data\":{\"dsnDatPath\":\"\"}}"] \
      [hex {{"Command":"SetNewGuid","Data":{"ProjectPath":"$base[set ran 1]{*}"}}}] [hex [string repeat "\x7b\"Command\":" 500]]]
  foreach text $texts {
    packetParser $text
    packetParserForPthread $text
  }
  expect "what they wanted to run" $ran 0
  expect "the commands go on" [string length [getGenerateGuid]] 36
  tell fact "boxes for hostile packets" [llength $boxes]
}
trial "a companion that is started again" {
  set companionRuns 0
  close [open [file join $base leave] w]
  await "the end of the first" {$link eq ""}
  file delete [file join $base leave]
  execTool
  await "the second" {[llength [heardOf started]] > 1}
  await "the link" {$link ne ""}
  set companionRuns 1
  await "the report to the second" {[llength [heardOf status]] > 1}
  set companionRuns 0
  expect "told again" [lindex [heardOf status] end] [list status Open $jsonOpen]
  close [open [file join $base leave] w]
}
trial "the plug-in is unloaded" {
  unload [file join $base bin Vernoxa64.dll] Vernoxa
  expect "the commands go on" [string length [getGenerateGuid]] 36
}
trial "$loads loads" {
  await "the last of them" {$loading ni {"" begun}} 600
  set took [expr {$loadingEnded - $loadingBegan}]  ;# beside the other steps
  expect "loads" [list $loading $loaded] [list over $loads]
}
trial "its logs" {
  set log [readFile [file join $base Script Log schLog.txt]]
  expect "a code page" [regexp {\.GetACP \d+\r\n} $log] 1
  expect "crash log" [readFile [file join $base bin catchLog log.txt]] ""
}
