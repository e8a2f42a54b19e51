# Drawings, modules and what comes back from them, compared byte for byte with the files of the package.

proc expectFile {what path} {
  set got [readFile $path]
  set expected [readFile [file join $::here expected [file tail $path]]]
  if {$got ne $expected} {
    lappend ::faults "$what: [string length $got] bytes differ from the [string length $expected] of the package: $path"
  }
}

trial "a page is exported" {
  initSVGList
  foreach record {
    {Schematic top} {Page main 800 1100 1}
    {Part 300 200 0 0 RES R1} {Part 500 200 1 1 RES R2} {Line 300 230 400 230 18 0 0} {Text 310 190 R1 40 {} -12 0}
    {Box 10 10 200 120 12 0 0 1 0} {Ellipse 40 40 90 70 3 1 2 0 4} {Junction 300 230 5 1} {Polyline 10,10\ 20,30\ 40,15 7 0 1}
    {Arc {M 10 10 A 5 5 0 0 1 20 20} 2 0 0} {Polygon {M 0 0 L 5 5 L 0 5 Z} 4 0 0 1 0} {Global 600 40 3 0 VCC}
  } {
    addToPageList $record
  }
  foreach record {{Name RES} {Box -10 -20 20 40 48 0 0 1 0} {Line 0 -30 0 -20 48 0 0} {Pin 0 20 0 30 24 0 SHORT BOTTOM}} {
    addToLibList $record
  }
  outputSVGFile {top main {} {} 1}
  expectFile "the page" [file join $base project Cache Output top@!@main@!@1.json]
}
trial "a graphic library is exported" {
  initGraphicFile
  foreach record {{Name RES} {Line 0 0 10 0 24 0 0} {Box -10 -20 20 40 48 0 0 1 0}} {
    addGraphicLibList $record
  }
  set path [outputGraphicFile parts]
  expectPath "answered" $path [file join $base project Cache Library parts.json]
  expectFile "the library" $path
}
trial "a module is exported" {
  initMarketFile
  foreach record {{Name RES Part 0 0 20 10 0 R} {PartProperty Value 10k} {DispProperty 5 12 Value 10k 48 1 9 0}
      {Line 0 5 20 5 48 0 1} {Box 2 2 18 8 48 0 1 1 0} {Pin 0 5 -10 5 1 A 4}} {
    addMarketLibList $record
  }
  foreach record {{Part 100 200 1 0 RES} {Property {Part Reference} R1} {DispProperty 5 12 Value 10k 48 1 9 0}
      {Wire 100 200 120 200 48 0 1} {Junction 120 200}} {
    addMarketPartList $record
  }
  set moduleFile [outputMarketFile module 300 200 0]
  expectPath "answered" $moduleFile [file join $base project Cache Share ModuleLib.json]
  expectFile "the module" $moduleFile
}
trial "it is placed again" {
  set calls {}
  # a copy, since placing deletes the module's file
  set copy [file join $base project copy.json]
  file copy -force $moduleFile $copy
  set placed "\"dsnDatPath\":\"$copy\",\"selfModule\":\"0\""
  set reply [message packetParser [hex "{\"Command\":\"PlaceDSNModule\",\"Data\":{$placed}}"]]
  expect "reply" [regexp {"Result":"0"} $reply] 1
  placeMarketPart
  expect "calls" [lmap call $calls {lindex $call 0}] \
      {IsSchematicViewActive UnSelectAll placeLibPart placeLibPart setPinNum setPlaceMarketFlag PlaceNew placeLibPart setPinNum placePart placePart placePart}
  expect "libraries that are there" [lsort -unique [lmap call [lsearch -all -inline -index 0 $calls placeLibPart] {lindex $call 1}]] 1
  expect "left behind" [glob -nocomplain -directory [file join $base project] *.olb copy.json] ""
  file copy -force $moduleFile $copy
  set reply [message packetParser [hex "{\"Command\":\"PlaceDsnLibPartModule\",\"Data\":{$placed,\"PartIndex\":\"0\",\"ViewBoxWidth\":1,\"ViewBoxHeight\":2,\"PartName\":\"RES\"}}"]]
  expect "reply to PlaceDsnLibPartModule" [regexp {"Result":"0"} $reply] 1
  removeDatFile
}
